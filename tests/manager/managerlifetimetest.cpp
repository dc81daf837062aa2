// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "managerinternals.h"
#include "support/pluginfolder.h"
#include "support/scriptedprovider.h"
#include "updaterecords.h"

#include <QPointer>
#include <QTest>

#include <memory>

namespace {

constexpr int accounts = SocialDataRequest::GetAccounts;
const QString a = QStringLiteral("a");
const QString aHeld = QStringLiteral("a-held");

QSharedPointer<KinletInterface> shared(KinletInterface *provider)
{
    return QSharedPointer<KinletInterface>(provider, &QObject::deleteLater);
}

}

/// Things that end at bad moments.
class ManagerLifetimeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { KinletManager::cleanupInstance(); }

    void managerEndsInsideItsSignal_data();
    void managerEndsInsideItsSignal();
    void managerEndsInsideInitialized_data();
    void managerEndsInsideInitialized();
    void managerEndsWhileAProviderIsAdded_data();
    void managerEndsWhileAProviderIsAdded();
    void providerIsRemovedWhileItIsAdded();
    void providersComeInsideImportStarted();
    void providerGoesInsideImportStarted();
    void providersComeAndGoInsideInitialized();
    void pluginHandleKeptOverTheManager();
    void removedPluginGoesWithTheManager();
    void ownProviderOutlivesTheManagerWithItsHandle();
    void everythingEndsInOrder();
    void managerGoesWithItsParent();
};

void ManagerLifetimeTest::managerEndsInsideItsSignal_data()
{
    QTest::addColumn<QString>("endAt");
    QTest::addColumn<QStringList>("names");

    QTest::newRow("dataUpdate") << QStringLiteral("data") << QStringList();
    QTest::newRow("accountsRemoved") << QStringLiteral("removed") << QStringList(stateKey);
    QTest::newRow("importStarted") << QStringLiteral("started") << QStringList(progressKey);
    QTest::newRow("importStarted before accountsRemoved")
        << QStringLiteral("started") << QStringList({progressKey, stateKey});
    QTest::newRow("importEnded") << QStringLiteral("ended") << QStringList(progressKey);
    QTest::newRow("importEnded before accountsRemoved")
        << QStringLiteral("ended") << QStringList({progressKey, stateKey});
}

void ManagerLifetimeTest::managerEndsInsideItsSignal()
{
    QFETCH(QString, endAt);
    QFETCH(QStringList, names);
    auto *provider = ScriptedProvider::add(a, {accountId});
    QStringList events;
    recordUpdates(&events);
    const auto end = [&] {
        if (events.last().startsWith(endAt))
            KinletManager::cleanupInstance();
    };
    connect(manager(), &KinletManager::dataUpdate, this, end);
    connect(manager(), &KinletManager::accountsRemoved, this, end);
    connect(manager(), &KinletManager::importStarted, this, end);
    connect(manager(), &KinletManager::importEnded, this, end);

    const QPointer<KinletManager> guard(manager());
    SocialServiceAccount gone = importing(running());
    gone.setProperty(stateKey, 4);
    Q_EMIT provider->dataUpdate({gone, importing(ended(1, 1, 1)), importing(running())},
                                QList<QString>(names));
    QVERIFY(!guard);
    QVERIFY(events.last().startsWith(endAt));
    // Nothing comes from a manager that has ended.
    QCOMPARE(events.size(), endAt == QLatin1String("ended") ? 2 : 1);
    runDeferredDeletes();
}

void ManagerLifetimeTest::managerEndsInsideInitialized_data()
{
    QTest::addColumn<bool>("forced");

    QTest::newRow("answered") << false;
    QTest::newRow("forced") << true;
}

void ManagerLifetimeTest::managerEndsInsideInitialized()
{
    QFETCH(bool, forced);
    const PluginFolder folder;
    folder.providers({aHeld});
    const QPointer<KinletManager> guard(manager());
    QVERIFY(!guard->isInitialized());
    const QPointer<QObject> plugin(guard->provider(aHeld).data());
    connect(guard, &KinletManager::initialized, this, &KinletManager::cleanupInstance);
    if (forced)
        QVERIFY(forceInitialized(guard));
    else
        QVERIFY(QMetaObject::invokeMethod(plugin, "answer", Q_ARG(int, accounts)));
    QVERIFY(!guard);
    QVERIFY(!plugin);
    runDeferredDeletes();
    // The next one starts afresh.
    QVERIFY(!manager()->isInitialized());
    QVERIFY(manager()->hasProvider(aHeld));
}

void ManagerLifetimeTest::managerEndsWhileAProviderIsAdded_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("asked");

    QTest::newRow("asked for services") << int(SocialDataRequest::GetAggregatedServices) << 1;
    QTest::newRow("asked for accounts") << int(SocialDataRequest::GetAccounts) << 2;
}

void ManagerLifetimeTest::managerEndsWhileAProviderIsAdded()
{
    QFETCH(int, type);
    QFETCH(int, asked);
    const QPointer<ScriptedProvider> provider(new ScriptedProvider(a));
    provider->answersRegistry = false;
    provider->onPerform = [type](SocialDataRequest *request) {
        if (request->type() == type)
            KinletManager::cleanupInstance();
    };
    const QPointer<KinletManager> guard(manager());
    QVERIFY(guard->addProvider(shared(provider)));
    QVERIFY(!guard);
    QCOMPARE(provider->received.size(), asked);
    runDeferredDeletes();
    QVERIFY(!provider);
}

void ManagerLifetimeTest::providerIsRemovedWhileItIsAdded()
{
    const QPointer<ScriptedProvider> provider(new ScriptedProvider(a));
    provider->answersRegistry = false;
    provider->onPerform = [](SocialDataRequest *) { ScriptedProvider::remove(a); };
    QVERIFY(manager()->addProvider(shared(provider)));
    QCOMPARE(provider->received.size(), 2);
    QVERIFY(!manager()->hasProvider(a));
    runDeferredDeletes();
    QVERIFY(!provider);
}

void ManagerLifetimeTest::providersComeInsideImportStarted()
{
    const QString second = QStringLiteral("second");
    auto *provider = ScriptedProvider::add(a, {accountId, second});
    QStringList events;
    recordUpdates(&events);
    connect(manager(), &KinletManager::importStarted, this, [] {
        // Enough that the caches grow.
        for (int i = 0; i < 200; ++i)
            ScriptedProvider::add(QString::number(i), {QStringLiteral("%1-account").arg(i)});
    });
    Q_EMIT provider->dataUpdate({importing(running()), importing(running(), second)},
                                {progressKey});
    QCOMPARE(events.size(), 2);
    QCOMPARE(manager()->accounts().size(), 202);
    QVERIFY(manager()->account(accountId).hasProperty(progressKey));
    QVERIFY(manager()->account(second).hasProperty(progressKey));
}

void ManagerLifetimeTest::providerGoesInsideImportStarted()
{
    const QPointer<ScriptedProvider> provider(ScriptedProvider::add(a, {accountId}));
    QStringList events;
    recordUpdates(&events);
    connect(manager(), &KinletManager::importStarted, this, [] { ScriptedProvider::remove(a); });
    Q_EMIT provider->dataUpdate({importing(running()), importing(ended(1, 2, 3))}, {progressKey});
    QCOMPARE(events,
             QStringList({QStringLiteral("started service account"),
                          QStringLiteral("ended service account 1 2 3")}));
    QVERIFY(!internalsOf(manager())->accountCache.contains(a));
    runDeferredDeletes();
    QVERIFY(!provider);
}

void ManagerLifetimeTest::providersComeAndGoInsideInitialized()
{
    const PluginFolder folder;
    folder.providers({aHeld, QStringLiteral("b")});
    const QSharedPointer<KinletInterface> plugin = manager()->provider(aHeld);
    connect(manager(), &KinletManager::initialized, this, [] {
        ScriptedProvider::remove(aHeld);
        ScriptedProvider::add(QStringLiteral("c"), {QStringLiteral("c-account")});
    });
    QVERIFY(QMetaObject::invokeMethod(plugin.data(), "answer", Q_ARG(int, accounts)));
    QVERIFY(manager()->isInitialized());
    QVERIFY(!manager()->hasProvider(aHeld));
    QCOMPARE(manager()->accounts().size(), 2);
}

void ManagerLifetimeTest::pluginHandleKeptOverTheManager()
{
    const PluginFolder folder;
    folder.providers({a});
    QSharedPointer<KinletInterface> handle = manager()->provider(a);
    const QPointer<QObject> plugin(handle.data());
    QVERIFY(plugin);
    KinletManager::cleanupInstance();
    QVERIFY(!plugin);
    // Has nothing left to delete.
    handle.reset();
    runDeferredDeletes();
}

void ManagerLifetimeTest::removedPluginGoesWithTheManager()
{
    const PluginFolder folder;
    folder.providers({a});
    const QPointer<QObject> plugin(manager()->provider(a).data());
    Q_EMIT internalsOf(manager())->pluginRepository->pluginRemoved(a);
    QVERIFY(plugin);
    // Before its own end, which is due, comes.
    KinletManager::cleanupInstance();
    QVERIFY(!plugin);
    runDeferredDeletes();
}

void ManagerLifetimeTest::ownProviderOutlivesTheManagerWithItsHandle()
{
    const QPointer<ScriptedProvider> provider(new ScriptedProvider(a));
    QSharedPointer<KinletInterface> handle = shared(provider);
    QVERIFY(manager()->addProvider(handle));
    KinletManager::cleanupInstance();
    runDeferredDeletes();
    QVERIFY(provider);
    handle.reset();
    runDeferredDeletes();
    QVERIFY(!provider);
}

void ManagerLifetimeTest::everythingEndsInOrder()
{
    const PluginFolder folder;
    folder.providers({aHeld});
    QStringList ended;
    const auto watch = [&](QObject *object, const QString &name) {
        connect(object, &QObject::destroyed, this, [&ended, name] { ended.append(name); });
    };
    KinletManagerPrivate *const internals = internalsOf(manager());
    const QList<QPointer<SocialDataRequest>> requests = [&] {
        QList<QPointer<SocialDataRequest>> list;
        const QList<SocialDataRequest *> issued = internals->initRequests.keys();
        for (SocialDataRequest *request : issued)
            list.append(request);
        return list;
    }();
    QCOMPARE(requests.size(), 2);
    watch(manager(), QStringLiteral("manager"));
    watch(&internals->requestWorker, QStringLiteral("worker"));
    watch(internals->pluginRepository, QStringLiteral("repository"));
    watch(manager()->provider(aHeld).data(), QStringLiteral("plug-in"));
    auto *own = new ScriptedProvider(QStringLiteral("own"));
    const auto handleEnds = [&ended](KinletInterface *provider) {
        ended.append(QStringLiteral("handle"));
        provider->deleteLater();
    };
    QVERIFY(manager()->addProvider(QSharedPointer<KinletInterface>(own, handleEnds)));

    KinletManager::cleanupInstance();
    // Unloading deletes a plug-in as a part of the repository's end.
    QCOMPARE(ended,
             QStringList({QStringLiteral("handle"), QStringLiteral("plug-in"),
                          QStringLiteral("repository"), QStringLiteral("worker"),
                          QStringLiteral("manager")}));
    // Requests that were never answered stay.
    runDeferredDeletes();
    for (const QPointer<SocialDataRequest> &request : requests)
        QVERIFY(request);
}

void ManagerLifetimeTest::managerGoesWithItsParent()
{
    const PluginFolder folder;
    folder.providers({a});
    auto parent = std::make_unique<QObject>();
    const QPointer<KinletManager> other(new KinletManager(parent.get()));
    QVERIFY(other->isInitialized());
    const QPointer<QObject> plugin(other->provider(a).data());
    QVERIFY(plugin);
    parent.reset();
    QVERIFY(!other);
    QVERIFY(!plugin);
}

QTEST_GUILESS_MAIN(ManagerLifetimeTest)
#include "managerlifetimetest.moc"
