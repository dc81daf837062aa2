// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cli.h"

#include <QFile>
#include <QTest>

namespace {

const QByteArray wood = json(R"({
    'services': [{'Id': 'wood', 'Description': 'The Wood', 'SocialActions': 7}],
    'accounts': [{'Id': 'a1', 'AccountName': 'ada@wood', 'SocialServiceId': 'wood'}],
    'persons': [{'Id': 'p1', 'ScreenName': 'Ada', 'ParentAccount': 'a1'}],
    'likers': {'s1': ['p1']},
    'activities': [{'Id': 's1', 'Description': 'Hello', 'ReceiverPersonId': 'p1'}],
    'errors': {'post': [[4, 'broken']]}
})");

QStringList words(const QString &text)
{
    return text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

}

class CliGermanTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { cli.reset(); }
    void answers_data();
    void answers();
    void messages_data();
    void messages();
    void numbersTakeTheirForm_data();
    void numbersTakeTheirForm();
    void timesTakeTheirForm_data();
    void timesTakeTheirForm();
    void helpIsGermanAndInColumns();
    void checkSpeaksGermanInEachOfItsProcesses();
    void programsReadTheSameInAnyLanguage();
    void environmentChoosesTheLanguage_data();
    void environmentChoosesTheLanguage();
    void runner_data();
    void runner();

private:
    void set(const char *variable, const QString &value)
    {
        cli->environment.insert(QLatin1String(variable), value);
    }

    std::unique_ptr<Cli> cli;
};

void CliGermanTest::init()
{
    cli = std::make_unique<Cli>();
    set("LC_ALL", QStringLiteral("de_DE.UTF-8"));
}

void CliGermanTest::answers_data()
{
    QTest::addColumn<QString>("out");
    const auto row = [](const char *command, const char *out) {
        QTest::newRow(command) << QString::fromUtf8(out);
    };
    row("services",
        "NAME      AKTIONEN                           ANBIETER  ID\n"
        "The Wood  „Gefällt mir“, Kommentar, Beitrag  alder     wood\n");
    row("persons",
        "NAME  STATUS  KONTO  ID\n"
        "Ada           a1     p1\n");
    row("timeline",
        "jemand an Ada\n"
        "    Hello\n"
        "    s1\n\n");
    row("show s1",
        "jemand an Ada\n"
        "    Hello\n"
        "    s1\n\n"
        "Das gefällt\n"
        "NAME  STATUS  KONTO  ID\n"
        "Ada           a1     p1\n");
    row("unlike s1", "Mit a1 „Gefällt mir“ zurückgenommen.\n");
}

void CliGermanTest::answers()
{
    cli->addProvider(QStringLiteral("alder"), wood);
    const Ended ended = cli->run(words(QLatin1String(QTest::currentDataTag())));
    QCOMPARE(ended.err, QString());
    QTEST(ended.out, "out");
    QCOMPARE(ended.code, 0);
}

void CliGermanTest::messages_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("code");
    const auto row = [](const char *command, const QByteArray &message, int code) {
        QTest::newRow(command) << QString::fromUtf8(message) << code;
    };
    const auto wrong = [&](const char *command, const QByteArray &message) {
        row(command, message + "\nkinlet: mehr dazu mit kinlet --help", 2);
    };
    wrong("", "es fehlt ein Befehl");
    wrong("timelin", "unbekannter Befehl „timelin“; meinten Sie „timeline“?");
    wrong("timeline --limit", "Nach „--limit“ fehlt ein Wert.");
    wrong("services --limit 3", "services kennt --limit nicht");
    wrong("import", "DATEI fehlt: kinlet import DATEI");
    wrong("new-provider elm", "ORDNER fehlt: kinlet new-provider NAME ORDNER");
    wrong("post Hello world",
          "zu viele Argumente, ab „world“: kinlet post TEXT (der Text gehört in "
          "Anführungszeichen)");
    row("persons --account nobody", "unbekanntes Konto „nobody“; es gibt die Konten a1", 2);
    row("like nothing", "keine Aktivität mit der ID „nothing“ gefunden", 1);
    // The names of errors are for programs too, and what follows is the provider's.
    row("post Hello", "alder: NetworkFailed: broken", 1);
    row("import /", "/: ist ein Ordner", 1);
}

void CliGermanTest::messages()
{
    cli->addProvider(QStringLiteral("alder"), wood);
    cli->addProvider(QStringLiteral("local"));
    const Ended ended = cli->run(words(QLatin1String(QTest::currentDataTag())));
    QFETCH(QString, message);
    QCOMPARE(ended.err, QStringLiteral("kinlet: %1\n").arg(message));
    QTEST(ended.code, "code");
}

void CliGermanTest::numbersTakeTheirForm_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("one") << 1 << QString::fromUtf8("1 „Gefällt mir“-Angabe, 1 Kommentar");
    QTest::newRow("two") << 2 << QString::fromUtf8("2 „Gefällt mir“-Angaben, 2 Kommentare");
    QTest::newRow("many") << 21 << QString::fromUtf8("21 „Gefällt mir“-Angaben, 21 Kommentare");
}

void CliGermanTest::numbersTakeTheirForm()
{
    QFETCH(int, number);
    QFETCH(QString, text);
    cli->addProvider(QStringLiteral("alder"),
                     json("{'activities': [{'Id': 's', 'LikeCount': %, 'CommentCount': %}]}")
                         .replace('%', QByteArray::number(number)));
    QCOMPARE(cli->run(words(QStringLiteral("timeline"))).out,
             QStringLiteral("jemand\n    %1\n    s\n\n").arg(text));
}

void CliGermanTest::timesTakeTheirForm_data()
{
    QTest::addColumn<QByteArray>("minutesAgo");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *minutesAgo, const char *text) {
        QTest::newRow(text) << QByteArray(minutesAgo) << QString::fromLatin1(text);
    };
    row("2.1", "vor 2 Minuten");
    row("61", "vor 1 Stunde");
    row("121", "vor 2 Stunden");
    row("1500", "vor 1 Tag");
    row("4400", "vor 3 Tagen");
    row("-90", "in 1 Stunde");
    row("-210", "in 3 Stunden");
    row("-6000", "in 4 Tagen");
}

void CliGermanTest::timesTakeTheirForm()
{
    QFETCH(QByteArray, minutesAgo);
    QFETCH(QString, text);
    cli->addProvider(
        QStringLiteral("alder"),
        json("{'activities': [{'Id': 's', 'StartTime': %}]}").replace('%', minutesAgo));
    QCOMPARE(cli->run(words(QStringLiteral("timeline"))).out,
             QStringLiteral("jemand  %1\n    s\n\n").arg(text));
}

void CliGermanTest::helpIsGermanAndInColumns()
{
    const QStringList german = cli->run({QStringLiteral("--help")}).out.split(QLatin1Char('\n'));
    set("LC_ALL", QStringLiteral("C"));
    const QStringList english = cli->run({QStringLiteral("--help")}).out.split(QLatin1Char('\n'));
    QCOMPARE(german.first(), QStringLiteral("Aufruf: kinlet BEFEHL [ARGUMENT...] [OPTION...]"));
    QCOMPARE(german.size(), english.size());
    constexpr int column = 30;
    for (int i = 0; i < german.size(); ++i) {
        QVERIFY2(german[i].size() <= 100, qPrintable(german[i]));
        if (english[i].isEmpty()) {
            QCOMPARE(german[i], english[i]);
            continue;
        }
        QVERIFY2(german[i] != english[i], qPrintable(german[i]));
        if (english[i].size() <= column || !english[i].startsWith(QStringLiteral("  ")))
            continue;
        // The names of commands, options and variables are the same.
        const auto name = [](const QString &line) { return line.section(QLatin1Char(' '), 2, 2); };
        QCOMPARE(name(german[i]), name(english[i]));
        QCOMPARE(german[i].mid(column - 2, 2), QStringLiteral("  "));
        QVERIFY2(german[i][column] != QLatin1Char(' '), qPrintable(german[i]));
    }
}

void CliGermanTest::checkSpeaksGermanInEachOfItsProcesses()
{
    const QString file = cli->path(QStringLiteral("greedy.so"));
    QVERIFY(QFile::copy(QStringLiteral(FAULTY_PLUGIN), file));
    const Ended ended =
        cli->run({QStringLiteral("check"), file, QStringLiteral("--pause"), QStringLiteral("5")});
    QCOMPARE(ended.code, 1);
    const auto says = [&](const char *line) {
        return ended.out.contains(QString::fromUtf8(line) + QLatin1Char('\n'));
    };
    QVERIFY2(says("eingehalten  loads        lässt sich laden und ist ein Anbieter"),
             qPrintable(ended.out));
    QVERIFY2(says("VERLETZT     limit        um höchstens 3 Aktivitäten gebeten, lieferte er 4\n"
                  "                          -> Mit höchstens limit() Aktivitäten antworten: denen "
                  "mit der neuesten StartTime. Eine Grenze unter 1 ist keine."),
             qPrintable(ended.out));
    QVERIFY2(says("ungeprüft    like         es ändert, was andere von dem Konto sehen: --post "
                  "probiert es aus"),
             qPrintable(ended.out));
    QVERIFY2(says("\n17 eingehalten, 1 verletzt, 2 ungeprüft"), qPrintable(ended.out));
}

void CliGermanTest::programsReadTheSameInAnyLanguage()
{
    cli->addProvider(QStringLiteral("alder"), wood);
    const QString file = cli->path(QStringLiteral("nameless.so"));
    QVERIFY(QFile::copy(QStringLiteral(FAULTY_PLUGIN), file));
    const QList<QStringList> commands{
        words(QStringLiteral("services --json")),
        words(QStringLiteral("providers --json")),
        words(QStringLiteral("show s1 -json")),
        {QStringLiteral("check"), file, QStringLiteral("--json"), QStringLiteral("--pause"),
         QStringLiteral("5")},
    };
    QStringList german;
    for (const QStringList &command : commands)
        german.append(cli->run(command).out);
    set("LC_ALL", QStringLiteral("C"));
    for (int i = 0; i < commands.size(); ++i)
        QCOMPARE(german[i], cli->run(commands[i]).out);
    QVERIFY(german.last().contains(QStringLiteral("metaData() has no text under")));
}

void CliGermanTest::environmentChoosesTheLanguage_data()
{
    QTest::addColumn<QByteArray>("variables");
    QTest::addColumn<bool>("german");
    const auto row = [](const char *variables, bool german) {
        QTest::newRow(*variables ? variables : "nothing") << QByteArray(variables) << german;
    };
    row("LC_ALL=de_DE.UTF-8", true);
    row("LC_ALL=de_AT@euro", true);
    row("LC_ALL=de", true);
    row("LC_MESSAGES=de_CH.UTF-8 LANG=en_US.UTF-8", true);
    row("LANG=de_DE.UTF-8", true);
    row("LANGUAGE=de", true);
    row("LANGUAGE=de LANG=en_US.UTF-8", true);
    row("LANGUAGE=de LC_ALL=C.UTF-8", true);
    row("LANGUAGE=xx:de_DE LANG=xx_XX.UTF-8", true);
    row("", false);
    row("LC_ALL=xx_XX.UTF-8", false);
    row("LC_ALL=den_DE.UTF-8", false);
    row("LC_ALL=en_US.UTF-8 LANG=de_DE.UTF-8", false);
    row("LC_MESSAGES=en_US.UTF-8 LANG=de_DE.UTF-8", false);
    row("LANGUAGE=en:de LANG=de_DE.UTF-8", false);
    row("LANGUAGE=en_GB:de LANG=de_DE.UTF-8", false);
    row("LANGUAGE=de LC_ALL=C", false);
    row("LANGUAGE=de LC_ALL=POSIX", false);
}

void CliGermanTest::environmentChoosesTheLanguage()
{
    QFETCH(QByteArray, variables);
    QFETCH(bool, german);
    for (const char *name : {"LANG", "LANGUAGE", "LC_ALL", "LC_MESSAGES"})
        cli->environment.remove(QLatin1String(name));
    for (const QString &variable : words(QString::fromLatin1(variables)))
        cli->environment.insert(variable.section(QLatin1Char('='), 0, 0),
                                variable.section(QLatin1Char('='), 1));
    cli->addProvider(QStringLiteral("alder"));
    QCOMPARE(cli->run({QStringLiteral("services")}).err,
             german ? QStringLiteral("kinlet: keine Dienste\n")
                    : QStringLiteral("kinlet: no services\n"));
}

void CliGermanTest::runner_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("code");
    QTest::newRow("--help") << QStringLiteral(
        "Aufruf: " KINLET_RUNNER " [Optionen] NAME|DATEI.so\n"
        "Stellt ein Anbieter-Plug-in auf dem Sitzungsbus bereit")
                            << 0;
    QTest::newRow("--list") << QStringLiteral("Keine Plug-ins in ") << 0;
    QTest::newRow("") << QStringLiteral("; siehe --help") << 2;
    QTest::newRow("nobody") << QStringLiteral("gibt es keinen Anbieter namens ") << 3;
    QTest::newRow("/no/such.so") << QStringLiteral("kinlet-runner: /no/such.so ") << 3;
}

void CliGermanTest::runner()
{
    QFETCH(QString, text);
    QProcess process;
    process.setProcessEnvironment(cli->environment);
    process.start(QStringLiteral(KINLET_RUNNER), words(QLatin1String(QTest::currentDataTag())));
    const Ended ended = Cli::end(process);
    const QString said = ended.out + ended.err;
    QVERIFY2(said.contains(text), qPrintable(said));
    QTEST(ended.code, "code");
}

QTEST_GUILESS_MAIN(CliGermanTest)
#include "cligermantest.moc"
