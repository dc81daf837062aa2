// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// What the provider answers to an application, through the manager and the real plug-in file.

#include "journalsandbox.h"

#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QTest>

using Errors = QList<KinletError>;

class JournalRequestsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { sandbox.reset(new JournalSandbox); }
    void cleanup() { sandbox.reset(); }

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
    like(id, false);
    QTRY_COMPARE_WITH_TIMEOUT(told.size(), 4, 20000);
    post(QStringLiteral("comment"), id);
    QTRY_COMPARE_WITH_TIMEOUT(told.size(), 6, 20000);
    const QStringList expected{QStringLiteral("new one 0"),     QStringLiteral("counted one 1"),
                               QStringLiteral("new two 0"),     QStringLiteral("counted one 0"),
                               QStringLiteral("new comment 0"), QStringLiteral("counted one 0")};
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

QTEST_GUILESS_MAIN(JournalRequestsTest)

#include "journalrequeststest.moc"
