// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "managerinternals.h"
#include "plugincalls.h"
#include "requests/socialdatarequest.h"
#include "support/pluginfolder.h"
#include "support/scriptedprovider.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <utility>

namespace {

constexpr int services = SocialDataRequest::GetAggregatedServices;
constexpr int accounts = SocialDataRequest::GetAccounts;
const QString a = QStringLiteral("a");
const QString aHeld = QStringLiteral("a-held");
const QString bHeld = QStringLiteral("b-held");

}

/// The forced end of start-up.
class ManagerForcedStartTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { KinletManager::cleanupInstance(); }

    void forcedEndDropsWhoHasNotAnswered();
    void forcedEndLeavesConnectionsAndRequests();
    void forcedEndCancelsNothing();
    void forcedEndKeepsWhoHasAnswered();
    void forcedEndOnceInitializedDoesNothing();
    void withoutProvidersItCanBeForced();
    void signalComesLast_data();
    void signalComesLast();
};

void ManagerForcedStartTest::forcedEndDropsWhoHasNotAnswered()
{
    const PluginFolder folder;
    folder.providers({aHeld, bHeld, QStringLiteral("c")});
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

void ManagerForcedStartTest::forcedEndLeavesConnectionsAndRequests()
{
    const PluginFolder folder;
    folder.providers({aHeld});
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

void ManagerForcedStartTest::forcedEndCancelsNothing()
{
    const PluginFolder folder;
    folder.providers({aHeld});
    auto *provider = new ScriptedProvider(a);
    provider->answersRegistry = false;
    const QSharedPointer<KinletInterface> handle(provider, &QObject::deleteLater);
    QVERIFY(manager()->addProvider(handle));
    internalsOf(manager())->pendingProviders.append(a);

    QVERIFY(forceInitialized(manager()));
    QVERIFY(!manager()->hasProvider(a));
    runDeferredDeletes();
    QCOMPARE(provider->cancelled.size(), 0);
    QCOMPARE(provider->received.size(), 2);
    for (const QPointer<SocialDataRequest> &request : std::as_const(provider->received)) {
        QVERIFY(request);
        QCOMPARE(request->status(), SocialDataRequest::Inactive);
        delete request;
    }
}

void ManagerForcedStartTest::forcedEndKeepsWhoHasAnswered()
{
    const PluginFolder folder;
    folder.providers({aHeld, bHeld});
    QVERIFY(answer(manager()->provider(bHeld), accounts));
    QVERIFY(forceInitialized(manager()));
    QCOMPARE(manager()->allProviderNames(), QList<QString>({bHeld}));
    QCOMPARE(internalsOf(manager())->initRequests.values(), QStringList(bHeld));
    QVERIFY(answer(manager()->provider(bHeld), services));
    QCOMPARE(manager()->services().size(), 1);
}

void ManagerForcedStartTest::forcedEndOnceInitializedDoesNothing()
{
    const PluginFolder folder;
    folder.providers({a});
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

void ManagerForcedStartTest::withoutProvidersItCanBeForced()
{
    const PluginFolder folder;
    folder.copy("testcollector", QStringLiteral("a.so"));
    QVERIFY(!manager()->isInitialized());
    const QSignalSpy initialized(manager(), SIGNAL(initialized()));
    QVERIFY(forceInitialized(manager()));
    QVERIFY(manager()->isInitialized());
    QCOMPARE(initialized.count(), 1);
}

void ManagerForcedStartTest::signalComesLast_data()
{
    QTest::addColumn<bool>("forced");

    QTest::newRow("answered") << false;
    QTest::newRow("forced") << true;
}

void ManagerForcedStartTest::signalComesLast()
{
    QFETCH(bool, forced);
    const PluginFolder folder;
    folder.providers({aHeld});
    const QSharedPointer<KinletInterface> provider = manager()->provider(aHeld);
    bool heard = false;
    connect(manager(), &KinletManager::initialized, this, [&] {
        heard = true;
        QVERIFY(manager()->isInitialized());
        QVERIFY(internalsOf(manager())->pendingProviders.isEmpty());
        QCOMPARE(manager()->hasProvider(aHeld), !forced);
        QCOMPARE(manager()->accounts().size(), forced ? 0 : 1);
    });
    QVERIFY(forced ? forceInitialized(manager()) : answer(provider, accounts));
    QVERIFY(heard);
}

QTEST_GUILESS_MAIN(ManagerForcedStartTest)
#include "managerforcedstarttest.moc"
