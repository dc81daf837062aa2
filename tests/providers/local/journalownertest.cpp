// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Whose journal it is: its service, its account and its persons.

#include "journalsandbox.h"

#include "records/valuetypes.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

#include <pwd.h>
#include <unistd.h>

class JournalOwnerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { sandbox.reset(new JournalSandbox); }
    void cleanup() { sandbox.reset(); }

    void startUp();
    void service();
    void account();
    void accountKeepsItsName();
    void accountsOfAnotherService();
    void ownPerson();
    void personsMatchEveryPattern_data();
    void personsMatchEveryPattern();
    void patternThatIsNotValid();
    void patternThatMayTakeMinutes();
    void keptPrivate();

private:
    QScopedPointer<JournalSandbox> sandbox;
};

void JournalOwnerTest::startUp()
{
    KinletManager *const manager = KinletManager::instance();
    QVERIFY(manager->isInitialized());
    QVERIFY(manager->hasProvider(QStringLiteral("local")));
    QCOMPARE(manager->services().size(), 1);
    QCOMPARE(manager->accounts().size(), 1);
    QCOMPARE(manager->providerNameFromAccountId(QStringLiteral("local")), QStringLiteral("local"));
    QCOMPARE(manager->serviceFromAccountId(QStringLiteral("local")).id(), QStringLiteral("local"));
    QVERIFY(QFile::exists(sandbox->databasePath()));
    QVERIFY(QDir(sandbox->importPath()).exists());
}

void JournalOwnerTest::service()
{
    GetAggregatedServicesRequest request;
    QVERIFY(perform(request));
    QCOMPARE(request.errors().size(), 0);
    QCOMPARE(request.availableServices().size(), 1);
    const SocialService service = request.availableServices().constFirst();
    QCOMPARE(service.id(), QStringLiteral("local"));
    QVERIFY(!service.description().isEmpty());
    QCOMPARE(service.property(SocialService::ProviderName), QStringLiteral("local"));
    QVERIFY(!service.property(SocialService::Icon).isEmpty());
    QCOMPARE(service.variantProperty(SocialService::CanDataBeCached), QVariant(true));
    QCOMPARE(service.variantProperty(SocialService::ForceAutomerged), QVariant(false));
    const int actions = KinletAction::Like | KinletAction::Comment | KinletAction::Post;
    QCOMPARE(service.variantProperty(SocialService::SocialActions), QVariant(actions));
    int described = 0;
    const QVariantList texts = service.variantProperty(SocialService::ActionIconTexts).toList();
    for (const QVariant &value : texts) {
        const auto text = value.value<SocialActionIconTexts>();
        described |= text.kind;
        QVERIFY(!text.firstText.isEmpty());
        QVERIFY(!text.secondText.isEmpty());
    }
    QCOMPARE(described, actions);
}

void JournalOwnerTest::account()
{
    const passwd *user = getpwuid(getuid());
    const QString login = QString::fromUtf8(user->pw_name);
    const QString fullName =
        QString::fromUtf8(user->pw_gecos).section(QLatin1Char(','), 0, 0).trimmed();
    SocialGetAccountsRequest request;
    QVERIFY(perform(request));
    QCOMPARE(request.errors().size(), 0);
    QCOMPARE(request.accounts().size(), 1);
    const SocialServiceAccount account = request.accounts().constFirst();
    QCOMPARE(account.id(), QStringLiteral("local"));
    QCOMPARE(account.property(SocialServiceAccount::AccountName),
             fullName.isEmpty() ? login : fullName);
    QCOMPARE(account.property(SocialServiceAccount::UserName), login);
    QCOMPARE(account.property(SocialServiceAccount::SocialServiceId), QStringLiteral("local"));
    QCOMPARE(account.property(SocialServiceAccount::ProfileId), QStringLiteral("local:me"));
    QVERIFY(account.hasProperty(SocialServiceAccount::Avatar));
    const int state = account.variantProperty(SocialServiceAccount::State).toInt();
    QVERIFY(state != 0 && state != 4 && state != 5);
}

void JournalOwnerTest::accountKeepsItsName()
{
    KinletManager::instance();
    KinletManager::cleanupInstance();
    {
        QSqlDatabase file = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
        file.setDatabaseName(sandbox->databasePath());
        QVERIFY(file.open());
        QVERIFY(QSqlQuery(file).exec(
            QStringLiteral("UPDATE persons SET name = 'Grace H' WHERE id = 'local:me'")));
    }
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
    const SocialServiceAccount account =
        KinletManager::instance()->account(QStringLiteral("local"));
    QCOMPARE(account.property(SocialServiceAccount::AccountName), QStringLiteral("Grace H"));
}

void JournalOwnerTest::accountsOfAnotherService()
{
    SocialGetAccountsRequest other;
    other.setServiceFilter({QStringLiteral("elsewhere")});
    QVERIFY(performDirectly(other));
    QCOMPARE(other.accounts().size(), 0);
    SocialGetAccountsRequest own;
    own.setServiceFilter({QStringLiteral("elsewhere"), QStringLiteral("local")});
    QVERIFY(performDirectly(own));
    QCOMPARE(own.accounts().size(), 1);
}

void JournalOwnerTest::ownPerson()
{
    SocialGetPersonsRequest request;
    QVERIFY(perform(request));
    QCOMPARE(request.errors().size(), 0);
    QCOMPARE(request.persons().size(), 1);
    const SocialNetworkPerson person = request.persons().constFirst();
    QCOMPARE(person.id(), QStringLiteral("local:me"));
    QCOMPARE(person.parentAccount(), QStringLiteral("local"));
    QCOMPARE(person.property(SocialNetworkPerson::ScreenName),
             QString::fromUtf8(getpwuid(getuid())->pw_name));
}

void JournalOwnerTest::personsMatchEveryPattern_data()
{
    QTest::addColumn<QStringList>("filters");
    QTest::addColumn<QStringList>("ids");

    const QString ada = QStringLiteral("http://localhost:8001/ada");
    const QString ben = QStringLiteral("http://localhost:8001/ben");
    QTest::newRow("a part of the text")
        << QStringList{QStringLiteral("ScreenName=d")} << QStringList{ada};
    QTest::newRow("anchored") << QStringList{QStringLiteral("ScreenName=^be")} << QStringList{ben};
    QTest::newRow("several match")
        << QStringList{QStringLiteral("Id=^http:")} << QStringList{ada, ben};
    QTest::newRow("both patterns match")
        << QStringList{QStringLiteral("Id=^http:"), QStringLiteral("ScreenName=n$")}
        << QStringList{ben};
    QTest::newRow("one pattern does not")
        << QStringList{QStringLiteral("Id=ada"), QStringLiteral("ScreenName=ben")} << QStringList();
    QTest::newRow("nobody has the property")
        << QStringList{QStringLiteral("PhoneNumber=.*")} << QStringList();
    QTest::newRow("one person has the property")
        << QStringList{QStringLiteral("LastName=.*")} << QStringList{ada};
    QTest::newRow("all are of the account") << QStringList{QStringLiteral("ParentAccount=^local$")}
                                            << QStringList{ada, ben, QStringLiteral("local:me")};
    QTest::newRow("about oneself")
        << QStringList{QStringLiteral("AboutMe=^hi$")} << QStringList{ada};
    QTest::newRow("a name is made of what there is")
        << QStringList{QStringLiteral("Description=^ben$")} << QStringList{ben};
    QTest::newRow("case matters") << QStringList{QStringLiteral("ScreenName=ADA")} << QStringList();
}

void JournalOwnerTest::personsMatchEveryPattern()
{
    QFETCH(QStringList, filters);
    QFETCH(QStringList, ids);

    sandbox->drop(QStringLiteral("1.json"), JournalSandbox::sample("ada/actor.json"));
    sandbox->drop(QStringLiteral("2.json"), JournalSandbox::sample("ben/actor.json"));
    QSignalSpy ended(KinletManager::instance(),
                     SIGNAL(importEnded(QString, QString, int, int, int)));
    QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 2, 20000);

    SocialGetPersonsRequest request;
    for (const QString &filter : filters)
        request.setPropertyFilter(filter.section(QLatin1Char('='), 0, 0),
                                  QRegExp(filter.section(QLatin1Char('='), 1)));
    QVERIFY(perform(request));
    QCOMPARE(request.errors().size(), 0);
    QStringList found = idsOf(request.results());
    found.sort();
    QCOMPARE(found, ids);
}

void JournalOwnerTest::patternThatIsNotValid()
{
    SocialGetPersonsRequest request;
    request.setPropertyFilter(QStringLiteral("ScreenName"), QRegExp(QStringLiteral("(a")));
    QVERIFY(perform(request));
    QCOMPARE(request.persons().size(), 0);
    QCOMPARE(request.errors().size(), 1);
    QCOMPARE(request.errors().constFirst().type(), KinletError::InvalidRequest);
    QVERIFY(request.errors().constFirst().description().contains(QLatin1String("(a")));
    QVERIFY(request.errors().constFirst().description().contains(QLatin1String("ScreenName")));
}

void JournalOwnerTest::patternThatMayTakeMinutes()
{
    QJsonObject actor = QJsonDocument::fromJson(JournalSandbox::sample("ada/actor.json")).object();
    actor.insert(QStringLiteral("summary"), QString(100000, QLatin1Char('a')));
    sandbox->drop(QStringLiteral("1.json"), QJsonDocument(actor).toJson());
    QSignalSpy ended(KinletManager::instance(),
                     SIGNAL(importEnded(QString, QString, int, int, int)));
    QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, 20000);

    const QString pattern = QStringLiteral("(a*)*b");
    SocialGetPersonsRequest request;
    request.setPropertyFilter(SocialNetworkPerson::AboutMe, QRegExp(pattern));
    QVERIFY(perform(request));
    QCOMPARE(request.errors().size(), 1);
    const KinletError &error = request.errors().constFirst();
    QCOMPARE(error.type(), KinletError::InvalidRequest);
    for (const QString &part : {pattern, SocialNetworkPerson::AboutMe, QStringLiteral("100000")})
        QVERIFY2(error.description().contains(part), qPrintable(error.description()));

    // Others are looked for in the same text, and that one in others.
    SocialGetPersonsRequest other;
    other.setPropertyFilter(SocialNetworkPerson::AboutMe, QRegExp(QStringLiteral("^a{10}a?")));
    other.setPropertyFilter(SocialNetworkPerson::ScreenName, QRegExp(QStringLiteral("(a*)*d")));
    QVERIFY(perform(other));
    QCOMPARE(other.errors().size(), 0);
    QCOMPARE(other.persons().size(), 1);
}

void JournalOwnerTest::keptPrivate()
{
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
        | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    KinletManager::instance();
    QVERIFY(!(QFile::permissions(sandbox->folder()) & others));

    // Also in a folder that is open to everybody.
    sandbox.reset(new JournalSandbox);
    QVERIFY(QDir().mkpath(sandbox->folder()));
    SocialPostActivitiesRequest post(SocialActivity::Status, QStringLiteral("text"));
    QVERIFY(perform(post));
    QVERIFY(!(QFile::permissions(sandbox->databasePath()) & others));
    QVERIFY(!(QFile::permissions(sandbox->databasePath() + QStringLiteral("-wal")) & others));
}

QTEST_GUILESS_MAIN(JournalOwnerTest)

#include "journalownertest.moc"
