// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/runnerprocess.h"
#include "manager/kinletmanager.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QTimer>

#include <algorithm>
#include <csignal>
#include <memory>
#include <vector>

namespace {

// Enough to swap a hundred megabytes.
constexpr int Patience = 120000;

using Requests = std::vector<std::unique_ptr<SocialDataRequest>>;

int finishedOf(const Requests &requests)
{
    return int(std::count_if(requests.begin(), requests.end(),
                             [](const auto &request) { return request->isFinished(); }));
}

// Each is answered with one record.
int answeredOf(const Requests &requests)
{
    return int(std::count_if(requests.begin(), requests.end(),
                             [](const auto &request) { return request->results().size() == 1; }));
}

void perform(const Requests &requests, const char *account)
{
    KinletManager *manager = KinletManager::instance();
    for (const auto &request : requests)
        manager->performRequest(request.get(), {manager->account(QLatin1String(account))});
}

Requests smallRequests(int count)
{
    Requests requests;
    for (int i = 0; i < count; ++i)
        requests.push_back(std::make_unique<SocialGetPersonsRequest>());
    return requests;
}

Requests posts(int count, int letters)
{
    Requests requests;
    for (int i = 0; i < count; ++i)
        requests.push_back(std::make_unique<SocialPostActivitiesRequest>(
            SocialActivity::Status, QString(letters, QLatin1Char('x'))));
    return requests;
}

}

/// A runner whose process stands still, and what stands before it then.
class StoppedRunnerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void applicationGoesOn_data();
    void applicationGoesOn();
    void requestsPileUpBeforeTheRunner();
    void answersPileUpBeforeTheApplication();
    void applicationStartsBesideIt();

private:
    void setStopped(bool stopped)
    {
        QCOMPARE(::kill(pid_t(m_probe->processId()), stopped ? SIGSTOP : SIGCONT), 0);
    }

    std::unique_ptr<RunnerProcess> m_probe;
    std::unique_ptr<RunnerProcess> m_second;
};

void StoppedRunnerTest::init()
{
    const auto start = [](const char *name) {
        const QString id = QLatin1String(name);
        auto runner = std::make_unique<RunnerProcess>();
        const QString plugin = QStringLiteral(KINLET_PROBE_FOLDER "/%1.so").arg(id);
        return runner->startAs(id, QStringLiteral(KINLET_RUNNER), {plugin}) ? std::move(runner)
                                                                            : nullptr;
    };
    m_probe = start("probe");
    m_second = start("second");
    QVERIFY(m_probe && m_second);
    QTRY_VERIFY_WITH_TIMEOUT(KinletManager::instance()->isInitialized(), Patience);
}

void StoppedRunnerTest::cleanup()
{
    KinletManager::cleanupInstance();
    if (m_probe)
        setStopped(false);
    m_probe.reset();
    m_second.reset();
}

void StoppedRunnerTest::applicationGoesOn_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("letters");
    // More than the sockets take, so that the bus keeps them.
    QTest::newRow("many requests") << 2000 << 0;
    QTest::newRow("large requests") << 40 << 1000000;
}

void StoppedRunnerTest::applicationGoesOn()
{
    QFETCH(int, count);
    QFETCH(int, letters);
    setStopped(true);
    const Requests waiting = letters > 0 ? posts(count, letters) : smallRequests(count);
    perform(waiting, "probe-now");
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] { ++ticks; });
    timer.start(1);
    // Behind all that, over the same connection.
    const Requests others = smallRequests(100);
    perform(others, "second-now");
    QTRY_COMPARE_WITH_TIMEOUT(answeredOf(others), 100, Patience);
    QTRY_VERIFY_WITH_TIMEOUT(ticks >= 100, Patience);
    QCOMPARE(finishedOf(waiting), 0);

    setStopped(false);
    QTRY_COMPARE_WITH_TIMEOUT(answeredOf(waiting), count, Patience);
    QCOMPARE(finishedOf(waiting), count);
}

// More than a connection reads ahead by itself while nobody takes what it has read.
void StoppedRunnerTest::requestsPileUpBeforeTheRunner()
{
    setStopped(true);
    // Keeps it busy while the others arrive.
    const Requests first = smallRequests(4);
    perform(first, "probe-large");
    const Requests large = posts(100, 1000000);
    perform(large, "probe-never");
    const Requests last = smallRequests(1);
    perform(last, "probe-now");
    setStopped(false);
    QTRY_COMPARE_WITH_TIMEOUT(answeredOf(last), 1, Patience);
    QCOMPARE(finishedOf(first), 4);
    QCOMPARE(finishedOf(large), 0);
}

// What comes back is twice as much.
void StoppedRunnerTest::answersPileUpBeforeTheApplication()
{
    const Requests large = posts(40, 1000000);
    perform(large, "probe-now");
    // This thread does nothing else until all answers are on their way: by the first reply the
    // runner has seen all requests, by the second it has answered them.
    QDBusConnection other =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("other"));
    for (int i = 0; i < 2; ++i) {
        const QDBusMessage reply =
            other.call(QDBusMessage::createMethodCall(BusNames::service(QStringLiteral("probe")),
                                                      BusNames::path(QStringLiteral("probe")),
                                                      QLatin1String(BusNames::RunnerInterface),
                                                      QStringLiteral("metaData")),
                       QDBus::Block, Patience);
        QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    }
    QTRY_COMPARE_WITH_TIMEOUT(answeredOf(large), 40, Patience);
}

void StoppedRunnerTest::applicationStartsBesideIt()
{
    KinletManager::cleanupInstance();
    setStopped(true);
    KinletManager *manager = KinletManager::instance();
    const auto knows = [manager](const char *account) {
        return !manager->account(QLatin1String(account)).id().isEmpty();
    };
    QTRY_VERIFY_WITH_TIMEOUT(knows("second-now"), Patience);
    const Requests others = smallRequests(1);
    perform(others, "second-now");
    QTRY_COMPARE_WITH_TIMEOUT(answeredOf(others), 1, Patience);
    QVERIFY(!knows("probe-now"));
    QVERIFY(!manager->isInitialized());

    setStopped(false);
    QTRY_VERIFY_WITH_TIMEOUT(manager->isInitialized(), Patience);
    QVERIFY(knows("probe-now"));
}

QTEST_GUILESS_MAIN(StoppedRunnerTest)
#include "stoppedrunnertest.moc"
