// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cli.h"

#include <QRegularExpression>
#include <QTest>

namespace {

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

const QByteArray story = R"({
    "accounts": [{"Id": "a1"}],
    "persons": [{"Id": "p1", "ScreenName": "Ada", "Status": "one two three four five six seven"},
                {"Id": "p2", "ScreenName": "עדה"}],
    "activities": [
        {"Id": "s1", "OwnerPersonId": "p1", "StartTime": 61,
         "Description": "The quick brown fox jumps over the lazy dog, again and again"},
        {"Id": "s2", "OwnerPersonId": "p2", "StartTime": 125,
         "Description": "שלום עולם שלום עולם שלום עולם"},
        {"Id": "s3", "OwnerPersonId": "p1", "StartTime": 185,
         "Description": "你好世界你好世界你好世界你好世界你好世界"}]
})";

QString plain(QString text)
{
    return text.remove(QRegularExpression(QStringLiteral("\033\\[[0-9]*m")));
}

}

class CliTerminalTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesFit();
    void tablesFit();
    void bidirectionalTextIsIsolated();
    void colours_data();
    void colours();
    void jsonIsPlain();
    void progress_data();
    void progress();
    void controlC();
    void controlCWhileTyping();
    void noTerminalForTheOutput();
};

void CliTerminalTest::linesFit()
{
    Cli cli;
    cli.environment.insert(QStringLiteral("NO_COLOR"), QStringLiteral("1"));
    cli.addProvider(QStringLiteral("alder"), story);
    QCOMPARE(cli.runOnTerminal(words("timeline"), 24).out,
             QString::fromUtf8("Ada  1 hour ago\n"
                               "    The quick brown fox\n"
                               "    jumps over the lazy\n"
                               "    dog, again and again\n"
                               "    s1\n"
                               "\n"
                               "\u2068עדה\u2069  2 hours ago\n"
                               "    \u2068שלום עולם שלום עולם\u2069\n"
                               "    \u2068שלום עולם\u2069\n"
                               "    s2\n"
                               "\n"
                               "Ada  3 hours ago\n"
                               "    你好世界你好世界你好\n"
                               "    世界你好世界你好世界\n"
                               "    s3\n"
                               "\n"));
    // The time goes on a line of its own where it does not fit beside the name.
    QVERIFY(cli.runOnTerminal(words("timeline"), 14)
                .out.startsWith(QStringLiteral("Ada\n1 hour ago\n")));
}

void CliTerminalTest::tablesFit()
{
    Cli cli;
    cli.environment.insert(QStringLiteral("NO_COLOR"), QStringLiteral("1"));
    cli.addProvider(QStringLiteral("alder"), story);
    QCOMPARE(cli.runOnTerminal(words("persons"), 34).out,
             QString::fromUtf8("NAME  STATUS           ACCOUNT  ID\n"
                               "Ada   one two three    alder    p1\n"
                               "      four five six\n"
                               "      seven\n"
                               "\u2068עדה\u2069                    alder    p2\n"));
}

void CliTerminalTest::bidirectionalTextIsIsolated()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), story);
    const QString out = plain(cli.runOnTerminal(words("timeline"), 80).out);
    QVERIFY(out.contains(QString::fromUtf8("\u2068עדה\u2069  2 hours ago")));
    QVERIFY(out.contains(QString::fromUtf8("    \u2068שלום עולם שלום עולם שלום עולם\u2069\n")));
    QCOMPARE(out.count(QChar(0x2068)), out.count(QChar(0x2069)));
}

void CliTerminalTest::colours_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("coloured");
    const auto row = [](const char *name, const char *setting, const char *value, bool coloured) {
        QTest::newRow(name) << QString::fromLatin1(setting) << QString::fromLatin1(value)
                            << coloured;
    };
    row("usually", "TERM", "xterm-256color", true);
    row("NO_COLOR", "NO_COLOR", "1", false);
    row("empty NO_COLOR", "NO_COLOR", "", true);
    row("terminal without any", "TERM", "dumb", false);
}

void CliTerminalTest::colours()
{
    QFETCH(QString, setting);
    QFETCH(QString, value);
    Cli cli;
    cli.environment.insert(setting, value);
    cli.addProvider(QStringLiteral("alder"), story);
    for (const char *command : {"timeline", "persons", "show s1"}) {
        const Ended ended = cli.runOnTerminal(words(command), 80);
        QTEST(ended.out.contains(QChar(0x1b)), "coloured");
        QCOMPARE(ended.code, 0);
        if (ended.out.contains(QChar(0x1b)))
            QVERIFY(!plain(ended.out).contains(QChar(0x1b)));
    }
}

void CliTerminalTest::jsonIsPlain()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), story);
    const Ended ended = cli.runOnTerminal(words("timeline --json"), 20);
    QCOMPARE(ended.objects().size(), 3);
}

void CliTerminalTest::progress_data()
{
    QTest::addColumn<QByteArray>("silent");
    QTest::addColumn<QString>("shown");
    QTest::newRow("answers") << QByteArray("activities")
                             << QStringLiteral("waiting for cedar (1 s)");
    QTest::newRow("start") << QByteArray("accounts")
                           << QStringLiteral("waiting for providers to start (1 s)");
}

void CliTerminalTest::progress()
{
    QFETCH(QByteArray, silent);
    QFETCH(QString, shown);
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), story);
    cli.addProvider(QStringLiteral("cedar"), json("{'silent': ['KIND']}").replace("KIND", silent));
    const QStringList arguments = words("timeline --wait 2.5 --timeout 2.5");
    const Ended ended = cli.runOnTerminal(arguments, 80);
    const int at = int(ended.out.indexOf(shown));
    QVERIFY2(at >= 0, qPrintable(ended.out));
    // It is wiped away before anything else is printed.
    const int wiped = int(ended.out.lastIndexOf(QStringLiteral("\r\033[K")));
    QVERIFY(wiped > at);
    QVERIFY(wiped < ended.out.indexOf(QStringLiteral("kinlet: ")));
    QVERIFY(wiped < ended.out.indexOf(QStringLiteral("The quick")));
    // Whoever reads standard error from a file gets no progress.
    QVERIFY(!cli.run(arguments).err.contains(QStringLiteral("waiting")));
}

void CliTerminalTest::controlC()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), story);
    cli.addProvider(QStringLiteral("cedar"), json("{'silent': ['activities']}"));
    TerminalRun run(cli, words("timeline --wait 1000"), 80);
    QVERIFY(run.readUntil(QStringLiteral("waiting for cedar")));
    run.type("\003");
    const Ended ended = run.end();
    QVERIFY(ended.out.contains(QStringLiteral("The quick")));
    QVERIFY(ended.out.contains(QStringLiteral("interrupted; no answer yet from cedar")));
    QCOMPARE(ended.code, 1);
}

void CliTerminalTest::controlCWhileTyping()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), story);
    TerminalRun run(cli, words("post -"), 80);
    QTRY_VERIFY_WITH_TIMEOUT(!cli.asked(QStringLiteral("accounts")).isEmpty(), 30000);
    run.type("Half a thou\003");
    // The end of what is typed must not be what it waits for.
    const Ended ended = run.end();
    QVERIFY2(ended.out.endsWith(QStringLiteral("kinlet: interrupted; nothing has been sent\n")),
             qPrintable(ended.out));
    QCOMPARE(ended.code, 1);
    QVERIFY(cli.asked(QStringLiteral("post")).isEmpty());
}

void CliTerminalTest::noTerminalForTheOutput()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), story);
    const QString out = cli.run(words("timeline")).out;
    QVERIFY(out.contains(QStringLiteral("fox jumps over the lazy dog, again and again\n")));
    QVERIFY(!out.contains(QChar(0x1b)));
}

QTEST_GUILESS_MAIN(CliTerminalTest)
#include "cliterminaltest.moc"
