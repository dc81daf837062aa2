// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Requests, providers and the manager that go away at every bad moment. What is checked first of
// all is that nothing is touched that is gone: the sanitizers watch.

#include "manager/kinletmanager.h"
#include "requests/socialgetpersonsrequest.h"
#include "support/watchedrequest.h"

#include <QEventLoop>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

namespace {

constexpr auto Stopped = SocialDataRequest::Stopped;
constexpr auto Finished = SocialDataRequest::Finished;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

// What happens.
enum Act {
    DeleteRequest = 1,
    EndManager = 2,
    RemoveProviders = 4,
    AddProviders = 8,
    PerformAgain = 16,
    RunEventLoop = 32
};
struct NamedAct {
    const char *name;
    int act;
};
constexpr NamedAct acts[]{{"request deleted", DeleteRequest},
                          {"manager ended", EndManager},
                          {"both gone", DeleteRequest | EndManager},
                          {"providers removed", RemoveProviders},
                          {"providers and request gone", RemoveProviders | DeleteRequest},
                          {"many providers added", AddProviders},
                          {"performed again", PerformAgain},
                          {"performed again and deleted", PerformAgain | DeleteRequest},
                          {"event loop run", RunEventLoop},
                          {"request deleted, event loop run", DeleteRequest | RunEventLoop},
                          {"manager ended, event loop run", EndManager | RunEventLoop}};

// When it happens: at the report of that number, or inside the first provider's call if it is 0.
struct NamedMoment {
    const char *name;
    int providers;
    bool synchronous;
    SocialDataRequest::Status answer;
    int report;
};
constexpr NamedMoment moments[]{{"when started", 2, false, Finished, 1},
                                {"without provider", 0, false, Finished, 2},
                                {"in the first call", 2, false, Finished, 0},
                                {"in the first call, answered", 2, true, Finished, 0},
                                {"with the first synchronous answer", 2, true, Finished, 2},
                                {"with the last synchronous answer", 2, true, Finished, 3},
                                {"when stopped inside the call", 2, true, Stopped, 3},
                                {"after the asking", 2, false, Finished, 2},
                                {"with the first answer", 2, false, Finished, 3},
                                {"with the last answer", 2, false, Finished, 4},
                                {"when stopped", 2, false, Stopped, 4}};

void runEventLoop()
{
    QEventLoop loop;
    QTimer::singleShot(1, &loop, &QEventLoop::quit);
    loop.exec();
    runDeferredDeletes();
}

}

Q_DECLARE_METATYPE(const NamedMoment *)

class WorkerLifetimeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        KinletManager::cleanupInstance();
        runDeferredDeletes();
    }

    void badMoments_data();
    void badMoments();
    void requestDeletedBetweenAnswers_data();
    void requestDeletedBetweenAnswers();
    void providersRemovedWhileTheyWork();
    void aProviderRemovedWhileOthersAreAsked();
    void answersAfterTheManager();
    void othersAreServedInsideFinished();
    void everyRequestDeletedInOneFinished();
};

void WorkerLifetimeTest::badMoments_data()
{
    QTest::addColumn<const NamedMoment *>("moment");
    QTest::addColumn<int>("act");
    for (const NamedMoment &moment : moments) {
        for (const NamedAct &act : acts)
            QTest::addRow("%s, %s", moment.name, act.name) << &moment << act.act;
    }
}

void WorkerLifetimeTest::badMoments()
{
    QFETCH(const NamedMoment *, moment);
    QFETCH(int, act);
    QPointer<WatchedRequest> request = new WatchedRequest;
    int happened = 0;
    qsizetype reportsThen = 0;
    const auto happen = [&] {
        if (++happened > 1)
            return;
        reportsThen = request->reports.count();
        for (int i = 0; i < moment->providers && (act & RemoveProviders); ++i)
            ScriptedProvider::remove(QString::number(i));
        for (int i = 0; i < 40 && (act & AddProviders); ++i)
            ScriptedProvider::add(QStringLiteral("extra%1").arg(i))->onPerform =
                ScriptedProvider::answering({});
        if (act & PerformAgain)
            KinletManager::instance()->performRequest(request, {});
        if (act & DeleteRequest)
            delete request;
        if (act & EndManager)
            KinletManager::cleanupInstance();
        if (act & RunEventLoop)
            runEventLoop();
    };
    // The test holds its providers, so that they can answer when everything else is gone.
    QList<QSharedPointer<ScriptedProvider>> providers;
    for (int i = 0; i < moment->providers; ++i) {
        providers.append(QSharedPointer<ScriptedProvider>(new ScriptedProvider(QString::number(i)),
                                                          &QObject::deleteLater));
        QVERIFY(KinletManager::instance()->addProvider(providers.last()));
        providers.last()->onPerform = [&](SocialDataRequest *copy) {
            if (moment->report == 0)
                happen();
            if (moment->synchronous)
                ScriptedProvider::answering({}, moment->answer)(copy);
        };
    }
    request->onReport = [&](SocialDataRequest::Status) {
        if (request->reports.count() == moment->report)
            happen();
    };
    KinletManager::instance()->performRequest(request, {});

    // Everybody answers what was asked, then once more.
    for (const auto status : {moment->answer, Finished}) {
        for (const auto &provider : std::as_const(providers)) {
            const auto received = provider->received;
            for (const QPointer<SocialDataRequest> &copy : received) {
                if (copy)
                    ScriptedProvider::answering({}, status)(copy);
            }
        }
    }
    QVERIFY(happened);
    QCOMPARE(request.isNull(), (act & DeleteRequest) != 0);
    if (request && (act & EndManager))
        QCOMPARE(request->reports.count(), reportsThen);
    else if (request)
        QCOMPARE(request->status(), Finished);

    // Whoever is there serves the next request.
    auto *fresh = ScriptedProvider::add(text("fresh"), {text("f")});
    fresh->onPerform = ScriptedProvider::answering({text("served")});
    SocialGetPersonsRequest next;
    KinletManager::instance()->performRequest(&next, fresh->accountList);
    QCOMPARE(idsOf(next.results()), QStringList(text("served")));
    delete request;
}

void WorkerLifetimeTest::requestDeletedBetweenAnswers_data()
{
    QTest::addColumn<int>("answersBefore");
    for (int i = 0; i <= 3; ++i)
        QTest::addRow("after %d of 3 answers", i) << i;
}

void WorkerLifetimeTest::requestDeletedBetweenAnswers()
{
    QFETCH(int, answersBefore);
    QList<ScriptedProvider *> providers;
    for (const auto *name : {"A", "B", "C"})
        providers.append(ScriptedProvider::add(text(name)));
    auto *request = new SocialGetPersonsRequest;
    QSignalSpy finished(request, &SocialDataRequest::finished);
    KinletManager::instance()->performRequest(request, {});
    for (int i = 0; i < answersBefore; ++i)
        providers[i]->answer();
    delete request;
    for (ScriptedProvider *provider : std::as_const(providers)) {
        QVERIFY(provider->last());
        provider->answer();
    }
    QCOMPARE(finished.count(), answersBefore == 3 ? 1 : 0);
    // The copies stay for now: the providers may look at them.
    runDeferredDeletes();
    for (const ScriptedProvider *provider : std::as_const(providers))
        QVERIFY(provider->last());
}

void WorkerLifetimeTest::providersRemovedWhileTheyWork()
{
    QPointer<ScriptedProvider> a = ScriptedProvider::add(text("A"), {text("a")});
    QPointer<ScriptedProvider> b = ScriptedProvider::add(text("B"), {text("b")});
    SocialGetPersonsRequest request;
    KinletManager::instance()->performRequest(&request, a->accounts() + b->accounts());
    ScriptedProvider::remove(text("A"));
    runDeferredDeletes();
    // The request holds it, and its answer still counts.
    QVERIFY(a);
    b->answer({text("b1")});
    QVERIFY(request.isActive());
    a->answer({text("a1")});
    QCOMPARE(request.status(), Finished);
    QStringList ids = idsOf(request.results());
    ids.sort();
    QCOMPARE(ids, QStringList({text("a1"), text("b1")}));
}

void WorkerLifetimeTest::aProviderRemovedWhileOthersAreAsked()
{
    int asked = 0;
    for (const auto *name : {"A", "B", "C"}) {
        ScriptedProvider::add(text(name))->onPerform = [&](SocialDataRequest *copy) {
            ++asked;
            for (const auto *other : {"A", "B", "C"})
                ScriptedProvider::remove(text(other));
            runDeferredDeletes();
            ScriptedProvider::answering({text("r")})(copy);
        };
    }
    SocialGetPersonsRequest request;
    KinletManager::instance()->performRequest(&request, {});
    // They were chosen before.
    QCOMPARE(asked, 3);
    QCOMPARE(request.results().count(), 3);
    QCOMPARE(request.status(), Finished);
}

void WorkerLifetimeTest::answersAfterTheManager()
{
    const QSharedPointer<ScriptedProvider> provider(new ScriptedProvider(text("A")),
                                                    &QObject::deleteLater);
    KinletManager::instance()->addProvider(provider);
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    KinletManager::cleanupInstance();
    runDeferredDeletes();
    QVERIFY(provider->last());
    const auto reports = request.reports;
    provider->answer({text("late")});
    QCOMPARE(request.reports, reports);
}

void WorkerLifetimeTest::othersAreServedInsideFinished()
{
    auto *provider = ScriptedProvider::add(text("A"));
    SocialGetPersonsRequest first;
    SocialGetPersonsRequest second;
    QSignalSpy secondFinished(&second, &SocialDataRequest::finished);
    bool inside = false;
    connect(&first, &SocialDataRequest::finished, &first, [&] {
        KinletManager::instance()->performRequest(&second, {});
        QTimer::singleShot(0, provider, [&] { provider->answer({text("2")}); });
        QEventLoop loop;
        connect(&second, &SocialDataRequest::finished, &loop, &QEventLoop::quit);
        loop.exec();
        inside = second.isFinished();
    });
    KinletManager::instance()->performRequest(&first, {});
    provider->answer({text("1")});
    QVERIFY(inside);
    QCOMPARE(secondFinished.count(), 1);
    QCOMPARE(idsOf(first.results()), QStringList(text("1")));
    QCOMPARE(idsOf(second.results()), QStringList(text("2")));
}

void WorkerLifetimeTest::everyRequestDeletedInOneFinished()
{
    auto *provider = ScriptedProvider::add(text("A"));
    QList<QPointer<SocialDataRequest>> requests;
    int finished = 0;
    for (int i = 0; i < 5; ++i) {
        requests.append(new SocialGetPersonsRequest);
        connect(requests.last(), &SocialDataRequest::finished, this, [&] {
            ++finished;
            for (const QPointer<SocialDataRequest> &request : std::as_const(requests))
                delete request;
        });
        KinletManager::instance()->performRequest(requests.last(), {});
    }
    const auto copies = provider->received;
    QCOMPARE(copies.count(), 5);
    for (SocialDataRequest *copy : copies)
        ScriptedProvider::answering({})(copy);
    QCOMPARE(finished, 1);
}

QTEST_GUILESS_MAIN(WorkerLifetimeTest)

#include "workerlifetimetest.moc"
