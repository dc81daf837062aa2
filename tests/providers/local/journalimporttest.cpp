// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// What becomes of documents in the import folder.

#include "journalsandbox.h"

#include "records/valuetypes.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QTest>
#include <QTimer>

namespace {

QByteArray collection(const QByteArrayList &items)
{
    return "{\"@context\": \"https://www.w3.org/ns/activitystreams\", \"id\": \"http://x/outbox\", "
           "\"type\": \"OrderedCollection\", \"orderedItems\": ["
        + items.join(",\n") + "]}";
}

QByteArray note(const QByteArray &id, const QByteArray &author, const QByteArray &text)
{
    return "{\"type\": \"Note\", \"id\": \"" + id + "\", \"attributedTo\": \"" + author
        + "\", \"content\": \"" + text + "\", \"published\": \"2026-01-02T03:04:05Z\"}";
}

QByteArray actor(const QByteArray &id, const QByteArray &name)
{
    return "{\"@context\": \"https://www.w3.org/ns/activitystreams\", \"type\": \"Person\", "
           "\"id\": \""
        + id + "\", \"name\": \"" + name + "\"}";
}

QByteArray like(const QByteArray &person, const QByteArray &activity)
{
    return "{\"type\": \"Like\", \"id\": \"" + activity + "#" + person + "\", \"actor\": \""
        + person + "\", \"object\": \"" + activity + "\"}";
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

}

class JournalImportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void samples();
    void waitingDocuments();
    void secondImport();
    void badDocument_data();
    void badDocument();
    void badAmongGood();
    void onlyVisibleFiles();
    void takenNames();
    void mergedPerson();
    void editedStatus();
    void ownIdsStayOwn();
    void likesAndBoosts();
    void newCommentOnKnownStatus();
    void postDuringImport();
    void manyActivities();

private:
    void listen();
    bool importsEnd(int count);
    QStringList allTexts();

    QScopedPointer<JournalSandbox> sandbox;
    // Everything that applications hear, in order.
    QStringList heard;
    int ended = 0;
};

void JournalImportTest::init()
{
    sandbox.reset(new JournalSandbox);
    heard.clear();
    ended = 0;
}

void JournalImportTest::cleanup()
{
    sandbox.reset();
}

void JournalImportTest::listen()
{
    KinletManager *const manager = KinletManager::instance();
    connect(manager, &KinletManager::importStarted, this,
            [this](const QString &service, const QString &account) {
                heard.append(QStringLiteral("started %1 %2").arg(service, account));
            });
    connect(
        manager, &KinletManager::importEnded, this,
        [this](const QString &service, const QString &account, int added, int removed, int merged) {
            heard.append(QStringLiteral("ended %1 %2 %3 %4 %5")
                             .arg(service, account)
                             .arg(added)
                             .arg(removed)
                             .arg(merged));
            ++ended;
        });
    connect(manager, &KinletManager::personsUpdate, this,
            [this](const QList<SocialNetworkPerson> &persons, const QList<QString> &properties) {
                for (const SocialNetworkPerson &person : persons)
                    heard.append(QStringLiteral("person ") + person.description());
                QVERIFY(properties.contains(SocialNetworkPerson::ScreenName));
            });
    connect(manager, &KinletManager::dataUpdate, this,
            [this](const QList<SocialGenericData> &data, const QList<QString> &properties) {
                const bool counted = !properties.contains(SocialActivity::Description);
                for (const SocialGenericData &record : data)
                    heard.append(
                        (counted ? QStringLiteral("counted ") : QStringLiteral("activity "))
                        + record.description());
            });
    auto *provider = manager->provider(QStringLiteral("local")).data();
    connect(provider, &KinletInterface::error, this,
            [this](const QString &name, const QString &error, const QString &message) {
                heard.append(QStringLiteral("error %1 %2 %3").arg(name, error, message));
            });
}

bool JournalImportTest::importsEnd(int count)
{
    return QTest::qWaitFor([this, count] { return ended >= count; }, 600000);
}

QStringList JournalImportTest::allTexts()
{
    SocialGetActivitiesRequest request;
    request.setLimit(0);
    return perform(request) ? textsOf(request.results()) : QStringList();
}

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

// Dropped while nobody was there to read them.
void JournalImportTest::waitingDocuments()
{
    sandbox->drop(QStringLiteral("2.json"), JournalSandbox::sample("ben/actor.json"));
    sandbox->drop(QStringLiteral("1.json"), JournalSandbox::sample("ada/actor.json"));
    listen();
    QVERIFY(importsEnd(2));
    const QStringList expected{QStringLiteral("started local local"),
                               QStringLiteral("person Ada L"),
                               QStringLiteral("ended local local 1 0 0"),
                               QStringLiteral("started local local"),
                               QStringLiteral("person ben"),
                               QStringLiteral("ended local local 1 0 0")};
    QCOMPARE(heard, expected);
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

void JournalImportTest::badAmongGood()
{
    sandbox->drop(QStringLiteral("1.json"), JournalSandbox::sample("ada/actor.json"));
    sandbox->drop(QStringLiteral("2.json"), "bad");
    sandbox->drop(QStringLiteral("3.json"), JournalSandbox::sample("ben/actor.json"));
    listen();
    QVERIFY(importsEnd(3));
    QCOMPARE(heard.filter(QStringLiteral("person")).size(), 2);
    QCOMPARE(heard.filter(QStringLiteral("error")).size(), 1);
    SocialPostActivitiesRequest post(SocialActivity::Status, QStringLiteral("text"));
    QVERIFY(perform(post));
    QCOMPARE(post.errors().size(), 0);
}

void JournalImportTest::onlyVisibleFiles()
{
    const QByteArray content = JournalSandbox::sample("ben/actor.json");
    JournalSandbox::write(sandbox->importPath(QStringLiteral(".hidden.json")), content);
    JournalSandbox::write(sandbox->importPath(QStringLiteral("folder/inside.json")), content);
    JournalSandbox::write(sandbox->dataHome() + QStringLiteral("/elsewhere.json"), content);
    QVERIFY(QFile::link(sandbox->dataHome() + QStringLiteral("/elsewhere.json"),
                        sandbox->importPath(QStringLiteral("a-link.json"))));
    sandbox->drop(QStringLiteral("z.json"), JournalSandbox::sample("ada/actor.json"));
    listen();
    QVERIFY(importsEnd(1));
    QCOMPARE(heard.filter(QStringLiteral("person")), QStringList{QStringLiteral("person Ada L")});
    QVERIFY(QFile::exists(sandbox->importPath(QStringLiteral(".hidden.json"))));
    QVERIFY(QFile::exists(sandbox->importPath(QStringLiteral("folder/inside.json"))));
    QVERIFY(QFile::exists(sandbox->importPath(QStringLiteral("a-link.json"))));
}

void JournalImportTest::takenNames()
{
    listen();
    int count = 0;
    for (const char *content : {"bad", "bad", "bad"}) {
        sandbox->drop(QStringLiteral("a.b.json"), content);
        QVERIFY(importsEnd(++count));
        sandbox->drop(QStringLiteral("plain"), JournalSandbox::sample("ada/actor.json"));
        QVERIFY(importsEnd(++count));
    }
    const QStringList failed{QStringLiteral("a.b-2.json"), QStringLiteral("a.b-2.json.reason.txt"),
                             QStringLiteral("a.b-3.json"), QStringLiteral("a.b-3.json.reason.txt"),
                             QStringLiteral("a.b.json"),   QStringLiteral("a.b.json.reason.txt")};
    QCOMPARE(filesIn(sandbox->importPath(QStringLiteral("failed"))), failed);
    const QStringList done{QStringLiteral("plain"), QStringLiteral("plain-2"),
                           QStringLiteral("plain-3")};
    QCOMPARE(filesIn(sandbox->importPath(QStringLiteral("done"))), done);
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
