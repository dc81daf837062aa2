// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cli.h"

#include <QJsonArray>
#include <QTest>

namespace {

const QByteArray twoAccounts = json(R"({
    'accounts': [{'Id': 'a1', 'UserName': 'ada'}, {'Id': 'a2'}],
    'persons': [{'Id': 'p1', 'ScreenName': 'Ada'}, {'Id': 'p2', 'ScreenName': 'Bob'}],
    'likers': {'s1': ['p1', 'p2']},
    'activities': [
        {'Id': 's1', 'ParentAccount': 'a1'},
        {'Id': 's2', 'ParentAccount': 'a2'},
        {'Id': 'free'},
        {'Id': 'shared', 'ParentAccount': 'a1'}]
})");

const QByteArray oneAccount = json(R"({
    'accounts': [{'Id': 'b1'}],
    'activities': [{'Id': 't1'}, {'Id': 'shared', 'ParentAccount': 'b1'}],
    'errors': {'activities': [[5, 'no such activity']]}
})");

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

QStringList accountsIn(const QList<QJsonObject> &requests)
{
    QStringList accounts;
    for (const QJsonObject &request : requests) {
        const QJsonArray ids = request[QLatin1String("accounts")].toArray();
        for (const auto &id : ids)
            accounts.append(id.toString());
    }
    return accounts;
}

}

class CliActionsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void postWithTheOnlyAccount();
    void postNeedsAChoice();
    void postWithAChosenAccount_data();
    void postWithAChosenAccount();
    void postWithoutAccounts();
    void postFromStandardInput_data();
    void postFromStandardInput();
    void postAsksForAChoiceWhenAProviderIsLeftOut();
    void unknownAccount();
    void errorsOfSomeAccounts();
    void comment();
    void likeFindsTheAccount_data();
    void likeFindsTheAccount();
    void ambiguousIdIsLeftAlone();
    void unlike();
    void chosenAccountIsNotLookedFor();
    void errorsWhileLooking();
    void likers();
    void likersTakeFilters();
};

void CliActionsTest::postWithTheOnlyAccount()
{
    Cli cli;
    cli.addProvider(QStringLiteral("birch"), oneAccount);
    const Ended ended = cli.run({QStringLiteral("post"), QString::fromUtf8("Grüße, \U0001F600")});
    QCOMPARE(ended.out, QStringLiteral("Posted with b1.\n  posted-1\n"));
    QCOMPARE(ended.err, QString());
    QCOMPARE(ended.code, 0);
    const QList<QJsonObject> asked = cli.asked(QStringLiteral("post"));
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked[0][QLatin1String("text")].toString(), QString::fromUtf8("Grüße, \U0001F600"));
    QCOMPARE(asked[0][QLatin1String("type")].toInt(), 1);
    QCOMPARE(accountsIn(asked), QStringList(QStringLiteral("b1")));

    QCOMPARE(cli.run(words("post --json x")).out,
             QStringLiteral(R"({"class":"SocialActivity","properties":{"Id":"posted-1"},)"
                            R"("provider":"birch"})"
                            "\n"));
}

void CliActionsTest::postNeedsAChoice()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), twoAccounts);
    const Ended ended = cli.run(words("post Hello"));
    QCOMPARE(ended.out, QString());
    QCOMPARE(ended.err,
             QStringLiteral("kinlet: a post goes to one account; choose it with --account, or say "
                            "--account all:\n"
                            "kinlet: --account a1   ada\n"
                            "kinlet: --account a2\n"));
    QCOMPARE(ended.code, 2);
    QVERIFY(cli.asked(QStringLiteral("post")).isEmpty());
}

void CliActionsTest::postWithAChosenAccount_data()
{
    QTest::addColumn<QStringList>("accounts");
    const auto row = [](const char *command, const char *accounts) {
        QTest::newRow(command) << words(accounts);
    };
    row("post x --account a2", "a2");
    row("post x --account b1 --account a1", "b1 a1");
    row("post x --account a1 --account a1", "a1");
    row("post x --account all", "a1 a2 b1");
}

void CliActionsTest::postWithAChosenAccount()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), twoAccounts);
    cli.addProvider(QStringLiteral("birch"), oneAccount);
    const Ended ended = cli.run(words(QTest::currentDataTag()));
    QCOMPARE(ended.code, 0);
    QFETCH(QStringList, accounts);
    QCOMPARE(accountsIn(cli.asked(QStringLiteral("post"))), accounts);
    for (const QString &account : qAsConst(accounts))
        QVERIFY(ended.out.contains(QStringLiteral("Posted with %1.\n").arg(account)));
}

void CliActionsTest::postWithoutAccounts()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"));
    const Ended ended = cli.run(words("post x"));
    QCOMPARE(ended.err, QStringLiteral("kinlet: there is no account to post with\n"));
    QCOMPARE(ended.code, 1);
}

void CliActionsTest::postFromStandardInput_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QString>("text");
    QTest::newRow("one line") << QByteArray("Hello\n") << QStringLiteral("Hello");
    QTest::newRow("without an end") << QByteArray("Hello") << QStringLiteral("Hello");
    QTest::newRow("several lines")
        << QByteArray("One\n\nTwo\n\n") << QStringLiteral("One\n\nTwo\n");
    QTest::newRow("UTF-8") << QByteArray("\xe4\xbd\xa0\n") << QString::fromUtf8("\u4f60");
    QTest::newRow("empty") << QByteArray() << QString();
}

void CliActionsTest::postFromStandardInput()
{
    Cli cli;
    cli.addProvider(QStringLiteral("birch"), oneAccount);
    QFETCH(QByteArray, input);
    QCOMPARE(cli.run(words("post -"), input).code, 0);
    QTEST(cli.asked(QStringLiteral("post"))[0][QLatin1String("text")].toString(), "text");

    QCOMPARE(cli.run(words("comment t1 - --account b1"), input).code, 0);
    QTEST(cli.asked(QStringLiteral("post"))[1][QLatin1String("text")].toString(), "text");
}

void CliActionsTest::postAsksForAChoiceWhenAProviderIsLeftOut()
{
    Cli cli;
    cli.addProvider(QStringLiteral("birch"), oneAccount);
    cli.addProvider(QStringLiteral("cedar"), json("{'silent': ['accounts']}"));
    const Ended ended = cli.run(words("post x --timeout 0.1"));
    QVERIFY(ended.err.contains(QStringLiteral("cedar did not start")));
    QVERIFY(ended.err.contains(QStringLiteral("--account b1")));
    QCOMPARE(ended.code, 2);
    QVERIFY(cli.asked(QStringLiteral("post")).isEmpty());
}

void CliActionsTest::unknownAccount()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), json("{'accounts': [{'Id': 'first'}]}"));
    const Ended near = cli.run(words("post x --account frist"));
    QCOMPARE(near.err,
             QStringLiteral("kinlet: unknown account \"frist\"; did you mean \"first\"?\n"));
    QCOMPARE(near.code, 2);
    const Ended far = cli.run(words("timeline --account qqqqqqqqqq"));
    QCOMPARE(far.err,
             QStringLiteral("kinlet: unknown account \"qqqqqqqqqq\"; the accounts are first\n"));
    QCOMPARE(far.code, 2);
}

void CliActionsTest::errorsOfSomeAccounts()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), json(R"({'accounts': [{'Id': 'a1'}],
        'errors': {'post': [[2, 'too long'], [3, '']]}})"));
    cli.addProvider(QStringLiteral("birch"), oneAccount);
    const Ended ended = cli.run(words("post x --account all"));
    QCOMPARE(ended.out, QStringLiteral("Posted with b1.\n  posted-1\n"));
    QCOMPARE(ended.err,
             QStringLiteral("kinlet: alder: PostFailed: too long\n"
                            "kinlet: alder: AuthenticationFailed\n"));
    QCOMPARE(ended.code, 1);
}

void CliActionsTest::comment()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), twoAccounts);
    const Ended ended =
        cli.run({QStringLiteral("comment"), QStringLiteral("s2"), QStringLiteral("Well said")});
    QCOMPARE(ended.out, QStringLiteral("Commented with a2.\n  posted-1\n"));
    QCOMPARE(ended.code, 0);
    const QList<QJsonObject> asked = cli.asked(QStringLiteral("post"));
    QCOMPARE(asked.size(), 1);
    QCOMPARE(accountsIn(asked), QStringList(QStringLiteral("a2")));
    QCOMPARE(asked[0][QLatin1String("type")].toInt(), 2);
    QCOMPARE(asked[0][QLatin1String("id")].toString(), QStringLiteral("s2"));
    QCOMPARE(asked[0][QLatin1String("text")].toString(), QStringLiteral("Well said"));
}

void CliActionsTest::likeFindsTheAccount_data()
{
    QTest::addColumn<QString>("out");
    const auto row = [](const char *command, const char *out) {
        QTest::newRow(command) << QString::fromUtf8(out);
    };
    row("like s1", "Liked with a1.\n");
    row("like s2", "Liked with a2.\n");
    row("like t1", "Liked with b1.\n");
    row("like shared --account a1", "Liked with a1.\n");
    row("like shared --account b1", "Liked with b1.\n");
    row("like shared --account all", "Liked with a1.\nLiked with b1.\n");
    // The record names no account, and each of the two answers with it.
    row("like free --account a2", "Liked with a2.\n");
}

void CliActionsTest::likeFindsTheAccount()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), twoAccounts);
    cli.addProvider(QStringLiteral("birch"), oneAccount);
    const Ended ended = cli.run(words(QTest::currentDataTag()));
    QTEST(ended.out, "out");
    QCOMPARE(ended.err, QString());
    QCOMPARE(ended.code, 0);
    const QList<QJsonObject> asked = cli.asked(QStringLiteral("like"));
    QCOMPARE(asked.size(), ended.out.count(QLatin1Char('\n')));
    for (const QJsonObject &request : asked) {
        QCOMPARE(request[QLatin1String("like")].toBool(), true);
        QCOMPARE(accountsIn({request}).size(), 1);
    }
}

void CliActionsTest::ambiguousIdIsLeftAlone()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), twoAccounts);
    cli.addProvider(QStringLiteral("birch"), oneAccount);
    for (const char *command :
         {"like shared", "comment shared x", "likers shared", "unlike free"}) {
        const Ended ended = cli.run(words(command));
        QCOMPARE(ended.out, QString());
        QVERIFY2(ended.err.contains(QStringLiteral("is in several accounts; choose one with "
                                                   "--account:\nkinlet: --account a1")),
                 qPrintable(ended.err));
        QCOMPARE(ended.code, 2);
    }
    for (const char *kind : {"like", "post", "likers"})
        QVERIFY(cli.asked(QLatin1String(kind)).isEmpty());
}

void CliActionsTest::unlike()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), twoAccounts);
    const Ended ended = cli.run(words("unlike s1"));
    QCOMPARE(ended.out, QStringLiteral("Like taken back with a1.\n"));
    QCOMPARE(ended.code, 0);
    const QList<QJsonObject> asked = cli.asked(QStringLiteral("like"));
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked[0][QLatin1String("like")].toBool(), false);
    QCOMPARE(asked[0][QLatin1String("id")].toString(), QStringLiteral("s1"));
}

void CliActionsTest::chosenAccountIsNotLookedFor()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), twoAccounts);
    QCOMPARE(cli.run(words("like anything --account a2")).code, 0);
    QVERIFY(cli.asked(QStringLiteral("activities")).isEmpty());
    QCOMPARE(accountsIn(cli.asked(QStringLiteral("like"))), QStringList(QStringLiteral("a2")));
}

void CliActionsTest::errorsWhileLooking()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), twoAccounts);
    cli.addProvider(QStringLiteral("birch"), json(R"({'accounts': [{'Id': 'b1'}],
        'errors': {'activities': [[4, 'no network']]}})"));
    // A network that could not be asked may hold the activity too.
    const Ended found = cli.run(words("like s1"));
    QCOMPARE(found.out, QStringLiteral("Liked with a1.\n"));
    QCOMPARE(found.err, QStringLiteral("kinlet: birch: NetworkFailed: no network\n"));
    QCOMPARE(found.code, 1);

    Cli other;
    other.addProvider(QStringLiteral("birch"), oneAccount);
    const Ended missing = other.run(words("like nothing"));
    QCOMPARE(missing.err,
             QStringLiteral("kinlet: birch: InvalidRequest: no such activity\n"
                            "kinlet: no activity with the id \"nothing\" was found\n"));
    QCOMPARE(missing.code, 1);

    // Neither that somebody does not know it nor that he cannot know any is an error then.
    other.addProvider(QStringLiteral("alder"), twoAccounts);
    other.addProvider(QStringLiteral("cedar"), json(R"({'accounts': [{'Id': 'c1'}],
        'errors': {'activities': [[1, 'no activities here']]}})"));
    const Ended elsewhere = other.run(words("like s1"));
    QCOMPARE(elsewhere.err, QString());
    QCOMPARE(elsewhere.code, 0);
}

void CliActionsTest::likers()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), twoAccounts);
    const Ended ended = cli.run(words("likers s1"));
    QCOMPARE(ended.out,
             QStringLiteral("NAME  STATUS  ACCOUNT  ID\n"
                            "Ada           alder    p1\n"
                            "Bob           alder    p2\n"));
    QCOMPARE(ended.code, 0);
    QCOMPARE(cli.run(words("likers s1 --json --limit 1")).objects().size(), 1);
    QCOMPARE(cli.run(words("likers s2")).err, QStringLiteral("kinlet: no persons\n"));
}

void CliActionsTest::likersTakeFilters()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), twoAccounts);
    QCOMPARE(cli.run(words("likers s1 --filter ScreenName=bob")).out,
             QStringLiteral("NAME  STATUS  ACCOUNT  ID\n"
                            "Bob           alder    p2\n"));
}

QTEST_GUILESS_MAIN(CliActionsTest)
#include "cliactionstest.moc"
