// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/proxiedrunner.h"

#include <QSignalSpy>
#include <QTest>

/// Runners that die or hang: nobody but whoever waits for them notices.
class RunnerFailuresTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void killed_data();
    void killed();
    void killedAfterItsAnswer();
    void stoppedHoldsNobodyUp();
    void backlogOfAStoppedOne();
};

void RunnerFailuresTest::killed_data()
{
    QTest::addColumn<QString>("when");
    for (const char *when : {"before the call", "after the call", "halfway through its answer"})
        QTest::newRow(when) << QString::fromLatin1(when);
}

void RunnerFailuresTest::killed()
{
    QFETCH(QString, when);
    ProxiedRunner served;
    ProxiedRunner other(QStringLiteral("other"));
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    if (when == QLatin1String("before the call")) {
        served.runner.kill();
        served.proxy->performRequest(&request);
    } else {
        const QString id = served.perform(request);
        if (when == QLatin1String("after the call"))
            served.runner.kill();
        else
            served.runner.dieAnswering(served.id, id,
                                       personsAnswer({QString(5000000, QLatin1Char('x'))}));
    }

    // Another runner serves on, and one of the same name answers the next request.
    SocialGetPersonsRequest elsewhere;
    QSignalSpy elsewhereFinished(&elsewhere, SIGNAL(finished(SocialDataRequest *)));
    other.answer(other.perform(elsewhere), personsAnswer(ids("elsewhere")));
    QVERIFY(elsewhereFinished.wait(Patience));
    QCOMPARE(idsOf(elsewhere), ids("elsewhere"));
    FakeRunner successor({FakeRunner::busName(served.id)});
    SocialGetPersonsRequest next;
    QSignalSpy nextFinished(&next, SIGNAL(finished(SocialDataRequest *)));
    served.proxy->performRequest(&next);
    successor.finish(served.id, successor.nextCall().requestId(), personsAnswer(ids("next")));
    QVERIFY(nextFinished.wait(Patience));
    QCOMPARE(idsOf(next), ids("next"));
    // The lost one stays open: it is for the worker to end it.
    QCOMPARE(finished.count(), 0);
    QCOMPARE(int(request.status()), 0);
    QVERIFY(request.results().isEmpty());
}

void RunnerFailuresTest::killedAfterItsAnswer()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    served.answer(served.perform(request), personsAnswer(ids("last words")));
    served.runner.kill();
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), ids("last words"));
}

void RunnerFailuresTest::stoppedHoldsNobodyUp()
{
    ProxiedRunner served;
    ProxiedRunner other(QStringLiteral("other"));
    served.runner.setStopped(true);
    SocialGetPersonsRequest stuck;
    SocialGetPersonsRequest elsewhere;
    QSignalSpy stuckFinished(&stuck, SIGNAL(finished(SocialDataRequest *)));
    QSignalSpy elsewhereFinished(&elsewhere, SIGNAL(finished(SocialDataRequest *)));
    served.proxy->performRequest(&stuck);
    other.answer(other.perform(elsewhere), personsAnswer());
    QVERIFY(elsewhereFinished.wait(Patience));
    QCOMPARE(stuckFinished.count(), 0);
    served.runner.setStopped(false);
    served.answer(served.runner.nextCall().requestId(), personsAnswer(ids("at last")));
    QVERIFY(stuckFinished.wait(Patience));
    QCOMPARE(idsOf(stuck), ids("at last"));
}

// More than fits between the processes: the bus keeps the rest.
void RunnerFailuresTest::backlogOfAStoppedOne()
{
    ProxiedRunner served;
    ProxiedRunner other(QStringLiteral("other"));
    served.runner.setStopped(true);
    SocialGetPersonsRequest large;
    large.setResults({record(QString(1000000, QLatin1Char('x')))});
    for (int i = 0; i < 10; ++i)
        served.proxy->performRequest(&large);
    SocialGetPersonsRequest elsewhere;
    QSignalSpy elsewhereFinished(&elsewhere, SIGNAL(finished(SocialDataRequest *)));
    other.answer(other.perform(elsewhere), personsAnswer());
    QVERIFY(elsewhereFinished.wait(Patience));
    served.runner.setStopped(false);
    QSignalSpy finished(&large, SIGNAL(finished(SocialDataRequest *)));
    for (int i = 0; i < 10; ++i)
        served.answer(served.runner.nextCall().requestId(), personsAnswer());
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 10, Patience);
}

QTEST_GUILESS_MAIN(RunnerFailuresTest)
#include "runnerfailurestest.moc"
