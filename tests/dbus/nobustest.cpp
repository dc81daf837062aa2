// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/kinletinterfaceproxy.h"
#include "dbus/kinletrunnerinterface.h"
#include "dbus/socialdbuspluginrepository.h"
#include "manager/kinletmanager.h"
#include "requests/socialgetpersonsrequest.h"
#include "support/messagelog.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QSignalSpy>
#include <QTest>

/// What there is without a session bus.
class NoBusTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void repositoryIsEmptyAndSaysWhy();
    void nothingIsWatched();
    void managerHasNoProviders();
    void requestOfAProxyStaysOpen();
};

void NoBusTest::repositoryIsEmptyAndSaysWhy()
{
    const MessageLog log;
    const SocialDBusPluginRepository repository(nullptr);
    QVERIFY(repository.validPlugins().isEmpty());
    // The texts are literals, and so without quotes.
    QCOMPARE(log.critical(),
             QStringList(QStringLiteral("void SocialDBusPluginRepository::collectPlugins() "
                                        "D-Bus not running? Not able to connect to social "
                                        "networks.\n")));
}

void NoBusTest::nothingIsWatched()
{
    const MessageLog log;
    SocialDBusPluginRepository repository(nullptr);
    auto *watcher = repository.findChild<QDBusServiceWatcher *>();
    QVERIFY(watcher);
    QVERIFY(!watcher->connection().isConnected());
    const QString name = QStringLiteral("com.orvane.kinlet.a");
    const QSignalSpy removed(&repository, SIGNAL(pluginRemoved(QString)));
    for (const char *signal : {"serviceRegistered", "serviceUnregistered"})
        QVERIFY(QMetaObject::invokeMethod(watcher, signal, Q_ARG(QString, name)));
    QVERIFY(repository.validPlugins().isEmpty());
    QCOMPARE(removed.count(), 0);
    // The list cannot be had, which is no news.
    repository.updateInstalledPlugins();
    QVERIFY(watcher->watchedServices().isEmpty());
    QCOMPARE(log.critical().size(), 1);
}

void NoBusTest::managerHasNoProviders()
{
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(QStringLiteral("D-Bus not running\\?")));
    KinletManager *manager = KinletManager::instance();
    QVERIFY(manager->isInitialized());
    QVERIFY(manager->allProviderNames().isEmpty());
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    manager->performRequest(&request, {});
    QCOMPARE(finished.count(), 1);
    QCOMPARE(int(request.status()), 4);
    KinletManager::cleanupInstance();
}

void NoBusTest::requestOfAProxyStaysOpen()
{
    const QString name = QStringLiteral("com.orvane.kinlet.x");
    const QString path = QStringLiteral("/x");
    const QDBusConnection bus = QDBusConnection::sessionBus();
    KinletInterfaceProxy proxy(new KinletRunnerInterface(name, path, bus, nullptr),
                               QStringLiteral("x"));
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    proxy.performRequest(&request);
    proxy.cancelRequest(&request);
    QCoreApplication::processEvents();
    QCOMPARE(finished.count(), 0);
    QCOMPARE(int(request.status()), 0);
    QCOMPARE(proxy.metaData(), QVariantMap({{QStringLiteral("name"), QStringLiteral("x")}}));
    QVERIFY(KinletRunnerInterface(name, path, bus, nullptr).metaData().isError());
}

QTEST_GUILESS_MAIN(NoBusTest)
#include "nobustest.moc"
