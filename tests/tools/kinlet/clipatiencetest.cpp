// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cli.h"

#include <QFile>
#include <QTest>

#include <csignal>

namespace {

const QByteArray quick = json(R"({
    'accounts': [{'Id': 'a1'}],
    'activities': [{'Id': 's1', 'OwnerPersonId': 'p1'}],
    'persons': [{'Id': 'p1', 'ScreenName': 'Ada'}]
})");

const QByteArray hanging = json(R"({
    'accounts': [{'Id': 'c1'}],
    'activities': [{'Id': 't1'}, {'Id': 't2'}, {'Id': 't3'}],
    'silent': ['activities', 'persons', 'post', 'like', 'likers']
})");

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

}

class CliPatienceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hangingProviderHoldsNobodyUp();
    void nobodyIsAskedAgainAfterSilence();
    void actionsGoOnWithoutTheSilent();
    void silentPost();
    void partialResultsOfTheSilent_data();
    void partialResultsOfTheSilent();
    void stoppedRequestIsAnAnswer();
    void errorTypes_data();
    void errorTypes();
    void errorsOfEveryQuestion_data();
    void errorsOfEveryQuestion();
    void interruption_data();
    void interruption();
    void interruptedLookingActsOnNothing();
    void interruptionWhileAProviderBlocks();
};

void CliPatienceTest::hangingProviderHoldsNobodyUp()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), quick);
    cli.addProvider(QStringLiteral("cedar"), hanging);
    const Ended ended = cli.run(words("timeline --wait 0.5"));
    QCOMPARE(ended.out, QStringLiteral("Ada  alder\n    s1\n\n"));
    QCOMPARE(ended.err, QStringLiteral("kinlet: no answer within 0.5 s from cedar\n"));
    QCOMPARE(ended.code, 1);
}

void CliPatienceTest::nobodyIsAskedAgainAfterSilence()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), quick);
    cli.addProvider(QStringLiteral("cedar"), hanging);
    cli.run(words("timeline --wait 0.2"));
    const QList<QJsonObject> asked = cli.asked(QStringLiteral("persons"));
    QCOMPARE(asked.size(), 1);
    for (const QJsonObject &request : asked)
        QCOMPARE(request[QLatin1String("provider")].toString(), QStringLiteral("alder"));
}

void CliPatienceTest::actionsGoOnWithoutTheSilent()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), quick);
    cli.addProvider(QStringLiteral("cedar"), hanging);
    const Ended ended = cli.run(words("like s1 --wait 0.2"));
    QCOMPARE(ended.out, QStringLiteral("Liked with a1.\n"));
    QCOMPARE(ended.err, QStringLiteral("kinlet: no answer within 0.2 s from cedar\n"));
    QCOMPARE(ended.code, 1);
}

void CliPatienceTest::silentPost()
{
    Cli cli;
    cli.addProvider(QStringLiteral("cedar"), hanging);
    const Ended ended = cli.run(words("post x --wait 0.2"));
    QCOMPARE(ended.out, QString());
    QCOMPARE(ended.err, QStringLiteral("kinlet: no answer within 0.2 s from cedar\n"));
    QCOMPARE(ended.code, 1);
}

void CliPatienceTest::partialResultsOfTheSilent_data()
{
    QTest::addColumn<QByteArray>("accounts");
    QTest::newRow("without accounts") << QByteArray("[]");
    QTest::newRow("with an account") << json("[{'Id': 'c1'}]");
}

void CliPatienceTest::partialResultsOfTheSilent()
{
    QFETCH(QByteArray, accounts);
    Cli cli;
    cli.addProvider(QStringLiteral("cedar"),
                    json(R"({'accounts': ACCOUNTS, 'silent': ['activities'], 'partial': 2,
        'activities': [{'Id': 't1'}, {'Id': 't2'}, {'Id': 't3'}]})")
                        .replace("ACCOUNTS", accounts));
    const Ended ended = cli.run(words("timeline --json --wait 0.2"));
    QCOMPARE(ended.objects().size(), 2);
    QCOMPARE(ended.code, 1);
    QFile log(cli.path(QStringLiteral("log")));
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(log.readAll().contains("cancelled"));
}

void CliPatienceTest::stoppedRequestIsAnAnswer()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), json(R"({'accounts': [{'Id': 'a1'}],
        'stops': ['activities'], 'activities': [{'Id': 's1'}]})"));
    // The library keeps such a request open for a minute.
    const Ended ended = cli.run(words("timeline --json --wait 1000"));
    QCOMPARE(ended.objects().size(), 1);
    QCOMPARE(ended.err, QStringLiteral("kinlet: alder: UnknownError: the provider has given up\n"));
    QCOMPARE(ended.code, 1);
}

void CliPatienceTest::errorTypes_data()
{
    QTest::addColumn<int>("type");
    const QStringList names{
        QStringLiteral("UnknownError"),    QStringLiteral("UnsupportedRequest"),
        QStringLiteral("PostFailed"),      QStringLiteral("AuthenticationFailed"),
        QStringLiteral("NetworkFailed"),   QStringLiteral("InvalidRequest"),
        QStringLiteral("ProviderTimeout"), QStringLiteral("NotPerformed"),
        QStringLiteral("LikeFailed"),      QStringLiteral("Error 9")};
    for (int type = 0; type < names.size(); ++type)
        QTest::newRow(qPrintable(names[type])) << type;
    QTest::newRow("Error -5") << -5;
}

void CliPatienceTest::errorTypes()
{
    QFETCH(int, type);
    Cli cli;
    cli.addProvider(
        QStringLiteral("cedar"),
        json("{'activities': [{'Id': 's1'}], 'errors': {'activities': [[%1, 'it broke']]}}")
            .replace("%1", QByteArray::number(type)));
    const Ended ended = cli.run(words("timeline --json"));
    QCOMPARE(ended.objects().size(), 1);
    QCOMPARE(ended.err,
             QStringLiteral("kinlet: cedar: %1: it broke\n")
                 .arg(QLatin1String(QTest::currentDataTag())));
    QCOMPARE(ended.code, 1);
}

void CliPatienceTest::errorsOfEveryQuestion_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::newRow("services") << QByteArray("services");
    QTest::newRow("accounts") << QByteArray("accounts");
    QTest::newRow("persons") << QByteArray("persons");
    QTest::newRow("likers s1 --account a1") << QByteArray("likers");
    QTest::newRow("show s1") << QByteArray("likers");
    QTest::newRow("comment s1 x") << QByteArray("post");
    QTest::newRow("like s1") << QByteArray("like");
    QTest::newRow("unlike s1") << QByteArray("like");
}

void CliPatienceTest::errorsOfEveryQuestion()
{
    QFETCH(QByteArray, kind);
    Cli cli;
    cli.addProvider(QStringLiteral("alder"),
                    json(R"({'accounts': [{'Id': 'a1'}], 'activities': [{'Id': 's1'}],
                             'errors': {'KIND': [[4, 'it broke']]}})")
                        .replace("KIND", kind));
    const Ended ended = cli.run(words(QTest::currentDataTag()));
    QCOMPARE(ended.err.count(QStringLiteral("kinlet: alder: NetworkFailed: it broke\n")), 1);
    QCOMPARE(ended.code, 1);
}

void CliPatienceTest::interruption_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("Ctrl-C") << SIGINT;
    QTest::newRow("request to terminate") << SIGTERM;
}

void CliPatienceTest::interruption()
{
    QFETCH(int, signal);
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), quick);
    cli.addProvider(QStringLiteral("cedar"), hanging);
    QProcess process;
    cli.start(process, words("timeline --json --wait 1000"));
    QTRY_COMPARE_WITH_TIMEOUT(cli.asked(QStringLiteral("activities")).size(), 2, 30000);
    kill(pid_t(process.processId()), signal);
    const Ended ended = Cli::end(process);
    QCOMPARE(ended.objects().size(), 1);
    QCOMPARE(ended.err, QStringLiteral("kinlet: interrupted; no answer yet from cedar\n"));
    QCOMPARE(ended.code, 1);
}

void CliPatienceTest::interruptedLookingActsOnNothing()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), quick);
    cli.addProvider(QStringLiteral("cedar"), hanging);
    QProcess process;
    cli.start(process, words("like s1 --wait 1000"));
    QTRY_COMPARE_WITH_TIMEOUT(cli.asked(QStringLiteral("activities")).size(), 2, 30000);
    kill(pid_t(process.processId()), SIGINT);
    const Ended ended = Cli::end(process);
    QCOMPARE(ended.out, QString());
    QCOMPARE(ended.code, 1);
    QVERIFY(cli.asked(QStringLiteral("like")).isEmpty());
}

void CliPatienceTest::interruptionWhileAProviderBlocks()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), json(R"({'accounts': [{'Id': 'a1'}],
        'activities': [{'Id': 's1'}], 'interrupts': ['activities']})"));
    const Ended ended = cli.run(words("like s1"));
    QCOMPARE(ended.out, QString());
    QCOMPARE(ended.err, QStringLiteral("kinlet: interrupted\n"));
    QCOMPARE(ended.code, 1);
    QVERIFY(cli.asked(QStringLiteral("like")).isEmpty());
}

QTEST_GUILESS_MAIN(CliPatienceTest)
#include "clipatiencetest.moc"
