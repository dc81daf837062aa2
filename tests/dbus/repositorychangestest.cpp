// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/fakerunner.h"
#include "dbus/kinletinterfaceproxy.h"
#include "dbus/kinletrunnerinterface.h"
#include "dbus/socialdbuspluginrepository.h"
#include "dbus/testbus.h"

#include <QDBusServiceWatcher>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr int Patience = 60000;
const QString id = QStringLiteral("a");
const QString name = FakeRunner::busName(id);

void makeActivatable()
{
    TestBus::makeActivatable(name, KINLET_FAKE_RUNNER " " + name.toUtf8());
}

/// Remembers what is removed.
class WatchedRepository : public SocialDBusPluginRepository {
public:
    using SocialDBusPluginRepository::SocialDBusPluginRepository;

    void removePlugin(const QString &id) override
    {
        removals.append(id);
        SocialDBusPluginRepository::removePlugin(id);
    }

    QStringList removals;
};

}

/// Runners that come and go while the repository is there.
class RepositoryChangesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void removePluginIsSilent();
    void holdsWhatItTells();
    void removesBeforeItTells();
    void foundTwice();
    void unregisteredWithoutEntry();
    void comesBack();
    void comesBackUnnoticed();
    void handedOver();
    void installedLater();
    void installedWhileRunning();
    void watchedOnce();
    void proxiesOutliveTheRepository();

private:
    std::unique_ptr<SocialDBusPluginRepository> m_repository;
};

void RepositoryChangesTest::init()
{
    cleanup();
}

void RepositoryChangesTest::cleanup()
{
    m_repository.reset();
    TestBus::removeActivatable();
}

void RepositoryChangesTest::removePluginIsSilent()
{
    const FakeRunner runner({name});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    const QPointer<KinletInterface> proxy(m_repository->kinletPlugin(id));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    m_repository->removePlugin(QStringLiteral("unknown"));
    m_repository->removePlugin(id);
    QVERIFY(m_repository->validPlugins().isEmpty());
    QVERIFY(!m_repository->kinletPlugin(id));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(proxy);
    QCOMPARE(removed.count(), 0);
    delete proxy;
}

void RepositoryChangesTest::holdsWhatItTells()
{
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    std::unique_ptr<KinletInterface> proxy;
    connect(m_repository.get(), &SocialPluginRepository::pluginLoaded, this,
            [&](const QString &loaded) { proxy.reset(m_repository->kinletPlugin(loaded)); });
    m_repository->addServiceIfProvider(name);
    QVERIFY(proxy);
}

void RepositoryChangesTest::removesBeforeItTells()
{
    const FakeRunner runner({name});
    WatchedRepository repository(nullptr);
    const std::unique_ptr<KinletInterface> proxy(repository.kinletPlugin(id));
    QStringList removals;
    connect(&repository, &SocialPluginRepository::pluginRemoved, this, [&] {
        removals = repository.removals;
        QVERIFY(repository.validPlugins().isEmpty());
    });
    repository.onServiceUnregistered(FakeRunner::busName(QString()));
    QCOMPARE(repository.removals, QStringList());
    repository.onServiceUnregistered(name);
    QCOMPARE(removals, QStringList(id));
}

void RepositoryChangesTest::foundTwice()
{
    const FakeRunner runner({name});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    const QPointer<KinletInterface> first(m_repository->kinletPlugin(id));
    m_repository->addServiceIfProvider(name);
    const QPointer<KinletInterface> second(m_repository->kinletPlugin(id));
    QVERIFY(first);
    QVERIFY(second);
    QVERIFY(first != second);
    QCOMPARE(loaded.count(), 1);
    QCOMPARE(removed.count(), 0);
    // Whoever was handed it may delete it: then the repository holds nothing.
    delete second;
    QVERIFY(!m_repository->kinletPlugin(id));
    delete first;
}

void RepositoryChangesTest::unregisteredWithoutEntry()
{
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    m_repository->onServiceUnregistered(FakeRunner::busName(QStringLiteral("never")));
    QCOMPARE(removed.count(), 1);
    QCOMPARE(removed.at(0).at(0).toString(), QStringLiteral("never"));
}

void RepositoryChangesTest::comesBack()
{
    makeActivatable();
    FakeRunner runner({name});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    const QPointer<KinletInterface> first(m_repository->kinletPlugin(id));
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    for (int round = 1; round <= 3; ++round) {
        runner.release(name);
        QTRY_COMPARE_WITH_TIMEOUT(removed.count(), round, Patience);
        runner.own(name);
        QTRY_COMPARE_WITH_TIMEOUT(loaded.count(), round, Patience);
        QCOMPARE(m_repository->validPlugins(), QStringList(id));
        KinletInterface *again = m_repository->kinletPlugin(id);
        QVERIFY(again != first);
        delete again;
    }
    QVERIFY(first);
    delete first;
}

void RepositoryChangesTest::comesBackUnnoticed()
{
    FakeRunner runner({name});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    const std::unique_ptr<KinletInterface> proxy(m_repository->kinletPlugin(id));
    runner.kill();
    QTRY_VERIFY_WITH_TIMEOUT(!TestBus::ask("NameHasOwner", {name}).toBool(), Patience);
    FakeRunner successor({name});
    // The same proxy reaches who has the name now.
    QSignalSpy updated(proxy.get(), SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    successor.push(id, QStringLiteral("dataUpdate"), {}, {});
    QVERIFY(updated.count() == 1 || updated.wait(Patience));
    QCOMPARE(m_repository->kinletPlugin(id), proxy.get());
    QCOMPARE(loaded.count() + removed.count(), 0);
}

void RepositoryChangesTest::handedOver()
{
    makeActivatable();
    FakeRunner runner({name});
    FakeRunner heir;
    heir.queueFor(name);
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    const std::unique_ptr<KinletInterface> proxy(m_repository->kinletPlugin(id));
    QSignalSpy updated(proxy.get(), SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    const QVariant owner = TestBus::ask("GetNameOwner", {name});
    runner.kill();
    QTRY_VERIFY_WITH_TIMEOUT(TestBus::ask("GetNameOwner", {name}) != owner, Patience);
    // The name is never free, so nobody has gone or come.
    heir.push(id, QStringLiteral("dataUpdate"), {}, {});
    QVERIFY(updated.count() == 1 || updated.wait(Patience));
    QCOMPARE(loaded.count() + removed.count(), 0);
    heir.release(name);
    QVERIFY(removed.count() == 1 || removed.wait(Patience));
    QCOMPARE(loaded.count(), 0);
}

void RepositoryChangesTest::installedLater()
{
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    makeActivatable();
    QVERIFY(QMetaObject::invokeMethod(m_repository.get(), "updateInstalledPlugins"));
    QVERIFY(m_repository->validPlugins().isEmpty());
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    const FakeRunner runner({name});
    QVERIFY(loaded.count() == 1 || loaded.wait(Patience));
    QCOMPARE(m_repository->validPlugins(), QStringList(id));
}

void RepositoryChangesTest::installedWhileRunning()
{
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    QSignalSpy removed(m_repository.get(), SIGNAL(pluginRemoved(QString)));
    FakeRunner runner({name});
    makeActivatable();
    m_repository->updateInstalledPlugins();
    // Only watched: its departure is told although it never was a plug-in.
    QVERIFY(m_repository->validPlugins().isEmpty());
    runner.release(name);
    QVERIFY(removed.count() == 1 || removed.wait(Patience));
    QCOMPARE(removed.at(0).at(0).toString(), id);
    QCOMPARE(loaded.count(), 0);
}

void RepositoryChangesTest::watchedOnce()
{
    makeActivatable();
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    m_repository->updateInstalledPlugins();
    m_repository->updateInstalledPlugins();
    const auto *watcher = m_repository->findChild<QDBusServiceWatcher *>();
    QCOMPARE(watcher->watchedServices(), QStringList(name));
    QSignalSpy loaded(m_repository.get(), SIGNAL(pluginLoaded(QString)));
    const FakeRunner runner({name});
    QVERIFY(loaded.count() == 1 || loaded.wait(Patience));
    TestBus::deliverAll();
    QCOMPARE(loaded.count(), 1);
}

void RepositoryChangesTest::proxiesOutliveTheRepository()
{
    const FakeRunner runner({name});
    m_repository = std::make_unique<SocialDBusPluginRepository>(nullptr);
    const QPointer<KinletInterface> proxy(m_repository->kinletPlugin(id));
    const QPointer<QDBusServiceWatcher> watcher(m_repository->findChild<QDBusServiceWatcher *>());
    m_repository.reset();
    QVERIFY(proxy);
    QVERIFY(!watcher);
    delete proxy;
}

QTEST_GUILESS_MAIN(RepositoryChangesTest)
#include "repositorychangestest.moc"
