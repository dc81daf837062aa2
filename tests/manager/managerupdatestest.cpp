// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "managerinternals.h"
#include "support/scriptedprovider.h"
#include "updaterecords.h"

#include <QSignalSpy>
#include <QTest>

namespace {

const QString a = QStringLiteral("a");

/// An account with \a state, unless that is invalid.
SocialServiceAccount accountIn(const QString &id, const QVariant &state)
{
    SocialServiceAccount account;
    account.setProperty(SocialGenericData::Id, id);
    account.setProperty(stateKey, state);
    return account;
}

/// A provider that describes itself anew whenever it is asked.
class RenamedProvider : public ScriptedProvider {
public:
    using ScriptedProvider::ScriptedProvider;
    QVariantMap metaData() override { return description; }

    QVariantMap description{{QStringLiteral("name"), name}};
};

}

class ManagerUpdatesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { KinletManager::cleanupInstance(); }

    void personsGoThrough();
    void updatedNamesDecide_data();
    void updatedNamesDecide();
    void dataGoesThroughUnchanged();
    void progressIsReportedBeforeState();
    void goneAccountsAreReported_data();
    void goneAccountsAreReported();
    void goneAccountsAreReportedTogether();
    void stateOfOtherRecordsIsIgnored();
    void onlyStateIsDroppedBeforeStartupEnds();
    void goneAccountsStayInTheRegistry();
    void updatesOfANamelessProviderAreDropped();
    void nameIsReadAtEachUpdate();
    void updatesThatNoProviderSendsAreDropped();

Q_SIGNALS:
    void strangersUpdate(const QList<SocialGenericData> &data, const QList<QString> &names);

private:
    ScriptedProvider *provider = nullptr;
    QStringList events;
};

void ManagerUpdatesTest::init()
{
    provider = ScriptedProvider::add(a);
    QVERIFY(provider);
    recordUpdates(&events);
}

void ManagerUpdatesTest::personsGoThrough()
{
    QList<SocialNetworkPerson> persons;
    QList<QString> names;
    connect(manager(), &KinletManager::personsUpdate, this,
            [&](const QList<SocialNetworkPerson> &data, const QList<QString> &updated) {
                persons = data;
                names = updated;
            });
    SocialNetworkPerson person;
    person.setProperty(SocialGenericData::Id, QStringLiteral("person"));
    // Names that mean something in other updates mean nothing here.
    Q_EMIT provider->personsUpdate({person}, {progressKey, stateKey});
    QCOMPARE(persons.size(), 1);
    QCOMPARE(persons.first().properties(), person.properties());
    QCOMPARE(names, QList<QString>({progressKey, stateKey}));
    QCOMPARE(events, QStringList());
}

void ManagerUpdatesTest::updatedNamesDecide_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<bool>("anAccount");
    QTest::addColumn<QStringList>("expected");
    const QStringList data{QStringLiteral("data")};
    const QString began = QStringLiteral("started service account");
    const QString gone = QStringLiteral("removed account");
    const QString other = QStringLiteral("Other");

    QTest::newRow("none") << QStringList() << true << data;
    QTest::newRow("another") << QStringList(other) << true << data;
    QTest::newRow("import") << QStringList(progressKey) << true << QStringList(began);
    QTest::newRow("state") << QStringList(stateKey) << true << QStringList(gone);
    QTest::newRow("import and state")
        << QStringList({progressKey, stateKey}) << true << QStringList({began, gone});
    QTest::newRow("state and import")
        << QStringList({stateKey, progressKey}) << true << QStringList({began, gone});
    QTest::newRow("state among others")
        << QStringList({other, stateKey}) << true << QStringList(gone);
    QTest::newRow("import among others")
        << QStringList({other, progressKey}) << true << QStringList(began);
    QTest::newRow("small letters")
        << QStringList({QStringLiteral("state"), QStringLiteral("importProgress")}) << true << data;
    QTest::newRow("part of a name") << QStringList(QStringLiteral("StateX")) << true << data;
    QTest::newRow("state, no account") << QStringList(stateKey) << false << QStringList();
    QTest::newRow("import, no account") << QStringList(progressKey) << false << QStringList();
    QTest::newRow("another, no account") << QStringList(other) << false << data;
}

void ManagerUpdatesTest::updatedNamesDecide()
{
    QFETCH(QStringList, names);
    QFETCH(bool, anAccount);
    QFETCH(QStringList, expected);
    SocialServiceAccount record = importing(running());
    record.setProperty(stateKey, 4);
    if (!anAccount)
        record.setClassName(SocialNetworkPerson::ClassName);
    Q_EMIT provider->dataUpdate({record}, names);
    QCOMPARE(events, expected);
}

void ManagerUpdatesTest::dataGoesThroughUnchanged()
{
    QList<SocialGenericData> received;
    QList<QString> names;
    connect(manager(), &KinletManager::dataUpdate, this,
            [&](const QList<SocialGenericData> &data, const QList<QString> &updated) {
                received = data;
                names = updated;
            });
    const QList<SocialGenericData> sent{importing(running()), SocialGenericData()};
    Q_EMIT provider->dataUpdate(sent, {QStringLiteral("One"), QStringLiteral("Two")});
    QCOMPARE(received.size(), 2);
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(received.at(i).className(), sent.at(i).className());
        QCOMPARE(received.at(i).properties().keys(), sent.at(i).properties().keys());
    }
    QCOMPARE(names, QList<QString>({QStringLiteral("One"), QStringLiteral("Two")}));
    QVERIFY(manager()->accounts().isEmpty());
}

void ManagerUpdatesTest::progressIsReportedBeforeState()
{
    SocialServiceAccount first = importing(running());
    first.setProperty(stateKey, 5);
    SocialServiceAccount second = importing(ended(0, 0, 0), QStringLiteral("other"));
    second.setProperty(stateKey, 4);
    Q_EMIT provider->dataUpdate({first, second}, {stateKey, progressKey});
    QCOMPARE(events,
             QStringList({QStringLiteral("started service account"),
                          QStringLiteral("ended service other 0 0 0"),
                          QStringLiteral("removed account,other")}));
}

void ManagerUpdatesTest::goneAccountsAreReported_data()
{
    QTest::addColumn<QVariant>("state");
    QTest::addColumn<bool>("gone");

    for (int state : {-1, 0, 1, 2, 3, 4, 5, 6, 44})
        QTest::newRow(qPrintable(QString::number(state)))
            << QVariant(state) << (state == 4 || state == 5);
    QTest::newRow("text 4") << QVariant(QStringLiteral("4")) << true;
    QTest::newRow("fraction") << QVariant(4.25) << true;
    QTest::newRow("text") << QVariant(QStringLiteral("gone")) << false;
    QTest::newRow("missing") << QVariant() << false;
    QTest::newRow("list") << QVariant(QVariantList{QVariant(4)}) << false;
}

void ManagerUpdatesTest::goneAccountsAreReported()
{
    QFETCH(QVariant, state);
    QFETCH(bool, gone);
    Q_EMIT provider->dataUpdate({accountIn(accountId, state)}, {stateKey});
    QCOMPARE(events, gone ? QStringList(QStringLiteral("removed account")) : QStringList());
}

void ManagerUpdatesTest::goneAccountsAreReportedTogether()
{
    Q_EMIT provider->dataUpdate({accountIn(QStringLiteral("z"), 5),
                                 accountIn(QStringLiteral("m"), 1),
                                 accountIn(QStringLiteral("b"), 4), accountIn(QString(), 4),
                                 accountIn(QStringLiteral("z"), 4)},
                                {stateKey});
    QCOMPARE(events, QStringList(QStringLiteral("removed z,b,,z")));
}

void ManagerUpdatesTest::stateOfOtherRecordsIsIgnored()
{
    QList<SocialGenericData> records;
    for (const QString &className :
         {SocialNetworkPerson::ClassName, SocialActivity::ClassName, SocialService::ClassName,
          QString(), QStringLiteral("socialserviceaccount")}) {
        SocialGenericData record = accountIn(accountId, 4);
        record.setClassName(className);
        records.append(record);
    }
    Q_EMIT provider->dataUpdate(records, {stateKey});
    QCOMPARE(events, QStringList());
    records.append(accountIn(QStringLiteral("real"), 4));
    Q_EMIT provider->dataUpdate(records, {stateKey});
    QCOMPARE(events, QStringList(QStringLiteral("removed real")));
}

void ManagerUpdatesTest::onlyStateIsDroppedBeforeStartupEnds()
{
    internalsOf(manager())->initializedFlag = false;
    const QSignalSpy persons(manager(),
                             SIGNAL(personsUpdate(QList<SocialNetworkPerson>, QList<QString>)));
    Q_EMIT provider->personsUpdate({}, {});
    QCOMPARE(persons.count(), 1);
    Q_EMIT provider->dataUpdate({}, {});
    QCOMPARE(events, QStringList(QStringLiteral("data")));

    events.clear();
    SocialServiceAccount both = importing(ended(1, 2, 3));
    both.setProperty(stateKey, 4);
    Q_EMIT provider->dataUpdate({both}, {stateKey, progressKey});
    Q_EMIT provider->dataUpdate({accountIn(QStringLiteral("early"), 4)}, {stateKey});
    QCOMPARE(events, QStringList(QStringLiteral("ended service account 1 2 3")));

    events.clear();
    QVERIFY(forceInitialized(manager()));
    Q_EMIT provider->dataUpdate({accountIn(QStringLiteral("late"), 4)}, {stateKey});
    QCOMPARE(events, QStringList(QStringLiteral("removed late")));
}

void ManagerUpdatesTest::goneAccountsStayInTheRegistry()
{
    ScriptedProvider *other = ScriptedProvider::add(QStringLiteral("b"), {accountId});
    Q_EMIT other->dataUpdate({accountIn(accountId, 4)}, {stateKey});
    QCOMPARE(events, QStringList(QStringLiteral("removed account")));
    QCOMPARE(manager()->accounts().size(), 1);
    QVERIFY(!manager()->account(accountId).hasProperty(stateKey));
}

void ManagerUpdatesTest::updatesOfANamelessProviderAreDropped()
{
    ScriptedProvider *nameless = ScriptedProvider::add(QString());
    QVERIFY(nameless);
    for (const QList<QString> &names :
         {QList<QString>(), QList<QString>({progressKey}), QList<QString>({stateKey})}) {
        SocialServiceAccount record = importing(running());
        record.setProperty(stateKey, 4);
        Q_EMIT nameless->dataUpdate({record}, names);
    }
    QCOMPARE(events, QStringList());
    // Persons do not pass the router.
    const QSignalSpy persons(manager(),
                             SIGNAL(personsUpdate(QList<SocialNetworkPerson>, QList<QString>)));
    Q_EMIT nameless->personsUpdate({}, {});
    QCOMPARE(persons.count(), 1);
}

void ManagerUpdatesTest::nameIsReadAtEachUpdate()
{
    const QString key = QStringLiteral("name");
    auto *other = new RenamedProvider(QStringLiteral("b"), {accountId});
    QVERIFY(ScriptedProvider::add(other));
    // Without the key, and with a name that has no text form.
    for (const QVariantMap &description :
         {QVariantMap(), QVariantMap{{QStringLiteral("Name"), key}},
          QVariantMap{{key, QVariantList{key}}}}) {
        other->description = description;
        Q_EMIT other->dataUpdate({}, {});
        Q_EMIT other->dataUpdate({importing(running())}, {progressKey});
        QCOMPARE(events, QStringList());
    }
    // A number has one. Its accounts are looked for under that name.
    other->description = {{key, 7}};
    Q_EMIT other->dataUpdate({importing(running())}, {progressKey});
    QCOMPARE(events, QStringList(QStringLiteral("started service account")));
    QVERIFY(internalsOf(manager())->accountCache.contains(QStringLiteral("7")));
    QVERIFY(!manager()->account(accountId).hasProperty(progressKey));
}

void ManagerUpdatesTest::updatesThatNoProviderSendsAreDropped()
{
    const auto call = [] {
        return QMetaObject::invokeMethod(manager(), "onDataUpdate", Qt::DirectConnection,
                                         Q_ARG(QList<SocialGenericData>, {}),
                                         Q_ARG(QList<QString>, {}));
    };
    QVERIFY(call());
    // A sender, but no provider.
    QVERIFY(connect(this, SIGNAL(strangersUpdate(QList<SocialGenericData>, QList<QString>)),
                    manager(), SLOT(onDataUpdate(QList<SocialGenericData>, QList<QString>))));
    Q_EMIT strangersUpdate({}, {});
    QCOMPARE(events, QStringList());
    Q_EMIT provider->dataUpdate({}, {});
    QCOMPARE(events, QStringList(QStringLiteral("data")));
}

QTEST_GUILESS_MAIN(ManagerUpdatesTest)
#include "managerupdatestest.moc"
