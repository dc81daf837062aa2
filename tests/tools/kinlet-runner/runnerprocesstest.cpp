// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "probetest.h"

#include <QDBusConnectionInterface>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <csignal>

class RunnerProcessTest : public ProbeTest {
    Q_OBJECT

private Q_SLOTS:
    void exitCodes_data();
    void exitCodes();
    void listsPlugins();
    void helpAndVersion();
    void nameTaken();
    void invalidNames();
    void terminated_data();
    void terminated();
    void secondSignalEndsABlockedProvider();
    void providerGoesBeforeTheApplication();
    void idleExit();
    void busyIsNotIdle();
    void providerErrorInitialisesAnew();
    void errorFromTheStart();
    void busGoesAway();
};

void RunnerProcessTest::exitCodes_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("bus");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("says");

    const QString bus = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    const auto text = [](const char *text) { return QString::fromLatin1(text); };
    QTest::newRow("nothing named") << QStringList() << bus << 2 << text("name one provider");
    QTest::newRow("two named") << QStringList({text("a"), text("b")}) << bus << 2
                               << text("name one provider");
    QTest::newRow("unknown option")
        << QStringList({text("--no-such-option"), text("probe")}) << bus << 2 << text("--help");
    for (const char *seconds : {"0", "-1", "x", "99999999999"})
        QTest::addRow("idle %s", seconds)
            << QStringList({text("--idle-exit=") + text(seconds), text("probe")}) << bus << 2
            << text("--idle-exit");
    QTest::newRow("unknown name") << QStringList(text("nobody")) << bus << 3
                                  << text("no provider named 'nobody'");
    QTest::newRow("no such file") << QStringList(text("/no/such/file.so")) << bus << 3
                                  << text("/no/such/file.so");
    QTest::newRow("text file") << QStringList(text(KINLET_PROBE_FOLDER "/text.so")) << bus << 3
                               << text("cannot be loaded");
    QTest::newRow("no bus") << QStringList(text("probe")) << text("unix:path=/no/such/bus") << 5
                            << text("no session bus");
}

void RunnerProcessTest::exitCodes()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, bus);
    QFETCH(int, code);
    QFETCH(QString, says);

    QFile text(QStringLiteral(KINLET_PROBE_FOLDER "/text.so"));
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write("no plug-in");
    text.close();
    const Outcome outcome =
        run(arguments, environment(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus));
    text.remove();
    QCOMPARE(outcome.code, code);
    QVERIFY2(outcome.errors.contains(says), qPrintable(outcome.errors));
    QCOMPARE(outcome.errors.count(QLatin1Char('\n')), 1);
}

void RunnerProcessTest::listsPlugins()
{
    const Outcome some = run({QStringLiteral("--list")}, environment());
    QCOMPARE(some.code, 0);
    QVERIFY2(some.output.contains(QRegularExpression(QStringLiteral("probe +/.*probe\\.so"))),
             qPrintable(some.output));
    const Outcome none =
        run({QStringLiteral("--list")},
            environment(QStringLiteral("KINLET_PLUGIN_PATH"), QStringLiteral("/no/folder")));
    QCOMPARE(none.code, 0);
    QVERIFY(none.output.contains(QStringLiteral("/no/folder")));
}

void RunnerProcessTest::helpAndVersion()
{
    const Outcome help = run({QStringLiteral("--help")}, environment());
    QCOMPARE(help.code, 0);
    for (const char *word : {"--list", "--idle-exit", "NAME|FILE.so", "KINLET_PLUGIN_PATH"})
        QVERIFY2(help.output.contains(QLatin1String(word)), word);
    const Outcome version = run({QStringLiteral("--version")}, environment());
    QCOMPARE(version.code, 0);
    QCOMPARE(version.output, QStringLiteral("kinlet-runner 0.1.0\n"));
}

void RunnerProcessTest::nameTaken()
{
    start({QStringLiteral("probe")});
    const Outcome second = run({QStringLiteral("probe")}, environment());
    QCOMPARE(second.code, 6);
    QVERIFY(second.errors.contains(probe));
    QCOMPARE(second.errors.count(QLatin1Char('\n')), 1);
    QVERIFY(isOwned(probe));
}

void RunnerProcessTest::invalidNames()
{
    const Outcome outcome = run({QStringLiteral(KINLET_BAD_NAME_PLUGIN)}, environment());
    QCOMPARE(outcome.code, 4);
    QVERIFY2(outcome.errors.contains(QStringLiteral("'bad-name.x'")), qPrintable(outcome.errors));
    QCOMPARE(outcome.errors.count(QLatin1Char('\n')), 1);
}

void RunnerProcessTest::terminated_data()
{
    QTest::addColumn<int>("signalNumber");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
}

void RunnerProcessTest::terminated()
{
    QFETCH(int, signalNumber);

    start({QStringLiteral("probe")});
    QSignalSpy told(m_client.get(), SIGNAL(dataUpdate(QVariantList, QStringList)));
    m_client->performRequest(5, QStringLiteral("a"), personsRequest(QStringLiteral("probe-never")))
        .waitForFinished();
    QVERIFY(!ask(QStringLiteral("probe-now")).isEmpty());
    ::kill(pid_t(m_process->processId()), signalNumber);
    QVERIFY(m_process->waitForFinished(Patience));
    QCOMPARE(m_process->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_process->exitCode(), 0);
    QVERIFY(!isOwned(probe));
    QCOMPARE(m_process->readAllStandardError(), QByteArray());
}

void RunnerProcessTest::secondSignalEndsABlockedProvider()
{
    start({QStringLiteral("probe")});
    QSignalSpy told(m_client.get(), SIGNAL(dataUpdate(QVariantList, QStringList)));
    m_client->performRequest(5, QStringLiteral("a"),
                             personsRequest(QStringLiteral("probe-blocking")));
    QTRY_COMPARE_WITH_TIMEOUT(told.count(), 1, Patience);
    // Two that come at the same time are one.
    for (int i = 0; i < 100 && m_process->state() == QProcess::Running; ++i) {
        m_process->terminate();
        m_process->waitForFinished(100);
    }
    const bool ended = m_process->state() == QProcess::NotRunning;
    m_process->kill();
    QVERIFY(ended);
}

// The local provider holds a database, which cannot be closed after the application.
void RunnerProcessTest::providerGoesBeforeTheApplication()
{
    const QString local = QStringLiteral("com.orvane.kinlet.local");
    QProcess runner;
    runner.setProcessEnvironment(environment());
    runner.start(QStringLiteral(KINLET_RUNNER), {QStringLiteral(KINLET_LOCAL_PLUGIN)});
    QTRY_VERIFY_WITH_TIMEOUT(isOwned(local), Patience);
    runner.terminate();
    QVERIFY(runner.waitForFinished(Patience));
    QCOMPARE(runner.exitStatus(), QProcess::NormalExit);
    QCOMPARE(runner.exitCode(), 0);
}

void RunnerProcessTest::idleExit()
{
    start({QStringLiteral("--idle-exit"), QStringLiteral("1"), QStringLiteral("probe")});
    QVERIFY(!ask(QStringLiteral("probe-now")).isEmpty());
    QVERIFY(m_process->waitForFinished(Patience));
    QCOMPARE(m_process->exitCode(), 0);
}

void RunnerProcessTest::busyIsNotIdle()
{
    start({QStringLiteral("--idle-exit"), QStringLiteral("1"), QStringLiteral("probe")});
    m_client->performRequest(5, QStringLiteral("a"), personsRequest(QStringLiteral("probe-never")))
        .waitForFinished();
    // Longer than the idle time: the request that is being served keeps the process.
    QTest::qWait(2500);
    QCOMPARE(m_process->state(), QProcess::Running);
}

void RunnerProcessTest::providerErrorInitialisesAnew()
{
    start({QStringLiteral("probe")});
    QVERIFY(!ask(QStringLiteral("probe-broken")).isEmpty());
    QDBusPendingReply<QVariantMap> reply = m_client->metaData();
    reply.waitForFinished();
    QCOMPARE(reply.value().value(QStringLiteral("initialised")).toInt(), 2);
    m_process->setReadChannel(QProcess::StandardError);
    QTRY_VERIFY_WITH_TIMEOUT(m_process->canReadLine(), Patience);
    QCOMPARE(m_process->readLine(), QByteArray("probe: broken: as asked\n"));
}

void RunnerProcessTest::errorFromTheStart()
{
    start({QStringLiteral("probe")},
          environment(QStringLiteral("PROBE_FAILS"), QStringLiteral("1")));
    QDBusPendingReply<QVariantMap> reply = m_client->metaData();
    reply.waitForFinished();
    QCOMPARE(reply.value().value(QStringLiteral("initialised")).toInt(), 2);
    m_process->setReadChannel(QProcess::StandardError);
    QTRY_VERIFY_WITH_TIMEOUT(m_process->canReadLine(), Patience);
    QCOMPARE(m_process->readLine(), QByteArray("probe: broken: from the start\n"));
}

void RunnerProcessTest::busGoesAway()
{
    QProcess bus;
    bus.start(QStringLiteral("dbus-daemon"),
              {QStringLiteral("--session"), QStringLiteral("--nofork"),
               QStringLiteral("--print-address")});
    QVERIFY(bus.waitForReadyRead(Patience));
    const QString address = QString::fromUtf8(bus.readLine()).trimmed();
    QProcess runner;
    runner.setProcessEnvironment(environment(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address));
    runner.start(QStringLiteral(KINLET_RUNNER), {QStringLiteral("probe")});
    {
        const QDBusConnection connection =
            QDBusConnection::connectToBus(address, QStringLiteral("doomed"));
        QTRY_VERIFY_WITH_TIMEOUT(connection.interface()->isServiceRegistered(probe), Patience);
    }
    QDBusConnection::disconnectFromBus(QStringLiteral("doomed"));
    bus.kill();
    QVERIFY(bus.waitForFinished(Patience));
    QVERIFY(runner.waitForFinished(Patience));
    QCOMPARE(runner.exitCode(), 1);
    QVERIFY(runner.readAllStandardError().contains("the session bus went away"));
}

QTEST_GUILESS_MAIN(RunnerProcessTest)
#include "runnerprocesstest.moc"
