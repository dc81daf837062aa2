// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Runners that fail while another goes on.

#include "dbus/tworunners.h"
#include "manager/managerinternals.h"

#include <QSignalSpy>
#include <QTest>

namespace {

const QString a = QStringLiteral("a");
const QString b = QStringLiteral("b");

}

class ManagerFaultsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_runners = std::make_unique<TwoRunners>(); }
    void cleanup() { m_runners.reset(); }

    void killedBeforeTheCall();
    void killedAfterTheAnswer();
    void stoppedFromTheStart();
    void killedDuringStartUp();
    void comesBack();
    void foundTwice();
    void floodOfUpdates();

private:
    std::unique_ptr<TwoRunners> m_runners;
};

void ManagerFaultsTest::killedBeforeTheCall()
{
    m_runners->watchA();
    QVERIFY(m_runners->start());
    KinletManager *manager = KinletManager::instance();
    m_runners->a->kill();
    QTRY_VERIFY_WITH_TIMEOUT(!manager->hasProvider(a), Patience);
    QCOMPARE(int(manager->accounts().size()), 1);
    const Asked request;
    m_runners->b->answerNext();
    // Nobody is missed.
    QVERIFY(request.waitForEnd());
    QCOMPARE(request.answeredBy(), QStringList(b));
    QVERIFY(request.wasServed());
}

void ManagerFaultsTest::killedAfterTheAnswer()
{
    m_runners->watchA();
    QVERIFY(m_runners->start());
    Asked request;
    // Both wait in the client's connection before it looks.
    m_runners->a->answerNext();
    m_runners->a->kill();
    QTRY_VERIFY_WITH_TIMEOUT(!KinletManager::instance()->hasProvider(a), Patience);
    QCOMPARE(request.answeredBy(), QStringList(a));
    QCOMPARE(request.ends, 0);
    m_runners->b->answerNext();
    QVERIFY(request.waitForEnd());
    QCOMPARE(request.answeredBy(), QStringList({a, b}));
    QVERIFY(request.wasServed());
    QVERIFY(m_runners->goesOnWorking(*m_runners->b));
}

void ManagerFaultsTest::stoppedFromTheStart()
{
    m_runners->a->setStopped(true);
    KinletManager *manager = KinletManager::instance();
    m_runners->b->answerStartUp();
    QTRY_COMPARE_WITH_TIMEOUT(int(manager->accounts().size()), 1, Patience);
    QVERIFY(m_runners->goesOnWorking(*m_runners->b));
    QVERIFY(!manager->isInitialized());
    QSignalSpy initialized(manager, SIGNAL(initialized()));
    m_runners->a->setStopped(false);
    m_runners->a->answerStartUp();
    QTRY_COMPARE_WITH_TIMEOUT(initialized.count(), 1, Patience);
    QVERIFY(m_runners->goesOnWorking(*m_runners->a));
}

void ManagerFaultsTest::killedDuringStartUp()
{
    m_runners->watchA();
    KinletManager *manager = KinletManager::instance();
    QSignalSpy initialized(manager, SIGNAL(initialized()));
    m_runners->b->answerStartUp();
    QTRY_COMPARE_WITH_TIMEOUT(int(manager->accounts().size()), 1, Patience);
    m_runners->a->kill();
    QTRY_VERIFY_WITH_TIMEOUT(!manager->hasProvider(a), Patience);
    QVERIFY(m_runners->goesOnWorking(*m_runners->b));
    // A departure does not end start-up, deliberately; the next answer does.
    QVERIFY(!manager->isInitialized());
    m_runners->renewA();
    QTRY_VERIFY_WITH_TIMEOUT(manager->hasProvider(a), Patience);
    m_runners->a->answerStartUp();
    QTRY_COMPARE_WITH_TIMEOUT(initialized.count(), 1, Patience);
    QVERIFY(m_runners->goesOnWorking(*m_runners->a));
}

void ManagerFaultsTest::comesBack()
{
    m_runners->watchA();
    QVERIFY(m_runners->start());
    KinletManager *manager = KinletManager::instance();
    m_runners->a->kill();
    QTRY_VERIFY_WITH_TIMEOUT(!manager->hasProvider(a), Patience);
    m_runners->renewA();
    QTRY_VERIFY_WITH_TIMEOUT(manager->hasProvider(a), Patience);
    m_runners->a->answerStartUp();
    QTRY_COMPARE_WITH_TIMEOUT(int(manager->accounts().size()), 2, Patience);
    Asked request;
    m_runners->b->answerNext();
    m_runners->a->answerNext();
    QVERIFY(request.waitForEnd());
    QCOMPARE(request.answeredBy(), QStringList({a, b}));
    QVERIFY(request.wasServed());
    QSignalSpy updated(manager, SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    m_runners->a->pushUpdates(3);
    QVERIFY(m_runners->goesOnWorking(*m_runners->a));
    QCOMPARE(updated.count(), 3);
}

void ManagerFaultsTest::foundTwice()
{
    m_runners->watchA();
    QVERIFY(m_runners->start());
    KinletManager *manager = KinletManager::instance();
    const QPointer<KinletInterface> first(manager->provider(a).data());
    SocialPluginRepository *repository = internalsOf(manager)->pluginRepository;
    QVERIFY(QMetaObject::invokeMethod(repository, "addServiceIfProvider",
                                      Q_ARG(QString, FakeRunner::busName(a))));
    QVERIFY(repository->kinletPlugin(a) != first);
    runDeferredDeletes();
    // The manager keeps to the first and lets the second go.
    QVERIFY(first);
    QCOMPARE(manager->provider(a).data(), first.data());
    QVERIFY(!repository->kinletPlugin(a));
    QSignalSpy updated(manager, SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    m_runners->a->pushUpdates(1);
    // Not asked again: its next call is this.
    QVERIFY(m_runners->goesOnWorking(*m_runners->a));
    QCOMPARE(updated.count(), 1);
    m_runners->a->kill();
    QTRY_VERIFY_WITH_TIMEOUT(!manager->hasProvider(a), Patience);
    QVERIFY(m_runners->goesOnWorking(*m_runners->b));
}

void ManagerFaultsTest::floodOfUpdates()
{
    constexpr int Count = 5000;
    QVERIFY(m_runners->start());
    QSignalSpy updated(KinletManager::instance(),
                       SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    Asked request;
    const QString requestId = m_runners->a->nextCall().requestId();
    m_runners->a->pushUpdates(Count);
    m_runners->b->answerNext();
    QVERIFY(m_runners->goesOnWorking(*m_runners->b));
    m_runners->a->answerTo(requestId);
    m_runners->a->kill();
    QVERIFY(request.waitForEnd());
    QCOMPARE(request.answeredBy(), QStringList({a, b}));
    QCOMPARE(updated.count(), Count);
    QVERIFY(m_runners->goesOnWorking(*m_runners->b));
}

QTEST_GUILESS_MAIN(ManagerFaultsTest)
#include "managerfaultstest.moc"
