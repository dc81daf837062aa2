// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "load/stormmodel.h"

#include "load/standingclock.h"

#include <algorithm>

namespace {

constexpr qint64 Minute = 60000;
constexpr int MostProblems = 5;

QStringList sorted(QStringList texts)
{
    texts.sort();
    return texts;
}

// But for those that have answered.
bool allCancelled(const StormJob &job)
{
    return std::all_of(job.copies.begin(), job.copies.end(), [](const StormCopy &copy) {
        return copy.cancelled || copy.status == SocialDataRequest::Finished;
    });
}

}

QString StormReport::toString() const
{
    QStringList types;
    for (const int type : errors)
        types.append(QString::number(type));
    return QStringLiteral("status %1, results [%2], errors [%3]")
        .arg(status)
        .arg(ids.join(QLatin1Char(' ')), types.join(QLatin1Char(' ')));
}

void StormModel::check(bool isRight, const Job &job, const char *rule)
{
    if (isRight)
        return;
    const QString problem = QStringLiteral("request %1 of kind %2, %3 ms old: %4")
                                .arg(job->number)
                                .arg(job->kind)
                                .arg(StandingClock::now() - job->asked)
                                .arg(QString::fromUtf8(rule));
    check(false, problem.toUtf8().constData());
}

void StormModel::check(bool isRight, const char *rule)
{
    if (!isRight && problems.size() < MostProblems)
        problems.append(QString::fromUtf8(rule));
}

void StormModel::providerRemoved(const QString &name)
{
    registered.remove(name);
    accountsAnswered(name, {});
    accountLists.erase(name);
}

void StormModel::accountsAnswered(const QString &name, const QStringList &ids)
{
    for (const QString &id : accountLists[name])
        owners[id].remove(name);
    accountLists[name] = ids;
    for (const QString &id : ids)
        owners[id].insert(name);
}

QStringList StormModel::accounts() const
{
    QStringList all;
    for (const auto &[name, ids] : accountLists)
        all += ids;
    return all;
}

QStringList StormModel::accountsOf(const QString &name) const
{
    const auto entry = accountLists.find(name);
    return entry == accountLists.end() ? QStringList() : entry->second;
}

// An account that several providers claim belongs to the first of them.
QString StormModel::ownerOf(const QString &accountId) const
{
    const QSet<QString> names = owners.value(accountId);
    return names.isEmpty() ? QString() : *std::min_element(names.begin(), names.end());
}

bool StormModel::isOverdue(const StormJob &job) const
{
    return StandingClock::now() - job.asked >= Minute;
}

// What the copies amount to: everybody's results and errors in the order of asking, the lowest
// status, and after a minute the end.
StormReport StormModel::merged(const StormJob &job) const
{
    // Nobody who has not been asked yet has more than started.
    StormReport report{
        job.toAsk.isEmpty() ? SocialDataRequest::Finished : SocialDataRequest::Started, {}, {}};
    for (const StormCopy &copy : job.copies) {
        report.status = std::min(report.status, copy.status);
        report.ids += copy.ids;
        report.errors += copy.errors;
    }
    if (report.status != SocialDataRequest::Finished && isOverdue(job)) {
        report.status = SocialDataRequest::Finished;
        report.errors.append(KinletError::ProviderTimeout);
    }
    return report;
}

void StormModel::close(StormJob &job)
{
    job.phase = StormJob::Closed;
    job.closed = job.queued = StandingClock::now();
}

// The request has been told that it has started: only now are providers chosen for it.
void StormModel::started(const Job &job)
{
    if (!job->callerAlive) {
        close(*job);
        return;
    }
    job->phase = StormJob::Dispatching;
    job->asked = StandingClock::now();
    if (job->filter.isEmpty()) {
        for (const QString &name : std::as_const(registered))
            job->toAsk.insert(name, {});
    }
    for (const QString &id : std::as_const(job->filter)) {
        const QString owner = ownerOf(id);
        if (registered.contains(owner))
            job->toAsk[owner].append(id);
    }
}

StormModel::Job StormModel::providerAsked(const QString &provider, SocialDataRequest *copy)
{
    const Job job = dispatching.back();
    check(job->phase != StormJob::Fresh && job->toAsk.contains(provider), job,
          "a provider was asked that was not to be");
    check(copy->type() == job->kind && copy->status() == SocialDataRequest::Started
              && copy->results().isEmpty(),
          job, "a copy is not like the request");
    check(sorted(copy->performOnAccountsFilter()) == sorted(job->toAsk.take(provider)), job,
          "a copy is for other accounts");
    StormCopy known;
    known.provider = provider;
    known.object = copy;
    job->copies.push_back(known);
    return job;
}

// Who asked has got the call back.
void StormModel::askedFor(const Job &job)
{
    dispatching.pop_back();
    check(job->toAsk.isEmpty(), job, "a provider was not asked");
    if (job->phase == StormJob::Closed && job->hasDispatchReport)
        job->queued = StandingClock::now();
    if (!job->isOpen())
        return;
    check(!job->callerAlive || job->hasDispatchReport, job, "no report after the asking");
    if (!job->callerAlive && merged(*job).status == SocialDataRequest::Finished) {
        close(*job);
        return;
    }
    job->phase = StormJob::Waiting;
    job->waiting = StandingClock::now();
}

void StormModel::callerGoing(const Job &job)
{
    job->callerAlive = false;
    check(job->finished == job->finishes, job,
          "finished was emitted too often or not often enough");
    if (job->isOpen() && merged(*job).status == SocialDataRequest::Finished)
        close(*job);
}

void StormModel::cancelled(const Job &job, StormCopy &copy)
{
    check(timersStrike && isOverdue(*job), job, "cancelled too early");
    check(job->isOpen() || job->closed >= struckAt, job, "cancelled after the end");
    check(copy.status != SocialDataRequest::Finished, job, "cancelled though answered");
    check(!copy.cancelled, job, "cancelled twice");
    copy.cancelled = true;
    copy.plan.clear();
    ++counts[QStringLiteral("copies cancelled")];
}

// The last cancellation ends the request. If the application holds it there is a report, too.
void StormModel::cancelReturned(const Job &job)
{
    if (job->isOpen() && !job->callerAlive && allCancelled(*job))
        close(*job);
}

// The time-out has ended the request while the application held it.
void StormModel::timedOut(const Job &job)
{
    check(timersStrike && isOverdue(*job), job, "a report that nothing has made due");
    check(allCancelled(*job), job, "timed out before all were cancelled");
    job->kept = true;
    ++counts[QStringLiteral("requests timed out")];
}

void StormModel::reported(const Job &job, const StormReport &report)
{
    StormReport right{SocialDataRequest::Started, {}, {}};
    if (job->phase != StormJob::Fresh) {
        check(job->isOpen(), job, "a report after the end");
        right = merged(*job);
        if (job->due > 0) {
            --job->due;
        } else if (job->phase == StormJob::Dispatching && job->toAsk.isEmpty()
                   && !job->hasDispatchReport) {
            job->hasDispatchReport = true;
        } else {
            timedOut(job);
        }
        if (right.status == SocialDataRequest::Finished)
            close(*job);
        if (right.status >= SocialDataRequest::Stopped)
            ++job->finishes;
        ++counts[QStringLiteral("reports")];
    }
    const QByteArray difference = QStringLiteral("wrong report: %1 instead of %2")
                                      .arg(report.toString(), right.toString())
                                      .toUtf8();
    check(report == right, job, difference.constData());
}

// True if the worker hears of it.
bool StormModel::answering(const Job &job, StormCopy &copy, const StormAnswer &answer)
{
    copy.status = answer.status;
    copy.ids = answer.ids;
    copy.errors.clear();
    for (const KinletError::Type type : answer.errors)
        copy.errors.append(type);
    const bool heard = answer.status >= SocialDataRequest::Stopped && job->isOpen();
    if (!heard && job->phase == StormJob::Closed)
        ++counts[QStringLiteral("answers after the end")];
    if (heard && job->callerAlive)
        ++job->due;
    else if (heard && merged(*job).status == SocialDataRequest::Finished)
        close(*job);
    return heard;
}

void StormModel::answered(const Job &job, bool heard)
{
    if (!heard)
        return;
    check(!job->callerAlive || job->due == 0, job, "no report of an answer");
    // Queued again, which counts from now, if it has ended inside the report.
    if (job->phase == StormJob::Closed)
        job->queued = StandingClock::now();
}

// Copies go a minute after the end, and not before.
void StormModel::checkDeletion(const Job &job)
{
    const bool mustBeGone = !job->kept && struckAt - job->queued >= Minute;
    const bool mustBeThere = job->kept || StandingClock::now() - job->queued < Minute;
    for (const StormCopy &copy : job->copies) {
        check(!mustBeGone || !copy.object, job, "a copy was not deleted");
        check(!mustBeThere || copy.object, job, "a copy was deleted too early");
    }
}

void StormModel::timersStriking()
{
    timersStrike = true;
    struckAt = StandingClock::now();
}

// What has become due while they struck may come with the next.
void StormModel::timersStruck(const std::vector<Job> &jobs)
{
    timersStrike = false;
    for (const Job &job : jobs) {
        // Its timer is due one millisecond after the minute.
        check(!job->isOpen() || struckAt - job->waiting <= Minute, job,
              "not ended by the time-out");
        if (job->phase == StormJob::Closed)
            checkDeletion(job);
    }
}
