// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/proxiedrunner.h"
#include "manager/kinletmanager.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTest>

namespace {

bool isConnected()
{
    return QDBusConnection::sessionBus().isConnected();
}

}

/// The session bus ends while it is in use.
class ProxyLostBusTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void requestsStayOpen();

private:
    QProcess m_bus;
};

void ProxyLostBusTest::initTestCase()
{
    m_bus.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--session"), QStringLiteral("--nofork"),
                 QStringLiteral("--print-address")});
    QVERIFY(m_bus.canReadLine() || m_bus.waitForReadyRead(Patience));
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
    QVERIFY(isConnected());
}

void ProxyLostBusTest::requestsStayOpen()
{
    ProxiedRunner served;
    SocialGetPersonsRequest before;
    SocialGetPersonsRequest after;
    SocialGetPersonsRequest waiting;
    SocialGetPersonsRequest managed;
    QSignalSpy beforeFinished(&before, SIGNAL(finished(SocialDataRequest *)));
    QSignalSpy finished(&waiting, SIGNAL(finished(SocialDataRequest *)));
    QSignalSpy afterFinished(&after, SIGNAL(finished(SocialDataRequest *)));
    QSignalSpy managedFinished(&managed, SIGNAL(finished(SocialDataRequest *)));
    served.answer(served.perform(before), personsAnswer(ids("before")));
    QVERIFY(beforeFinished.wait(Patience));
    served.proxy->performRequest(&waiting);
    KinletManager *manager = KinletManager::instance();
    QCOMPARE(manager->allProviderNames(), QList<QString>{served.id});

    m_bus.kill();
    QTRY_VERIFY_WITH_TIMEOUT(!isConnected(), Patience);
    served.proxy->performRequest(&after);
    manager->performRequest(&managed, {});
    served.proxy->cancelRequest(&after);
    QCOMPARE(served.proxy->metaData().value(QStringLiteral("name")).toString(), served.id);
    // A proxy can still be made, and used in vain.
    KinletInterfaceProxy late(clientOf(served.id).release(), served.id);
    late.performRequest(&after);
    QDBusPendingReply<QVariantMap> reply = clientOf(served.id)->metaData();
    reply.waitForFinished();
    QVERIFY(reply.isError());
    QCoreApplication::processEvents();
    QCOMPARE(finished.count() + afterFinished.count() + managedFinished.count(), 0);
    QCOMPARE(int(waiting.status()), 0);
    QCOMPARE(int(managed.status()), 1);
    served.proxy.reset();
    KinletManager::cleanupInstance();
}

QTEST_GUILESS_MAIN(ProxyLostBusTest)
#include "proxylostbustest.moc"
