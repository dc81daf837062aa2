// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// The minute to the millisecond. The wall clock of this program stands still until a test sets it,
// and the test strikes in the timers' place.

#include "manager/kinletmanager.h"
#include "provider/socialrequestworker.h"
#include "support/runningtimers.h"
#include "support/watchedrequest.h"

#include <QTest>

#include <atomic>
#include <ctime>
#include <memory>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr qint64 Start = 1700000000250;
std::atomic<qint64> wallClock{Start};

}

// Qt reads the wall clock through one of these two; defined here they take the place of the C
// library's for the whole program.
extern "C" Q_DECL_EXPORT int gettimeofday(struct timeval *time, void *) noexcept
{
    time->tv_sec = wallClock / 1000;
    time->tv_usec = wallClock % 1000 * 1000;
    return 0;
}

extern "C" Q_DECL_EXPORT int clock_gettime(clockid_t clock, struct timespec *time) noexcept
{
    if (clock != CLOCK_REALTIME)
        return int(syscall(SYS_clock_gettime, clock, time));
    time->tv_sec = wallClock / 1000;
    time->tv_nsec = wallClock % 1000 * 1000000;
    return 0;
}

class WorkerAgeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        wallClock = Start;
        worker = std::make_unique<SocialRequestWorker>(nullptr);
        a = ScriptedProvider::add(QStringLiteral("A"));
        b = ScriptedProvider::add(QStringLiteral("B"));
    }
    void cleanup()
    {
        worker.reset();
        KinletManager::cleanupInstance();
        runDeferredDeletes();
    }

    void theTimerEndsWhatIsOverdue_data() { ages(); }
    void theTimerEndsWhatIsOverdue();
    void anAnswerEndsWhatIsOverdue_data() { ages(); }
    void anAnswerEndsWhatIsOverdue();
    void theCallersDeathEndsWhatIsOverdue_data() { ages(); }
    void theCallersDeathEndsWhatIsOverdue();
    void whatEverybodyHasAnsweredIsNotOverdue();
    void theMinuteBeginsWithTheAsking();
    void oneTimerEndsEverythingThatIsOverdue();
    void anotherTimerOnlyWhenNoneIsDue();
    void anotherTimerIsAtMostAMinuteAway();

private:
    static void ages();
    void strike(const char *slot = "timeoutElapsed") const
    {
        QVERIFY(QMetaObject::invokeMethod(worker.get(), slot, Qt::DirectConnection));
    }

    std::unique_ptr<SocialRequestWorker> worker;
    ScriptedProvider *a = nullptr;
    ScriptedProvider *b = nullptr;
};

void WorkerAgeTest::ages()
{
    QTest::addColumn<int>("age");
    QTest::addColumn<bool>("overdue");
    for (const int age : {-3600000, 0, 59000, 59999})
        QTest::addRow("%d ms", age) << age << false;
    for (const int age : {60000, 60001, 60999, 61000, 3600000})
        QTest::addRow("%d ms", age) << age << true;
}

void WorkerAgeTest::theTimerEndsWhatIsOverdue()
{
    QFETCH(int, age);
    QFETCH(bool, overdue);
    WatchedRequest request;
    worker->performRequest(&request);
    const auto reports = request.reports.count();
    wallClock += age;
    strike();
    QCOMPARE(request.status(), overdue ? SocialDataRequest::Finished : SocialDataRequest::Started);
    QCOMPARE(typesOf(request.errors()),
             overdue ? QList<int>({KinletError::ProviderTimeout}) : QList<int>());
    QCOMPARE(request.reports.count(), reports + (overdue ? 1 : 0));
    QCOMPARE(a->cancelled.count(), overdue ? 1 : 0);
    QCOMPARE(b->cancelled.count(), overdue ? 1 : 0);
}

void WorkerAgeTest::anAnswerEndsWhatIsOverdue()
{
    QFETCH(int, age);
    QFETCH(bool, overdue);
    WatchedRequest request;
    worker->performRequest(&request);
    wallClock += age;
    a->answer({QStringLiteral("r")}, SocialDataRequest::Finished,
              {KinletError(KinletError::PostFailed)});
    QCOMPARE(request.status(), overdue ? SocialDataRequest::Finished : SocialDataRequest::Started);
    QCOMPARE(idsOf(request.results()), QStringList(QStringLiteral("r")));
    QList<int> errors{KinletError::PostFailed};
    if (overdue)
        errors.append(KinletError::ProviderTimeout);
    QCOMPARE(typesOf(request.errors()), errors);
    // The last answer comes too late for a request that is over.
    const auto reports = request.reports.count();
    b->answer();
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QCOMPARE(request.reports.count(), reports + (overdue ? 0 : 1));
    // Only the timer cancels.
    strike();
    QVERIFY(a->cancelled.isEmpty());
    QVERIFY(b->cancelled.isEmpty());
}

void WorkerAgeTest::theCallersDeathEndsWhatIsOverdue()
{
    QFETCH(int, age);
    QFETCH(bool, overdue);
    auto *request = new WatchedRequest;
    worker->performRequest(request);
    wallClock += age;
    delete request;
    // What has ended is queued, and goes with the next deletion timer.
    strike("onDeferredDelete");
    runDeferredDeletes();
    QCOMPARE(a->last() == nullptr, overdue);
    QCOMPARE(b->last() == nullptr, overdue);
    QVERIFY(a->cancelled.isEmpty());
    QVERIFY(b->cancelled.isEmpty());
}

void WorkerAgeTest::whatEverybodyHasAnsweredIsNotOverdue()
{
    a->onPerform = b->onPerform = ScriptedProvider::answering({});
    WatchedRequest request;
    request.onReport = [](SocialDataRequest::Status status) {
        // After the first of the two answers, too.
        if (status == SocialDataRequest::Started)
            wallClock += 61000;
    };
    worker->performRequest(&request);
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QVERIFY(request.errors().isEmpty());
}

void WorkerAgeTest::theMinuteBeginsWithTheAsking()
{
    WatchedRequest request;
    request.onReport = [&](SocialDataRequest::Status) {
        request.onReport = nullptr;
        wallClock += 30000;
    };
    worker->performRequest(&request);
    wallClock += 59999;
    strike();
    QVERIFY(request.isActive());
    wallClock += 1;
    strike();
    QVERIFY(request.isFinished());
}

void WorkerAgeTest::oneTimerEndsEverythingThatIsOverdue()
{
    WatchedRequest requests[3];
    for (WatchedRequest &request : requests) {
        worker->performRequest(&request);
        wallClock += 10000;
    }
    // They are 60, 50 and 40 seconds old, then 70, 60 and 50.
    wallClock += 30000;
    strike();
    QVERIFY(requests[0].isFinished() && requests[1].isActive() && requests[2].isActive());
    wallClock += 20000;
    strike();
    QVERIFY(requests[1].isFinished() && requests[2].isFinished());
    QCOMPARE(a->cancelled.count(), 3);
    for (const WatchedRequest &request : requests)
        QCOMPARE(typesOf(request.errors()), QList<int>({KinletError::ProviderTimeout}));
}

void WorkerAgeTest::anotherTimerOnlyWhenNoneIsDue()
{
    WatchedRequest older;
    WatchedRequest younger;
    worker->performRequest(&older);
    wallClock += 13000;
    worker->performRequest(&younger);
    wallClock += 10000;
    // Each of the two has its own timer. The first strikes much too early.
    const auto timers = runningTimers();
    strike();
    QCOMPARE(runningTimers(), timers);
    // When the last strikes too early, there is another for the older.
    strike();
    QCOMPARE(runningTimers().count(), timers.count() + 1);
    QCOMPARE(runningTimers().count(37001), 1);
    // And when that one ends the older, there is another for the younger.
    wallClock += 37001;
    strike();
    QVERIFY(older.isFinished() && younger.isActive());
    QCOMPARE(runningTimers().count(), timers.count() + 2);
    QCOMPARE(runningTimers().count(13000), 1);
    wallClock += 13000;
    strike();
    QVERIFY(younger.isFinished());
    QCOMPARE(runningTimers().count(), timers.count() + 2);
}

void WorkerAgeTest::anotherTimerIsAtMostAMinuteAway()
{
    WatchedRequest request;
    worker->performRequest(&request);
    const auto timers = runningTimers();
    wallClock -= 3600000;
    strike();
    QCOMPARE(runningTimers().count(), timers.count() + 1);
    QCOMPARE(runningTimers().count(60001), timers.count(60001) + 1);
}

QTEST_GUILESS_MAIN(WorkerAgeTest)

#include "workeragetest.moc"
