// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// What the provider answers to an application, through the manager and the real plug-in file.

#include "journalsandbox.h"

#include "records/valuetypes.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

#include <pwd.h>
#include <unistd.h>

using Errors = QList<KinletError>;

class JournalRequestsTest : public QObject {
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
    void postStatus();
    void postComment();
    void postRefused_data();
    void postRefused();
    void likeAndUnlike();
    void likeUnknown();
    void likers();
    void likersUnknown();
    void foreignAccount();
    void unknownKind();
    void pushOfOwnChanges();
    void staysAfterRestart();
    void keptPrivate();

private:
    QString post(const QString &text, const QString &parent = QString());
    SocialActivity activity(const QString &id);
    void like(const QString &id, bool on = true);

    QScopedPointer<JournalSandbox> sandbox;
};

QString JournalRequestsTest::post(const QString &text, const QString &parent)
{
    SocialPostActivitiesRequest request(
        parent.isNull() ? SocialActivity::Status : SocialActivity::Comment, text, parent);
    if (!perform(request) || !request.errors().isEmpty() || request.results().size() != 1)
        qFatal("Cannot post");
    return request.results().constFirst().id();
}

SocialActivity JournalRequestsTest::activity(const QString &id)
{
    SocialGetActivitiesRequest request;
    request.setActivityIdsFilter({id});
    return perform(request) ? request.activities().value(0) : SocialActivity();
}

void JournalRequestsTest::like(const QString &id, bool on)
{
    SocialLikeActivityRequest request(id, on);
    QVERIFY(perform(request));
    QCOMPARE(request.errors().size(), 0);
}

void JournalRequestsTest::startUp()
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

void JournalRequestsTest::service()
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

void JournalRequestsTest::account()
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

void JournalRequestsTest::accountKeepsItsName()
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

void JournalRequestsTest::accountsOfAnotherService()
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

void JournalRequestsTest::ownPerson()
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

void JournalRequestsTest::personsMatchEveryPattern_data()
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
    QTest::newRow("case matters") << QStringList{QStringLiteral("ScreenName=ADA")} << QStringList();
}

void JournalRequestsTest::personsMatchEveryPattern()
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

void JournalRequestsTest::patternThatIsNotValid()
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

void JournalRequestsTest::postStatus()
{
    const QDateTime before = QDateTime::currentDateTimeUtc();
    SocialPostActivitiesRequest request(SocialActivity::Status,
                                        QStringLiteral("Grüße 🦢\nzwei"));
    QVERIFY(perform(request));
    QCOMPARE(request.errors().size(), 0);
    QCOMPARE(request.results().size(), 1);
    const QString id = request.results().constFirst().id();
    QVERIFY(id.startsWith(QLatin1String("local:")));

    const SocialActivity stored = activity(id);
    QCOMPARE(stored.properties(), request.results().constFirst().properties());
    QCOMPARE(stored.description(), QStringLiteral("Grüße 🦢\nzwei"));
    QCOMPARE(stored.parentAccount(), QStringLiteral("local"));
    QCOMPARE(stored.variantProperty(SocialActivity::ActivityType),
             QVariant(int(SocialActivity::Status)));
    QCOMPARE(stored.property(SocialActivity::OwnerPersonId), QStringLiteral("local:me"));
    QCOMPARE(stored.variantProperty(SocialActivity::CommentCount), QVariant(0));
    QCOMPARE(stored.variantProperty(SocialActivity::LikeCount), QVariant(0));
    QCOMPARE(stored.variantProperty(SocialActivity::IsLikedByMe), QVariant(false));
    QVERIFY(!stored.hasProperty(SocialActivity::ParentActivityId));
    QVERIFY(!stored.hasProperty(SocialActivity::Attachment));
    const QDateTime time = stored.variantProperty(SocialActivity::StartTime).toDateTime();
    QCOMPARE(time.timeSpec(), Qt::UTC);
    QVERIFY(time >= before && time <= QDateTime::currentDateTimeUtc());
}

void JournalRequestsTest::postComment()
{
    const QString status = post(QStringLiteral("status"));
    const QString comment = post(QStringLiteral("comment"), status);
    const SocialActivity stored = activity(comment);
    QCOMPARE(stored.variantProperty(SocialActivity::ActivityType),
             QVariant(int(SocialActivity::Comment)));
    QCOMPARE(stored.property(SocialActivity::ParentActivityId), status);
    QCOMPARE(activity(status).variantProperty(SocialActivity::CommentCount), QVariant(1));

    const QString answer = post(QStringLiteral("answer"), comment);
    QCOMPARE(activity(answer).property(SocialActivity::ParentActivityId), comment);
    QCOMPARE(activity(status).variantProperty(SocialActivity::CommentCount), QVariant(1));
}

void JournalRequestsTest::postRefused_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("reason");

    const QString none;
    const QString text = QStringLiteral("text");
    const int invalid = KinletError::InvalidRequest;
    const int unsupported = KinletError::UnsupportedRequest;
    QTest::newRow("no text") << int(SocialActivity::Status) << none << none << invalid
                             << QStringLiteral("empty");
    QTest::newRow("blank text") << int(SocialActivity::Status) << QStringLiteral(" \n\t ") << none
                                << invalid << QStringLiteral("empty");
    QTest::newRow("comment without text")
        << int(SocialActivity::Comment) << none << QStringLiteral("id") << invalid
        << QStringLiteral("empty");
    QTest::newRow("comment on nothing") << int(SocialActivity::Comment) << text << none << invalid
                                        << QStringLiteral("which activity");
    QTest::newRow("comment on an unknown activity")
        << int(SocialActivity::Comment) << text << QStringLiteral("local:nowhere") << invalid
        << QStringLiteral("local:nowhere");
    QTest::newRow("status on an activity")
        << int(SocialActivity::Status) << text << QStringLiteral("local:some") << invalid
        << QStringLiteral("local:some");
    QTest::newRow("message") << int(SocialActivity::Message) << text << none << unsupported
                             << QStringLiteral("type 3");
    QTest::newRow("any type") << int(SocialActivity::AnyType) << text << none << unsupported
                              << QStringLiteral("type 4");
}

void JournalRequestsTest::postRefused()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    QFETCH(QString, parent);
    QFETCH(int, error);
    QFETCH(QString, reason);

    SocialPostActivitiesRequest request(SocialActivity::Type(type), text, parent);
    QVERIFY(perform(request));
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QCOMPARE(request.results().size(), 0);
    QCOMPARE(request.errors().size(), 1);
    QCOMPARE(int(request.errors().constFirst().type()), error);
    QVERIFY2(request.errors().constFirst().description().contains(reason),
             qPrintable(request.errors().constFirst().description()));
    SocialGetActivitiesRequest all;
    QVERIFY(perform(all));
    QCOMPARE(all.results().size(), 0);
}

void JournalRequestsTest::likeAndUnlike()
{
    const QString id = post(QStringLiteral("status"));
    // Twice each: the second time changes nothing and is no error.
    for (const bool on : {true, true, false, false}) {
        like(id, on);
        const SocialActivity stored = activity(id);
        QCOMPARE(stored.variantProperty(SocialActivity::LikeCount), QVariant(on ? 1 : 0));
        QCOMPARE(stored.variantProperty(SocialActivity::IsLikedByMe), QVariant(on));
    }
}

void JournalRequestsTest::likeUnknown()
{
    for (const bool on : {true, false}) {
        SocialLikeActivityRequest request(QStringLiteral("local:nowhere"), on);
        QVERIFY(perform(request));
        QCOMPARE(request.errors().size(), 1);
        QCOMPARE(request.errors().constFirst().type(), KinletError::InvalidRequest);
        QVERIFY(
            request.errors().constFirst().description().contains(QLatin1String("local:nowhere")));
    }
}

void JournalRequestsTest::likers()
{
    const QString liked = post(QStringLiteral("liked"));
    const QString other = post(QStringLiteral("other"));
    like(liked);
    SocialGetLikersRequest request(liked);
    QVERIFY(perform(request));
    QCOMPARE(request.errors().size(), 0);
    QCOMPARE(idsOf(request.results()), QStringList{QStringLiteral("local:me")});
    SocialGetLikersRequest none(other);
    QVERIFY(perform(none));
    QCOMPARE(none.errors().size(), 0);
    QCOMPARE(none.persons().size(), 0);
    SocialGetLikersRequest filtered(liked);
    filtered.setPropertyFilter(QStringLiteral("Id"), QRegExp(QStringLiteral("nobody")));
    QVERIFY(perform(filtered));
    QCOMPARE(filtered.persons().size(), 0);
}

void JournalRequestsTest::likersUnknown()
{
    SocialGetLikersRequest request(QStringLiteral("local:nowhere"));
    QVERIFY(perform(request));
    QCOMPARE(request.errors().size(), 1);
    QCOMPARE(request.errors().constFirst().type(), KinletError::InvalidRequest);
}

void JournalRequestsTest::foreignAccount()
{
    SocialPostActivitiesRequest request(SocialActivity::Status, QStringLiteral("text"));
    request.setPerformOnAccountsFilter({QStringLiteral("local"), QStringLiteral("other")});
    QVERIFY(performDirectly(request));
    QCOMPARE(request.errors().size(), 1);
    QCOMPARE(request.errors().constFirst().type(), KinletError::InvalidRequest);
    QVERIFY(request.errors().constFirst().description().contains(QLatin1String("other")));
    SocialGetActivitiesRequest all;
    all.setPerformOnAccountsFilter({QStringLiteral("local")});
    QVERIFY(performDirectly(all));
    QCOMPARE(all.errors().size(), 0);
    QCOMPARE(all.results().size(), 0);
}

void JournalRequestsTest::unknownKind()
{
    SocialDataRequest request;
    QVERIFY(performDirectly(request));
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QCOMPARE(request.errors().size(), 1);
    QCOMPARE(request.errors().constFirst().type(), KinletError::UnsupportedRequest);
    QVERIFY(request.errors().constFirst().description().contains(QLatin1String("kind 0")));
}

void JournalRequestsTest::pushOfOwnChanges()
{
    QStringList told;
    connect(KinletManager::instance(), &KinletManager::dataUpdate, this,
            [&told](const QList<SocialGenericData> &data, const QList<QString> &properties) {
                const QString what = properties.contains(SocialActivity::Description)
                    ? QStringLiteral("new")
                    : QStringLiteral("counted");
                for (const SocialGenericData &record : data)
                    told.append(QStringLiteral("%1 %2 %3")
                                    .arg(what, record.description(),
                                         record.property(SocialActivity::LikeCount)));
            });
    const QString id = post(QStringLiteral("one"));
    QTRY_COMPARE_WITH_TIMEOUT(told.size(), 1, 20000);
    like(id);
    QTRY_COMPARE_WITH_TIMEOUT(told.size(), 2, 20000);
    // Nothing to tell: it is liked already.
    like(id);
    post(QStringLiteral("two"));
    QTRY_VERIFY_WITH_TIMEOUT(told.contains(QStringLiteral("new two 0")), 20000);
    const QStringList expected{QStringLiteral("new one 0"), QStringLiteral("counted one 1"),
                               QStringLiteral("new two 0")};
    QCOMPARE(told, expected);
}

void JournalRequestsTest::staysAfterRestart()
{
    const QString id = post(QStringLiteral("to stay"));
    like(id);
    const QMap<QString, QVariant> before = activity(id).properties();
    KinletManager::cleanupInstance();
    QCOMPARE(activity(id).properties(), before);
    SocialGetPersonsRequest persons;
    QVERIFY(perform(persons));
    QCOMPARE(persons.persons().size(), 1);
}

void JournalRequestsTest::keptPrivate()
{
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
        | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    KinletManager::instance();
    QVERIFY(!(QFile::permissions(sandbox->folder()) & others));

    // Also in a folder that is open to everybody.
    sandbox.reset(new JournalSandbox);
    QVERIFY(QDir().mkpath(sandbox->folder()));
    post(QStringLiteral("text"));
    QVERIFY(!(QFile::permissions(sandbox->databasePath()) & others));
    QVERIFY(!(QFile::permissions(sandbox->databasePath() + QStringLiteral("-wal")) & others));
}

QTEST_GUILESS_MAIN(JournalRequestsTest)

#include "journalrequeststest.moc"
