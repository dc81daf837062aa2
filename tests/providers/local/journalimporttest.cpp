// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// What becomes of documents in the import folder.

#include "journalimportfixture.h"

#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QTimer>

class JournalImportTest : public JournalImportFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { startAnew(); }
    void cleanup() { sandbox.reset(); }

    void samples();
    void secondImport();
    void badDocument_data();
    void badDocument();
    void mergedPerson();
    void editedStatus();
    void ownIdsStayOwn();
    void likesAndBoosts();
    void newLikeOfKnownStatus();
    void newCommentOnKnownStatus();
    void postDuringImport();
    void manyActivities();
};

void JournalImportTest::samples()
{
    listen();
    sandbox->drop(QStringLiteral("actor.json"), JournalSandbox::sample("ada/actor.json"));
    QVERIFY(importsEnd(1));
    const QStringList expected{QStringLiteral("started local local"),
                               QStringLiteral("person Ada L"),
                               QStringLiteral("ended local local 1 0 0")};
    QCOMPARE(heard, expected);
    heard.clear();

    sandbox->drop(QStringLiteral("outbox.json"), JournalSandbox::sample("ada/outbox.json"));
    QVERIFY(importsEnd(2));
    QCOMPARE(heard.constFirst(), QStringLiteral("started local local"));
    QCOMPARE(heard.constLast(), QStringLiteral("ended local local 0 0 0"));
    QVERIFY(heard.contains(QStringLiteral("activity Day three: the starter lives!")));
    QCOMPARE(allTexts().size(), 20);
    QCOMPARE(heard.size(), 22);

    SocialGetActivitiesRequest request;
    request.setPersonsFilter({QStringLiteral("http://localhost:8001/ada")});
    request.setLimit(1);
    QVERIFY(perform(request));
    const SocialActivity newest = request.activities().constFirst();
    QCOMPARE(newest.description(), QStringLiteral("Day three: the starter lives!"));
    QCOMPARE(newest.variantProperty(SocialActivity::StartTime).toDateTime(),
             QDateTime(QDate(2026, 11, 21), QTime(0, 37, 4), Qt::UTC));
    QCOMPARE(newest.parentAccount(), QStringLiteral("local"));
    QCOMPARE(filesIn(sandbox->importPath()), QStringList());
    QCOMPARE(filesIn(sandbox->importPath(QStringLiteral("done"))),
             QStringList() << QStringLiteral("actor.json") << QStringLiteral("outbox.json"));
}

void JournalImportTest::secondImport()
{
    listen();
    for (const char *name : {"ada/actor.json", "ada/outbox.json"})
        sandbox->drop(QString::fromLatin1(name).section(QLatin1Char('/'), 1),
                      JournalSandbox::sample(name));
    QVERIFY(importsEnd(2));
    const QStringList before = allTexts();
    heard.clear();
    for (const char *name : {"ada/actor.json", "ada/outbox.json"})
        sandbox->drop(QString::fromLatin1(name).section(QLatin1Char('/'), 1),
                      JournalSandbox::sample(name));
    QVERIFY(importsEnd(4));
    const QStringList expected{
        QStringLiteral("started local local"), QStringLiteral("ended local local 0 0 0"),
        QStringLiteral("started local local"), QStringLiteral("ended local local 0 0 0")};
    QCOMPARE(heard, expected);
    QCOMPARE(allTexts(), before);
}

void JournalImportTest::badDocument_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("not JSON") << QByteArray("Dear diary");
    QTest::newRow("binary") << QByteArray("\0\1\2\xff\xfe", 5);
    QTest::newRow("ends too early")
        << collection({note("http://x/1", "http://x/a", "one")}).chopped(2);
    QTest::newRow("bad after good items")
        << collection({note("http://x/1", "http://x/a", "one"), "{\"type\": \"Note\" oops}"});
}

void JournalImportTest::badDocument()
{
    QFETCH(QByteArray, content);

    listen();
    sandbox->drop(QStringLiteral("bad.json"), content);
    QVERIFY(importsEnd(1));
    QCOMPARE(heard.size(), 3);
    QCOMPARE(heard.at(0), QStringLiteral("started local local"));
    QVERIFY2(heard.at(1).startsWith(QLatin1String("error local import bad.json: ")),
             qPrintable(heard.at(1)));
    QCOMPARE(heard.at(2), QStringLiteral("ended local local 0 0 0"));
    QCOMPARE(allTexts(), QStringList());
    const QString failed = sandbox->importPath(QStringLiteral("failed/"));
    QCOMPARE(JournalSandbox::read(failed + QStringLiteral("bad.json")), content);
    const QString reason =
        QString::fromUtf8(JournalSandbox::read(failed + QStringLiteral("bad.json.reason.txt")));
    QCOMPARE(reason.count(QLatin1Char('\n')), 1);
    QCOMPARE(QStringLiteral("error local import bad.json: ") + reason.chopped(1), heard.at(1));
    QCOMPARE(filesIn(sandbox->importPath()), QStringList());
}

void JournalImportTest::mergedPerson()
{
    listen();
    sandbox->drop(QStringLiteral("1.json"), JournalSandbox::sample("ada/actor.json"));
    QVERIFY(importsEnd(1));
    sandbox->drop(QStringLiteral("2.json"), actor("http://localhost:8001/ada", "Ada Lovelace"));
    QVERIFY(importsEnd(2));
    QCOMPARE(heard.mid(4),
             QStringList() << QStringLiteral("person Ada Lovelace")
                           << QStringLiteral("ended local local 0 0 1"));
    SocialGetPersonsRequest request;
    request.setPropertyFilter(SocialNetworkPerson::Id, QRegExp(QStringLiteral("ada$")));
    QVERIFY(perform(request));
    const SocialNetworkPerson person = request.persons().constFirst();
    QCOMPARE(person.property(SocialNetworkPerson::FirstName), QStringLiteral("Ada"));
    QCOMPARE(person.property(SocialNetworkPerson::LastName), QStringLiteral("Lovelace"));
    // What the second document does not say stays.
    QCOMPARE(person.property(SocialNetworkPerson::ScreenName), QStringLiteral("ada"));
    QCOMPARE(person.property(SocialNetworkPerson::AboutMe), QStringLiteral("hi"));
    QCOMPARE(person.variantProperty(SocialNetworkPerson::AvatarList),
             QVariant(QVariantList{QStringLiteral("http://localhost:8001/susie.png")}));
}

void JournalImportTest::editedStatus()
{
    listen();
    sandbox->drop(QStringLiteral("1.json"),
                  collection({note("http://x/1", "http://x/a", "first words"),
                              note("http://x/2", "http://x/a", "other")}));
    QVERIFY(importsEnd(1));
    heard.clear();
    sandbox->drop(QStringLiteral("2.json"),
                  collection({note("http://x/1", "http://x/a", "better words"),
                              note("http://x/2", "http://x/b", "not by its author")}));
    QVERIFY(importsEnd(2));
    QCOMPARE(heard,
             QStringList() << QStringLiteral("started local local")
                           << QStringLiteral("activity better words")
                           << QStringLiteral("ended local local 0 0 0"));
    QStringList texts = allTexts();
    texts.sort();
    QCOMPARE(texts, QStringList() << QStringLiteral("better words") << QStringLiteral("other"));
}

void JournalImportTest::ownIdsStayOwn()
{
    listen();
    SocialPostActivitiesRequest post(SocialActivity::Status, QStringLiteral("mine"));
    QVERIFY(perform(post));
    const QByteArray id = post.results().constFirst().id().toUtf8();
    sandbox->drop(QStringLiteral("1.json"), actor("local:me", "Somebody else"));
    sandbox->drop(QStringLiteral("2.json"),
                  collection({note(id, "local:me", "forged"), note(id, "http://x/a", "forged"),
                              note("http://x/1", "local:me", "forged"), like("local:me", id),
                              like("http://x/a", id)}));
    QVERIFY(importsEnd(2));
    QCOMPARE(allTexts(), QStringList{QStringLiteral("mine")});
    QVERIFY(heard.filter(QStringLiteral("Somebody else")).isEmpty());
    SocialGetLikersRequest likers(QString::fromUtf8(id));
    QVERIFY(perform(likers));
    QCOMPARE(idsOf(likers.results()), QStringList{QStringLiteral("http://x/a")});
}

void JournalImportTest::likesAndBoosts()
{
    listen();
    const QByteArray boost =
        "{\"type\": \"Announce\", \"id\": \"http://x/boost\", \"actor\": \"http://x/b\", "
        "\"object\": \"http://x/1\", \"published\": \"2026-01-03T00:00:00Z\"}";
    sandbox->drop(QStringLiteral("1.json"),
                  collection({like("http://x/b", "http://x/1"), boost,
                              note("http://x/1", "http://x/a", "liked and boosted")}));
    QVERIFY(importsEnd(1));
    SocialGetActivitiesRequest request;
    QVERIFY(perform(request));
    QCOMPARE(idsOf(request.results()),
             QStringList() << QStringLiteral("http://x/boost") << QStringLiteral("http://x/1"));
    const SocialActivity status = request.activities().at(1);
    QCOMPARE(status.variantProperty(SocialActivity::LikeCount), QVariant(1));
    QCOMPARE(status.variantProperty(SocialActivity::IsLikedByMe), QVariant(false));
    QCOMPARE(request.activities().at(0).description(), QStringLiteral("liked and boosted"));
    // Nothing is known about the liker but the id.
    SocialGetLikersRequest likers(QStringLiteral("http://x/1"));
    QVERIFY(perform(likers));
    QCOMPARE(likers.persons().size(), 1);
    QCOMPARE(likers.persons().constFirst().id(), QStringLiteral("http://x/b"));
    QCOMPARE(likers.persons().constFirst().property(SocialNetworkPerson::ScreenName),
             QStringLiteral("http://x/b"));
}

// Who likes what is known is new, and is told; a like that was known already is not.
void JournalImportTest::newLikeOfKnownStatus()
{
    listen();
    sandbox->drop(QStringLiteral("1.json"),
                  collection({note("http://x/1", "http://x/a", "status")}));
    QVERIFY(importsEnd(1));
    for (int count = 2; count <= 3; ++count) {
        heard.clear();
        QByteArray later = like("http://x/c", "http://x/1");
        later.chop(1);
        later += ", \"published\": \"2026-01-03T00:00:00Z\"}";
        sandbox->drop(QStringLiteral("2.json"),
                      collection({later, like("http://x/b", "http://x/1")}));
        QVERIFY(importsEnd(count));
        QCOMPARE(heard.filter(QStringLiteral("counted status")).size(), count == 2 ? 1 : 0);
        QCOMPARE(heard.size(), count == 2 ? 3 : 2);
    }
    // In the order in which they came to like it.
    SocialGetLikersRequest likers(QStringLiteral("http://x/1"));
    QVERIFY(perform(likers));
    QCOMPARE(idsOf(likers.results()),
             QStringList() << QStringLiteral("http://x/b") << QStringLiteral("http://x/c"));
}

void JournalImportTest::newCommentOnKnownStatus()
{
    listen();
    sandbox->drop(QStringLiteral("1.json"),
                  collection({note("http://x/1", "http://x/a", "status")}));
    QVERIFY(importsEnd(1));
    heard.clear();
    QByteArray comment = note("http://x/2", "http://x/b", "comment");
    comment.chop(1);
    comment += ", \"inReplyTo\": \"http://x/1\"}";
    sandbox->drop(QStringLiteral("2.json"), collection({comment}));
    QVERIFY(importsEnd(2));
    QCOMPARE(heard,
             QStringList() << QStringLiteral("started local local")
                           << QStringLiteral("activity comment") << QStringLiteral("counted status")
                           << QStringLiteral("ended local local 0 0 0"));
}

// It waits for the import, and stays although the document turns out bad.
void JournalImportTest::postDuringImport()
{
    listen();
    QByteArrayList items;
    for (int i = 0; i < 3000; ++i)
        items.append(note("http://x/" + QByteArray::number(i), "http://x/a", "text"));
    sandbox->drop(QStringLiteral("1.json"), collection(items).chopped(1));
    QVERIFY(QTest::qWaitFor([this] { return !heard.isEmpty(); }, 20000));
    QCOMPARE(ended, 0);
    SocialPostActivitiesRequest post(SocialActivity::Status, QStringLiteral("mine"));
    QVERIFY(perform(post));
    QCOMPARE(post.errors().size(), 0);
    QVERIFY(importsEnd(1));
    QCOMPARE(allTexts(), QStringList{QStringLiteral("mine")});
}

void JournalImportTest::manyActivities()
{
    const int count = 100000;
    QByteArrayList items;
    for (int i = 0; i < count; ++i)
        items.append(note("http://x/" + QByteArray::number(i), "http://x/a", "text"));
    KinletManager *const manager = KinletManager::instance();
    int pushed = 0;
    int largestPush = 0;
    connect(manager, &KinletManager::dataUpdate, this, [&](const QList<SocialGenericData> &data) {
        pushed += int(data.size());
        largestPush = qMax(largestPush, int(data.size()));
    });
    int turns = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&turns] { ++turns; });
    connect(manager, &KinletManager::importStarted, &timer, [&timer] { timer.start(1); });
    connect(manager, &KinletManager::importEnded, this, [this] { ++ended; });
    sandbox->drop(QStringLiteral("1.json"), collection(items));
    QVERIFY(importsEnd(1));
    QCOMPARE(pushed, count);
    // The application goes on meanwhile.
    QVERIFY2(turns > 20, qPrintable(QString::number(turns)));
    QVERIFY2(largestPush <= 1000, qPrintable(QString::number(largestPush)));
    QCOMPARE(allTexts().size(), count);
}

QTEST_GUILESS_MAIN(JournalImportTest)

#include "journalimporttest.moc"
