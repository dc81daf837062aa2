// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/fakerunner.h"
#include "dbus/kinletinterfaceproxy.h"
#include "dbus/kinletrunnerinterface.h"
#include "dbus/socialdbuspluginrepository.h"
#include "manager/kinletmanager.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr int Patience = 60000;

QStringList list(const char *a, const char *b = nullptr)
{
    QStringList texts{QString::fromLatin1(a)};
    if (b)
        texts.append(QString::fromLatin1(b));
    return texts;
}

void askBus(const char *method, const QVariantList &arguments = {})
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
        QStringLiteral("org.freedesktop.DBus"), QString::fromLatin1(method));
    call.setArguments(arguments);
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
    QCOMPARE(reply.errorMessage(), QString());
}

// Signals that the bus has sent before this returns have been delivered.
void deliverAll()
{
    askBus("GetId");
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

}

class RepositoryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void emptyBus();
    void runningAndActivatable();
    void runningOnly();
    void activatableStartedLater();
    void startedLaterOnly();
    void installedLater();
    void prefixIsExact();
    void emptyIdIsIgnored();
    void idWithADot();
    void sortedById();
    void pluginIsAlwaysNull();
    void removePluginIsSilent();
    void foundTwice();
    void unregisteredWithoutEntry();
    void comesBack();
    void proxiesOutliveTheRepository();
    void watchedOnce();
    void everyNamePartOfItsProxy();

private:
    void makeActivatable(const QString &busName);

    std::unique_ptr<SocialDBusPluginRepository> m_repository;
};

void RepositoryTest::init()
{
    cleanup();
    askBus("ReloadConfig");
}

void RepositoryTest::cleanup()
{
    m_repository.reset();
    QDir services(qEnvironmentVariable("KINLET_TEST_SERVICES"));
    const QStringList files = services.entryList(QDir::Files);
    for (const QString &file : files)
        services.remove(file);
}

void RepositoryTest::makeActivatable(const QString &busName)
{
    QFile file(qEnvironmentVariable("KINLET_TEST_SERVICES") + QLatin1Char('/') + busName
               + QStringLiteral(".service"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[D-BUS Service]\nName=" + busName.toUtf8() + "\nExec=" KINLET_FAKE_RUNNER " "
               + busName.toUtf8() + "\n");
    file.close();
    askBus("ReloadConfig");
}

void RepositoryTest::emptyBus()
{
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QVERIFY(m_repository->validPlugins().isEmpty());
    QVERIFY(!m_repository->kinletPlugin(QStringLiteral("x")));
    QVERIFY(m_repository->validPlugins().isEmpty());
    QVERIFY(m_repository->findChild<QDBusServiceWatcher *>());
}

void RepositoryTest::runningAndActivatable()
{
    makeActivatable(FakeRunner::busName(QStringLiteral("a")));
    FakeRunner runner({FakeRunner::busName(QStringLiteral("a"))});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QCOMPARE(m_repository->validPlugins(), list("a"));
    QVERIFY(m_repository->kinletPlugin(QStringLiteral("a")));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    runner.release(FakeRunner::busName(QStringLiteral("a")));
    QVERIFY(removed.wait(Patience));
    QCOMPARE(removed.at(0).at(0).toString(), QStringLiteral("a"));
    QVERIFY(m_repository->validPlugins().isEmpty());
}

void RepositoryTest::runningOnly()
{
    makeActivatable(FakeRunner::busName(QStringLiteral("watched")));
    FakeRunner runner({FakeRunner::busName(QStringLiteral("a"))});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QCOMPARE(m_repository->validPlugins(), list("a"));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    runner.release(FakeRunner::busName(QStringLiteral("a")));
    runner.own(FakeRunner::busName(QStringLiteral("watched")));
    QVERIFY(loaded.wait(Patience));
    QCOMPARE(removed.count(), 0);
    QCOMPARE(m_repository->validPlugins(), list("a", "watched"));
}

void RepositoryTest::activatableStartedLater()
{
    makeActivatable(FakeRunner::busName(QStringLiteral("a")));
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    // Watched, not started.
    QVERIFY(m_repository->validPlugins().isEmpty());
    QVERIFY(!QDBusConnection::sessionBus().interface()->isServiceRegistered(
        FakeRunner::busName(QStringLiteral("a"))));
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    {
        FakeRunner runner({FakeRunner::busName(QStringLiteral("a"))});
        QVERIFY(loaded.count() == 1 || loaded.wait(Patience));
        QCOMPARE(loaded.at(0).at(0).toString(), QStringLiteral("a"));
        QCOMPARE(m_repository->validPlugins(), list("a"));
    }
    QVERIFY(removed.wait(Patience));
    QCOMPARE(removed.at(0).at(0).toString(), QStringLiteral("a"));
    QVERIFY(m_repository->validPlugins().isEmpty());
}

void RepositoryTest::startedLaterOnly()
{
    makeActivatable(FakeRunner::busName(QStringLiteral("watched")));
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    FakeRunner runner({FakeRunner::busName(QStringLiteral("a"))});
    runner.own(FakeRunner::busName(QStringLiteral("watched")));
    QVERIFY(loaded.count() == 1 || loaded.wait(Patience));
    QCOMPARE(m_repository->validPlugins(), list("watched"));
}

void RepositoryTest::installedLater()
{
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    makeActivatable(FakeRunner::busName(QStringLiteral("a")));
    QVERIFY(QMetaObject::invokeMethod(m_repository.get(), "updateInstalledPlugins"));
    QVERIFY(m_repository->validPlugins().isEmpty());
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    const FakeRunner runner({FakeRunner::busName(QStringLiteral("a"))});
    QVERIFY(loaded.count() == 1 || loaded.wait(Patience));
    QCOMPARE(m_repository->validPlugins(), list("a"));
}

void RepositoryTest::prefixIsExact()
{
    const FakeRunner runner(
        {QStringLiteral("com.orvane.Kinlet.a"), QStringLiteral("com.orvane.kinletx.b"),
         QStringLiteral("org.com.orvane.kinlet.c"), QStringLiteral("com.orvane.kinlet"),
         FakeRunner::busName(QStringLiteral("D"))});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QCOMPARE(m_repository->validPlugins(), list("D"));
}

void RepositoryTest::emptyIdIsIgnored()
{
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    for (const char *name : {"com.orvane.kinlet.", "com.orvane.Kinlet.a", ""}) {
        QVERIFY(QMetaObject::invokeMethod(m_repository.get(), "addServiceIfProvider",
                                          Q_ARG(QString, QString::fromLatin1(name))));
        QVERIFY(QMetaObject::invokeMethod(m_repository.get(), "onServiceUnregistered",
                                          Q_ARG(QString, QString::fromLatin1(name))));
    }
    QCOMPARE(loaded.count(), 0);
    QCOMPARE(removed.count(), 0);
    QVERIFY(m_repository->validPlugins().isEmpty());
}

void RepositoryTest::idWithADot()
{
    const FakeRunner runner({FakeRunner::busName(QStringLiteral("a.b"))});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QCOMPARE(m_repository->validPlugins(), list("a.b"));
    const auto *client =
        m_repository->kinletPlugin(QStringLiteral("a.b"))->findChild<KinletRunnerInterface *>();
    QCOMPARE(client->service(), QStringLiteral("com.orvane.kinlet.a.b"));
    QCOMPARE(client->path(), QStringLiteral("/a.b"));
}

void RepositoryTest::sortedById()
{
    const FakeRunner runner({FakeRunner::busName(QStringLiteral("b")),
                             FakeRunner::busName(QStringLiteral("C")),
                             FakeRunner::busName(QStringLiteral("a"))});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QCOMPARE(m_repository->validPlugins(), list("C", "a") + list("b"));
}

void RepositoryTest::pluginIsAlwaysNull()
{
    const FakeRunner runner({FakeRunner::busName(QStringLiteral("a"))});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QVERIFY(!m_repository->plugin(QStringLiteral("a")));
    QVERIFY(!m_repository->plugin(QStringLiteral("x")));
    QVERIFY(m_repository->kinletPlugin(QStringLiteral("a")));
}

void RepositoryTest::removePluginIsSilent()
{
    const FakeRunner runner({FakeRunner::busName(QStringLiteral("a"))});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    const QPointer<KinletInterface> proxy(m_repository->kinletPlugin(QStringLiteral("a")));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    m_repository->removePlugin(QStringLiteral("unknown"));
    m_repository->removePlugin(QStringLiteral("a"));
    QVERIFY(m_repository->validPlugins().isEmpty());
    QVERIFY(!m_repository->kinletPlugin(QStringLiteral("a")));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(proxy);
    QCOMPARE(removed.count(), 0);
    delete proxy;
}

void RepositoryTest::foundTwice()
{
    const FakeRunner runner({FakeRunner::busName(QStringLiteral("a"))});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    const QPointer<KinletInterface> first(m_repository->kinletPlugin(QStringLiteral("a")));
    m_repository->addServiceIfProvider(FakeRunner::busName(QStringLiteral("a")));
    const QPointer<KinletInterface> second(m_repository->kinletPlugin(QStringLiteral("a")));
    QVERIFY(first);
    QVERIFY(second);
    QVERIFY(first != second);
    QCOMPARE(loaded.count(), 1);
    QCOMPARE(removed.count(), 0);
    // Whoever was handed it may delete it: then the repository holds nothing.
    delete second;
    QVERIFY(!m_repository->kinletPlugin(QStringLiteral("a")));
    delete first;
}

void RepositoryTest::unregisteredWithoutEntry()
{
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    m_repository->onServiceUnregistered(FakeRunner::busName(QStringLiteral("never")));
    QCOMPARE(removed.count(), 1);
    QCOMPARE(removed.at(0).at(0).toString(), QStringLiteral("never"));
}

void RepositoryTest::comesBack()
{
    const QString name = FakeRunner::busName(QStringLiteral("a"));
    makeActivatable(name);
    FakeRunner runner({name});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    const QPointer<KinletInterface> first(m_repository->kinletPlugin(QStringLiteral("a")));
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    for (int round = 1; round <= 3; ++round) {
        runner.release(name);
        QTRY_COMPARE_WITH_TIMEOUT(removed.count(), round, Patience);
        runner.own(name);
        QTRY_COMPARE_WITH_TIMEOUT(loaded.count(), round, Patience);
        QCOMPARE(m_repository->validPlugins(), list("a"));
        KinletInterface *again = m_repository->kinletPlugin(QStringLiteral("a"));
        QVERIFY(again != first);
        delete again;
    }
    QVERIFY(first);
    delete first;
}

void RepositoryTest::proxiesOutliveTheRepository()
{
    const FakeRunner runner({FakeRunner::busName(QStringLiteral("a"))});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    const QPointer<KinletInterface> proxy(m_repository->kinletPlugin(QStringLiteral("a")));
    const QPointer<QDBusServiceWatcher> watcher(m_repository->findChild<QDBusServiceWatcher *>());
    m_repository.reset();
    QVERIFY(proxy);
    QVERIFY(!watcher);
    delete proxy;
}

void RepositoryTest::watchedOnce()
{
    const QString name = FakeRunner::busName(QStringLiteral("a"));
    makeActivatable(name);
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    m_repository->updateInstalledPlugins();
    m_repository->updateInstalledPlugins();
    const auto *watcher = m_repository->findChild<QDBusServiceWatcher *>();
    QCOMPARE(watcher->watchedServices(), QStringList(name));
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    const FakeRunner runner({name});
    QVERIFY(loaded.count() == 1 || loaded.wait(Patience));
    deliverAll();
    QCOMPARE(loaded.count(), 1);
}

void RepositoryTest::everyNamePartOfItsProxy()
{
    const FakeRunner runner({FakeRunner::busName(QStringLiteral("some_1"))});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    KinletInterface *proxy = m_repository->kinletPlugin(QStringLiteral("some_1"));
    QCOMPARE(proxy->metaData(), QVariantMap({{QStringLiteral("name"), QStringLiteral("some_1")}}));
    const auto *client = proxy->findChild<KinletRunnerInterface *>();
    QCOMPARE(client->service(), QStringLiteral("com.orvane.kinlet.some_1"));
    QCOMPARE(client->path(), QStringLiteral("/some_1"));
    QCOMPARE(client->interface(), QStringLiteral("com.orvane.kinlet.runner"));
}

QTEST_GUILESS_MAIN(RepositoryTest)
#include "repositorytest.moc"
