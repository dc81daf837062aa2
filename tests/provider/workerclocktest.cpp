// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// The time-out while somebody sets the clock. The clocks of this program run fast, and its wall
// clock can be set.

#include "manager/kinletmanager.h"
#include "requests/socialgetpersonsrequest.h"
#include "support/scriptedprovider.h"

#include <QElapsedTimer>
#include <QTest>

#include <atomic>
#include <ctime>
#include <dlfcn.h>
#include <sys/time.h>

namespace {

std::atomic<int> secondsAhead{0};

template <typename Function>
Function nextFunction(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}

// Qt reads the wall clock through one of these two; defined here they take the place of the C
// library's for the whole program.
extern "C" Q_DECL_EXPORT int gettimeofday(struct timeval *time, void *zone) noexcept
{
    static const auto next = nextFunction<int (*)(struct timeval *, void *)>("gettimeofday");
    const int result = next(time, zone);
    time->tv_sec += secondsAhead;
    return result;
}

extern "C" Q_DECL_EXPORT int clock_gettime(clockid_t clock, struct timespec *time) noexcept
{
    static const auto next = nextFunction<int (*)(clockid_t, struct timespec *)>("clock_gettime");
    const int result = next(clock, time);
    if (clock == CLOCK_REALTIME)
        time->tv_sec += secondsAhead;
    return result;
}

namespace {

constexpr int LongWait = 600000;

}

class WorkerClockTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        provider = ScriptedProvider::add(QStringLiteral("A"));
        running.start();
    }
    void cleanup()
    {
        KinletManager::cleanupInstance();
        runDeferredDeletes();
        secondsAhead = 0;
    }

    void theClockCanBeSet();
    void setBackTheRequestGetsItsMinute();
    void setBackByAnHourAndForwardAgain();
    void setBackWhileAnotherTimerIsDue();
    void setForwardTheNextAnswerEndsTheRequest();

private:
    ScriptedProvider *provider = nullptr;
    // Not affected by setting the clock.
    QElapsedTimer running;
};

void WorkerClockTest::theClockCanBeSet()
{
    const QDateTime before = QDateTime::currentDateTime();
    secondsAhead = -5000;
    const qint64 set = before.secsTo(QDateTime::currentDateTime());
    QVERIFY(set <= -4900 && set >= -5000);
    QVERIFY(running.elapsed() < 100000);
}

void WorkerClockTest::setBackTheRequestGetsItsMinute()
{
    SocialGetPersonsRequest request;
    KinletManager::instance()->performRequest(&request, {});
    secondsAhead = -20;
    QTRY_VERIFY_WITH_TIMEOUT(request.isFinished(), LongWait);
    QVERIFY2(running.elapsed() >= 80000, QByteArray::number(running.elapsed()).constData());
    // Not a whole further minute after the timer that struck too early.
    QVERIFY2(running.elapsed() < 115000, QByteArray::number(running.elapsed()).constData());
    QCOMPARE(typesOf(request.errors()), QList<int>({KinletError::ProviderTimeout}));
    QCOMPARE(provider->cancelled.count(), 1);
}

void WorkerClockTest::setBackByAnHourAndForwardAgain()
{
    SocialGetPersonsRequest request;
    KinletManager::instance()->performRequest(&request, {});
    secondsAhead = -3600;
    QTest::qWait(130000);
    QVERIFY(request.isActive());
    secondsAhead = 0;
    QTRY_VERIFY_WITH_TIMEOUT(request.isFinished(), LongWait);
    // A timer is never more than a minute away.
    QVERIFY2(running.elapsed() < 235000, QByteArray::number(running.elapsed()).constData());
    QCOMPARE(provider->cancelled.count(), 1);
}

void WorkerClockTest::setBackWhileAnotherTimerIsDue()
{
    SocialGetPersonsRequest first;
    SocialGetPersonsRequest second;
    KinletManager::instance()->performRequest(&first, {});
    QTest::qWait(30000);
    secondsAhead = -20;
    const qint64 secondStart = running.elapsed();
    KinletManager::instance()->performRequest(&second, {});
    QTRY_VERIFY_WITH_TIMEOUT(first.isFinished() && second.isFinished(), LongWait);
    QVERIFY(running.elapsed() - secondStart >= 60000);
    QVERIFY(running.elapsed() - secondStart < 115000);
    QCOMPARE(provider->cancelled.count(), 2);
}

void WorkerClockTest::setForwardTheNextAnswerEndsTheRequest()
{
    auto *other = ScriptedProvider::add(QStringLiteral("B"));
    SocialGetPersonsRequest request;
    KinletManager::instance()->performRequest(&request, {});
    secondsAhead = 61;
    provider->answer({QStringLiteral("r")});
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QCOMPARE(typesOf(request.errors()), QList<int>({KinletError::ProviderTimeout}));
    QCOMPARE(idsOf(request.results()), QStringList(QStringLiteral("r")));
    other->answer({QStringLiteral("late")});
    QCOMPARE(request.results().count(), 1);
}

QTEST_GUILESS_MAIN(WorkerClockTest)

#include "workerclocktest.moc"
