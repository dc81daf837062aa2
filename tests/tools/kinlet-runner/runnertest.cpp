// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "probetest.h"

#include "dbus/payload.h"
#include "requests/socialgetpersonsrequest.h"

#include <QDBusConnection>
#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include <csignal>

class RunnerTest : public ProbeTest {
    Q_OBJECT

private Q_SLOTS:
    void servesByFile_data();
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
    void largePushIsDivided();
    void answerGoesToTheCallerOnly();
    void answerTooLargeForTheBus();
    void callerLeaves();
    void callerLeavesAtOnce();
    void stoppedRequestIsCancelled();
};

void RunnerTest::servesByFile_data()
{
    QTest::addColumn<QString>("file");
    const QString file = QStringLiteral(KINLET_PROBE_FOLDER "/probe.so");
    QTest::newRow("absolute") << file;
    QTest::newRow("relative to the working folder") << QDir::current().relativeFilePath(file);
}

void RunnerTest::servesByFile()
{
    QFETCH(QString, file);
    start({file});
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

// The bus carries no message of any size.
void RunnerTest::largePushIsDivided()
{
    start({QStringLiteral("probe")});
    QSignalSpy data(m_client.get(), SIGNAL(dataUpdate(QVariantList, QStringList)));
    ask(QStringLiteral("probe-flooding"));
    QTRY_COMPARE_WITH_TIMEOUT(data.count(), 3, Patience);
    for (const QVariantList &arguments : std::as_const(data)) {
        QCOMPARE(int(arguments.at(0).toList().size()), 1);
        QCOMPARE(int(recordText(arguments).size()), 5 * 1024 * 1024);
        QCOMPARE(arguments.at(1).toStringList(), QStringList(SocialGenericData::Description));
    }
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

void RunnerTest::callerLeavesAtOnce()
{
    start({QStringLiteral("probe")});
    QSignalSpy told(m_client.get(), SIGNAL(dataUpdate(QVariantList, QStringList)));
    QStringList bytes;
    const QByteArray request = personsRequest(QStringLiteral("probe-never"));
    for (const char byte : request)
        bytes.append(QString::number(uchar(byte)));
    // The runner gets the call of somebody who is there no more.
    ::kill(pid_t(m_process->processId()), SIGSTOP);
    const int sent = QProcess::execute(
        QStringLiteral("dbus-send"),
        {QStringLiteral("--session"), QStringLiteral("--dest=") + probe, QStringLiteral("/probe"),
         QStringLiteral("--type=method_call"),
         QStringLiteral("com.orvane.kinlet.runner.performRequest"), QStringLiteral("int32:5"),
         QStringLiteral("string:a"), QStringLiteral("array:byte:") + bytes.join(QLatin1Char(','))});
    ::kill(pid_t(m_process->processId()), SIGCONT);
    QCOMPARE(sent, 0);
    QTRY_COMPARE_WITH_TIMEOUT(told.count(), 1, Patience);
    QCOMPARE(recordText(told.at(0)), QStringLiteral("cancelled 5"));
}

// The provider may go on with it otherwise, and it is deleted.
void RunnerTest::stoppedRequestIsCancelled()
{
    start({QStringLiteral("probe")});
    QSignalSpy told(m_client.get(), SIGNAL(dataUpdate(QVariantList, QStringList)));
    QVERIFY(!ask(QStringLiteral("probe-now")).isEmpty());
    QVERIFY(!ask(QStringLiteral("probe-stopped")).isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(told.count(), 1, Patience);
    QCOMPARE(recordText(told.at(0)), QStringLiteral("cancelled 5"));
}

QTEST_GUILESS_MAIN(RunnerTest)
#include "runnertest.moc"
