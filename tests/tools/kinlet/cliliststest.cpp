// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cli.h"

#include <QJsonArray>
#include <QTest>

namespace {

const QByteArray alder = json(R"({
    'metaData': {'version': '1.2', 'tags': ['a', 'b']},
    'services': [{'Id': 'wood', 'Description': 'The Wood', 'SocialActions': 7}],
    'accounts': [
        {'Id': 'a1', 'SocialServiceId': 'wood', 'AccountName': 'ada@wood'},
        {'Id': 'a2', 'SocialServiceId': 'wood', 'UserName': 'countess'}],
    'persons': [
        {'Id': 'p2', 'ScreenName': 'bob', 'Status': 'asleep', 'ParentAccount': 'a1'},
        {'Id': 'p1', 'FirstName': 'Ada', 'LastName': 'Lovelace', 'ParentAccount': 'a2'}]
})");

const QByteArray birch = json(R"({
    'services': [{'Id': 'lake', 'Description': 'The Lake', 'SocialActions': 24}],
    'accounts': [{'Id': 'b1', 'SocialServiceId': 'pond', 'Description': 'by the lake'}],
    'persons': [{'Id': 'q1', 'ScreenName': 'Carol'}]
})");

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

}

class CliListsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tables_data();
    void tables();
    void nothingToList_data();
    void nothingToList();
    void jsonRecords();
    void jsonProviders();
    void personsOfOneAccount();
    void filtersReachTheProvider();
    void limitIsForTheWhole();
    void sameAccountIdInTwoProviders();
    void providerWithoutAccountsIsAskedToo();
};

void CliListsTest::tables_data()
{
    QTest::addColumn<QString>("out");
    const auto row = [](const char *command, const char *out) {
        QTest::newRow(command) << QString::fromUtf8(out);
    };
    row("services",
        "NAME      ACTIONS              PROVIDER  ID\n"
        "The Wood  like, comment, post  alder     wood\n"
        "The Lake  share, message       birch     lake\n");
    row("accounts",
        "NAME         SERVICE   PROVIDER  ID\n"
        "ada@wood     The Wood  alder     a1\n"
        "countess     The Wood  alder     a2\n"
        "by the lake  pond      birch     b1\n");
    row("accounts --account a2",
        "NAME      SERVICE   PROVIDER  ID\n"
        "countess  The Wood  alder     a2\n");
    row("accounts --account b1 --account a2",
        "NAME         SERVICE   PROVIDER  ID\n"
        "countess     The Wood  alder     a2\n"
        "by the lake  pond      birch     b1\n");
    row("providers",
        "NAME   DETAILS\n"
        "alder  tags={\"tags\":[\"a\",\"b\"]}, version=1.2\n"
        "birch\n");
    row("persons",
        "NAME          STATUS  ACCOUNT  ID\n"
        "Ada Lovelace          a2       p1\n"
        "bob           asleep  a1       p2\n"
        "Carol                 birch    q1\n");
}

void CliListsTest::tables()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    cli.addProvider(QStringLiteral("birch"), birch);
    const Ended ended = cli.run(words(QTest::currentDataTag()));
    QTEST(ended.out, "out");
    QCOMPARE(ended.err, QString());
    QCOMPARE(ended.code, 0);
}

void CliListsTest::nothingToList_data()
{
    QTest::addColumn<QString>("message");
    QTest::newRow("services") << QStringLiteral("kinlet: no services\n");
    QTest::newRow("accounts") << QStringLiteral("kinlet: no accounts\n");
    QTest::newRow("persons") << QStringLiteral("kinlet: no persons\n");
    QTest::newRow("timeline") << QStringLiteral("kinlet: no activities\n");
}

void CliListsTest::nothingToList()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"));
    const QString command = QLatin1String(QTest::currentDataTag());
    const Ended ended = cli.run({command});
    QCOMPARE(ended.out, QString());
    QTEST(ended.err, "message");
    QCOMPARE(ended.code, 0);

    const Ended quiet = cli.run({command, QStringLiteral("--json")});
    QCOMPARE(quiet.out, QString());
    QCOMPARE(quiet.err, QString());
    QCOMPARE(quiet.code, 0);
}

void CliListsTest::jsonRecords()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    cli.addProvider(QStringLiteral("birch"), birch);
    QCOMPARE(cli.run(words("services --json")).out,
             QStringLiteral(
                 R"({"class":"SocialService","properties":{"Description":"The Wood","Id":"wood",)"
                 R"("SocialActions":7},"provider":"alder"})"
                 "\n"
                 R"({"class":"SocialService","properties":{"Description":"The Lake","Id":"lake",)"
                 R"("SocialActions":24},"provider":"birch"})"
                 "\n"));
    QCOMPARE(cli.run(words("accounts --json --account a2")).out,
             QStringLiteral(R"({"class":"SocialServiceAccount","properties":{"Id":"a2",)"
                            R"("SocialServiceId":"wood","UserName":"countess"},"provider":"alder"})"
                            "\n"));
    const QList<QJsonObject> persons = cli.run(words("persons --json")).objects();
    QCOMPARE(persons.size(), 3);
    QCOMPARE(persons[0][QLatin1String("properties")][QLatin1String("Id")].toString(),
             QStringLiteral("p1"));
    QCOMPARE(persons[2][QLatin1String("provider")].toString(), QStringLiteral("birch"));
}

void CliListsTest::jsonProviders()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    QCOMPARE(cli.run(words("providers --json")).out,
             QStringLiteral(R"({"class":"Provider","properties":{"name":"alder",)"
                            R"("tags":["a","b"],"version":"1.2"},"provider":"alder"})"
                            "\n"));
}

void CliListsTest::personsOfOneAccount()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    cli.addProvider(QStringLiteral("birch"), birch);
    cli.run(words("persons --account a2"));
    const QList<QJsonObject> asked = cli.asked(QStringLiteral("persons"));
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked[0][QLatin1String("provider")].toString(), QStringLiteral("alder"));
    QCOMPARE(asked[0][QLatin1String("accounts")].toArray(), QJsonArray{QStringLiteral("a2")});
}

void CliListsTest::filtersReachTheProvider()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    const Ended ended = cli.run(words("persons --filter Id=^P --filter ScreenName=o"));
    QCOMPARE(ended.out,
             QStringLiteral("NAME  STATUS  ACCOUNT  ID\n"
                            "bob   asleep  a1       p2\n"));
    const QList<QJsonObject> asked = cli.asked(QStringLiteral("persons"));
    QCOMPARE(asked[0][QLatin1String("filter")].toObject(),
             QJsonObject({{QStringLiteral("Id"), QStringLiteral("^P")},
                          {QStringLiteral("ScreenName"), QStringLiteral("o")}}));
}

void CliListsTest::limitIsForTheWhole()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    cli.addProvider(QStringLiteral("birch"), birch);
    QCOMPARE(cli.run(words("persons --limit 2 --json")).objects().size(), 2);
}

void CliListsTest::sameAccountIdInTwoProviders()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"),
                    json("{'accounts': [{'Id': 'x'}], 'persons': [{'Id': 'p'}]}"));
    cli.addProvider(QStringLiteral("birch"),
                    json("{'accounts': [{'Id': 'x'}], 'persons': [{'Id': 'q'}]}"));
    const QList<QJsonObject> persons = cli.run(words("persons --json")).objects();
    QCOMPARE(persons.size(), 2);
    QCOMPARE(persons[0][QLatin1String("provider")].toString(), QStringLiteral("alder"));
    QCOMPARE(persons[1][QLatin1String("provider")].toString(), QStringLiteral("birch"));
    // To post, the id stands for one account.
    QCOMPARE(cli.run(words("post x")).code, 0);
    QCOMPARE(cli.asked(QStringLiteral("post")).size(), 1);
}

void CliListsTest::providerWithoutAccountsIsAskedToo()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), alder);
    cli.addProvider(QStringLiteral("cedar"), json("{'persons': [{'Id': 'z'}]}"));
    QCOMPARE(cli.run(words("persons --json")).objects().size(), 3);
}

QTEST_GUILESS_MAIN(CliListsTest)
#include "cliliststest.moc"
