// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "managerinternals.h"
#include "support/scriptedprovider.h"

#include <QTest>

namespace {

const QString a = QStringLiteral("a");
const QString x = QStringLiteral("x");

template <typename Record>
Record record(const QString &id, const QString &remark)
{
    Record result;
    result.setProperty(SocialGenericData::Id, id);
    result.setProperty(SocialGenericData::Description, remark);
    return result;
}

SocialServiceAccount accountOf(const QString &id, const QString &serviceId)
{
    SocialServiceAccount account;
    account.setProperty(SocialGenericData::Id, id);
    account.setProperty(SocialServiceAccount::SocialServiceId, serviceId);
    return account;
}

/// Ids, descriptions: "id remark".
template <typename Record>
QStringList texts(const QList<Record> &records)
{
    QStringList list;
    for (const Record &record : records)
        list.append(record.id() + u' ' + record.description());
    return list;
}

/// A provider with two services and two accounts, whose ids are shared by all such providers.
ScriptedProvider *addTwin(const QString &name)
{
    auto *provider = new ScriptedProvider(name);
    provider->serviceList = {record<SocialService>(QStringLiteral("s2"), name),
                             record<SocialService>(QStringLiteral("s1"), name)};
    provider->accountList = {record<SocialServiceAccount>(QStringLiteral("a2"), name),
                             record<SocialServiceAccount>(QStringLiteral("a1"), name)};
    return ScriptedProvider::add(provider) ? provider : nullptr;
}

void compareEmpty(const SocialGenericData &record, const QString &className)
{
    QCOMPARE(record.className(), className);
    QVERIFY(record.id().isNull());
    QVERIFY(record.properties().isEmpty());
}

}

/// Looking up services and accounts.
class ManagerRegistryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { KinletManager::cleanupInstance(); }

    void everythingIsEmptyBeforeAnAnswer();
    void providersAreWalkedInTheOrderOfTheirNames();
    void firstOfEqualIdsIsFound();
    void idsAreComparedExactly();
    void serviceOfAnAccount();
    void accountWithoutServiceFindsAServiceWithoutId();
    void emptyIdFindsTheFirstAccountWithoutId();
    void idsAreReadAsText();
    void accountsOfAService();
    void removedProviderIsForgotten();
    void callersCopyStaysAsItWas();
};

void ManagerRegistryTest::everythingIsEmptyBeforeAnAnswer()
{
    auto *provider = new ScriptedProvider(a, {x});
    provider->answersRegistry = false;
    QVERIFY(ScriptedProvider::add(provider));
    // Looking up leaves the manager as it is.
    const KinletManager *registry = manager();
    QVERIFY(registry->services().isEmpty());
    QVERIFY(registry->accounts().isEmpty());
    for (const QString &id : {QString(), x}) {
        compareEmpty(registry->service(id), SocialService::ClassName);
        compareEmpty(registry->account(id), SocialServiceAccount::ClassName);
        compareEmpty(registry->serviceFromAccountId(id), SocialService::ClassName);
        QVERIFY(registry->providerNameFromAccountId(id).isNull());
    }
    compareEmpty(registry->service(SocialServiceAccount()), SocialService::ClassName);
    QVERIFY(registry->accounts(SocialService()).isEmpty());
    QVERIFY(internalsOf(registry)->serviceCache.isEmpty());
    QVERIFY(internalsOf(registry)->accountCache.isEmpty());
}

void ManagerRegistryTest::providersAreWalkedInTheOrderOfTheirNames()
{
    // Enough names that no other order gives this one by chance.
    const QStringList names{QStringLiteral("e"), QStringLiteral("B"), QStringLiteral("d"),
                            QStringLiteral("a"), QStringLiteral("f"), QStringLiteral("c")};
    for (const QString &name : names)
        QVERIFY(addTwin(name));
    QStringList services;
    QStringList accounts;
    for (const char *name : {"B", "a", "c", "d", "e", "f"}) {
        for (const char *number : {"2 ", "1 "}) {
            services.append(QLatin1Char('s') + QLatin1String(number) + QLatin1String(name));
            accounts.append(QLatin1Char('a') + QLatin1String(number) + QLatin1String(name));
        }
    }
    QCOMPARE(texts(manager()->services()), services);
    QCOMPARE(texts(manager()->accounts()), accounts);
    for (const char *name : {"B", "a", "c", "d", "e", "f"}) {
        QCOMPARE(manager()->providerNameFromAccountId(QStringLiteral("a1")), QLatin1String(name));
        ScriptedProvider::remove(QLatin1String(name));
    }
}

void ManagerRegistryTest::firstOfEqualIdsIsFound()
{
    for (const char *name : {"c", "b", "d"})
        QVERIFY(addTwin(QLatin1String(name)));
    const QString b = QStringLiteral("b");
    QCOMPARE(manager()->service(QStringLiteral("s1")).description(), b);
    QCOMPARE(manager()->account(QStringLiteral("a1")).description(), b);
    QCOMPARE(manager()->providerNameFromAccountId(QStringLiteral("a1")), b);
    QCOMPARE(manager()->accounts().size(), 6);

    ScriptedProvider::remove(b);
    QCOMPARE(manager()->account(QStringLiteral("a1")).description(), QStringLiteral("c"));
    QCOMPARE(manager()->providerNameFromAccountId(QStringLiteral("a1")), QStringLiteral("c"));

    // Within one answer too.
    auto *provider = new ScriptedProvider(a);
    provider->serviceList = {record<SocialService>(x, QStringLiteral("one")),
                             record<SocialService>(x, QStringLiteral("two"))};
    provider->accountList = {record<SocialServiceAccount>(x, QStringLiteral("one")),
                             record<SocialServiceAccount>(x, QStringLiteral("two"))};
    QVERIFY(ScriptedProvider::add(provider));
    QCOMPARE(manager()->service(x).description(), QStringLiteral("one"));
    QCOMPARE(manager()->account(x).description(), QStringLiteral("one"));
    QCOMPARE(manager()->accounts().size(), 6);
}

void ManagerRegistryTest::idsAreComparedExactly()
{
    QVERIFY(addTwin(a));
    for (const char *id : {"A1", "a", "a1 ", "a11"}) {
        QVERIFY(manager()->account(QLatin1String(id)).id().isNull());
        QVERIFY(manager()->providerNameFromAccountId(QLatin1String(id)).isNull());
    }
    QVERIFY(manager()->service(QStringLiteral("S1")).id().isNull());
    SocialService upper;
    upper.setProperty(SocialGenericData::Id, QStringLiteral("SERVICE-b"));
    QVERIFY(ScriptedProvider::add(QStringLiteral("b"), {x}));
    QVERIFY(manager()->accounts(upper).isEmpty());
}

void ManagerRegistryTest::serviceOfAnAccount()
{
    auto *provider = new ScriptedProvider(a);
    provider->serviceList = {
        record<SocialService>(QStringLiteral("one"), QStringLiteral("first")),
        record<SocialService>(QStringLiteral("two"), QStringLiteral("second"))};
    provider->accountList = {accountOf(x, QStringLiteral("two")),
                             accountOf(QStringLiteral("lost"), QStringLiteral("three"))};
    QVERIFY(ScriptedProvider::add(provider));
    // The account need not be one of the registry's.
    const auto stranger = accountOf(QStringLiteral("stranger"), QStringLiteral("one"));
    QCOMPARE(manager()->service(stranger).description(), QStringLiteral("first"));
    QCOMPARE(manager()->serviceFromAccountId(x).description(), QStringLiteral("second"));
    compareEmpty(manager()->serviceFromAccountId(QStringLiteral("lost")), SocialService::ClassName);
    compareEmpty(manager()->serviceFromAccountId(QStringLiteral("no")), SocialService::ClassName);
    compareEmpty(manager()->service(SocialServiceAccount()), SocialService::ClassName);
}

void ManagerRegistryTest::accountWithoutServiceFindsAServiceWithoutId()
{
    auto *provider = new ScriptedProvider(a);
    SocialService nameless;
    nameless.setProperty(SocialGenericData::Description, QStringLiteral("no id"));
    provider->serviceList = {nameless};
    SocialServiceAccount homeless;
    homeless.setProperty(SocialGenericData::Id, x);
    provider->accountList = {homeless};
    QVERIFY(ScriptedProvider::add(provider));
    QCOMPARE(manager()->service(SocialServiceAccount()).description(), QStringLiteral("no id"));
    QCOMPARE(texts(manager()->accounts(nameless)), QStringList(QStringLiteral("x ")));
    QCOMPARE(manager()->serviceFromAccountId(QStringLiteral("unknown")).description(),
             QStringLiteral("no id"));
}

void ManagerRegistryTest::emptyIdFindsTheFirstAccountWithoutId()
{
    auto *provider = new ScriptedProvider(a, {x});
    provider->accountList.append(accountOf(QStringLiteral(""), QStringLiteral("first")));
    provider->accountList.append(SocialServiceAccount());
    QVERIFY(ScriptedProvider::add(provider));
    for (const QString &id : {QString(), QStringLiteral("")}) {
        QCOMPARE(manager()->account(id).property(SocialServiceAccount::SocialServiceId),
                 QStringLiteral("first"));
        QCOMPARE(manager()->providerNameFromAccountId(id), a);
    }
}

void ManagerRegistryTest::idsAreReadAsText()
{
    SocialService service;
    service.setProperty(SocialGenericData::Id, 7);
    SocialServiceAccount account;
    account.setProperty(SocialGenericData::Id, 42);
    account.setProperty(SocialServiceAccount::SocialServiceId, QByteArray("7"));
    // The service of an account may be another provider's.
    auto *services = new ScriptedProvider(a);
    services->serviceList = {service};
    QVERIFY(ScriptedProvider::add(services));
    auto *accounts = new ScriptedProvider(x);
    accounts->accountList = {account};
    QVERIFY(ScriptedProvider::add(accounts));

    const QString accountId = QStringLiteral("42");
    QCOMPARE(manager()->service(QStringLiteral("7")).properties(), service.properties());
    QCOMPARE(manager()->service(account).properties(), service.properties());
    QCOMPARE(manager()->serviceFromAccountId(accountId).properties(), service.properties());
    QCOMPARE(manager()->account(accountId).properties(), account.properties());
    QCOMPARE(manager()->accounts(service).size(), 1);
    QCOMPARE(manager()->providerNameFromAccountId(accountId), x);
}

void ManagerRegistryTest::accountsOfAService()
{
    auto *second = new ScriptedProvider(QStringLiteral("second"));
    second->accountList = {accountOf(QStringLiteral("3"), x)};
    auto *first = new ScriptedProvider(QStringLiteral("first"));
    first->accountList = {accountOf(QStringLiteral("2"), x),
                          accountOf(QStringLiteral("other"), QStringLiteral("y")),
                          accountOf(QStringLiteral("1"), x)};
    QVERIFY(ScriptedProvider::add(second));
    QVERIFY(ScriptedProvider::add(first));
    const auto service = record<SocialService>(x, QString());
    QCOMPARE(texts(manager()->accounts(service)),
             QStringList({QStringLiteral("2 "), QStringLiteral("1 "), QStringLiteral("3 ")}));
    const auto unused = record<SocialService>(QStringLiteral("unused"), QString());
    QVERIFY(manager()->accounts(unused).isEmpty());
}

void ManagerRegistryTest::removedProviderIsForgotten()
{
    QVERIFY(addTwin(a));
    QVERIFY(addTwin(x));
    ScriptedProvider::remove(a);
    QCOMPARE(manager()->providerNameFromAccountId(QStringLiteral("a1")), x);
    QCOMPARE(manager()->services().size(), 2);
    ScriptedProvider::remove(x);
    QVERIFY(manager()->services().isEmpty());
    QVERIFY(manager()->providerNameFromAccountId(QStringLiteral("a1")).isNull());
}

void ManagerRegistryTest::callersCopyStaysAsItWas()
{
    QVERIFY(addTwin(a));
    const QList<SocialServiceAccount> accounts = manager()->accounts();
    SocialService service = manager()->service(QStringLiteral("s1"));
    service.setProperty(SocialGenericData::Description, QStringLiteral("changed"));
    QCOMPARE(manager()->service(QStringLiteral("s1")).description(), a);
    ScriptedProvider::remove(a);
    QCOMPARE(texts(accounts), QStringList({QStringLiteral("a2 a"), QStringLiteral("a1 a")}));
}

QTEST_GUILESS_MAIN(ManagerRegistryTest)
#include "managerregistrytest.moc"
