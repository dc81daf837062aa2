// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Requests that a runner owes an answer are given up after a minute. The clock of this program runs
// fast.

#include "dbus/tworunners.h"

#include <QSignalSpy>
#include <QTest>

namespace {

const QString a = QStringLiteral("a");
const QString b = QStringLiteral("b");

}

class ManagerGivesUpTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_runners = std::make_unique<TwoRunners>(); }
    void cleanup() { m_runners.reset(); }

    void killedUnnoticed();
    void killedBeforeTheAnswer_data();
    void killedBeforeTheAnswer();
    void silent_data();
    void silent();
    void comesBack();

private:
    std::unique_ptr<TwoRunners> m_runners;
};

void ManagerGivesUpTest::killedUnnoticed()
{
    QVERIFY(m_runners->start());
    m_runners->a->kill();
    const Asked request;
    m_runners->b->answerNext();
    QVERIFY(request.waitForAnswerOf(b));
    QVERIFY(m_runners->goesOnWorking(*m_runners->b));
    QCOMPARE(request.ends, 0);
    QVERIFY(KinletManager::instance()->hasProvider(a));
    QVERIFY(request.waitForEnd());
    QVERIFY(request.wasGivenUp());
    QCOMPARE(request.answeredBy(), QStringList(b));
    QVERIFY(m_runners->goesOnWorking(*m_runners->b));
}

void ManagerGivesUpTest::killedBeforeTheAnswer_data()
{
    QTest::addColumn<bool>("activatable");
    QTest::addColumn<bool>("withinTheAnswer");
    QTest::newRow("noticed") << true << false;
    QTest::newRow("unnoticed") << false << false;
    QTest::newRow("within the answer") << true << true;
}

void ManagerGivesUpTest::killedBeforeTheAnswer()
{
    QFETCH(bool, activatable);
    QFETCH(bool, withinTheAnswer);
    if (activatable)
        m_runners->watchA();
    QVERIFY(m_runners->start());
    KinletManager *manager = KinletManager::instance();
    Asked request;
    const QString requestId = m_runners->a->nextCall().requestId();
    if (withinTheAnswer)
        m_runners->a->dieAnswering(requestId);
    else
        m_runners->a->kill();
    m_runners->b->answerNext();
    QVERIFY(request.waitForAnswerOf(b));
    QTRY_COMPARE_WITH_TIMEOUT(manager->hasProvider(a), !activatable, Patience);
    QVERIFY(m_runners->goesOnWorking(*m_runners->b));
    // The request waits for the dead, noticed or not.
    QCOMPARE(request.ends, 0);
    QVERIFY(request.waitForEnd());
    QVERIFY(request.wasGivenUp());
    QCOMPARE(request.answeredBy(), QStringList(b));
    QVERIFY(m_runners->goesOnWorking(*m_runners->b));
}

void ManagerGivesUpTest::silent_data()
{
    QTest::addColumn<bool>("stopped");
    QTest::newRow("hanging") << false;
    QTest::newRow("stopped") << true;
}

void ManagerGivesUpTest::silent()
{
    QFETCH(bool, stopped);
    QVERIFY(m_runners->start());
    if (stopped)
        m_runners->a->setStopped(true);
    Asked request;
    m_runners->b->answerNext();
    QVERIFY(request.waitForAnswerOf(b));
    QVERIFY(m_runners->goesOnWorking(*m_runners->b));
    QCOMPARE(request.ends, 0);
    QVERIFY(request.waitForEnd());
    QVERIFY(request.wasGivenUp());
    QCOMPARE(request.answeredBy(), QStringList(b));
    // Its answer comes too late, but it is a provider like the other again.
    m_runners->a->setStopped(false);
    m_runners->a->answerNext();
    QVERIFY(m_runners->goesOnWorking(*m_runners->a));
    QVERIFY(m_runners->goesOnWorking(*m_runners->b));
    QVERIFY(request.wasGivenUp());
    QCOMPARE(request.answeredBy(), QStringList(b));
}

void ManagerGivesUpTest::comesBack()
{
    m_runners->watchA();
    QVERIFY(m_runners->start());
    KinletManager *manager = KinletManager::instance();
    const Asked lost;
    m_runners->a->kill();
    m_runners->b->answerNext();
    QTRY_VERIFY_WITH_TIMEOUT(!manager->hasProvider(a), Patience);
    m_runners->renewA();
    QTRY_VERIFY_WITH_TIMEOUT(manager->hasProvider(a), Patience);
    m_runners->a->answerStartUp();
    // The lost request keeps the proxy of old, which hears the new process: nobody must listen to
    // it.
    QSignalSpy updated(manager, SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    m_runners->a->pushUpdates(3);
    QTRY_COMPARE_WITH_TIMEOUT(int(manager->accounts().size()), 2, Patience);
    QVERIFY(m_runners->goesOnWorking(*m_runners->a));
    QCOMPARE(updated.count(), 3);
    QVERIFY(lost.waitForEnd());
    QVERIFY(lost.wasGivenUp());
    QCOMPARE(lost.answeredBy(), QStringList(b));
}

QTEST_GUILESS_MAIN(ManagerGivesUpTest)
#include "managergivesuptest.moc"
