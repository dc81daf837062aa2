// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "managerinternals.h"
#include "support/scriptedprovider.h"
#include "updaterecords.h"

#include <QDataStream>
#include <QIODevice>
#include <QTest>

namespace {

const QString a = QStringLiteral("a");

}

/// What the manager makes of an account's import progress.
class ManagerImportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { KinletManager::cleanupInstance(); }

    void importStartsAndEnds();
    void importOfAnyOtherTypeHasEnded_data();
    void importOfAnyOtherTypeHasEnded();
    void importWithoutAValueHasEnded();
    void incompleteImportIsSkipped_data();
    void incompleteImportIsSkipped();
    void skippedRecordsDoNotStopTheOthers();
    void importIsReportedBeforeStartupEnds();
    void importReplacesTheCachedAccount();
    void importReplacesOnlyTheFirstOfItsProvider();
    void importOfAnUnknownAccountIsReportedOnly();
    void importMakesAnEmptyEntry();
    void importIsReportedAfterTheCacheHasChanged();
    void recordsAreTakenOneAfterTheOther();

private:
    ScriptedProvider *provider = nullptr;
    QStringList events;
};

void ManagerImportTest::init()
{
    provider = ScriptedProvider::add(a);
    QVERIFY(provider);
    recordUpdates(&events);
}

void ManagerImportTest::importStartsAndEnds()
{
    Q_EMIT provider->dataUpdate({importing(running())}, {progressKey});
    Q_EMIT provider->dataUpdate({importing(ended(3, 1, 2))}, {progressKey});
    QCOMPARE(events,
             QStringList({QStringLiteral("started service account"),
                          QStringLiteral("ended service account 3 1 2")}));
}

void ManagerImportTest::importOfAnyOtherTypeHasEnded_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("bool") << QVariant(true);
    QTest::newRow("number") << QVariant(1);
    QTest::newRow("text") << QVariant(QStringLiteral("running"));
    QTest::newRow("another value type") << QVariant::fromValue(Media{1, {}, {}, {}});
    QTest::newRow("list") << QVariant(QVariantList({true, 3, 1, 2}));
}

void ManagerImportTest::importOfAnyOtherTypeHasEnded()
{
    QFETCH(QVariant, value);
    Q_EMIT provider->dataUpdate({importing(value)}, {progressKey});
    QCOMPARE(events, QStringList(QStringLiteral("ended service account 0 0 0")));
}

void ManagerImportTest::importWithoutAValueHasEnded()
{
    // A property that holds nothing, as only a stream makes it, is present all the same.
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << SocialServiceAccount::ClassName << quint32(3);
    out << SocialServiceAccount::SocialServiceId << QVariant(serviceId);
    out << progressKey << QVariant();
    out << SocialGenericData::Id << QVariant(accountId);
    QDataStream in(bytes);
    SocialGenericData record;
    in >> record;
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(!record.variantProperty(progressKey).isValid());
    Q_EMIT provider->dataUpdate({record}, {progressKey});
    QCOMPARE(events, QStringList(QStringLiteral("ended service account 0 0 0")));
}

void ManagerImportTest::incompleteImportIsSkipped_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("service");
    QTest::addColumn<QVariant>("progress");
    QTest::addColumn<QString>("className");
    const QString className = SocialServiceAccount::ClassName;

    QTest::newRow("no id") << QString() << serviceId << running() << className;
    QTest::newRow("empty service") << accountId << QStringLiteral("") << running() << className;
    QTest::newRow("no progress") << accountId << serviceId << QVariant() << className;
    QTest::newRow("a service") << accountId << serviceId << running() << SocialService::ClassName;
    QTest::newRow("no class") << accountId << serviceId << running() << QString();
}

void ManagerImportTest::incompleteImportIsSkipped()
{
    QFETCH(QString, id);
    QFETCH(QString, service);
    QFETCH(QVariant, progress);
    QFETCH(QString, className);
    SocialServiceAccount cached;
    cached.setProperty(SocialGenericData::Id, id);
    internalsOf(manager())->accountCache.insert(a, {cached});

    SocialServiceAccount record = importing(progress, id, service);
    record.setClassName(className);
    Q_EMIT provider->dataUpdate({record}, {progressKey});
    QCOMPARE(events, QStringList());
    QCOMPARE(manager()->accounts().size(), 1);
    QCOMPARE(manager()->accounts().first().properties(), cached.properties());
}

void ManagerImportTest::skippedRecordsDoNotStopTheOthers()
{
    SocialServiceAccount withoutService = importing(running());
    withoutService.removeProperty(SocialServiceAccount::SocialServiceId);
    Q_EMIT provider->dataUpdate({withoutService, importing(running(), QStringLiteral("1")),
                                 SocialNetworkPerson(),
                                 importing(ended(1, 2, 3), QStringLiteral("2"))},
                                {progressKey});
    QCOMPARE(events,
             QStringList(
                 {QStringLiteral("started service 1"), QStringLiteral("ended service 2 1 2 3")}));
}

void ManagerImportTest::importIsReportedBeforeStartupEnds()
{
    internalsOf(manager())->initializedFlag = false;
    Q_EMIT provider->dataUpdate({importing(running())}, {progressKey});
    QCOMPARE(events, QStringList(QStringLiteral("started service account")));
}

void ManagerImportTest::importReplacesTheCachedAccount()
{
    const QString name = QStringLiteral("b");
    ScriptedProvider *other = ScriptedProvider::add(name, {accountId, QStringLiteral("second")});
    SocialServiceAccount update = importing(running(), accountId, QStringLiteral("new service"));
    update.setProperty(SocialServiceAccount::UserName, QStringLiteral("user"));
    update.setParentAccount(QStringLiteral("parent"));
    Q_EMIT other->dataUpdate({update}, {progressKey});

    const SocialServiceAccount cached = manager()->account(accountId);
    QCOMPARE(cached.properties().keys(), update.properties().keys());
    QCOMPARE(cached.className(), SocialServiceAccount::ClassName);
    QCOMPARE(cached.parentAccount(), QStringLiteral("parent"));
    QCOMPARE(cached.property(SocialServiceAccount::SocialServiceId), QStringLiteral("new service"));
    QVERIFY(cached.variantProperty(progressKey).value<SocialImportProgress>().running);
    QCOMPARE(manager()->accounts().size(), 2);
    QCOMPARE(manager()->accounts().at(1).id(), QStringLiteral("second"));
    QCOMPARE(manager()->providerNameFromAccountId(accountId), name);
}

void ManagerImportTest::importReplacesOnlyTheFirstOfItsProvider()
{
    QVERIFY(ScriptedProvider::add(QStringLiteral("b"), {accountId}));
    ScriptedProvider *third = ScriptedProvider::add(QStringLiteral("c"), {accountId, accountId});
    Q_EMIT third->dataUpdate({importing(running())}, {progressKey});
    QList<bool> replaced;
    const QList<SocialServiceAccount> accounts = manager()->accounts();
    for (const SocialServiceAccount &account : accounts)
        replaced.append(account.hasProperty(progressKey));
    QCOMPARE(replaced, QList<bool>({false, true, false}));
}

void ManagerImportTest::importOfAnUnknownAccountIsReportedOnly()
{
    ScriptedProvider *other = ScriptedProvider::add(
        QStringLiteral("b"), {QStringLiteral("known"), QStringLiteral("Account")});
    Q_EMIT other->dataUpdate({importing(running())}, {progressKey});
    QCOMPARE(events, QStringList(QStringLiteral("started service account")));
    QCOMPARE(manager()->accounts().size(), 2);
    QVERIFY(manager()->account(accountId).id().isNull());
}

void ManagerImportTest::importMakesAnEmptyEntry()
{
    internalsOf(manager())->accountCache.clear();
    Q_EMIT provider->dataUpdate({importing(running())}, {stateKey});
    QVERIFY(!internalsOf(manager())->accountCache.contains(a));
    Q_EMIT provider->dataUpdate({}, {progressKey});
    QCOMPARE(internalsOf(manager())->accountCache.keys(), QStringList(a));
    QVERIFY(manager()->accounts().isEmpty());
    QVERIFY(manager()->providerNameFromAccountId(QString()).isNull());
}

void ManagerImportTest::importIsReportedAfterTheCacheHasChanged()
{
    ScriptedProvider *other = ScriptedProvider::add(QStringLiteral("b"), {accountId});
    bool seen = false;
    connect(manager(), &KinletManager::importStarted, this,
            [&] { seen = manager()->account(accountId).hasProperty(progressKey); });
    Q_EMIT other->dataUpdate({importing(running())}, {progressKey});
    QVERIFY(seen);
}

void ManagerImportTest::recordsAreTakenOneAfterTheOther()
{
    ScriptedProvider *other = ScriptedProvider::add(QStringLiteral("b"), {accountId});
    const auto cachedService = [] {
        return manager()->account(accountId).property(SocialServiceAccount::SocialServiceId);
    };
    QStringList cached;
    connect(manager(), &KinletManager::importStarted, this, [&] { cached << cachedService(); });
    connect(manager(), &KinletManager::importEnded, this, [&] { cached << cachedService(); });
    const QStringList services{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")};
    Q_EMIT other->dataUpdate({importing(running(), accountId, services.at(0)),
                              importing(ended(1, 2, 3), accountId, services.at(1)),
                              importing(running(), accountId, services.at(2))},
                             {progressKey});
    QCOMPARE(cached, services);
    QCOMPARE(manager()->accounts().size(), 1);
}

QTEST_GUILESS_MAIN(ManagerImportTest)
#include "managerimporttest.moc"
