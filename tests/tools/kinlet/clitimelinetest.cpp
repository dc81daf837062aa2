// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cli.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

namespace {

const QByteArray alder = json(R"({
    'accounts': [{'Id': 'a1'}, {'Id': 'a2'}],
    'persons': [{'Id': 'p1', 'ScreenName': 'Ada'}, {'Id': 'p2', 'ScreenName': 'Bob'},
                {'Id': 'p11', 'ScreenName': 'Not Ada'}],
    'activities': [
        {'Id': 's1', 'OwnerPersonId': 'p1', 'Description': 'Hello\nworld', 'StartTime': 5.5,
         'LikeCount': 2, 'CommentCount': 1, 'IsLikedByMe': true, 'ParentAccount': 'a1'},
        {'Id': 's2', 'OwnerPersonId': 'p2', 'ReceiverPersonId': 'p1', 'Description': 'Old',
         'StartTime': 125, 'ParentAccount': 'a2'},
        {'Id': 's3', 'OwnerPersonId': 'nobody', 'ParentAccount': 'a1'},
        {'Id': 'c1', 'OwnerPersonId': 'p2', 'Description': 'Well said', 'StartTime': 4.5,
         'ParentActivityId': 's1', 'ParentAccount': 'a1', 'LikeCount': 1}],
    'likers': {'s1': ['p2', 'p1']}
})");

const QByteArray birch = json(R"({
    'accounts': [{'Id': 'b1'}],
    'persons': [{'Id': 'p1', 'ScreenName': 'Carol'}],
    'activities': [
        {'Id': 't1', 'OwnerPersonId': 'p1', 'Description': 'Between', 'StartTime': 61,
         'Attachment': {'title': 'A page', 'url': 'https://example.org',
                        'pictures': ['https://example.org/1.png']}}]
})");

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

QStringList idsIn(const Ended &ended)
{
    QStringList ids;
    const QList<QJsonObject> objects = ended.objects();
    for (const QJsonObject &object : objects)
        ids.append(object[QLatin1String("properties")][QLatin1String("Id")].toString());
    return ids;
}

}

class CliTimelineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void mergedForPeople();
    void mergedForPrograms();
    void withoutATimeLast();
    void absoluteTimes();
    void limit();
    void filtersReachTheProviders_data();
    void filtersReachTheProviders();
    void oneAccount();
    void namesAreAskedForOnce();
    void manyNamesInSeveralQuestions();
    void namesThatNobodyKnows();
    void show();
    void showForPrograms();
    void showUnknown();
    void showAmbiguous();
};

void CliTimelineTest::mergedForPeople()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    cli.addProvider(QStringLiteral("birch"), birch);
    const Ended ended = cli.run(words("timeline"));
    QCOMPARE(ended.out,
             QString::fromUtf8("Bob  4 minutes ago · alder/a1\n"
                               "    on s1\n"
                               "    Well said\n"
                               "    1 like\n"
                               "    c1\n"
                               "\n"
                               "Ada  5 minutes ago · alder/a1\n"
                               "    Hello\n"
                               "    world\n"
                               "    2 likes, you like it, 1 comment\n"
                               "    s1\n"
                               "\n"
                               "Carol  1 hour ago · birch\n"
                               "    Between\n"
                               "    A page\n"
                               "    https://example.org\n"
                               "    [picture] a picture https://example.org/1.png\n"
                               "    t1\n"
                               "\n"
                               "Bob to Ada  2 hours ago · alder/a2\n"
                               "    Old\n"
                               "    s2\n"
                               "\n"
                               "nobody  alder/a1\n"
                               "    s3\n"
                               "\n"));
    QCOMPARE(ended.err, QString());
    QCOMPARE(ended.code, 0);
}

void CliTimelineTest::mergedForPrograms()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    cli.addProvider(QStringLiteral("birch"), birch);
    const Ended ended = cli.run(words("timeline --json"));
    QCOMPARE(idsIn(ended),
             QStringList({QStringLiteral("c1"), QStringLiteral("s1"), QStringLiteral("t1"),
                          QStringLiteral("s2"), QStringLiteral("s3")}));
    QCOMPARE(ended.objects()[2][QLatin1String("provider")].toString(), QStringLiteral("birch"));
    // Names are for people.
    QVERIFY(cli.asked(QStringLiteral("persons")).isEmpty());
}

void CliTimelineTest::withoutATimeLast()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), json(R"({'activities': [
        {'Id': 'none1'}, {'Id': 'old', 'StartTime': '1960-01-01T00:00:00Z'}, {'Id': 'none2'},
        {'Id': 'new', 'StartTime': '2026-01-01T00:00:00Z'},
        {'Id': 'new2', 'StartTime': '2026-01-01T00:00:00Z'}]})"));
    QCOMPARE(idsIn(cli.run(words("timeline --json"))).join(QLatin1Char(' ')),
             QStringLiteral("new new2 old none1 none2"));
}

void CliTimelineTest::absoluteTimes()
{
    Cli cli;
    cli.environment.insert(QStringLiteral("TZ"), QStringLiteral("XXX-1"));
    cli.addProvider(QStringLiteral("alder"), json(R"({'activities': [
        {'Id': '1', 'OwnerPersonId': 'p', 'StartTime': '2026-01-01T00:30:00Z'}]})"));
    QCOMPARE(cli.run(words("timeline --absolute")).out,
             QStringLiteral("p  2026-01-01 01:30:00 +01:00\n    1\n\n"));
    QCOMPARE(cli.run(words("timeline")).out, QStringLiteral("p  2026-01-01\n    1\n\n"));
}

void CliTimelineTest::limit()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    cli.addProvider(QStringLiteral("birch"), birch);
    QCOMPARE(idsIn(cli.run(words("timeline --json --limit 3"))).size(), 3);
    const QList<QJsonObject> asked = cli.asked(QStringLiteral("activities"));
    QCOMPARE(asked.size(), 2);
    for (const QJsonObject &request : asked)
        QCOMPARE(request[QLatin1String("limit")].toInt(), 3);
}

void CliTimelineTest::filtersReachTheProviders_data()
{
    QTest::addColumn<QByteArray>("request");
    const auto row = [](const char *options, const char *request) {
        QTest::newRow(options) << json(request);
    };
    row("timeline", "{'timeline': 1, 'type': 1, 'limit': 20, 'before': '', 'after': ''}");
    row("timeline --type comment", "{'type': 2}");
    row("timeline --type any", "{'type': 4}");
    row("timeline --profile p1", "{'timeline': 2, 'persons': ['p1'], 'type': 1}");
    row("timeline --before 2026-03-12T14:30:00Z", "{'before': '2026-03-12T14:30:00Z'}");
    row("timeline --after 2026-03-12", "{'after': '2026-03-12T00:00:00Z'}");
}

void CliTimelineTest::filtersReachTheProviders()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    QCOMPARE(cli.run(words(QTest::currentDataTag())).code, 0);
    const QList<QJsonObject> asked = cli.asked(QStringLiteral("activities"));
    QCOMPARE(asked.size(), 1);
    QFETCH(QByteArray, request);
    const QJsonObject expected = QJsonDocument::fromJson(request).object();
    QVERIFY(!expected.isEmpty());
    for (auto it = expected.begin(); it != expected.end(); ++it)
        QCOMPARE(asked[0][it.key()], it.value());
}

void CliTimelineTest::oneAccount()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    cli.addProvider(QStringLiteral("birch"), birch);
    QCOMPARE(idsIn(cli.run(words("timeline --json --account a2"))),
             QStringList(QStringLiteral("s2")));
    QCOMPARE(idsIn(cli.run(words("timeline --json --account a2 --account b1"))),
             QStringList({QStringLiteral("t1"), QStringLiteral("s2")}));
    QCOMPARE(idsIn(cli.run(words("timeline --json --account all"))).size(), 5);
}

void CliTimelineTest::namesAreAskedForOnce()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    cli.run(words("timeline"));
    const QList<QJsonObject> asked = cli.asked(QStringLiteral("persons"));
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked[0][QLatin1String("filter")][QLatin1String("Id")].toString(),
             QStringLiteral("p2|p1|nobody"));
}

void CliTimelineTest::manyNamesInSeveralQuestions()
{
    QJsonArray activities;
    QJsonArray persons;
    for (int i = 0; i < 60; ++i) {
        const QString id = QStringLiteral("https://example.org/users/%1(x)+").arg(i, 10);
        activities.append(
            QJsonObject{{QStringLiteral("Id"), i}, {QStringLiteral("OwnerPersonId"), id}});
        persons.append(QJsonObject{{QStringLiteral("Id"), id},
                                   {QStringLiteral("ScreenName"), QStringLiteral("N%1").arg(i)}});
    }
    activities.append(
        QJsonObject{{QStringLiteral("Id"), QStringLiteral("long")},
                    {QStringLiteral("OwnerPersonId"), QString(1001, QLatin1Char('x'))}});
    Cli cli;
    cli.addProvider(QStringLiteral("alder"),
                    QJsonDocument(QJsonObject{{QStringLiteral("activities"), activities},
                                              {QStringLiteral("persons"), persons}})
                        .toJson());
    const Ended ended = cli.run(words("timeline --limit 100"));
    QCOMPARE(ended.code, 0);
    for (int i = 0; i < 60; ++i)
        QVERIFY(ended.out.contains(QStringLiteral("N%1\n    %1\n").arg(i)));
    const QList<QJsonObject> asked = cli.asked(QStringLiteral("persons"));
    QVERIFY(asked.size() > 1);
    for (const QJsonObject &request : asked)
        QVERIFY(request[QLatin1String("filter")][QLatin1String("Id")].toString().size() <= 1000);
}

void CliTimelineTest::namesThatNobodyKnows()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), json(R"({
        'activities': [{'Id': '1', 'OwnerPersonId': 'p'}, {'Id': '2'}],
        'errors': {'persons': [[1, '']]}})"));
    const Ended ended = cli.run(words("timeline"));
    QCOMPARE(ended.out, QStringLiteral("p\n    1\n\nsomebody\n    2\n\n"));
    QCOMPARE(ended.err, QString());
    QCOMPARE(ended.code, 0);
}

void CliTimelineTest::show()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    cli.addProvider(QStringLiteral("birch"), birch);
    const Ended ended = cli.run(words("show s1"));
    QCOMPARE(ended.out,
             QString::fromUtf8("Ada  5 minutes ago · alder/a1\n"
                               "    Hello\n"
                               "    world\n"
                               "    2 likes, you like it, 1 comment\n"
                               "    s1\n"
                               "\n"
                               "Bob  4 minutes ago · alder/a1\n"
                               "    on s1\n"
                               "    Well said\n"
                               "    1 like\n"
                               "    c1\n"
                               "\n"
                               "Liked by\n"
                               "NAME  STATUS  ACCOUNT  ID\n"
                               "Ada           alder    p1\n"
                               "Bob           alder    p2\n"));
    QCOMPARE(ended.err, QString());
    QCOMPARE(ended.code, 0);
}

void CliTimelineTest::showForPrograms()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    QCOMPARE(idsIn(cli.run(words("show s1 --json"))).join(QLatin1Char(' ')),
             QStringLiteral("s1 c1 p1 p2"));
}

void CliTimelineTest::showUnknown()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    const Ended ended = cli.run(words("show s9"));
    QCOMPARE(ended.out, QString());
    QCOMPARE(ended.err, QStringLiteral("kinlet: no activity with the id \"s9\" was found\n"));
    QCOMPARE(ended.code, 1);
}

void CliTimelineTest::showAmbiguous()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    cli.addProvider(QStringLiteral("birch"), json(R"({'accounts': [{'Id': 'b1', 'UserName': 'me'}],
        'activities': [{'Id': 's1', 'Description': 'Mine'}]})"));
    const Ended ended = cli.run(words("show s1"));
    QCOMPARE(ended.out, QString());
    QVERIFY(ended.err.contains(QStringLiteral("--account a1")));
    QVERIFY(ended.err.contains(QStringLiteral("--account b1   me")));
    QCOMPARE(ended.code, 2);
    QVERIFY(cli.run(words("show s1 --account b1")).out.contains(QStringLiteral("Mine")));
}

QTEST_GUILESS_MAIN(CliTimelineTest)
#include "clitimelinetest.moc"
