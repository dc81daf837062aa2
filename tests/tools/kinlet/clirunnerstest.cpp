// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cli.h"
#include "dbus/fakerunner.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QTest>

#include <csignal>

namespace {

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

void reloadServices()
{
    const QDBusReply<void> reply =
        QDBusConnection::sessionBus().interface()->call(QStringLiteral("ReloadConfig"));
    QVERIFY2(reply.isValid(), qPrintable(reply.error().message()));
}

}

class CliRunnersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void noneAtAll();
    void listsWhatThereIs();
    void json();
    void startsOne();
    void startsAll();
    void startsAsJson();
    void hangingStartHoldsNobodyUp();
    void controlC_data();
    void controlC();
    void reportsWhatDoesNotStart();
    void namesTheNearest();
    void refusesOtherActions();
    void saysWhereThereIsNoBus();
    void usesTheProvidersOnTheBus();
    void saysHowToGetOne();

private:
    // The bus can start a runner of that name with the command.
    void makeActivatable(const QString &name, const QByteArray &command);
    static QByteArray localCommand();
    // It starts, and never asks for its name.
    static QByteArray hangingCommand();

    std::unique_ptr<Cli> m_cli;
};

void CliRunnersTest::init()
{
    m_cli = std::make_unique<Cli>();
    m_cli->environment.remove(QStringLiteral("KINLET_USE_DBUS"));
    m_cli->environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                              qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
    reloadServices();
}

void CliRunnersTest::cleanup()
{
    QDir services(qEnvironmentVariable("KINLET_TEST_SERVICES"));
    const QStringList files = services.entryList(QDir::Files);
    for (const QString &file : files)
        services.remove(file);
    const QStringList names =
        QDBusConnection::sessionBus().interface()->registeredServiceNames().value();
    for (const QString &name : names) {
        if (!name.startsWith(QLatin1String("com.orvane.kinlet.")))
            continue;
        const uint process = QDBusConnection::sessionBus().interface()->servicePid(name).value();
        ::kill(pid_t(process), SIGTERM);
        QTRY_VERIFY_WITH_TIMEOUT(
            !QDBusConnection::sessionBus().interface()->isServiceRegistered(name), 60000);
    }
}

void CliRunnersTest::makeActivatable(const QString &name, const QByteArray &command)
{
    QFile file(qEnvironmentVariable("KINLET_TEST_SERVICES") + QLatin1Char('/') + name
               + QStringLiteral(".service"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[D-BUS Service]\nName=com.orvane.kinlet." + name.toUtf8() + "\nExec=" + command
               + '\n');
    file.close();
    reloadServices();
}

QByteArray CliRunnersTest::localCommand()
{
    return QByteArray(KINLET_RUNNER " " LOCAL_PLUGIN);
}

QByteArray CliRunnersTest::hangingCommand()
{
    return "/bin/sh -c \"exec sleep 30 >/dev/null 2>&1\"";
}

void CliRunnersTest::noneAtAll()
{
    const Ended ended = m_cli->run(words("runners"));
    QCOMPARE(ended.code, 0);
    QCOMPARE(ended.out, QString());
    QVERIFY2(ended.err.contains(QStringLiteral("kinlet-runner NAME")), qPrintable(ended.err));
    const Ended started = m_cli->run(words("runners start"));
    QCOMPARE(started.code, 0);
    QVERIFY(started.err.contains(QStringLiteral("no runners to start")));
}

void CliRunnersTest::listsWhatThereIs()
{
    makeActivatable(QStringLiteral("idle"), "/bin/false");
    const FakeRunner running({FakeRunner::busName(QStringLiteral("here"))});
    FakeRunner stopped({FakeRunner::busName(QStringLiteral("stuck"))});
    stopped.setStopped(true);
    const Ended ended = m_cli->run(words("runners --wait 2"));
    stopped.setStopped(false);
    QCOMPARE(ended.code, 0);
    const QStringList lines = ended.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(int(lines.size()), 4);
    QVERIFY2(lines.at(1).contains(
                 QRegularExpression(QStringLiteral("here +running, not started by the bus +7"))),
             qPrintable(lines.at(1)));
    QVERIFY2(lines.at(2).contains(QRegularExpression(QStringLiteral("idle +can be started"))),
             qPrintable(lines.at(2)));
    QVERIFY2(lines.at(3).contains(QRegularExpression(QStringLiteral("stuck +does not answer"))),
             qPrintable(lines.at(3)));
}

void CliRunnersTest::json()
{
    const FakeRunner running({FakeRunner::busName(QStringLiteral("here"))});
    const Ended ended = m_cli->run(words("runners --json"));
    QCOMPARE(ended.code, 0);
    QCOMPARE(ended.out,
             QStringLiteral("{\"activatable\":false,\"answering\":true,\"class\":\"Runner\","
                            "\"name\":\"here\",\"running\":true,\"version\":\"7\"}\n"));
}

void CliRunnersTest::startsOne()
{
    makeActivatable(QStringLiteral("local"), localCommand());
    makeActivatable(QStringLiteral("other"), "/bin/false");
    const Ended ended = m_cli->run(words("runners start local"));
    QCOMPARE(ended.err, QString());
    QCOMPARE(ended.code, 0);
    QCOMPARE(ended.out, QStringLiteral("local is running\n"));
    QVERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(
        QStringLiteral("com.orvane.kinlet.local")));
    // Once more changes nothing.
    QCOMPARE(m_cli->run(words("runners start local")).code, 0);
}

void CliRunnersTest::startsAll()
{
    makeActivatable(QStringLiteral("local"), localCommand());
    const Ended ended = m_cli->run(words("runners start"));
    QCOMPARE(ended.code, 0);
    QCOMPARE(ended.out, QStringLiteral("local is running\n"));
}

void CliRunnersTest::startsAsJson()
{
    makeActivatable(QStringLiteral("local"), localCommand());
    const Ended ended = m_cli->run(words("runners start --json"));
    QCOMPARE(ended.code, 0);
    QCOMPARE(ended.out,
             QStringLiteral("{\"activatable\":true,\"answering\":true,\"class\":\"Runner\","
                            "\"name\":\"local\",\"running\":true,\"version\":\"\"}\n"));
}

void CliRunnersTest::hangingStartHoldsNobodyUp()
{
    makeActivatable(QStringLiteral("early"), hangingCommand());
    makeActivatable(QStringLiteral("local"), localCommand());
    const Ended ended = m_cli->run(words("runners start --timeout 2"));
    QCOMPARE(ended.code, 1);
    QCOMPARE(ended.out, QStringLiteral("local is running\n"));
    QCOMPARE(ended.err, QStringLiteral("kinlet: early: did not start within 2 s\n"));
}

void CliRunnersTest::controlC_data()
{
    QTest::addColumn<QString>("shown");
    QTest::newRow("runners --wait 1000")
        << QStringLiteral("stuck  does not answer, not started by the bus");
    QTest::newRow("runners start --timeout 1000")
        << QStringLiteral("kinlet: early: has not started yet");
}

void CliRunnersTest::controlC()
{
    QFETCH(QString, shown);
    makeActivatable(QStringLiteral("early"), hangingCommand());
    FakeRunner stopped({FakeRunner::busName(QStringLiteral("stuck"))});
    stopped.setStopped(true);
    TerminalRun run(*m_cli, words(QTest::currentDataTag()), 80);
    QVERIFY(run.readUntil(QStringLiteral("waiting for runners")));
    run.type("\003");
    const Ended ended = run.end();
    stopped.setStopped(false);
    QCOMPARE(ended.code, 1);
    QVERIFY(ended.out.contains(QStringLiteral("kinlet: interrupted\n")));
    QVERIFY2(ended.out.contains(shown), qPrintable(ended.out));
}

void CliRunnersTest::reportsWhatDoesNotStart()
{
    makeActivatable(QStringLiteral("broken"), "/bin/false");
    makeActivatable(QStringLiteral("local"), localCommand());
    const Ended ended = m_cli->run(words("runners start"));
    QCOMPARE(ended.code, 1);
    QCOMPARE(ended.out, QStringLiteral("local is running\n"));
    QVERIFY2(ended.err.contains(QStringLiteral("broken: ")), qPrintable(ended.err));
}

void CliRunnersTest::namesTheNearest()
{
    makeActivatable(QStringLiteral("local"), localCommand());
    const Ended ended = m_cli->run(words("runners start locla"));
    QCOMPARE(ended.code, 2);
    QVERIFY2(ended.err.contains(QStringLiteral("did you mean \"local\"?")), qPrintable(ended.err));
}

void CliRunnersTest::refusesOtherActions()
{
    const Ended other = m_cli->run(words("runners stop"));
    QCOMPARE(other.code, 2);
    QVERIFY(other.err.contains(QStringLiteral("kinlet runners start [NAME]")));
    QCOMPARE(m_cli->run(words("runners start a b")).code, 2);
}

void CliRunnersTest::saysWhereThereIsNoBus()
{
    m_cli->environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                              QStringLiteral("unix:path=/no/such/bus"));
    const Ended ended = m_cli->run(words("runners"));
    QCOMPARE(ended.code, 1);
    QVERIFY2(ended.err.contains(QStringLiteral("no session bus")), qPrintable(ended.err));
    // Wrong use is wrong with and without one.
    QCOMPARE(m_cli->run(words("runners stop")).code, 2);
}

void CliRunnersTest::usesTheProvidersOnTheBus()
{
    makeActivatable(QStringLiteral("local"), localCommand());
    QCOMPARE(m_cli->run(words("runners start local")).code, 0);
    const Ended accounts = m_cli->run(words("accounts --bus"));
    QCOMPARE(accounts.err, QString());
    QCOMPARE(accounts.code, 0);
    QVERIFY2(accounts.out.contains(QStringLiteral("local")), qPrintable(accounts.out));
}

void CliRunnersTest::saysHowToGetOne()
{
    const Ended ended = m_cli->run(words("accounts"));
    QCOMPARE(ended.code, 3);
    QVERIFY(ended.err.contains(QStringLiteral("kinlet runners start")));
    QVERIFY(ended.err.contains(QStringLiteral("--in-process")));
}

QTEST_GUILESS_MAIN(CliRunnersTest)
#include "clirunnerstest.moc"
