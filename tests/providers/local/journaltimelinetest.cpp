// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Which activities a request gets, and in which order.

#include "journalsandbox.h"

#include "activityquery.h"
#include "importwriter.h"
#include "records/valuetypes.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"
#include "requests/timelinerequestfactory.h"
#include "store.h"

#include <QTest>

#include <functional>

namespace {

QDateTime minute(int minute)
{
    return QDateTime(QDate(2026, 1, 1), QTime(0, minute), Qt::UTC);
}

ImportedActivity imported(const char *id, const char *author, int time)
{
    ImportedActivity activity;
    activity.id = QLatin1String(id);
    activity.authorId = QLatin1String(author);
    activity.text = QLatin1String("text of ") + activity.id;
    activity.published = minute(time);
    return activity;
}

QString words(const QStringList &ids)
{
    return ids.join(QLatin1Char(' '));
}

}

Q_DECLARE_METATYPE(std::function<void(SocialGetActivitiesRequest &)>)

class JournalTimelineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { sandbox.reset(); }

    void filters_data();
    void filters();
    void homepage();
    void profile();
    void manyIds();
    void boost();
    void boostOfUnknown();
    void media();
    void indexes_data();
    void indexes();

private:
    SocialActivity activity(const char *id);

    QScopedPointer<JournalSandbox> sandbox;
};

void JournalTimelineTest::initTestCase()
{
    sandbox.reset(new JournalSandbox);
    Store store;
    {
        Transaction transaction(store.database());
        ImportWriter writer(store.database());
        ImportedPerson ada;
        ada.id = QStringLiteral("a");
        ada.screenName = QStringLiteral("ada");
        ada.name = QStringLiteral("Ada L");
        writer.person(ada);
        writer.activity(imported("s0", "a", 0));
        writer.activity(imported("s1", "a", 1));
        writer.activity(imported("s2", "b", 2));
        ImportedActivity comment = imported("c1", "b", 3);
        comment.kind = ImportedActivity::Comment;
        comment.inReplyTo = QStringLiteral("s1");
        writer.activity(comment);
        writer.activity(imported("s3", "a", 4));
        writer.activity(imported("s4", "b", 4));
        writer.activity(imported("s5", "a", 4));
        ImportedActivity boost = imported("b1", "b", 5);
        boost.kind = ImportedActivity::Boost;
        boost.boostOf = QStringLiteral("s1");
        boost.text.clear();
        writer.activity(boost);
        boost = imported("b2", "c", 0);
        boost.kind = ImportedActivity::Boost;
        boost.boostOf = QStringLiteral("http://elsewhere/1");
        boost.text.clear();
        writer.activity(boost);
        ImportedActivity picture = imported("s6", "a", 6);
        picture.url = QStringLiteral("http://x/s6");
        Media media;
        media.kind = Media::Image;
        media.firstText = QStringLiteral("http://x/p.png");
        media.secondText = QStringLiteral("http://x/small.png");
        media.thirdText = QStringLiteral("A \"swan\"");
        picture.media = {media, Media()};
        writer.activity(picture);
        QVERIFY(!writer.failure());
        transaction.commit();
    }
    SocialPostActivitiesRequest post(SocialActivity::Status, QStringLiteral("mine"));
    QVERIFY(perform(post));
    store.database().run(QStringLiteral("UPDATE activities SET id = 'm1', time = ? WHERE id = ?"),
                         {minute(7).toMSecsSinceEpoch(), post.results().constFirst().id()});
    SocialLikeActivityRequest like(QStringLiteral("s2"));
    QVERIFY(perform(like));
    QCOMPARE(like.errors().size(), 0);
}

void JournalTimelineTest::filters_data()
{
    using Request = SocialGetActivitiesRequest;
    using Set = std::function<void(Request &)>;
    QTest::addColumn<Set>("set");
    QTest::addColumn<QString>("ids");

    const auto row = [](const char *name, const char *ids, const Set &set) {
        QTest::newRow(name) << set << QString::fromLatin1(ids);
    };
    const auto list = [](const char *text) {
        return QString::fromLatin1(text).split(QLatin1Char(' '));
    };
    row("the 10 newest first, later stored first at equal times", "m1 s6 b1 s5 s4 s3 c1 s2 s1 b2",
        [](Request &) {});
    row("limit", "m1 s6 b1 s5", [](Request &r) { r.setLimit(4); });
    row("limit among equal times is stable", "m1 s6 b1 s5 s4", [](Request &r) { r.setLimit(5); });
    row("no limit at 0", "m1 s6 b1 s5 s4 s3 c1 s2 s1 b2 s0", [](Request &r) { r.setLimit(0); });
    row("no limit below 0", "m1 s6 b1 s5 s4 s3 c1 s2 s1 b2 s0", [](Request &r) { r.setLimit(-7); });
    row("one person", "s6 s5 s3 s1 s0", [&](Request &r) { r.setPersonsFilter(list("a")); });
    row("two persons", "m1 b1 s4 c1 s2",
        [&](Request &r) { r.setPersonsFilter(list("local:me b")); });
    row("newest of two persons", "s6 b1 s5", [&](Request &r) {
        r.setPersonsFilter(list("a b"));
        r.setLimit(3);
    });
    row("newest of two persons before", "s2 s1", [&](Request &r) {
        r.setPersonsFilter(list("a b"));
        r.setBefore(minute(3));
        r.setLimit(2);
    });
    row("all of two persons", "s6 b1 s5 s4 s3 c1 s2 s1 s0", [&](Request &r) {
        r.setPersonsFilter(list("a b"));
        r.setLimit(0);
    });
    row("all favourites", "s2", [](Request &r) {
        r.setTimelineType(KinletTimeline::Favorites);
        r.setLimit(0);
    });
    row("unknown person", "", [&](Request &r) { r.setPersonsFilter(list("nobody")); });
    row("ids", "s3 s1", [&](Request &r) { r.setActivityIdsFilter(list("s1 s3 nowhere")); });
    row("unknown id", "", [&](Request &r) { r.setActivityIdsFilter(list("nowhere")); });
    row("comments on an activity", "c1",
        [](Request &r) { r.setParentActivityIdFilter(QStringLiteral("s1")); });
    row("comments on an activity without", "",
        [](Request &r) { r.setParentActivityIdFilter(QStringLiteral("s2")); });
    row("statuses", "m1 s6 b1 s5 s4 s3 s2 s1 b2 s0",
        [](Request &r) { r.setActivityFilter(SocialActivity::Status); });
    row("comments", "c1", [](Request &r) { r.setActivityFilter(SocialActivity::Comment); });
    row("messages", "", [](Request &r) { r.setActivityFilter(SocialActivity::Message); });
    row("unknown type", "", [](Request &r) { r.setActivityFilter(SocialActivity::UnknownType); });
    row("before is exclusive", "c1 s2 s1 b2 s0", [](Request &r) { r.setBefore(minute(4)); });
    row("after is exclusive", "m1 s6 b1", [](Request &r) { r.setAfter(minute(4)); });
    row("before in another time zone", "c1 s2 s1 b2 s0",
        [](Request &r) { r.setBefore(minute(4).toOffsetFromUtc(7200)); });
    row("between", "s5 s4 s3 c1", [](Request &r) {
        r.setAfter(minute(2));
        r.setBefore(minute(5));
    });
    row("own timeline", "m1", [](Request &r) { r.setTimelineType(KinletTimeline::Personal); });
    row("favourites", "s2", [](Request &r) { r.setTimelineType(KinletTimeline::Favorites); });
    row("private", "", [](Request &r) { r.setTimelineType(KinletTimeline::Private); });
    row("custom", "", [](Request &r) { r.setTimelineType(KinletTimeline::Custom); });
    row("all filters together", "s5", [&](Request &r) {
        r.setPersonsFilter(list("a b"));
        r.setActivityIdsFilter(list("s1 s3 s4 s5 s6"));
        r.setActivityFilter(SocialActivity::Status);
        r.setAfter(minute(1));
        r.setBefore(minute(6));
        r.setTimelineType(KinletTimeline::Homepage);
        r.setLimit(1);
    });
}

void JournalTimelineTest::filters()
{
    using Set = std::function<void(SocialGetActivitiesRequest &)>;
    QFETCH(Set, set);
    QFETCH(QString, ids);

    SocialGetActivitiesRequest request;
    set(request);
    QVERIFY(perform(request));
    QCOMPARE(request.errors().size(), 0);
    QCOMPARE(words(idsOf(request.results())), ids);
}

void JournalTimelineTest::homepage()
{
    const QScopedPointer<SocialGetActivitiesRequest> request(
        TimelineRequestFactory::createHomepageTimelineRequest());
    QVERIFY(perform(*request));
    QCOMPARE(words(idsOf(request->results())), QStringLiteral("m1 s6 b1 s5 s4 s3 s2 s1 b2 s0"));
}

void JournalTimelineTest::profile()
{
    const QScopedPointer<SocialGetActivitiesRequest> request(
        TimelineRequestFactory::createProfileTimelineRequest({QStringLiteral("b")}));
    QVERIFY(perform(*request));
    QCOMPARE(words(idsOf(request->results())), QStringLiteral("b1 s4 s2"));
}

// More ids than SQLite takes values.
void JournalTimelineTest::manyIds()
{
    QStringList ids{QStringLiteral("s1")};
    for (int i = 0; i < 50000; ++i)
        ids.append(QStringLiteral("\"unknown\" %1").arg(i));
    SocialGetActivitiesRequest request;
    request.setActivityIdsFilter(ids);
    QVERIFY(perform(request));
    QCOMPARE(request.errors().size(), 0);
    QCOMPARE(words(idsOf(request.results())), QStringLiteral("s1"));
}

SocialActivity JournalTimelineTest::activity(const char *id)
{
    SocialGetActivitiesRequest request;
    request.setActivityIdsFilter({QString::fromLatin1(id)});
    return perform(request) ? request.activities().value(0) : SocialActivity();
}

void JournalTimelineTest::boost()
{
    const SocialActivity boost = activity("b1");
    QCOMPARE(boost.description(), QStringLiteral("text of s1"));
    QCOMPARE(boost.property(SocialActivity::OwnerPersonId), QStringLiteral("b"));
    QVERIFY(!boost.hasProperty(SocialActivity::ParentActivityId));
    const auto attachment =
        boost.variantProperty(SocialActivity::Attachment).value<SocialActivityAttachment>();
    QCOMPARE(attachment.secondText, QStringLiteral("Ada L"));
    QCOMPARE(attachment.thirdText, QStringLiteral("text of s1"));
    // No page of it is known, so its id has to do.
    QCOMPARE(attachment.fourthText, QStringLiteral("s1"));
    QCOMPARE(attachment.media.size(), 0);
}

void JournalTimelineTest::boostOfUnknown()
{
    const SocialActivity boost = activity("b2");
    QCOMPARE(boost.description(), QStringLiteral("http://elsewhere/1"));
    const auto attachment =
        boost.variantProperty(SocialActivity::Attachment).value<SocialActivityAttachment>();
    QCOMPARE(attachment.fourthText, QStringLiteral("http://elsewhere/1"));
    QCOMPARE(attachment.secondText, QString());
}

void JournalTimelineTest::media()
{
    const QVariant value = activity("s6").variantProperty(SocialActivity::Attachment);
    const QList<Media> media = value.value<SocialActivityAttachment>().media;
    QCOMPARE(media.size(), 2);
    QCOMPARE(media.at(0).kind, int(Media::Image));
    QCOMPARE(media.at(0).firstText, QStringLiteral("http://x/p.png"));
    QCOMPARE(media.at(0).secondText, QStringLiteral("http://x/small.png"));
    QCOMPARE(media.at(0).thirdText, QStringLiteral("A \"swan\""));
    QCOMPARE(media.at(1).kind, int(Media::UnknownKind));
    QVERIFY(!activity("s1").hasProperty(SocialActivity::Attachment));
}

void JournalTimelineTest::indexes_data()
{
    filters_data();
}

// No question reads the whole of a table.
void JournalTimelineTest::indexes()
{
    using Set = std::function<void(SocialGetActivitiesRequest &)>;
    QFETCH(Set, set);

    SocialGetActivitiesRequest request;
    set(request);
    const ActivityQuery query(request);
    Store store;
    QSqlQuery plan =
        store.database().run(QStringLiteral("EXPLAIN QUERY PLAN ") + query.sql, query.values);
    int steps = 0;
    while (plan.next()) {
        const QString step = plan.value(3).toString();
        ++steps;
        QVERIFY2(!step.startsWith(QLatin1String("SCAN")) || step.contains(QLatin1String("INDEX"))
                     || step.contains(QLatin1String("json_each")),
                 qPrintable(step));
    }
    QVERIFY(steps > 0);
}

QTEST_GUILESS_MAIN(JournalTimelineTest)

#include "journaltimelinetest.moc"
