// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "managerinternals.h"
#include "plugincalls.h"
#include "plugins/socialpluginloader.h"
#include "requests/socialdatarequest.h"
#include "support/pluginfolder.h"
#include "support/scriptedprovider.h"

#include <QMetaMethod>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <vector>

namespace {

constexpr int services = SocialDataRequest::GetAggregatedServices;
constexpr int accounts = SocialDataRequest::GetAccounts;
const QString a = QStringLiteral("a");
const QString aHeld = QStringLiteral("a-held");
const QString bHeld = QStringLiteral("b-held");

}

/// The manager with plug-ins that come and go.
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
    void removalIsSilent();
    void removingTheLastPendingProviderDoesNotInitialize();
    void removingAnUnknownNameIsHarmless();
    void removedPendingProviderIsNotWaitedFor();
    void removalForgetsEveryMention();
    void answerAfterRemovalIsKeptUntilTheNextRemoval();
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

void ManagerPluginsTest::removalIsSilent()
{
    folder->providers({a, aHeld});
    QVERIFY(!manager()->isInitialized());
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    const QMetaObject &meta = KinletManager::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal)
            spies.push_back(std::make_unique<QSignalSpy>(manager(), meta.method(i)));
    }
    QCOMPARE(spies.size(), size_t(6));
    for (const QString &name : {a, aHeld})
        Q_EMIT repository()->pluginRemoved(name);
    QVERIFY(manager()->allProviders().isEmpty());
    for (const auto &spy : spies)
        QVERIFY2(spy->isEmpty(), spy->signal().constData());
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

void ManagerPluginsTest::removalForgetsEveryMention()
{
    folder->providers({aHeld, bHeld});
    internalsOf(manager())->pendingProviders.append(aHeld);
    Q_EMIT repository()->pluginRemoved(aHeld);
    QCOMPARE(internalsOf(manager())->pendingProviders, QStringList(bHeld));
}

void ManagerPluginsTest::answerAfterRemovalIsKeptUntilTheNextRemoval()
{
    folder->providers({aHeld});
    const QSignalSpy initialized(manager(), SIGNAL(initialized()));
    const QSharedPointer<KinletInterface> provider = manager()->provider(aHeld);
    Q_EMIT repository()->pluginRemoved(aHeld);
    QCOMPARE(internalsOf(manager())->initRequests.size(), 2);
    QVERIFY(answer(provider, services));
    QCOMPARE(initialized.count(), 0);
    // It ends start-up too: nobody else is waited for.
    QVERIFY(answer(provider, accounts));
    QCOMPARE(initialized.count(), 1);
    QVERIFY(!manager()->hasProvider(aHeld));
    QCOMPARE(manager()->services().size(), 1);
    QCOMPARE(manager()->providerNameFromAccountId(QStringLiteral("a-held-account")), aHeld);
    runDeferredDeletes();
    QVERIFY(!holds(provider, accounts));

    Q_EMIT repository()->pluginRemoved(aHeld);
    QVERIFY(manager()->services().isEmpty());
    QVERIFY(manager()->accounts().isEmpty());
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
