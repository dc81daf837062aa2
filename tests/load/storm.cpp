// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "load/storm.h"

#include "load/standingclock.h"
#include "load/stormprovider.h"
#include "load/stormrequest.h"
#include "support/runningtimers.h"

#include "manager/kinletmanager.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QCoreApplication>

#include <algorithm>
#include <functional>

namespace {

// What is told inside what is told, at most.
constexpr int DeepestInterference = 3;

}

void Storm::step()
{
    switch (below(16)) {
    case 0:
    case 1:
    case 2:
        return ask();
    case 3:
    case 4:
        return advance(below(2000));
    case 5:
        return destroySomething();
    case 6:
        return lookUp();
    case 7:
        return oneIn(2) ? addOrRemoveProvider() : answerLateAccounts();
    case 8:
        return oneIn(4) ? block() : advance(oneIn(50) ? 61000 : 0);
    default:
        return answerSome(20);
    }
}

// What applications and providers do inside what they are told of a request.
void Storm::interfere(const StormModel::Job &job)
{
    if (m_depth == DeepestInterference || !oneIn(8))
        return;
    ++m_depth;
    do {
        switch (below(7)) {
        case 0:
            ask();
            break;
        case 1:
            destroySomething();
            break;
        case 2:
            addOrRemoveProvider();
            break;
        case 3:
            lookUp();
            break;
        case 4:
            block();
            break;
        case 5:
            answerOne(job);
            break;
        default:
            answerSome(3);
        }
    } while (oneIn(3));
    --m_depth;
}

SocialDataRequest *Storm::makeRequest(const StormModel::Job &job)
{
    const QString id = QString::number(job->number);
    switch (below(7)) {
    case 0:
        return new StormRequest<SocialGetPersonsRequest>(*this, job);
    case 1:
        return new StormRequest<SocialGetActivitiesRequest>(*this, job);
    case 2:
        return new StormRequest<SocialGetLikersRequest>(*this, job, id);
    case 3:
        return new StormRequest<SocialLikeActivityRequest>(*this, job, id);
    case 4:
        return new StormRequest<SocialPostActivitiesRequest>(*this, job, SocialActivity::Status,
                                                             id);
    case 5:
        return new StormRequest<SocialGetAccountsRequest>(*this, job);
    default:
        return new StormRequest<GetAggregatedServicesRequest>(*this, job);
    }
}

void Storm::ask()
{
    const auto job = std::make_shared<StormJob>();
    job->number = ++m_requests;
    job->asked = StandingClock::now();
    // Now and then for everybody, otherwise for a few accounts.
    if (!oneIn(12))
        job->filter = someAccounts();
    count(job->filter.isEmpty() ? "requests for everybody" : "requests for accounts");
    SocialDataRequest *const request = makeRequest(job);
    QList<SocialServiceAccount> accounts;
    for (const QString &id : std::as_const(job->filter)) {
        SocialServiceAccount account;
        account.setProperty(SocialGenericData::Id, id);
        accounts.append(account);
    }
    m_jobs.push_back(job);
    model.asking(job);
    KinletManager::instance()->performRequest(request, accounts);
    model.askedFor(job);
}

void Storm::requestReported(const StormModel::Job &job)
{
    const bool isStart = job->phase == StormJob::Fresh;
    interfere(job);
    if (job->callerAlive && oneIn(60))
        destroy(job, isStart ? "destroyed before providers were asked" : "destroyed in a report");
    if (isStart)
        model.started(job);
}

void Storm::requestFinished(const StormModel::Job &job)
{
    ++job->finished;
    count("finished");
    interfere(job);
    if (!job->callerAlive)
        return;
    if (oneIn(4)) {
        destroy(job, "destroyed in finished");
    } else if (oneIn(3)) {
        count("deleted later in finished");
        job->caller->deleteLater();
    }
}

void Storm::destroy(const StormModel::Job &job, const char *moment)
{
    count(moment);
    delete job->caller;
}

void Storm::destroySomething()
{
    if (m_jobs.empty())
        return;
    const StormModel::Job job = m_jobs.at(std::size_t(below(int(m_jobs.size()))));
    if (!job->callerAlive)
        return;
    // Not while it is being made.
    if (job->phase == StormJob::Closed)
        destroy(job, "destroyed after the end");
    else
        destroy(job, job->phase == StormJob::Waiting ? "destroyed between" : "destroyed in asking");
}

void Storm::providerAsked(StormProvider &provider, SocialDataRequest *request)
{
    if (m_registering) {
        answerRegistry(provider, request);
        return;
    }
    const StormModel::Job job = model.providerAsked(provider.name, request);
    StormCopy &copy = job->copies.back();
    copy.providerObject = &provider;
    copy.plan = makePlan(job);
    interfere(job);
    const int atOnce = oneIn(3) ? int(copy.plan.size()) : below(2);
    for (int i = 0; i < atOnce && !copy.plan.empty(); ++i)
        answer(job, copy);
    interfere(job);
    if (job->callerAlive && oneIn(60))
        destroy(job, "destroyed in asking");
}

void Storm::providerCancelled(SocialDataRequest *request)
{
    for (std::size_t i = 0; i < m_jobs.size(); ++i) {
        const StormModel::Job job = m_jobs.at(i);
        for (StormCopy &copy : job->copies) {
            if (copy.object != request)
                continue;
            model.cancelled(job, copy);
            interfere(job);
            if (oneIn(10)) {
                copy.plan.push_back({SocialDataRequest::Finished, newIds(), {}});
                answer(job, copy);
                count("answers to a cancellation");
            }
            model.cancelReturned(job);
            return;
        }
    }
    model.check(false, "cancelled what was not asked");
}

void Storm::answerSome(int most)
{
    for (int i = 0; i < most && !m_jobs.empty(); ++i) {
        const StormModel::Job job = m_jobs.at(std::size_t(below(int(m_jobs.size()))));
        answerOne(job);
    }
}

// One of its providers, if there is anything left to answer for that one.
void Storm::answerOne(const StormModel::Job &job)
{
    if (job->copies.empty())
        return;
    StormCopy &copy = job->copies.at(std::size_t(below(int(job->copies.size()))));
    if (copy.object && !copy.plan.empty())
        answer(job, copy);
}

// The next thing that the provider was going to do.
void Storm::answer(const StormModel::Job &job, StormCopy &copy)
{
    const StormAnswer next = copy.plan.front();
    copy.plan.pop_front();
    const QPointer<SocialDataRequest> request = copy.object;
    const bool heard = model.answering(job, copy, next);
    count("answers");
    request->setResults(recordsWithIds(next.ids));
    const bool isFinal = next.status == SocialDataRequest::Finished;
    auto *post = qobject_cast<SocialPostActivitiesRequest *>(request);
    auto *like = qobject_cast<SocialLikeActivityRequest *>(request);
    if (isFinal && post) {
        post->postResult(next.errors.isEmpty());
    } else if (isFinal && like) {
        like->likeResult(next.errors.isEmpty());
    } else {
        QList<KinletError> errors;
        for (const KinletError::Type type : next.errors)
            errors.append(KinletError(type));
        request->setRequestProgress(next.status, errors);
    }
    model.answered(job, heard);
}

// Time passes without the event loop, so that timers are late.
void Storm::block()
{
    count("times blocked");
    StandingClock::advance(oneIn(20) ? 61000 : below(3000));
}

void Storm::advance(int milliseconds)
{
    StandingClock::advance(milliseconds);
    model.timersStriking();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    model.timersStruck(m_jobs);
    forget();
}

// Requests that nothing can become of any more. Copies that are kept are to be seen to the end.
void Storm::forget()
{
    const auto isOver = [](const StormModel::Job &job) {
        return job->phase == StormJob::Closed && !job->callerAlive
            && std::all_of(job->copies.begin(), job->copies.end(), [&](const StormCopy &copy) {
                   return copy.object.isNull() || (job->kept && copy.plan.empty());
               });
    };
    const auto over = std::stable_partition(m_jobs.begin(), m_jobs.end(), std::not_fn(isOver));
    for (auto job = over; job != m_jobs.end(); ++job) {
        if ((*job)->kept)
            m_kept.insert(m_kept.end(), (*job)->copies.begin(), (*job)->copies.end());
    }
    m_jobs.erase(over, m_jobs.end());
}

void Storm::calmDown()
{
    // Everything that is still to come but for what never comes, which ends the requests.
    m_depth = DeepestInterference;
    while (!m_lateAccounts.empty())
        answerLateAccounts();
    for (std::size_t i = 0; i < m_jobs.size(); ++i) {
        const StormModel::Job job = m_jobs.at(i);
        for (StormCopy &copy : job->copies) {
            while (copy.object && !copy.plan.empty())
                answer(job, copy);
        }
    }
    advance(61000);
    // Everything has ended, and is deleted after another minute.
    advance(61000);
    for (const StormModel::Job &job : std::vector<StormModel::Job>(m_jobs)) {
        if (job->callerAlive)
            destroy(job, "destroyed after the end");
    }
    advance(61000);
    model.check(m_jobs.empty(), "requests are left");
    for (const StormCopy &copy : m_kept)
        model.check(!copy.object.isNull(), "a copy was deleted that is kept");
    checkProviders();
    model.check(runningTimers().isEmpty(), "timers are left");
    model.counts[QStringLiteral("copies kept")] = int(m_kept.size());
}
