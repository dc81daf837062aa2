// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cli.h"

#include <QTest>

#include <csignal>

namespace {

const QByteArray silent = json("{'silent': ['accounts'], 'accounts': [{'Id': 'c1'}]}");
const QByteArray quick = json("{'accounts': [{'Id': 'a1'}], 'persons': [{'Id': 'p1'}]}");

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

}

class CliStartTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void noProvider_data();
    void noProvider();
    void choiceOfSource_data();
    void choiceOfSource();
    void pluginPathReplacesTheEnvironment();
    void slowProvidersAreLeftOut();
    void everyProviderIsLeftOut();
    void providersAreListedWithoutWaiting();
    void accountOfAProviderThatIsLeftOut();
    void interruptedWhileStarting();
    void wrongUse_data();
    void wrongUse();
    void wrongUseComesBeforeProviders();
};

void CliStartTest::noProvider_data()
{
    QTest::addColumn<QString>("where");
    const auto row = [](const char *options, const char *where) {
        QTest::newRow(options) << QString::fromLatin1(where);
    };
    row("timeline", "looked for plug-ins in ");
    row("providers --in-process", "looked for plug-ins in ");
    row("post x --bus", "looked on the session bus");
    row("watch", "looked for plug-ins in ");
    row("import /no/such", "looked for plug-ins in ");
}

void CliStartTest::noProvider()
{
    Cli cli;
    const Ended ended = cli.run(words(QTest::currentDataTag()));
    QCOMPARE(ended.out, QString());
    // Without a bus the library says so first.
    QVERIFY(ended.err.contains(QStringLiteral("kinlet: no provider was found\n")));
    QFETCH(QString, where);
    QVERIFY2(ended.err.contains(where), qPrintable(ended.err));
    for (const char *remedy : {"kinlet-provider-", "--plugin-path", "KINLET_PLUGIN_PATH"})
        QVERIFY(ended.err.contains(QLatin1String(remedy)));
    QCOMPARE(ended.err.contains(QStringLiteral("--in-process")),
             where.contains(QStringLiteral("bus")));
    QCOMPARE(ended.code, 3);
}

void CliStartTest::choiceOfSource_data()
{
    QTest::addColumn<QString>("environment");
    QTest::addColumn<int>("code");
    const auto row = [](const char *options, const char *environment, int code) {
        QTest::addRow("%s KINLET_USE_DBUS=%s", options, environment)
            << QString::fromLatin1(environment) << code;
    };
    row("", "0", 0);
    row("", "10", 0);
    row("", "1", 3);
    row("", "", 3);
    row("--in-process", "1", 0);
    row("--bus", "0", 3);
}

void CliStartTest::choiceOfSource()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), quick);
    QStringList arguments = words(QTest::currentDataTag());
    arguments.last() = QStringLiteral("persons");
    QFETCH(QString, environment);
    cli.environment.insert(QStringLiteral("KINLET_USE_DBUS"), environment);
    QTEST(cli.run(arguments).code, "code");
}

void CliStartTest::pluginPathReplacesTheEnvironment()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), quick);
    const QString folder = cli.environment.value(QStringLiteral("KINLET_PLUGIN_PATH"));
    cli.environment.insert(QStringLiteral("KINLET_PLUGIN_PATH"), cli.path(QStringLiteral("empty")));
    cli.environment.remove(QStringLiteral("KINLET_USE_DBUS"));
    QCOMPARE(cli.run({QStringLiteral("persons")}).code, 3);
    QCOMPARE(cli.run({QStringLiteral("persons"), QStringLiteral("--plugin-path"), folder}).code, 0);
    QCOMPARE(cli.run({QStringLiteral("persons"), QStringLiteral("--plugin-path"),
                      cli.path(QStringLiteral("nowhere"))})
                 .code,
             2);
}

void CliStartTest::slowProvidersAreLeftOut()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), quick);
    cli.addProvider(QStringLiteral("birch"), silent);
    cli.addProvider(QStringLiteral("cedar"), silent);
    const Ended ended = cli.run(words("persons --json --timeout 0.3"));
    QCOMPARE(ended.objects().size(), 1);
    QCOMPARE(ended.err,
             QStringLiteral("kinlet: birch did not start within 0.3 s and is left out\n"
                            "kinlet: cedar did not start within 0.3 s and is left out\n"));
    QCOMPARE(ended.code, 1);
}

void CliStartTest::everyProviderIsLeftOut()
{
    Cli cli;
    cli.addProvider(QStringLiteral("cedar"), silent);
    for (const char *command : {"persons --timeout 0.1", "watch --timeout 0.1"}) {
        const Ended ended = cli.run(words(command));
        QCOMPARE(ended.out, QString());
        QVERIFY(ended.err.endsWith(
            QStringLiteral("kinlet: cedar did not start within 0.1 s and is left out\n"
                           "kinlet: no provider is left\n")));
        QCOMPARE(ended.code, 1);
    }
}

void CliStartTest::providersAreListedWithoutWaiting()
{
    Cli cli;
    cli.addProvider(QStringLiteral("cedar"), silent);
    const Ended ended = cli.run(words("providers --timeout 1000"));
    QCOMPARE(ended.out, QStringLiteral("NAME   DETAILS\ncedar\n"));
    QCOMPARE(ended.code, 0);
}

void CliStartTest::accountOfAProviderThatIsLeftOut()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), quick);
    cli.addProvider(QStringLiteral("cedar"), silent);
    const Ended ended = cli.run(words("persons --account c1 --timeout 0.1"));
    QVERIFY(ended.err.contains(QStringLiteral("unknown account \"c1\"")));
    // The account is right, only not there today.
    QCOMPARE(ended.code, 1);
}

void CliStartTest::interruptedWhileStarting()
{
    Cli cli;
    cli.addProvider(QStringLiteral("cedar"), silent);
    QProcess process;
    cli.start(process, words("persons --timeout 1000"));
    QTRY_VERIFY_WITH_TIMEOUT(!cli.asked(QStringLiteral("accounts")).isEmpty(), 30000);
    kill(pid_t(process.processId()), SIGINT);
    const Ended ended = Cli::end(process);
    QCOMPARE(ended.err, QStringLiteral("kinlet: interrupted while providers were starting\n"));
    QCOMPARE(ended.code, 1);
}

void CliStartTest::wrongUse_data()
{
    QTest::addColumn<QString>("message");
    const auto row = [](const char *words, const char *message) {
        QTest::newRow(words) << QString::fromLatin1(message);
    };
    row("timelin", "unknown command \"timelin\"; did you mean \"timeline\"?");
    row("timeline --limti 3", "unknown option \"--limti\"; did you mean \"--limit\"?");
    row("persons --filter Screename=x",
        "persons have no property \"Screename\"; did you mean \"ScreenName\"?");
    row("", "no command was given");
}

void CliStartTest::wrongUse()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), quick);
    const Ended ended = cli.run(words(QTest::currentDataTag()));
    QFETCH(QString, message);
    QCOMPARE(ended.out, QString());
    QCOMPARE(ended.err,
             QStringLiteral("kinlet: ") + message
                 + QStringLiteral("\nkinlet: kinlet --help tells more\n"));
    QCOMPARE(ended.code, 2);
}

void CliStartTest::wrongUseComesBeforeProviders()
{
    Cli cli;
    QCOMPARE(cli.run(words("timeline --limit none")).code, 2);
    QCOMPARE(cli.run(words("--help")).code, 0);
    const Ended version = cli.run(words("--version"));
    QCOMPARE(version.out, QStringLiteral("kinlet 0.1.0\n"));
    QCOMPARE(version.code, 0);
}

QTEST_GUILESS_MAIN(CliStartTest)
#include "clistarttest.moc"
