// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "commandline.h"
#include "commands.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

namespace {

// Words separated by blanks.
CommandLine parsed(const char *words)
{
    return parseCommandLine(QString::fromUtf8(words).split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

}

Q_DECLARE_METATYPE(Source)

class CliCommandLineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void defaults();
    void values();
    void arguments_data();
    void arguments();
    void mistakes_data();
    void mistakes();
    void sources_data();
    void sources();
    void pluginPathIsAbsolute();
    void types_data();
    void types();
    void helpNamesEverything();
    void informationNeedsNoCommand_data();
    void informationNeedsNoCommand();
};

void CliCommandLineTest::defaults()
{
    const CommandLine line = parsed("timeline");
    QCOMPARE(line.mistake, QString());
    QCOMPARE(line.command->name, QStringLiteral("timeline"));
    QVERIFY(line.arguments.isEmpty());
    QVERIFY(line.accounts.isEmpty());
    QVERIFY(line.filters.isEmpty());
    QVERIFY(line.profile.isEmpty());
    QCOMPARE(line.limit, 0);
    QVERIFY(!line.before.isValid());
    QVERIFY(!line.after.isValid());
    QCOMPARE(line.type, SocialActivity::Status);
    QVERIFY(!line.json);
    QVERIFY(!line.absolute);
    QCOMPARE(line.source, Source::Environment);
    QCOMPARE(line.startMilliseconds, 10000);
    QCOMPARE(line.waitMilliseconds, 10000);
    QVERIFY(!line.post);
    QCOMPARE(line.pauseMilliseconds, 200);
}

void CliCommandLineTest::values()
{
    const CommandLine line =
        parsed("timeline --account a --account=b --limit 3 --before 2026-03-12T14:30:00Z "
               "--after 2026-03-11T00:00:00Z --profile ada --type comment --json --absolute "
               "--timeout 0.5 --wait 2");
    QCOMPARE(line.mistake, QString());
    QCOMPARE(line.accounts, QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(line.limit, 3);
    QCOMPARE(line.before, QDateTime(QDate(2026, 3, 12), QTime(14, 30), Qt::UTC));
    QCOMPARE(line.after, QDateTime(QDate(2026, 3, 11), QTime(0, 0), Qt::UTC));
    QCOMPARE(line.profile, QStringLiteral("ada"));
    QVERIFY(line.json);
    QVERIFY(line.absolute);
    QCOMPARE(line.startMilliseconds, 500);
    QCOMPARE(line.waitMilliseconds, 2000);

    const CommandLine check = parsed("check a.so --post --pause 0.5");
    QVERIFY(check.post);
    QCOMPARE(check.pauseMilliseconds, 500);

    const CommandLine persons = parsed("persons --filter ScreenName=^a=b$ --filter Id=x");
    QCOMPARE(persons.filters.size(), 2);
    QCOMPARE(persons.filters[0].first, QStringLiteral("ScreenName"));
    QCOMPARE(persons.filters[0].second, QRegExp(QStringLiteral("^a=b$"), Qt::CaseInsensitive));
    QCOMPARE(persons.filters[1].first, QStringLiteral("Id"));
}

void CliCommandLineTest::arguments_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("arguments");
    const auto list = [](const char *words) {
        return QString::fromUtf8(words).split(QLatin1Char('|'));
    };
    QTest::newRow("one") << list("post|Hello world") << list("Hello world");
    QTest::newRow("two") << list("comment|id|text") << list("id|text");
    QTest::newRow("standard input") << list("post|-") << list("-");
    QTest::newRow("after the end of options") << list("post|--|--json") << list("--json");
    QTest::newRow("among options") << list("--json|post|--wait|1|x") << list("x");
    QTest::newRow("empty text") << list("post|") << QStringList(QString());
}

void CliCommandLineTest::arguments()
{
    QFETCH(QStringList, words);
    const CommandLine line = parseCommandLine(words);
    QCOMPARE(line.mistake, QString());
    QTEST(line.arguments, "arguments");
}

void CliCommandLineTest::mistakes_data()
{
    QTest::addColumn<QString>("mistake");
    const auto row = [](const char *words, const char *mistake) {
        QTest::newRow(words) << QString::fromUtf8(mistake);
    };
    row("", "no command was given");
    row("timelin", "unknown command \"timelin\"; did you mean \"timeline\"?");
    row("qqqqqqqq",
        "unknown command \"qqqqqqqq\"; the commands are services, accounts, providers, persons, "
        "timeline, show, post, comment, like, unlike, likers, import, watch, runners, check, "
        "new-provider");
    row("timeline --limt 3", "unknown option \"--limt\"; did you mean \"--limit\"?");
    row("timeline --qqqqqqqq", "unknown option \"--qqqqqqqq\"");
    row("timeline --limit", "Missing value after '--limit'.");
    row("timeline --filter Id=x",
        "timeline does not take --filter; it takes --account, --limit, --before, --after, "
        "--profile, --type");
    row("services --limit 3", "services does not take --limit");
    row("show", "ID is missing: kinlet show ID");
    row("comment 1", "TEXT is missing: kinlet comment ID TEXT");
    row("like 1 2", "too many arguments, from \"2\" on: kinlet like ID");
    row("post Hello world",
        "too many arguments, from \"world\" on: kinlet post TEXT (put the text in quotes)");
    row("new-provider elm", "DIR is missing: kinlet new-provider NAME DIR");
    row("watch now", "too many arguments, from \"now\" on: kinlet watch");
    row("timeline --limit 0", "--limit takes a number from 1 on, not \"0\"");
    row("timeline --limit many", "--limit takes a number from 1 on, not \"many\"");
    row("timeline --wait soon", "--wait takes a number of seconds, not \"soon\"");
    row("timeline --wait -1", "--wait takes a number of seconds, not \"-1\"");
    row("timeline --wait nan", "--wait takes a number of seconds, not \"nan\"");
    row("timeline --timeout 1e9", "--timeout takes a number of seconds, not \"1e9\"");
    row("timeline --before tomorrow",
        "--before takes a time like 2026-03-12 or 2026-03-12T14:30, not \"tomorrow\"");
    row("timeline --after 12",
        "--after takes a time like 2026-03-12 or 2026-03-12T14:30, not \"12\"");
    row("timeline --type coment", "unknown type \"coment\"; did you mean \"comment\"?");
    row("timeline --type qqqqqqq",
        "unknown type \"qqqqqqq\"; the types are status, comment, message, any");
    row("persons --filter Ada", "--filter takes PROPERTY=REGEXP, not \"Ada\"");
    row("persons --filter =Ada", "--filter takes PROPERTY=REGEXP, not \"=Ada\"");
    row("persons --filter Screenname=Ada",
        "persons have no property \"Screenname\"; did you mean \"ScreenName\"?");
    row("persons --filter Id=(", "\"(\" is not a regular expression: unexpected end");
    row("timeline --bus --in-process", "--bus does not go with --in-process");
    row("timeline --bus --plugin-path /", "--bus does not go with --plugin-path");
    row("timeline --plugin-path /no/such", "--plugin-path: there is no folder \"/no/such\"");
}

void CliCommandLineTest::mistakes()
{
    QTEST(parsed(QTest::currentDataTag()).mistake, "mistake");
}

void CliCommandLineTest::sources_data()
{
    QTest::addColumn<Source>("source");
    QTest::newRow("timeline") << Source::Environment;
    QTest::newRow("timeline --in-process") << Source::InProcess;
    QTest::newRow("timeline --bus") << Source::Bus;
    QTest::newRow("timeline --plugin-path /") << Source::InProcess;
}

void CliCommandLineTest::sources()
{
    QTEST(parsed(QTest::currentDataTag()).source, "source");
}

void CliCommandLineTest::pluginPathIsAbsolute()
{
    const QTemporaryDir dir;
    QVERIFY(QDir::setCurrent(dir.path()));
    QVERIFY(QDir().mkdir(QStringLiteral("plugins")));
    QCOMPARE(parsed("timeline --plugin-path plugins").pluginPath,
             QDir::currentPath() + QStringLiteral("/plugins"));
}

void CliCommandLineTest::types_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("status") << int(SocialActivity::Status);
    QTest::newRow("comment") << int(SocialActivity::Comment);
    QTest::newRow("message") << int(SocialActivity::Message);
    QTest::newRow("any") << int(SocialActivity::AnyType);
}

void CliCommandLineTest::types()
{
    const QByteArray words = QByteArray("timeline --type ") + QTest::currentDataTag();
    QTEST(int(parsed(words.constData()).type), "type");
}

void CliCommandLineTest::helpNamesEverything()
{
    const QStringList lines =
        parsed("--help").information.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const auto described = [&](const QString &term) {
        for (const QString &line : lines) {
            if (line.startsWith(QStringLiteral("  ") + term + QLatin1Char(' '))
                && line.mid(30).trimmed().size() > 3)
                return true;
        }
        return false;
    };
    for (const char *term : {"services",
                             "accounts",
                             "providers",
                             "persons",
                             "timeline",
                             "show ID",
                             "post TEXT",
                             "comment ID TEXT",
                             "like ID",
                             "unlike ID",
                             "likers ID",
                             "import FILE",
                             "watch",
                             "check FILE.so",
                             "new-provider NAME DIR",
                             "--post",
                             "--pause SECONDS",
                             "--account ID",
                             "--limit N",
                             "--before TIME",
                             "--after TIME",
                             "--filter PROPERTY=REGEXP",
                             "--profile PERSON",
                             "--type TYPE",
                             "--json",
                             "--absolute",
                             "--in-process",
                             "--bus",
                             "--plugin-path DIR",
                             "--timeout SECONDS",
                             "--wait SECONDS",
                             "--help",
                             "--version",
                             "0",
                             "1",
                             "2",
                             "3",
                             "KINLET_USE_DBUS",
                             "KINLET_PLUGIN_PATH",
                             "COLUMNS",
                             "NO_COLOR"})
        QVERIFY2(described(QLatin1String(term)), term);
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 100, qPrintable(line));
}

void CliCommandLineTest::informationNeedsNoCommand_data()
{
    QTest::addColumn<QString>("begins");
    QTest::newRow("--help") << QStringLiteral("Usage: kinlet COMMAND");
    QTest::newRow("-h") << QStringLiteral("Usage: kinlet COMMAND");
    QTest::newRow("post --help") << QStringLiteral("Usage: kinlet COMMAND");
    QTest::newRow("--version") << QStringLiteral("kinlet 0.");
}

void CliCommandLineTest::informationNeedsNoCommand()
{
    const CommandLine line = parsed(QTest::currentDataTag());
    QFETCH(QString, begins);
    QCOMPARE(line.mistake, QString());
    QVERIFY2(line.information.startsWith(begins), qPrintable(line.information));
}

QTEST_GUILESS_MAIN(CliCommandLineTest)
#include "clicommandlinetest.moc"
