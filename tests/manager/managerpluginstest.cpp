// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "managerinternals.h"
#include "plugins/socialpluginloader.h"
#include "requests/socialdatarequest.h"
#include "support/pluginfolder.h"
#include "support/scriptedprovider.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

constexpr int services = SocialDataRequest::GetAggregatedServices;
constexpr int accounts = SocialDataRequest::GetAccounts;
const QString a = QStringLiteral("a");
const QString aHeld = QStringLiteral("a-held");
const QString bHeld = QStringLiteral("b-held");

KinletManager *manager()
{
    return KinletManager::instance();
}

SocialPluginRepository *repository()
{
    return internalsOf(manager())->pluginRepository;
}

bool answer(const QSharedPointer<KinletInterface> &provider, int type)
{
    return QMetaObject::invokeMethod(provider.data(), "answer", Q_ARG(int, type));
}

bool holds(const QSharedPointer<KinletInterface> &provider, int type)
{
    bool held = false;
    QMetaObject::invokeMethod(provider.data(), "holds", Q_RETURN_ARG(bool, held), Q_ARG(int, type));
    return held;
}

bool push(const QSharedPointer<KinletInterface> &provider)
{
    return QMetaObject::invokeMethod(provider.data(), "push");
}

}

/// The manager with plug-ins that come and go, and its forced end of start-up.
class ManagerPluginsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { folder = std::make_unique<PluginFolder>(); }
    void cleanup()
    {
        KinletManager::cleanupInstance();
        folder.reset();
    }

    void pluginLoadedLaterIsAskedButDelaysNothing();
    void pluginLoadedLaterThatIsNoProviderIsIgnored();
    void pluginLoadedTwiceStays();
    void removedPluginIsForgotten();
    void removedProviderLivesWhileAHandleIsHeld();
    void removingTheLastPendingProviderDoesNotInitialize();
    void removingAnUnknownNameIsHarmless();
    void removedPendingProviderIsNotWaitedFor();
    void answerAfterRemovalIsKeptUntilTheNextRemoval();
    void forcedEndDropsWhoHasNotAnswered();
    void forcedEndLeavesConnectionsAndRequests();
    void forcedEndKeepsWhoHasAnswered();
    void forcedEndOnceInitializedDoesNothing();
    void pluginErrorsReachOnlyTheLoader();

private:
    std::unique_ptr<PluginFolder> folder;
};

void ManagerPluginsTest::pluginLoadedLaterIsAskedButDelaysNothing()
{
    folder->providers({aHeld});
    const QSignalSpy initialized(manager(), SIGNAL(initialized()));
    auto *loader = qobject_cast<SocialPluginLoader *>(repository());
    QVERIFY(loader);

    const PluginFolder more;
    QVERIFY(loader->loadPlugin(more.provider(QStringLiteral("b-held.so"))));
    QVERIFY(manager()->hasProvider(bHeld));
    QCOMPARE(manager()->provider(bHeld)->property("asked").toList(),
             QVariantList({services, accounts}));
    QCOMPARE(internalsOf(manager())->pendingProviders, QStringList(aHeld));
    // Its own answer does not end start-up either.
    QVERIFY(answer(manager()->provider(bHeld), accounts));
    QVERIFY(!manager()->isInitialized());
    QCOMPARE(initialized.count(), 0);
    QVERIFY(answer(manager()->provider(aHeld), accounts));
    QCOMPARE(initialized.count(), 1);
    QCOMPARE(manager()->accounts().size(), 2);
}

void ManagerPluginsTest::pluginLoadedLaterThatIsNoProviderIsIgnored()
{
    folder->providers({a});
    QVERIFY(manager()->isInitialized());
    auto *loader = qobject_cast<SocialPluginLoader *>(repository());
    const PluginFolder more;
    QVERIFY(loader->loadPlugin(more.copy("testcollector", QStringLiteral("b.so"))));
    Q_EMIT repository()->pluginLoaded(QStringLiteral("unknown"));
    QCOMPARE(manager()->allProviderNames(), QList<QString>({a}));
}

void ManagerPluginsTest::pluginLoadedTwiceStays()
{
    folder->providers({a});
    const QPointer<QObject> plugin(manager()->provider(a).data());
    QVERIFY(plugin);
    Q_EMIT repository()->pluginLoaded(a);
    runDeferredDeletes();
    QVERIFY(plugin);
    QCOMPARE(static_cast<QObject *>(manager()->provider(a).data()), plugin.data());
    QCOMPARE(plugin->property("asked").toList(), QVariantList({services, accounts}));
}

void ManagerPluginsTest::removedPluginIsForgotten()
{
    folder->providers({a, QStringLiteral("b")});
    const QPointer<QObject> plugin(manager()->provider(a).data());
    QCOMPARE(manager()->services().size(), 2);

    Q_EMIT repository()->pluginRemoved(a);
    QCOMPARE(manager()->allProviderNames(), QList<QString>({QStringLiteral("b")}));
    QVERIFY(!manager()->provider(a));
    QVERIFY(!internalsOf(manager())->serviceCache.contains(a));
    QVERIFY(!internalsOf(manager())->accountCache.contains(a));
    QCOMPARE(manager()->accounts().size(), 1);
    // The repository is told nothing: it knows.
    QCOMPARE(repository()->validPlugins(), QStringList({a, QStringLiteral("b")}));
    QVERIFY(plugin);
    runDeferredDeletes();
    QVERIFY(!plugin);
}

void ManagerPluginsTest::removedProviderLivesWhileAHandleIsHeld()
{
    folder->providers({a});
    const QSignalSpy updates(manager(),
                             SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    QSharedPointer<KinletInterface> handle = manager()->provider(a);
    const QPointer<QObject> plugin(handle.data());
    const QSignalSpy ownSpy(handle.data(),
                            SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    QVERIFY(push(handle));
    QCOMPARE(updates.count(), 1);
    QCOMPARE(ownSpy.count(), 1);

    Q_EMIT repository()->pluginRemoved(a);
    runDeferredDeletes();
    QVERIFY(plugin);
    // Everybody is disconnected, not only the manager.
    QVERIFY(push(handle));
    QCOMPARE(updates.count(), 1);
    QCOMPARE(ownSpy.count(), 1);

    handle.reset();
    QVERIFY(plugin);
    runDeferredDeletes();
    QVERIFY(!plugin);
}

void ManagerPluginsTest::removingTheLastPendingProviderDoesNotInitialize()
{
    folder->providers({a, bHeld});
    const QSignalSpy initialized(manager(), SIGNAL(initialized()));
    Q_EMIT repository()->pluginRemoved(bHeld);
    QCOMPARE(internalsOf(manager())->pendingProviders, QStringList());
    QVERIFY(!manager()->isInitialized());
    QCOMPARE(initialized.count(), 0);
    QVERIFY(forceInitialized(manager()));
    QCOMPARE(initialized.count(), 1);
    QCOMPARE(manager()->allProviderNames(), QList<QString>({a}));
}

void ManagerPluginsTest::removingAnUnknownNameIsHarmless()
{
    folder->providers({aHeld});
    Q_EMIT repository()->pluginRemoved(QStringLiteral("unknown"));
    QCOMPARE(manager()->allProviderNames(), QList<QString>({aHeld}));
    QCOMPARE(internalsOf(manager())->pendingProviders, QStringList(aHeld));
}

void ManagerPluginsTest::removedPendingProviderIsNotWaitedFor()
{
    folder->providers({aHeld, bHeld});
    const QSignalSpy initialized(manager(), SIGNAL(initialized()));
    Q_EMIT repository()->pluginRemoved(bHeld);
    QVERIFY(!manager()->isInitialized());
    QVERIFY(answer(manager()->provider(aHeld), accounts));
    QVERIFY(manager()->isInitialized());
    QCOMPARE(initialized.count(), 1);
}

void ManagerPluginsTest::answerAfterRemovalIsKeptUntilTheNextRemoval()
{
    folder->providers({aHeld});
    const QSharedPointer<KinletInterface> provider = manager()->provider(aHeld);
    Q_EMIT repository()->pluginRemoved(aHeld);
    QCOMPARE(internalsOf(manager())->initRequests.size(), 2);
    QVERIFY(answer(provider, services));
    QVERIFY(answer(provider, accounts));
    QVERIFY(!manager()->hasProvider(aHeld));
    QCOMPARE(manager()->services().size(), 1);
    QCOMPARE(manager()->providerNameFromAccountId(QStringLiteral("a-held-account")), aHeld);
    runDeferredDeletes();
    QVERIFY(!holds(provider, accounts));

    Q_EMIT repository()->pluginRemoved(aHeld);
    QVERIFY(manager()->services().isEmpty());
    QVERIFY(manager()->accounts().isEmpty());
}

void ManagerPluginsTest::forcedEndDropsWhoHasNotAnswered()
{
    folder->providers({aHeld, bHeld, QStringLiteral("c")});
    const QSignalSpy initialized(manager(), SIGNAL(initialized()));
    const QPointer<QObject> plugin(manager()->provider(aHeld).data());
    QVERIFY(answer(manager()->provider(aHeld), services));
    internalsOf(manager())->accountCache.insert(aHeld, {SocialServiceAccount()});

    QVERIFY(forceInitialized(manager()));
    QVERIFY(manager()->isInitialized());
    QCOMPARE(initialized.count(), 1);
    QCOMPARE(manager()->allProviderNames(), QList<QString>({QStringLiteral("c")}));
    QCOMPARE(internalsOf(manager())->pendingProviders, QStringList());
    QCOMPARE(internalsOf(manager())->serviceCache.keys(), QStringList(QStringLiteral("c")));
    QCOMPARE(internalsOf(manager())->accountCache.keys(), QStringList(QStringLiteral("c")));
    QVERIFY(internalsOf(manager())->initRequests.isEmpty());
    QCOMPARE(repository()->validPlugins(), QStringList(QStringLiteral("c")));
    QVERIFY(plugin);
    runDeferredDeletes();
    QVERIFY(!plugin);
}

void ManagerPluginsTest::forcedEndLeavesConnectionsAndRequests()
{
    folder->providers({aHeld});
    const QSharedPointer<KinletInterface> provider = manager()->provider(aHeld);
    const QSignalSpy updates(manager(),
                             SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    const QSignalSpy initialized(manager(), SIGNAL(initialized()));
    QVERIFY(forceInitialized(manager()));
    QVERIFY(push(provider));
    QCOMPARE(updates.count(), 1);

    // A late answer is ignored and its request stays the provider's.
    QVERIFY(answer(provider, services));
    QVERIFY(answer(provider, accounts));
    runDeferredDeletes();
    QVERIFY(holds(provider, services));
    QVERIFY(holds(provider, accounts));
    QVERIFY(manager()->services().isEmpty());
    QVERIFY(manager()->accounts().isEmpty());
    QCOMPARE(initialized.count(), 1);
}

void ManagerPluginsTest::forcedEndKeepsWhoHasAnswered()
{
    folder->providers({aHeld, bHeld});
    QVERIFY(answer(manager()->provider(bHeld), accounts));
    QVERIFY(forceInitialized(manager()));
    QCOMPARE(manager()->allProviderNames(), QList<QString>({bHeld}));
    QCOMPARE(internalsOf(manager())->initRequests.values(), QStringList(bHeld));
    QVERIFY(answer(manager()->provider(bHeld), services));
    QCOMPARE(manager()->services().size(), 1);
}

void ManagerPluginsTest::forcedEndOnceInitializedDoesNothing()
{
    folder->providers({a});
    QVERIFY(manager()->isInitialized());
    auto *late = new ScriptedProvider(QStringLiteral("late"));
    late->answersRegistry = false;
    QVERIFY(ScriptedProvider::add(late));
    internalsOf(manager())->pendingProviders.append(a);
    const QSignalSpy initialized(manager(), SIGNAL(initialized()));
    QVERIFY(forceInitialized(manager()));
    QVERIFY(forceInitialized(manager()));
    QCOMPARE(initialized.count(), 0);
    QCOMPARE(manager()->allProviders().size(), 2);
    QCOMPARE(internalsOf(manager())->pendingProviders, QStringList(a));
    QCOMPARE(internalsOf(manager())->initRequests.size(), 2);
    QCOMPARE(repository()->validPlugins(), QStringList(a));
}

void ManagerPluginsTest::pluginErrorsReachOnlyTheLoader()
{
    folder->providers({QStringLiteral("failing"), QStringLiteral("held")});
    QVERIFY(!manager()->isInitialized());
    const QStringList log = qApp->property("initLog").toStringList();
    QVERIFY(
        QMetaObject::invokeMethod(manager()->provider(QStringLiteral("failing")).data(), "fail"));
    QCOMPARE(qApp->property("initLog").toStringList().size(), log.size() + 2);
    QCOMPARE(manager()->allProviders().size(), 2);
    QCOMPARE(internalsOf(manager())->pendingProviders, QStringList(QStringLiteral("held")));
}

QTEST_GUILESS_MAIN(ManagerPluginsTest)
#include "managerpluginstest.moc"
