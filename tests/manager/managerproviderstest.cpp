// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "managerinternals.h"
#include "support/scriptedprovider.h"
#include "support/watchedrequest.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <utility>

namespace {

const QString a = QStringLiteral("a");
const QString b = QStringLiteral("b");

/// Shows who listens to it, and may change its name.
class WatchedProvider : public ScriptedProvider {
public:
    using ScriptedProvider::ScriptedProvider;
    QVariantMap metaData() override { return {{QStringLiteral("name"), currentName}}; }
    using QObject::receivers;

    QVariant currentName = name;
};

}

/// The registry of providers, and requests on their way to them.
class ManagerProvidersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { KinletManager::cleanupInstance(); }

    void unknownProviderIsANullHandle();
    void addedProviderIsFound();
    void nullHandleIsRefused();
    void takenNameIsRefusedAndReleased();
    void nameIsCaseSensitive();
    void providerWithoutNameIsRegisteredUnderTheEmptyOne();
    void nameIsTheTextOfItsValue();
    void addedProviderIsAskedForServicesThenAccounts();
    void providerIsRegisteredAndHeardBeforeItIsAsked();
    void onlyTwoSignalsAreConnected();
    void oneObjectUnderTwoNamesIsConnectedOnce();
    void providerGoesWithItsLastHandle();
    void providerThatComesBackIsAskedAgain();
    void requestIsNarrowedToTheAccounts_data();
    void requestIsNarrowedToTheAccounts();
    void requestBeforeTheEndOfStartupIsPerformed();
};

void ManagerProvidersTest::unknownProviderIsANullHandle()
{
    QVERIFY(ScriptedProvider::add(a));
    QVERIFY(!manager()->hasProvider(b));
    QVERIFY(manager()->provider(b).isNull());
    QCOMPARE(manager()->allProviders().size(), 1);
}

void ManagerProvidersTest::addedProviderIsFound()
{
    auto *first = ScriptedProvider::add(a);
    auto *second = ScriptedProvider::add(b);
    QVERIFY(manager()->hasProvider(a));
    QCOMPARE(manager()->provider(a).data(), static_cast<KinletInterface *>(first));
    QCOMPARE(manager()->provider(b).data(), static_cast<KinletInterface *>(second));
    QList<QString> names = manager()->allProviderNames();
    const auto handles = manager()->allProviders();
    QCOMPARE(handles.size(), 2);
    for (int i = 0; i < 2; ++i)
        QCOMPARE(handles.at(i), manager()->provider(names.at(i)));
    std::sort(names.begin(), names.end());
    QCOMPARE(names, QList<QString>({a, b}));
}

void ManagerProvidersTest::nullHandleIsRefused()
{
    QVERIFY(!manager()->addProvider({}));
    QVERIFY(manager()->allProviders().isEmpty());
    QVERIFY(internalsOf(manager())->initRequests.isEmpty());
}

void ManagerProvidersTest::takenNameIsRefusedAndReleased()
{
    auto *first = new WatchedProvider(a, {QStringLiteral("first")});
    QVERIFY(ScriptedProvider::add(first));
    const QPointer<WatchedProvider> second(new WatchedProvider(a, {QStringLiteral("second")}));
    second->answersRegistry = false;
    QVERIFY(!ScriptedProvider::add(second));
    QVERIFY(second->received.isEmpty());
    QCOMPARE(second->receivers(SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>))), 0);
    QCOMPARE(first->receivers(SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>))), 1);
    QVERIFY(second);
    runDeferredDeletes();
    QVERIFY(!second);
    QCOMPARE(manager()->provider(a).data(), static_cast<KinletInterface *>(first));
    QCOMPARE(manager()->accounts().size(), 1);
    QCOMPARE(manager()->accounts().first().id(), QStringLiteral("first"));
}

void ManagerProvidersTest::nameIsCaseSensitive()
{
    QVERIFY(ScriptedProvider::add(a));
    QVERIFY(ScriptedProvider::add(QStringLiteral("A")));
    QCOMPARE(manager()->allProviders().size(), 2);
}

void ManagerProvidersTest::providerWithoutNameIsRegisteredUnderTheEmptyOne()
{
    QVERIFY(ScriptedProvider::add(QString(), {QStringLiteral("account")}));
    QVERIFY(manager()->hasProvider(QString()));
    QVERIFY(!ScriptedProvider::add(QString()));
    QCOMPARE(manager()->accounts().size(), 1);
    runDeferredDeletes();
}

void ManagerProvidersTest::nameIsTheTextOfItsValue()
{
    auto *provider = new WatchedProvider(a);
    provider->currentName = 7;
    QVERIFY(ScriptedProvider::add(provider));
    QCOMPARE(manager()->allProviderNames(), QList<QString>({QStringLiteral("7")}));
}

void ManagerProvidersTest::addedProviderIsAskedForServicesThenAccounts()
{
    const QPointer<ScriptedProvider> provider(new ScriptedProvider(a));
    provider->answersRegistry = false;
    QVERIFY(ScriptedProvider::add(provider));
    QCOMPARE(provider->received.size(), 2);
    const int types[] = {SocialDataRequest::GetAggregatedServices, SocialDataRequest::GetAccounts};
    for (int i = 0; i < 2; ++i) {
        SocialDataRequest *request = provider->received.at(i);
        QCOMPARE(request->type(), types[i]);
        QCOMPARE(request->status(), SocialDataRequest::Inactive);
        QVERIFY(!request->parent());
        QCOMPARE(internalsOf(manager())->initRequests.value(request), a);
    }
    // Both are the manager's to delete once they have ended.
    for (const QPointer<SocialDataRequest> &request : std::as_const(provider->received))
        request->setRequestProgress(SocialDataRequest::Finished, {});
    QVERIFY(internalsOf(manager())->initRequests.isEmpty());
    QVERIFY(provider->received.at(0) && provider->received.at(1));
    runDeferredDeletes();
    QVERIFY(!provider->received.at(0) && !provider->received.at(1));
}

void ManagerProvidersTest::providerIsRegisteredAndHeardBeforeItIsAsked()
{
    const QSignalSpy persons(manager(),
                             SIGNAL(personsUpdate(QList<SocialNetworkPerson>, QList<QString>)));
    const QSignalSpy data(manager(), SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    auto *provider = new ScriptedProvider(a);
    provider->answersRegistry = false;
    provider->onPerform = [&](SocialDataRequest *request) {
        QCOMPARE(manager()->provider(a).data(), static_cast<KinletInterface *>(provider));
        QVERIFY(internalsOf(manager())->initRequests.contains(request));
        Q_EMIT provider->personsUpdate({}, {});
        Q_EMIT provider->dataUpdate({}, {});
    };
    QVERIFY(ScriptedProvider::add(provider));
    QCOMPARE(provider->received.size(), 2);
    QCOMPARE(persons.count(), 2);
    QCOMPARE(data.count(), 2);
}

void ManagerProvidersTest::onlyTwoSignalsAreConnected()
{
    auto *provider = new WatchedProvider(a);
    QVERIFY(ScriptedProvider::add(provider));
    const auto receivers = [&](const char *signal) { return provider->receivers(signal); };
    QCOMPARE(receivers(SIGNAL(personsUpdate(QList<SocialNetworkPerson>, QList<QString>))), 1);
    QCOMPARE(receivers(SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>))), 1);
    QCOMPARE(receivers(SIGNAL(personsRemoved(QList<SocialNetworkPerson>))), 0);
    QCOMPARE(receivers(SIGNAL(activityUpdate(QList<SocialActivity>, QList<QString>,
                                             KinletTimeline::TimelineType))),
             0);
    QCOMPARE(receivers(SIGNAL(error(QString, QString, QString))), 0);
}

void ManagerProvidersTest::oneObjectUnderTwoNamesIsConnectedOnce()
{
    auto *provider = new WatchedProvider(a);
    const QSharedPointer<KinletInterface> handle(provider, &QObject::deleteLater);
    QVERIFY(manager()->addProvider(handle));
    provider->currentName = b;
    QVERIFY(manager()->addProvider(handle));
    QCOMPARE(manager()->provider(a), manager()->provider(b));
    QCOMPARE(provider->receivers(SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>))), 1);
    QCOMPARE(provider->receivers(SIGNAL(personsUpdate(QList<SocialNetworkPerson>, QList<QString>))),
             1);
}

void ManagerProvidersTest::providerGoesWithItsLastHandle()
{
    const QPointer<ScriptedProvider> provider(ScriptedProvider::add(a));
    QSharedPointer<KinletInterface> handle = manager()->provider(a);
    ScriptedProvider::remove(a);
    runDeferredDeletes();
    QVERIFY(provider);
    handle.reset();
    QVERIFY(provider);
    runDeferredDeletes();
    QVERIFY(!provider);
}

void ManagerProvidersTest::providerThatComesBackIsAskedAgain()
{
    auto *gone = new ScriptedProvider(a);
    gone->answersRegistry = false;
    const QSharedPointer<KinletInterface> handle(gone, &QObject::deleteLater);
    QVERIFY(manager()->addProvider(handle));
    ScriptedProvider::remove(a);
    QCOMPARE(gone->cancelled.size(), 0);

    QVERIFY(ScriptedProvider::add(a, {QStringLiteral("account")}));
    QCOMPARE(manager()->accounts().size(), 1);
    // The requests of the one that is gone are still known, under the same name.
    QCOMPARE(internalsOf(manager())->initRequests.size(), 2);
    gone->answer();
    QVERIFY(manager()->accounts().isEmpty());
    QCOMPARE(manager()->services().size(), 1);
}

void ManagerProvidersTest::requestIsNarrowedToTheAccounts_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("accounts");
    QTest::addColumn<QStringList>("asked");

    QTest::newRow("one") << QStringList() << QStringList(QStringLiteral("a1")) << QStringList(a);
    QTest::newRow("in the order given")
        << QStringList() << QStringList({QStringLiteral("b1"), QStringLiteral("a1")})
        << QStringList({a, b});
    QTest::newRow("none: all") << QStringList(QStringLiteral("b1")) << QStringList()
                               << QStringList({a, b});
    QTest::newRow("replaces an earlier filter")
        << QStringList(QStringLiteral("b1")) << QStringList(QStringLiteral("a1")) << QStringList(a);
    QTest::newRow("twice the same")
        << QStringList() << QStringList({QStringLiteral("a1"), QStringLiteral("a1")})
        << QStringList(a);
    // Deliberately not the same as none.
    QTest::newRow("without id") << QStringList() << QStringList(QString()) << QStringList();
    QTest::newRow("unknown") << QStringList() << QStringList(QStringLiteral("x")) << QStringList();
}

void ManagerProvidersTest::requestIsNarrowedToTheAccounts()
{
    QFETCH(QStringList, before);
    QFETCH(QStringList, accounts);
    QFETCH(QStringList, asked);
    QList<SocialServiceAccount> records;
    for (const QString &id : accounts) {
        SocialServiceAccount record;
        record.setProperty(SocialGenericData::Id, id);
        records.append(record);
    }
    const QList<ScriptedProvider *> providers{
        ScriptedProvider::add(a, {QStringLiteral("a1"), QStringLiteral("a2")}),
        ScriptedProvider::add(b, {QStringLiteral("b1")})};
    QStringList received;
    for (ScriptedProvider *provider : providers) {
        provider->onPerform = [&received, provider](SocialDataRequest *copy) {
            received.append(provider->name);
            copy->setRequestProgress(SocialDataRequest::Finished, {});
        };
    }

    WatchedRequest request;
    request.setPerformOnAccountsFilter(before);
    manager()->performRequest(&request, records);
    QCOMPARE(request.performOnAccountsFilter(), accounts);
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    received.sort();
    QCOMPARE(received, asked);
}

void ManagerProvidersTest::requestBeforeTheEndOfStartupIsPerformed()
{
    auto *provider = ScriptedProvider::add(a);
    internalsOf(manager())->initializedFlag = false;
    WatchedRequest request;
    manager()->performRequest(&request, {});
    QCOMPARE(provider->received.size(), 1);
    provider->answer({QStringLiteral("result")});
    QCOMPARE(idsOf(request.results()), QStringList(QStringLiteral("result")));
}

QTEST_GUILESS_MAIN(ManagerProvidersTest)
#include "managerproviderstest.moc"
