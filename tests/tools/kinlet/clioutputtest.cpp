// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cli.h"

#include <QTest>

#include <sys/stat.h>

namespace {

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

// Control characters in each text that a provider can give.
const QByteArray hostile = json(R"({
    'metaData': {'kind\u001b]0;x\u0007': '\u001b[2J'},
    'messages': ['loading \u001b[31m', '\u009b2J'],
    'services': [{'Id': 's\u001b[1m', 'Description': '\u001b[2J', 'SocialActions': 1}],
    'accounts': [{'Id': 'a\u001b[1m', 'AccountName': '\u001b[2J\u009b2J', 'SocialServiceId': '\u001b'}],
    'persons': [{'Id': 'p\u001b[1m', 'ScreenName': '\u001b[2JEve\u202e', 'Status': 'x\r\u001b[A',
                 'ParentAccount': '\u001b[5m'}],
    'activities': [{'Id': 'x\u001b[1m', 'OwnerPersonId': 'p\u001b[1m', 'ReceiverPersonId': '\u001b[8m',
                    'Description': '\u001b[2J\u001b]0;title\u0007\u202e\u009b31m text',
                    'ParentActivityId': 'y\u001b[1m', 'ParentAccount': 'a\u001b[1m',
                    'Attachment': {'title': '\u001b[4m', 'url': '\u001b[4m', 'pictures': ['\u001b[4m']}}],
    'likers': {'x': ['p\u001b[1m']},
    'errors': {'like': [[4, 'broken \u001b[2J\nsecond line']]},
    'pushes': [{'class': 'SocialActivity', 'records': [{'Id': '\u001b[1m', 'Description': '\u001b[2J'}],
                'updated': ['\u001b[1m']},
               {'class': 'SocialNetworkPerson', 'records': [{'Id': '\u001b[1m', 'ScreenName': '\u001b[2J'}],
                'updated': []},
               {'class': '\u001b[1m', 'records': [{'Description': '\u001b[2J'}], 'updated': []},
               {'class': 'SocialServiceAccount', 'updated': ['State'],
                'records': [{'Id': '\u001b[1m', 'State': 4}]}]
})");

bool holdsControl(const QString &text)
{
    for (const QChar unit : text) {
        const bool control = unit.category() == QChar::Other_Control && unit != QLatin1Char('\n');
        if (control || (unit.unicode() >= 0x202a && unit.unicode() <= 0x202e))
            return true;
    }
    return false;
}

}

class CliOutputTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hostileTexts_data();
    void hostileTexts();
    void hostileTextsAreStillThere();
    void errorsAreOneLineEach();
    void unusableOutput_data();
    void unusableOutput();
    void readerHasGone();
    void closedInput();
    void widthOfTheEnvironment();
    void anyLocale_data();
    void anyLocale();
    void noColoursInAFile();
};

void CliOutputTest::hostileTexts_data()
{
    QTest::addColumn<QStringList>("arguments");
    for (const char *command :
         {"services", "accounts", "providers", "persons", "timeline", "show x\033[1m",
          "like x\033[1m", "likers x\033[1m", "comment x\033[1m t", "post t", "show y\033[1m",
          "timeline --account \033[1m", "\033[1m", "--\033[1m", "timeline --limit \033[1m"}) {
        QTest::newRow(QByteArray(command).replace('\033', "ESC").constData())
            << QString::fromLatin1(command).split(QLatin1Char(' '));
    }
}

void CliOutputTest::hostileTexts()
{
    QFETCH(QStringList, arguments);
    for (const bool programs : {false, true}) {
        Cli cli;
        cli.addProvider(QStringLiteral("alder"), hostile);
        const QStringList more = programs ? QStringList(QStringLiteral("--json")) : QStringList();
        const Ended ended = cli.run(arguments + more);
        QVERIFY2(!holdsControl(ended.out), qPrintable(ended.out));
        QVERIFY2(!holdsControl(ended.err), qPrintable(ended.err));
        QVERIFY(!ended.out.isEmpty() || !ended.err.isEmpty());
    }
}

void CliOutputTest::hostileTextsAreStillThere()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), hostile);
    const Ended ended = cli.run(words("timeline"));
    QVERIFY(
        ended.out.contains(QString::fromUtf8("    \u241b[2J\u241b]0;title\u2407\ufffd31m text\n")));
    QVERIFY(ended.err.contains(QString::fromUtf8("kinlet: loading \u241b[31m\n")));
}

void CliOutputTest::errorsAreOneLineEach()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), json(R"({'accounts': [{'Id': 'a'}],
        'errors': {'post': [[4, 'broken\nkinlet: and more']]}})"));
    QCOMPARE(cli.run(words("post x")).err,
             QStringLiteral("kinlet: alder: NetworkFailed: broken kinlet: and more\n"));
}

void CliOutputTest::unusableOutput_data()
{
    QTest::addColumn<QString>("redirection");
    QTest::addColumn<QString>("reason");
    const QString full = QStringLiteral("> /dev/full");
    const QString closed = QStringLiteral(">&-");
    for (const char *command : {"persons", "persons --json", "--help", "timeline", "post x"}) {
        QTest::addRow("%s, full disk", command)
            << full << QStringLiteral("No space left on device");
        QTest::addRow("%s, closed", command) << closed << QStringLiteral("Bad file descriptor");
    }
}

void CliOutputTest::unusableOutput()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), json(R"({'accounts': [{'Id': 'a'}],
        'persons': [{'Id': 'p'}], 'activities': [{'Id': 's'}]})"));
    QFETCH(QString, redirection);
    QFETCH(QString, reason);
    const QString row = QLatin1String(QTest::currentDataTag());
    const Ended ended = cli.runInShell(
        row.left(row.indexOf(QLatin1Char(','))).split(QLatin1Char(' ')), redirection);
    QCOMPARE(ended.err, QStringLiteral("kinlet: the output cannot be written: %1\n").arg(reason));
    QCOMPARE(ended.code, 1);
}

void CliOutputTest::readerHasGone()
{
    Cli cli;
    cli.addProvider(QStringLiteral("birch"), json("{'accounts': [{'Id': 'b'}]}"));
    const QString gate = cli.path(QStringLiteral("gate"));
    QCOMPARE(mkfifo(qPrintable(gate), 0600), 0);
    // The input, which the client waits for, is there once its output has no reader.
    const Ended ended = cli.runInShell(
        words("post -"),
        QStringLiteral("< %1; echo \"code $?\" >&2; } | { exec <&-; echo x > %1; }").arg(gate),
        QStringLiteral("{ "));
    QCOMPARE(ended.err,
             QStringLiteral("kinlet: the output cannot be written: Broken pipe\ncode 1\n"));
}

void CliOutputTest::closedInput()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), json("{'accounts': [{'Id': 'a'}]}"));
    const Ended ended = cli.runInShell(words("post -"), QStringLiteral("<&-"));
    QVERIFY2(ended.err.startsWith(QStringLiteral("kinlet: standard input: ")),
             qPrintable(ended.err));
    QCOMPARE(ended.code, 1);
    QVERIFY(cli.asked(QStringLiteral("post")).isEmpty());
}

void CliOutputTest::widthOfTheEnvironment()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), json(R"({'activities': [
        {'Id': 's1', 'OwnerPersonId': 'p', 'Description': 'one two three four five six'}]})"));
    cli.environment.insert(QStringLiteral("COLUMNS"), QStringLiteral("20"));
    QCOMPARE(cli.run(words("timeline")).out,
             QStringLiteral("p\n    one two three\n    four five six\n    s1\n\n"));
    cli.environment.insert(QStringLiteral("COLUMNS"), QStringLiteral("none"));
    QCOMPARE(cli.run(words("timeline")).out,
             QStringLiteral("p\n    one two three four five six\n    s1\n\n"));
}

void CliOutputTest::anyLocale_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::newRow("C") << QByteArray("C");
    QTest::newRow("POSIX") << QByteArray("POSIX");
    QTest::newRow("C.UTF-8") << QByteArray("C.UTF-8");
    QTest::newRow("xx_XX.ISO-8859-1") << QByteArray("xx_XX.ISO-8859-1");
}

void CliOutputTest::anyLocale()
{
    QFETCH(QByteArray, locale);
    Cli cli;
    cli.environment.insert(QStringLiteral("LC_ALL"), QString::fromLatin1(locale));
    cli.addProvider(QStringLiteral("alder"), QByteArray(R"({"accounts": [{"Id": "a"}],
        "persons": [{"Id": "p", "ScreenName": "你好"}, {"Id": "q", "ScreenName": "ü"}]})"));
    const Ended ended = cli.run(words("persons"));
    QCOMPARE(ended.err, QString());
    QCOMPARE(ended.out,
             QString::fromUtf8("NAME  STATUS  ACCOUNT  ID\n"
                               "ü             alder    q\n"
                               "你好          alder    p\n"));
    cli.run({QStringLiteral("post"), QString::fromUtf8("Grüße")});
    QCOMPARE(cli.asked(QStringLiteral("post"))[0][QLatin1String("text")].toString(),
             QString::fromUtf8("Grüße"));
}

void CliOutputTest::noColoursInAFile()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), json("{'persons': [{'Id': 'p'}]}"));
    QVERIFY(!cli.run(words("persons")).out.contains(QChar(0x1b)));
}

QTEST_GUILESS_MAIN(CliOutputTest)
#include "clioutputtest.moc"
