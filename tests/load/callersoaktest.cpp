// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Applications come, ask a runner and leave, many of them, with and without waiting for the answer.
// Nothing of them is left in the runner. KINLET_SOAK_CALLERS is how many they are.

#include "dbus/kinletrunnerinterface.h"
#include "dbus/payload.h"
#include "dbus/runnerprocess.h"
#include "load/usage.h"

#include "records/valuetypes.h"
#include "requests/socialgetpersonsrequest.h"

#include <QDBusReply>
#include <QSignalSpy>
#include <QTest>

#include <cstdio>

namespace {

const QString name = QStringLiteral("later");
// One small block for each caller that leaves early is twice as much.
constexpr qint64 MostBytes = 8 * 1024;

}

class CallerSoakTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void nothingIsLeftOfCallers();

private:
    void call(int number);
    Usage usage();

    RunnerProcess runner;
};

void CallerSoakTest::initTestCase()
{
    KinletInitializer::init();
    qputenv("KINLET_PLUGIN_PATH", KINLET_SOAK_PLUGINS);
    QVERIFY(runner.startAs(name, QStringLiteral(KINLET_RUNNER), {name}));
}

void CallerSoakTest::call(int number)
{
    const QString connection = QString::number(number);
    {
        KinletRunnerInterface client(
            BusNames::service(name), BusNames::path(name),
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, connection), nullptr);
        QSignalSpy finished(&client, SIGNAL(requestFinished(int, QString, QByteArray, QByteArray)));
        SocialGetPersonsRequest request;
        client.performRequest(request.type(), connection, Payload::write(request))
            .waitForFinished();
        if (number % 2)
            QVERIFY(finished.count() > 0 || finished.wait(LongMilliseconds));
    }
    QDBusConnection::disconnectFromBus(connection);
}

Usage CallerSoakTest::usage()
{
    KinletRunnerInterface client(BusNames::service(name), BusNames::path(name),
                                 QDBusConnection::sessionBus(), nullptr);
    QDBusPendingReply<QVariantMap> reply = client.metaData();
    reply.waitForFinished();
    return Usage::fromMap(reply.value());
}

void CallerSoakTest::nothingIsLeftOfCallers()
{
    const int callers = qEnvironmentVariableIsSet("KINLET_SOAK_CALLERS")
        ? qEnvironmentVariableIntValue("KINLET_SOAK_CALLERS")
        : 2000;
    const auto callUntil = [&](int from, int end) {
        for (int i = from; i < end && !QTest::currentTestFailed(); ++i)
            call(i);
    };
    callUntil(0, callers / 2);
    const Usage before = usage();
    callUntil(callers / 2, callers);
    // It learns from the bus that the last ones have left.
    const auto isSettled = [&] { return usage().liveBytes - before.liveBytes < MostBytes; };
    const bool settled = QTest::qWaitFor(isSettled, LongMilliseconds);
    const Usage after = usage();
    std::printf(
        "%d callers; of each of the last %d is left: %.3f bytes live; %d handles, %d timers\n",
        callers, callers - callers / 2,
        double(after.liveBytes - before.liveBytes) / (callers - callers / 2),
        after.handles - before.handles, after.timers);
    std::fflush(stdout);
    QVERIFY(settled);
    QCOMPARE(after.handles, before.handles);
    QCOMPARE(after.timers, 0);
}

QTEST_GUILESS_MAIN(CallerSoakTest)

#include "callersoaktest.moc"
