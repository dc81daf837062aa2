// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/fakerunner.h"
#include "dbus/kinletinterfaceproxy.h"
#include "dbus/kinletrunnerinterface.h"
#include "dbus/socialdbuspluginrepository.h"
#include "dbus/testbus.h"
#include "requests/socialgetpersonsrequest.h"
#include "support/requesthelpers.h"
#include "support/virtualslots.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusServiceWatcher>
#include <QMetaMethod>
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

void makeActivatable(const QString &busName)
{
    TestBus::makeActivatable(busName, KINLET_FAKE_RUNNER " " + busName.toUtf8());
}

}

/// Which runners become plug-ins.
class RepositoryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void membersOfTheRepository();
    void emptyBus();
    void runningAndActivatable();
    void runningOnly();
    void activatableStartedLater();
    void startedByTheBus();
    void startedLaterOnly();
    void prefixIsExact();
    void emptyIdIsIgnored();
    void idWithADot();
    void sortedById();
    void pluginIsAlwaysNull();
    void everyNamePartOfItsProxy();

private:
    std::unique_ptr<SocialDBusPluginRepository> m_repository;
};

void RepositoryTest::init()
{
    cleanup();
}

void RepositoryTest::cleanup()
{
    m_repository.reset();
    TestBus::removeActivatable();
}

void RepositoryTest::membersOfTheRepository()
{
    const QMetaObject &metaObject = SocialDBusPluginRepository::staticMetaObject;
    QCOMPARE(QByteArray(metaObject.superClass()->className()),
             QByteArray("SocialPluginRepository"));
    QCOMPARE(ownMethods(metaObject),
             QStringList({QStringLiteral("addServiceIfProvider(QString)"),
                          QStringLiteral("onServiceUnregistered(QString)"),
                          QStringLiteral("updateInstalledPlugins()")}));
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
        const QMetaMethod method = metaObject.method(i);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        const QList<QByteArray> parameters = method.parameterNames();
        for (const QByteArray &parameter : parameters)
            QCOMPARE(parameter, QByteArray("serviceName"));
    }

    const int first = slotOf(&SocialDBusPluginRepository::validPlugins);
    QCOMPARE(slotOf(&SocialDBusPluginRepository::removePlugin), first + 1);
    QCOMPARE(slotOf(&SocialDBusPluginRepository::plugin), first + 2);
    QCOMPARE(slotOf(&SocialDBusPluginRepository::kinletPlugin), first + 3);
    QCOMPARE(slotOf(&Extended<SocialDBusPluginRepository>::next), first + 4);

    const QObject parent;
    const auto *child = new SocialDBusPluginRepository(const_cast<QObject *>(&parent));
    QCOMPARE(child->parent(), &parent);
}

void RepositoryTest::emptyBus()
{
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QVERIFY(m_repository->validPlugins().isEmpty());
    QVERIFY(!m_repository->kinletPlugin(QStringLiteral("x")));
    QVERIFY(m_repository->validPlugins().isEmpty());
    const auto *watcher = m_repository->findChild<QDBusServiceWatcher *>();
    QVERIFY(watcher);
    QCOMPARE(watcher->connection().name(), QDBusConnection::sessionBus().name());
    QVERIFY(watcher->watchedServices().isEmpty());
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

void RepositoryTest::startedByTheBus()
{
    const QString name = FakeRunner::busName(QStringLiteral("a"));
    makeActivatable(name);
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    TestBus::ask("StartServiceByName", {name, 0U});
    // Without anybody to obey it ends by itself.
    QVERIFY(removed.count() == 1 || removed.wait(Patience));
    QCOMPARE(loaded.count(), 1);
    QCOMPARE(loaded.at(0).at(0).toString(), QStringLiteral("a"));
}

void RepositoryTest::startedLaterOnly()
{
    makeActivatable(FakeRunner::busName(QStringLiteral("watched")));
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    FakeRunner runner({FakeRunner::busName(QStringLiteral("a"))});
    runner.own(FakeRunner::busName(QStringLiteral("watched")));
    QVERIFY(loaded.count() == 1 || loaded.wait(Patience));
    QCOMPARE(m_repository->validPlugins(), list("watched"));
    runner.release(FakeRunner::busName(QStringLiteral("a")));
    runner.release(FakeRunner::busName(QStringLiteral("watched")));
    QVERIFY(removed.count() == 1 || removed.wait(Patience));
    QCOMPARE(removed.at(0).at(0).toString(), QStringLiteral("watched"));
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
    KinletInterface *proxy = m_repository->kinletPlugin(QStringLiteral("a.b"));
    const auto *client = proxy->findChild<KinletRunnerInterface *>();
    QCOMPARE(client->service(), QStringLiteral("com.orvane.kinlet.a.b"));
    QCOMPARE(client->path(), QStringLiteral("/a.b"));
    // No such path can be on the bus: the call is lost.
    SocialGetPersonsRequest request;
    proxy->performRequest(&request);
    TestBus::deliverAll();
    QCOMPARE(int(request.status()), 0);
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
