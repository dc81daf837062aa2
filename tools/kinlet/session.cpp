// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "session.h"

#include "commandline.h"
#include "language.h"
#include "nearest.h"
#include "progress.h"
#include "report.h"

#include <Kinlet/KinletManager>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>

namespace {

QString seconds(int milliseconds)
{
    return QStringLiteral("%1 s").arg(milliseconds / 1000.0);
}

QString listed(const QStringList &names)
{
    return names.join(QStringLiteral(", "));
}

QStringList unanswered(const std::vector<Question> &questions)
{
    QStringList names;
    for (const Question &question : questions) {
        if (!question.request->isFinished())
            names.append(question.target.provider);
    }
    names.removeDuplicates();
    return names;
}

Answer answerTo(const Question &question)
{
    const SocialDataRequest &request = *question.request;
    Answer answer{question.target, request.results(), request.errors(), request.isFinished()};
    if (request.status() == SocialDataRequest::Stopped && answer.errors.isEmpty())
        answer.errors.append(
            KinletError(KinletError::UnknownError, Tool::tr("the provider has given up")));
    return answer;
}

}

Session::Session(const CommandLine &line, Report &report) : line(line), report(report)
{
    KinletManager::instance();
}

Session::~Session()
{
    KinletManager::cleanupInstance();
    // Provider handles delete through the event loop, which has run for the last time.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

KinletManager *Session::manager() const
{
    return KinletManager::instance();
}

bool Session::hasProviders() const
{
    return !manager()->allProviderNames().isEmpty();
}

QStringList Session::providers() const
{
    QStringList names = manager()->allProviderNames();
    names.sort();
    return names;
}

bool Session::start()
{
    if (!manager()->isInitialized()) {
        const Progress progress([] { return Tool::tr("waiting for providers to start"); });
        QEventLoop loop;
        QObject::connect(manager(), &KinletManager::initialized, &loop, &QEventLoop::quit);
        run(loop, line.startMilliseconds);
    }
    if (interrupted()) {
        report.failure(Tool::tr("interrupted while providers were starting"));
        return false;
    }
    if (manager()->isInitialized())
        return true;
    const QStringList before = providers();
    QMetaObject::invokeMethod(manager(), "onInitalized", Qt::DirectConnection);
    for (const QString &name : before) {
        if (manager()->hasProvider(name))
            continue;
        leftOut = true;
        report.failure(Tool::tr("%1 did not start within %2 and is left out")
                           .arg(name, seconds(line.startMilliseconds)));
    }
    if (!hasProviders())
        report.failure(Tool::tr("no provider is left"));
    return hasProviders();
}

bool Session::chooseAccounts()
{
    QStringList known;
    QStringList ids;
    const QList<SocialServiceAccount> all = manager()->accounts();
    for (const SocialServiceAccount &account : all)
        known.append(account.id());
    for (const QString &id : line.accounts) {
        if (id == allAccounts)
            continue;
        if (!known.contains(id)) {
            report.note(
                Tool::tr("unknown account \"%1\"").arg(id)
                + didYouMean(id, known, Tool::tr("; the accounts are %1").arg(listed(known))));
            return false;
        }
        if (!ids.contains(id))
            chosen.append(manager()->account(id));
        ids.append(id);
    }
    if (line.accounts.contains(allAccounts))
        chosen.clear();
    return true;
}

QList<SocialServiceAccount> Session::accounts() const
{
    if (!chosen.isEmpty())
        return chosen;
    // Of several accounts with one id only the first can be reached.
    QList<SocialServiceAccount> reachable;
    QStringList ids;
    const QList<SocialServiceAccount> all = manager()->accounts();
    for (const SocialServiceAccount &account : all) {
        if (!ids.contains(account.id()))
            reachable.append(account);
        ids.append(account.id());
    }
    return reachable;
}

QList<Target> Session::targets() const
{
    QList<Target> targets;
    const QStringList names = providers();
    for (const QString &name : names) {
        Target target{name, {}};
        const QList<SocialServiceAccount> candidates = accounts();
        for (const SocialServiceAccount &account : candidates) {
            if (targetOf(account).provider == name)
                target.accounts.append(account);
        }
        if (!silent.contains(name) && (chosen.isEmpty() || !target.accounts.isEmpty()))
            targets.append(target);
    }
    return targets;
}

Target Session::targetOf(const SocialServiceAccount &account) const
{
    return {manager()->providerNameFromAccountId(account.id()), {account}};
}

QString Session::accountName(const SocialServiceAccount &account)
{
    for (const QString &key : {SocialServiceAccount::AccountName, SocialServiceAccount::UserName}) {
        const QString name = account.property(key);
        if (!name.isEmpty())
            return name;
    }
    return account.description();
}

void Session::run(QEventLoop &loop, int milliseconds)
{
    if (interrupted())
        return;
    QTimer limit;
    limit.setSingleShot(true);
    // The others may strike up to a twentieth early.
    limit.setTimerType(Qt::PreciseTimer);
    QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(&interrupt, &Interrupt::occurred, &loop, &QEventLoop::quit);
    if (milliseconds >= 0)
        limit.start(milliseconds);
    loop.exec();
}

// Straight to the provider: the manager hands out copies, and what has come of an answer that never
// ends would stay in its copy.
void Session::perform(const Question &question)
{
    QStringList ids;
    for (const SocialServiceAccount &account : question.target.accounts)
        ids.append(account.id());
    question.request->setPerformOnAccountsFilter(ids);
    const QSharedPointer<KinletInterface> provider = manager()->provider(question.target.provider);
    if (provider)
        provider->performRequest(question.request.get());
}

QList<Answer> Session::ask(std::vector<Question> questions)
{
    QEventLoop loop;
    const auto pending = [&] { return unanswered(questions); };
    if (!interrupted()) {
        for (const Question &question : questions) {
            QObject::connect(question.request.get(), &SocialDataRequest::finished, &loop, [&] {
                if (pending().isEmpty())
                    loop.quit();
            });
        }
        for (const Question &question : questions)
            perform(question);
        if (!pending().isEmpty()) {
            const Progress progress(
                [&] { return Tool::tr("waiting for %1").arg(listed(pending())); });
            run(loop, line.waitMilliseconds);
        }
        reportSilence(pending());
    } else {
        reportInterruption();
    }
    QList<Answer> answers;
    for (const Question &question : questions) {
        answers.append(answerTo(question));
        // A provider may go on with a request until it has finished it or is told not to.
        const auto provider = manager()->provider(question.target.provider);
        if (provider && question.request->status() != SocialDataRequest::Finished)
            provider->cancelRequest(question.request.get());
    }
    return answers;
}

QList<Answer> Session::askEach(const QList<Target> &targets,
                               const std::function<std::unique_ptr<SocialDataRequest>()> &request)
{
    std::vector<Question> questions;
    for (const Target &target : targets)
        questions.push_back({target, request()});
    return ask(std::move(questions));
}

void Session::reportSilence(const QStringList &silentNow)
{
    if (silentNow.isEmpty())
        return;
    silent += silentNow;
    if (interrupted())
        report.failure(Tool::tr("interrupted; no answer yet from %1").arg(listed(silentNow)));
    else
        report.failure(Tool::tr("no answer within %1 from %2")
                           .arg(seconds(line.waitMilliseconds), listed(silentNow)));
}

void Session::reportInterruption()
{
    if (report.exitCode() == Done)
        report.failure(Tool::tr("interrupted"));
}

QList<Entry> entriesOf(const QList<Answer> &answers)
{
    QList<Entry> entries;
    for (const Answer &answer : answers) {
        for (const SocialGenericData &record : answer.records)
            entries.append({answer.target.provider, record});
    }
    return entries;
}
