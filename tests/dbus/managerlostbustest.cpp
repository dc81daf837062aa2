// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// A bus that fails under a client with requests open. The clock of this program runs fast.

#include "dbus/tworunners.h"

#include <QRegularExpression>
#include <QTest>

#include <csignal>

namespace {

const QString a = QStringLiteral("a");
const QString b = QStringLiteral("b");

}

class ManagerLostBusTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { m_runners.reset(); }

    void hanging();
    void gone();

private:
    pid_t m_bus = 0;
    std::unique_ptr<TwoRunners> m_runners;
};

void ManagerLostBusTest::initTestCase()
{
    m_bus =
        pid_t(TestBus::ask("GetConnectionUnixProcessID", {QStringLiteral("org.freedesktop.DBus")})
                  .toUInt());
    QVERIFY(m_bus > 0);
    m_runners = std::make_unique<TwoRunners>();
    QVERIFY(m_runners->start());
}

void ManagerLostBusTest::hanging()
{
    QCOMPARE(::kill(m_bus, SIGSTOP), 0);
    const Asked request;
    const bool ended = request.waitForEnd();
    QCOMPARE(::kill(m_bus, SIGCONT), 0);
    QVERIFY(ended);
    QVERIFY(request.wasGivenUp());
    QCOMPARE(request.answeredBy(), QStringList());
    // Once it goes on, so does everything else; what comes too late changes nothing.
    for (ManagedRunner *runner : {m_runners->a.get(), m_runners->b.get()}) {
        runner->answerNext();
        QVERIFY(m_runners->goesOnWorking(*runner));
    }
    QVERIFY(request.wasGivenUp());
}

// The last, since a lost bus is lost for good.
void ManagerLostBusTest::gone()
{
    KinletManager *manager = KinletManager::instance();
    const Asked open;
    m_runners->a->nextCall();
    m_runners->b->answerNext();
    QVERIFY(open.waitForAnswerOf(b));
    QCOMPARE(::kill(m_bus, SIGKILL), 0);
    QTRY_VERIFY_WITH_TIMEOUT(!QDBusConnection::sessionBus().isConnected(), Patience);
    // Nobody tells that the runners are out of reach.
    const Asked next;
    QVERIFY(manager->hasProvider(a) && manager->hasProvider(b));
    QCOMPARE(int(manager->accounts().size()), 2);
    QCOMPARE(open.ends + next.ends, 0);
    QVERIFY(open.waitForEnd());
    QVERIFY(open.wasGivenUp());
    QCOMPARE(open.answeredBy(), QStringList(b));
    QVERIFY(next.waitForEnd());
    QVERIFY(next.wasGivenUp());
    QCOMPARE(next.answeredBy(), QStringList());

    KinletManager::cleanupInstance();
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(QStringLiteral("D-Bus not running\\?")));
    QVERIFY(KinletManager::instance()->isInitialized());
    QVERIFY(KinletManager::instance()->allProviderNames().isEmpty());
    QVERIFY(Asked().wasServed());
}

QTEST_GUILESS_MAIN(ManagerLostBusTest)
#include "managerlostbustest.moc"
