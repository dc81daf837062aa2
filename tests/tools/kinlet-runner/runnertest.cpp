// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/kinletrunnerinterface.h"
#include "dbus/payload.h"
#include "records/valuetypes.h"
#include "requests/socialgetpersonsrequest.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

namespace {

constexpr int Patience = 60000;
const QString probe = QStringLiteral("com.orvane.kinlet.probe");

// What the tool says and how it ends.
struct Outcome {
    int code;
    QString output;
    QString errors;
};

Outcome run(const QStringList &arguments, const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(KINLET_RUNNER), arguments);
    if (!process.waitForFinished(Patience))
        qFatal("kinlet-runner does not end");
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QProcessEnvironment environment(const QString &variable = {}, const QString &value = {})
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("KINLET_PLUGIN_PATH"), QStringLiteral(KINLET_PROBE_FOLDER));
    if (!variable.isEmpty())
        environment.insert(variable, value);
    return environment;
}

QByteArray personsRequest(const QString &account)
{
    SocialGetPersonsRequest request;
    request.setPerformOnAccountsFilter({account});
    return Payload::write(request);
}

bool isOwned(const QString &name)
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(name);
}

QString recordText(const QVariantList &arguments)
{
    SocialGenericData record;
    Payload::read(arguments.at(0).toList().value(0).toByteArray(), record);
    return record.description();
}

}

class RunnerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void exitCodes_data();
    void exitCodes();
    void listsPlugins();
    void helpAndVersion();
    void nameTaken();
    void invalidNames();
    void servesByFile();
    void metaData();
    void answers_data();
    void answers();
    void manyAtOnce();
    void requestIdIsEchoed();
    void refusals_data();
    void refusals();
    void errorsAreSentBeside();
    void pushes();
    void answerGoesToTheCallerOnly();
    void answerTooLargeForTheBus();
    void callerLeaves();
    void terminated_data();
    void terminated();
    void providerGoesBeforeTheApplication();
    void idleExit();
    void busyIsNotIdle();
    void providerErrorInitialisesAnew();
    void busGoesAway();

private:
    void start(const QStringList &arguments);
    QVariantList ask(const QString &account, const QString &id = QStringLiteral("id"));

    std::unique_ptr<QProcess> m_process;
    std::unique_ptr<KinletRunnerInterface> m_client;
};

void RunnerTest::initTestCase()
{
    KinletInitializer::init();
}

void RunnerTest::init()
{
    m_client = std::make_unique<KinletRunnerInterface>(probe, QStringLiteral("/probe"),
                                                       QDBusConnection::sessionBus(), nullptr);
}

void RunnerTest::cleanup()
{
    m_client.reset();
    if (m_process) {
        m_process->terminate();
        QVERIFY(m_process->state() == QProcess::NotRunning || m_process->waitForFinished(Patience));
        m_process.reset();
    }
    QTRY_VERIFY_WITH_TIMEOUT(!isOwned(probe), Patience);
}

void RunnerTest::start(const QStringList &arguments)
{
    m_process = std::make_unique<QProcess>();
    m_process->setProcessEnvironment(environment());
    m_process->start(QStringLiteral(KINLET_RUNNER), arguments);
    QTRY_VERIFY_WITH_TIMEOUT(isOwned(probe), Patience);
}

// Sends a request and waits for its answer: the arguments of requestFinished.
QVariantList RunnerTest::ask(const QString &account, const QString &id)
{
    QSignalSpy finished(m_client.get(),
                        SIGNAL(requestFinished(int, QString, QByteArray, QByteArray)));
    m_client->performRequest(SocialDataRequest::GetPersons, id, personsRequest(account));
    if (!finished.wait(Patience))
        return {};
    return finished.at(0);
}

void RunnerTest::exitCodes_data()
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

void RunnerTest::exitCodes()
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

void RunnerTest::listsPlugins()
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

void RunnerTest::helpAndVersion()
{
    const Outcome help = run({QStringLiteral("--help")}, environment());
    QCOMPARE(help.code, 0);
    for (const char *word : {"--list", "--idle-exit", "NAME|FILE.so", "KINLET_PLUGIN_PATH"})
        QVERIFY2(help.output.contains(QLatin1String(word)), word);
    const Outcome version = run({QStringLiteral("--version")}, environment());
    QCOMPARE(version.code, 0);
    QCOMPARE(version.output, QStringLiteral("kinlet-runner 0.1.0\n"));
}

void RunnerTest::nameTaken()
{
    start({QStringLiteral("probe")});
    const Outcome second = run({QStringLiteral("probe")}, environment());
    QCOMPARE(second.code, 6);
    QVERIFY(second.errors.contains(probe));
    QVERIFY(isOwned(probe));
}

void RunnerTest::invalidNames()
{
    const Outcome outcome = run({QStringLiteral(KINLET_BAD_NAME_PLUGIN)}, environment());
    QCOMPARE(outcome.code, 4);
    QVERIFY2(outcome.errors.contains(QStringLiteral("'bad-name.x'")), qPrintable(outcome.errors));
}

void RunnerTest::servesByFile()
{
    start({QStringLiteral(KINLET_PROBE_FOLDER "/probe.so")});
    QVERIFY(!ask(QStringLiteral("probe-now")).isEmpty());
}

void RunnerTest::metaData()
{
    start({QStringLiteral("probe")});
    QDBusPendingReply<QVariantMap> reply = m_client->metaData();
    reply.waitForFinished();
    QVERIFY2(!reply.isError(), qPrintable(reply.error().message()));
    QCOMPARE(reply.value().value(QStringLiteral("name")).toString(), QStringLiteral("probe"));
    QCOMPARE(reply.value().value(QStringLiteral("version")).toString(), QStringLiteral("1.2.3"));
    QCOMPARE(reply.value().value(QStringLiteral("initialised")).toInt(), 1);
}

void RunnerTest::answers_data()
{
    QTest::addColumn<QString>("account");
    QTest::addColumn<int>("status");
    QTest::newRow("at once") << QStringLiteral("probe-now") << 4;
    QTest::newRow("later") << QStringLiteral("probe-later") << 4;
    QTest::newRow("twice") << QStringLiteral("probe-twice") << 4;
    QTest::newRow("stopped") << QStringLiteral("probe-stopped") << 3;
    QTest::newRow("in parts") << QStringLiteral("probe-partial") << 4;
}

void RunnerTest::answers()
{
    QFETCH(QString, account);
    QFETCH(int, status);

    start({QStringLiteral("probe")});
    QSignalSpy finished(m_client.get(),
                        SIGNAL(requestFinished(int, QString, QByteArray, QByteArray)));
    m_client->performRequest(5, QStringLiteral("one"), personsRequest(account));
    m_client->performRequest(5, QStringLiteral("two"),
                             personsRequest(QStringLiteral("probe-later")));
    QTRY_VERIFY_WITH_TIMEOUT(finished.count() >= 2, Patience);
    // One answer for each, however often the provider reported.
    QCOMPARE(finished.count(), 2);
    const bool isFirst = finished.at(0).at(1).toString() == QLatin1String("one");
    const QVariantList arguments = finished.at(isFirst ? 0 : 1);
    QCOMPARE(arguments.at(0).toInt(), 5);
    QCOMPARE(arguments.at(1).toString(), QStringLiteral("one"));
    SocialGetPersonsRequest answered;
    QVERIFY(Payload::read(arguments.at(2).toByteArray(), answered));
    QCOMPARE(int(answered.status()), status);
    QCOMPARE(int(answered.results().size()), 1);
    QCOMPARE(answered.results().at(0).id(), QStringLiteral("probe"));
    QCOMPARE(arguments.at(3).toByteArray(), QByteArray(4, '\0'));
}

void RunnerTest::manyAtOnce()
{
    start({QStringLiteral("probe")});
    QSignalSpy finished(m_client.get(),
                        SIGNAL(requestFinished(int, QString, QByteArray, QByteArray)));
    constexpr int count = 500;
    for (int i = 0; i < count; ++i)
        m_client->performRequest(
            5, QString::number(i),
            personsRequest(i % 2 ? QStringLiteral("probe-now") : QStringLiteral("probe-later")));
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), count, Patience);
    QSet<QString> ids;
    for (const QVariantList &arguments : std::as_const(finished))
        ids.insert(arguments.at(1).toString());
    QCOMPARE(int(ids.size()), count);
}

void RunnerTest::requestIdIsEchoed()
{
    start({QStringLiteral("probe")});
    const QString odd = QStringLiteral("{ any text \u00e4\u2603 }");
    QCOMPARE(ask(QStringLiteral("probe-now"), odd).value(1).toString(), odd);
    QCOMPARE(ask(QStringLiteral("probe-now"), QString()).value(1).toString(), QString());
}

void RunnerTest::refusals_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("says");

    const QByteArray good = personsRequest(QStringLiteral("probe-now"));
    for (int type : {-1, 2, 4, 6, 8, 12, 1000})
        QTest::addRow("kind %d", type)
            << type << good << QStringLiteral("There is no request of kind %1.").arg(type);
    const QString undecodable = QStringLiteral("are no request of kind 5");
    QTest::newRow("no bytes") << 5 << QByteArray() << undecodable;
    QTest::newRow("truncated") << 5 << good.left(good.size() - 1) << undecodable;
    QTest::newRow("too long") << 5 << good + 'x' << undecodable;
    QTest::newRow("noise") << 5 << QByteArray(100, '\xa7') << undecodable;
    QTest::newRow("hostile count")
        << 5 << QByteArray::fromHex("0000000500000000ffffffff") << undecodable;
}

void RunnerTest::refusals()
{
    QFETCH(int, type);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, says);

    start({QStringLiteral("probe")});
    QSignalSpy finished(m_client.get(),
                        SIGNAL(requestFinished(int, QString, QByteArray, QByteArray)));
    QDBusPendingReply<> reply = m_client->performRequest(type, QStringLiteral("bad"), bytes);
    reply.waitForFinished();
    QVERIFY(reply.isError());
    QCOMPARE(reply.error().name(), QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
    QVERIFY2(reply.error().message().contains(says), qPrintable(reply.error().message()));
    // Nothing is owed for it: the next answer is the next request's.
    m_client->performRequest(5, QStringLiteral("good"),
                             personsRequest(QStringLiteral("probe-now")));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(finished.at(0).at(1).toString(), QStringLiteral("good"));
}

void RunnerTest::errorsAreSentBeside()
{
    start({QStringLiteral("probe")});
    const QVariantList arguments = ask(QStringLiteral("probe-failing"));
    // Count 1, the description "no network", type 4.
    QCOMPARE(arguments.value(3).toByteArray().toHex(),
             QByteArray("00000001"
                        "00000014"
                        "006e006f0020006e006500740077006f0072006b"
                        "00000004"));
}

void RunnerTest::pushes()
{
    start({QStringLiteral("probe")});
    QSignalSpy persons(m_client.get(), SIGNAL(personsUpdate(QVariantList, QStringList)));
    QSignalSpy data(m_client.get(), SIGNAL(dataUpdate(QVariantList, QStringList)));
    ask(QStringLiteral("probe-pushing"));
    QTRY_COMPARE_WITH_TIMEOUT(data.count(), 1, Patience);
    QCOMPARE(recordText(data.at(0)), QStringLiteral("pushed"));
    QCOMPARE(data.at(0).at(1).toStringList(), QStringList(SocialGenericData::Description));
    QCOMPARE(persons.count(), 1);
    SocialNetworkPerson person;
    QVERIFY(Payload::read(persons.at(0).at(0).toList().at(0).toByteArray(), person));
    QCOMPARE(person.id(), QStringLiteral("pushed"));
    QCOMPARE(person.className(), SocialNetworkPerson::ClassName);
}

void RunnerTest::answerGoesToTheCallerOnly()
{
    start({QStringLiteral("probe")});
    const QString second = QStringLiteral("second");
    {
        QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, second);
        KinletRunnerInterface bystander(probe, QStringLiteral("/probe"), other, nullptr);
        QSignalSpy overheard(&bystander,
                             SIGNAL(requestFinished(int, QString, QByteArray, QByteArray)));
        QSignalSpy pushed(&bystander, SIGNAL(dataUpdate(QVariantList, QStringList)));
        QVERIFY(!ask(QStringLiteral("probe-pushing")).isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(pushed.count(), 1, Patience);
        ask(QStringLiteral("probe-pushing"));
        QTRY_COMPARE_WITH_TIMEOUT(pushed.count(), 2, Patience);
        QCOMPARE(overheard.count(), 0);
    }
    QDBusConnection::disconnectFromBus(second);
}

void RunnerTest::answerTooLargeForTheBus()
{
    start({QStringLiteral("probe")});
    const QVariantList arguments = ask(QStringLiteral("probe-large"));
    SocialGetPersonsRequest answered;
    QVERIFY(Payload::read(arguments.value(2).toByteArray(), answered));
    QVERIFY(answered.results().isEmpty());
    QVERIFY(arguments.value(3).toByteArray().size() > 4);
    QVERIFY(!ask(QStringLiteral("probe-now")).isEmpty());
}

void RunnerTest::callerLeaves()
{
    start({QStringLiteral("probe")});
    QSignalSpy told(m_client.get(), SIGNAL(dataUpdate(QVariantList, QStringList)));
    const QString leaving = QStringLiteral("leaving");
    {
        const QDBusConnection other =
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, leaving);
        KinletRunnerInterface caller(probe, QStringLiteral("/probe"), other, nullptr);
        caller.performRequest(5, QStringLiteral("a"), personsRequest(QStringLiteral("probe-never")))
            .waitForFinished();
        caller.performRequest(5, QStringLiteral("b"), personsRequest(QStringLiteral("probe-never")))
            .waitForFinished();
    }
    // A caller that stays keeps its request.
    m_client->performRequest(5, QStringLiteral("c"), personsRequest(QStringLiteral("probe-never")));
    QVERIFY(!ask(QStringLiteral("probe-now")).isEmpty());
    QCOMPARE(told.count(), 0);
    QDBusConnection::disconnectFromBus(leaving);
    QTRY_COMPARE_WITH_TIMEOUT(told.count(), 2, Patience);
    QCOMPARE(recordText(told.at(0)), QStringLiteral("cancelled 5"));
    QVERIFY(!ask(QStringLiteral("probe-now")).isEmpty());
    QCOMPARE(told.count(), 2);
}

void RunnerTest::terminated_data()
{
    QTest::addColumn<int>("signalNumber");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
}

void RunnerTest::terminated()
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

// The local provider holds a database, which cannot be closed after the application.
void RunnerTest::providerGoesBeforeTheApplication()
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

void RunnerTest::idleExit()
{
    start({QStringLiteral("--idle-exit"), QStringLiteral("1"), QStringLiteral("probe")});
    QVERIFY(!ask(QStringLiteral("probe-now")).isEmpty());
    QVERIFY(m_process->waitForFinished(Patience));
    QCOMPARE(m_process->exitCode(), 0);
}

void RunnerTest::busyIsNotIdle()
{
    start({QStringLiteral("--idle-exit"), QStringLiteral("1"), QStringLiteral("probe")});
    m_client->performRequest(5, QStringLiteral("a"), personsRequest(QStringLiteral("probe-never")))
        .waitForFinished();
    // Longer than the idle time: the request that is being served keeps the process.
    QTest::qWait(2500);
    QCOMPARE(m_process->state(), QProcess::Running);
}

void RunnerTest::providerErrorInitialisesAnew()
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

void RunnerTest::busGoesAway()
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

QTEST_GUILESS_MAIN(RunnerTest)
#include "runnertest.moc"
