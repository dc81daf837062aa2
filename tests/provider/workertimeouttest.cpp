// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Requests that are not answered within a minute. The clocks of this program run fast.

#include "manager/kinletmanager.h"
#include "support/watchedrequest.h"

#include <QDateTime>
#include <QTest>

namespace {

using Report = WatchedRequest::Report;
constexpr auto Started = SocialDataRequest::Started;
constexpr auto Progressing = SocialDataRequest::Progressing;
constexpr auto Stopped = SocialDataRequest::Stopped;
constexpr auto Finished = SocialDataRequest::Finished;

// A stall of the machine counts many times over, so upper limits are generous: below two minutes,
// at which a lost timer would be seen.
constexpr int LongWait = 300000;
constexpr qint64 LatestEnd = 115000;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

qint64 now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

void spin(qint64 milliseconds)
{
    for (const qint64 end = now() + milliseconds; now() < end;) { }
}

}

class WorkerTimeoutTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        KinletManager::cleanupInstance();
        runDeferredDeletes();
    }

    void endsAfterAMinute_data();
    void endsAfterAMinute();
    void whatIsReportedAndCancelled();
    void youngerRequestsAreLeftAlone();
    void stoppedEndsWithTheMinute();
    void oneOfTwoPerformancesIsOverdue();
    void aRemovedProviderIsStillCancelled();
    void answersInsideCancelRequest_data();
    void answersInsideCancelRequest();
    void whatDiesInside_data();
    void whatDiesInside();
    void theOthersAreAskedAfterABlockingProvider();
};

void WorkerTimeoutTest::endsAfterAMinute_data()
{
    QTest::addColumn<int>("offset");
    for (const int offset : {0, 250, 500, 750})
        QTest::addRow("%d ms after the second", offset) << offset;
}

void WorkerTimeoutTest::endsAfterAMinute()
{
    QFETCH(int, offset);
    ScriptedProvider::add(text("A"));
    WatchedRequest request;
    qint64 ended = 0;
    connect(&request, &SocialDataRequest::finished, &request, [&] { ended = now(); });
    while (now() % 1000 < offset || now() % 1000 > offset + 100) { }
    const qint64 start = now();
    KinletManager::instance()->performRequest(&request, {});
    QTRY_VERIFY_WITH_TIMEOUT(ended, LongWait);
    QVERIFY2(ended - start >= 60000, QByteArray::number(ended - start).constData());
    QVERIFY2(ended - start < LatestEnd, QByteArray::number(ended - start).constData());
    QCOMPARE(typesOf(request.errors()), QList<int>({KinletError::ProviderTimeout}));
}

void WorkerTimeoutTest::whatIsReportedAndCancelled()
{
    const QStringList accounts{text("a"), text("b"), text("c")};
    QList<ScriptedProvider *> asked;
    for (const QString &account : accounts) {
        auto *provider = ScriptedProvider::add(account.toUpper(), {account});
        provider->onPerform = [&asked, provider](SocialDataRequest *) { asked.append(provider); };
    }
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    QCOMPARE(asked.count(), 3);
    asked[0]->answer({text("part")}, Progressing, {KinletError(KinletError::NetworkFailed)});
    asked[1]->answer({text("whole")}, Finished, {KinletError(KinletError::PostFailed)});
    const auto reports = request.reports.count();

    QTRY_COMPARE_WITH_TIMEOUT(request.status(), Finished, LongWait);
    // The time-out comes last, after the providers' own errors.
    const Report expected{
        Finished,
        {text("part"), text("whole")},
        {KinletError::NetworkFailed, KinletError::PostFailed, KinletError::ProviderTimeout}};
    QCOMPARE(request.reports.last(), expected);
    QCOMPARE(request.reports.count(), reports + 1);
    QCOMPARE(request.errors().last().description(),
             text("One of backends did not reply in 5 seconds"));
    QCOMPARE(asked[0]->cancelled, QList<SocialDataRequest *>({asked[0]->last()}));
    QCOMPARE(asked[1]->cancelled, QList<SocialDataRequest *>());
    QCOMPARE(asked[2]->cancelled, QList<SocialDataRequest *>({asked[2]->last()}));

    // Late answers find nobody.
    for (ScriptedProvider *provider : std::as_const(asked))
        provider->answer({text("late")});
    QCOMPARE(request.reports.count(), reports + 1);
}

void WorkerTimeoutTest::youngerRequestsAreLeftAlone()
{
    auto *provider = ScriptedProvider::add(text("A"));
    WatchedRequest answered;
    KinletManager::instance()->performRequest(&answered, {});
    provider->answer();
    WatchedRequest older;
    WatchedRequest younger;
    qint64 youngerEnded = 0;
    connect(&younger, &SocialDataRequest::finished, &younger, [&] { youngerEnded = now(); });
    KinletManager::instance()->performRequest(&older, {});
    QTest::qWait(30000);
    const qint64 youngerStart = now();
    KinletManager::instance()->performRequest(&younger, {});
    Report youngerWhenOlderEnded{};
    QList<SocialDataRequest *> cancelledThen;
    connect(&older, &SocialDataRequest::finished, &older, [&] {
        youngerWhenOlderEnded = younger.reports.last();
        cancelledThen = provider->cancelled;
    });
    QTRY_VERIFY_WITH_TIMEOUT(youngerEnded, LongWait);

    const Report started{Started, {}, {}};
    QCOMPARE(youngerWhenOlderEnded, started);
    QCOMPARE(cancelledThen, QList<SocialDataRequest *>({provider->received[1]}));
    QVERIFY(youngerEnded - youngerStart >= 60000);
    QCOMPARE(provider->cancelled,
             QList<SocialDataRequest *>({provider->received[1], provider->received[2]}));
    // The one that was answered in time has heard nothing more.
    QCOMPARE(answered.reports.count(), 3);
}

void WorkerTimeoutTest::stoppedEndsWithTheMinute()
{
    auto *provider = ScriptedProvider::add(text("A"));
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    provider->answer({text("1")}, Stopped);
    QCOMPARE(request.status(), Stopped);
    QTRY_COMPARE_WITH_TIMEOUT(request.status(), Finished, LongWait);
    const QList<Report> expected{{Started, {}, {}},
                                 {Started, {}, {}},
                                 {Stopped, {text("1")}, {}},
                                 {Finished, {text("1")}, {KinletError::ProviderTimeout}}};
    QCOMPARE(request.reports, expected);
    QCOMPARE(provider->cancelled, QList<SocialDataRequest *>({provider->last()}));
}

void WorkerTimeoutTest::oneOfTwoPerformancesIsOverdue()
{
    auto *provider = ScriptedProvider::add(text("A"));
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    KinletManager::instance()->performRequest(&request, {});
    provider->answer({text("r")});
    QCOMPARE(request.status(), Finished);
    QTRY_COMPARE_WITH_TIMEOUT(provider->cancelled.count(), 1, LongWait);
    QCOMPARE(provider->cancelled.first(), provider->received.first().data());
    QCOMPARE(typesOf(request.errors()), QList<int>({KinletError::ProviderTimeout}));
}

void WorkerTimeoutTest::aRemovedProviderIsStillCancelled()
{
    QPointer<ScriptedProvider> provider = ScriptedProvider::add(text("A"));
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    ScriptedProvider::remove(provider->name);
    QTRY_COMPARE_WITH_TIMEOUT(request.status(), Finished, LongWait);
    QVERIFY(provider);
    QCOMPARE(provider->cancelled, QList<SocialDataRequest *>({provider->last()}));
}

void WorkerTimeoutTest::answersInsideCancelRequest_data()
{
    QTest::addColumn<QList<int>>("statuses");
    QTest::addColumn<QList<Report>>("reports");
    const auto row = [](const char *name, QList<int> statuses, QList<Report> reports) {
        QTest::newRow(name) << statuses << reports;
    };
    const QList<int> timeout{KinletError::ProviderTimeout};
    row("the only one", {Finished}, {{Finished, {text("0")}, {}}});
    row("the only one, stopped", {Stopped}, {{Finished, {text("0")}, timeout}});
    // The first answer ends the request, for the other has had its minute.
    row("both", {Finished, Finished}, {{Finished, {text("0")}, timeout}});
    row("the second", {-1, Finished}, {{Finished, {text("1")}, timeout}});
    // Progress alone is no answer, but what it brings counts.
    row("progress", {Progressing}, {{Finished, {text("0")}, timeout}});
}

Q_DECLARE_METATYPE(WatchedRequest::Report)

void WorkerTimeoutTest::answersInsideCancelRequest()
{
    QFETCH(QList<int>, statuses);
    QFETCH(QList<Report>, reports);
    QList<ScriptedProvider *> asked;
    for (int i = 0; i < statuses.count(); ++i) {
        auto *provider = ScriptedProvider::add(QString::number(i));
        provider->onPerform = [&asked, provider](SocialDataRequest *) { asked.append(provider); };
    }
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    for (int i = 0; i < statuses.count(); ++i) {
        if (statuses[i] >= 0)
            asked[i]->onCancel = ScriptedProvider::answering(
                {QString::number(i)}, SocialDataRequest::Status(statuses[i]));
    }
    request.reports.clear();
    QTRY_COMPARE_WITH_TIMEOUT(request.status(), Finished, LongWait);
    // Every one that has not answered is cancelled, also once the request has ended.
    for (const ScriptedProvider *provider : std::as_const(asked))
        QCOMPARE(provider->cancelled, QList<SocialDataRequest *>({provider->last()}));
    QCOMPARE(request.reports, reports);
}

void WorkerTimeoutTest::whatDiesInside_data()
{
    QTest::addColumn<bool>("inCancel");
    QTest::addColumn<bool>("deleteRequest");
    QTest::addColumn<bool>("endManager");
    QTest::addColumn<bool>("removeProviders");
    for (const bool inCancel : {false, true}) {
        const char *place = inCancel ? "cancelRequest" : "finished";
        QTest::addRow("the request in %s", place) << inCancel << true << false << false;
        QTest::addRow("the manager in %s", place) << inCancel << false << true << false;
        QTest::addRow("both in %s", place) << inCancel << true << true << false;
        QTest::addRow("the providers in %s", place) << inCancel << false << false << true;
    }
}

void WorkerTimeoutTest::whatDiesInside()
{
    QFETCH(bool, inCancel);
    QFETCH(bool, deleteRequest);
    QFETCH(bool, endManager);
    QFETCH(bool, removeProviders);
    const QList<QPointer<ScriptedProvider>> providers{ScriptedProvider::add(text("A")),
                                                      ScriptedProvider::add(text("B"))};
    QPointer<SocialGetActivitiesRequest> request = new SocialGetActivitiesRequest;
    SocialGetActivitiesRequest other;
    int done = 0;
    const auto act = [&] {
        if (++done > 1)
            return;
        if (removeProviders) {
            ScriptedProvider::remove(text("A"));
            ScriptedProvider::remove(text("B"));
        }
        if (deleteRequest)
            delete request;
        if (endManager)
            KinletManager::cleanupInstance();
    };
    KinletManager::instance()->performRequest(request, {});
    KinletManager::instance()->performRequest(&other, {});
    if (inCancel) {
        for (ScriptedProvider *provider : providers)
            provider->onCancel = [&](SocialDataRequest *) { act(); };
    } else {
        connect(request, &SocialDataRequest::finished, this, act);
        connect(&other, &SocialDataRequest::finished, this, act);
    }
    QTRY_VERIFY_WITH_TIMEOUT(done, LongWait);
    if (!endManager) {
        QTRY_COMPARE_WITH_TIMEOUT(other.status(), Finished, LongWait);
        QCOMPARE(typesOf(other.errors()), QList<int>({KinletError::ProviderTimeout}));
    }
    // Whoever is left serves the next request.
    auto *fresh = ScriptedProvider::add(text("fresh"), {text("f")});
    fresh->onPerform = ScriptedProvider::answering({text("served")});
    SocialGetActivitiesRequest next;
    KinletManager::instance()->performRequest(&next, fresh->accountList);
    QCOMPARE(idsOf(next.results()), QStringList(text("served")));
    delete request;
}

void WorkerTimeoutTest::theOthersAreAskedAfterABlockingProvider()
{
    int asked = 0;
    for (const auto *name : {"A", "B"}) {
        ScriptedProvider::add(text(name))->onPerform = [&](SocialDataRequest *copy) {
            ++asked;
            spin(61000);
            ScriptedProvider::answering({text("slow")})(copy);
        };
    }
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    const QList<Report> expected{{Started, {}, {}},
                                 {Finished, {text("slow")}, {KinletError::ProviderTimeout}}};
    QCOMPARE(request.reports, expected);
    QCOMPARE(asked, 2);
}

QTEST_GUILESS_MAIN(WorkerTimeoutTest)

#include "workertimeouttest.moc"
