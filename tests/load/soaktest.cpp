// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Many requests, and nothing of them is left: no memory, file, timer or connection. It is counted
// when all is quiet, half-way and at the end, so that what is made once does not count.
//
// Providers answer at once, later and with errors. They are plug-ins in this process or, with
// KINLET_USE_DBUS not 0, behind kinlet-runner, which is watched as well. KINLET_SOAK_REQUESTS is
// the number of requests.

#include "dbus/kinletrunnerinterface.h"
#include "dbus/runnerprocess.h"
#include "load/standingclock.h"
#include "load/usage.h"

#include "manager/kinletmanager.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QDBusReply>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <vector>

namespace {

// They are open at the same time, and wait for their deletion at the same time.
constexpr int BatchSize = 200;
// In the process, the lengths of queues that come by chance. One small block for each request of
// one kind is sixteen times as much.
constexpr qint64 MostBytes = 4 * 1024;
// What the bus library keeps of messages for the next ones besides, five of 10 kB each.
constexpr qint64 MostBytesOverBus = 64 * 1024;

constexpr int MeasuredBatches = 8;
// What each process holds.
using Usages = std::map<QString, Usage>;

const QString application = QStringLiteral("application");
const QStringList providers{QStringLiteral("now"), QStringLiteral("later"),
                            QStringLiteral("failing")};

std::unique_ptr<SocialDataRequest> makeRequest(int number)
{
    const QString id = QStringLiteral("activity %1").arg(number);
    switch (number % 5) {
    case 0:
        return std::make_unique<SocialGetPersonsRequest>();
    case 1:
        return std::make_unique<SocialGetActivitiesRequest>();
    case 2:
        return std::make_unique<SocialGetLikersRequest>(id);
    case 3:
        return std::make_unique<SocialLikeActivityRequest>(id);
    default:
        return std::make_unique<SocialPostActivitiesRequest>(SocialActivity::Status, id);
    }
}

}

class SoakTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void nothingIsLeft();

private:
    void performBatch(int size);
    void letAMinutePass() const;
    void measure(Usages &usages) const;
    void performUntil(int end, Usages &usages);

    const bool overBus = !qgetenv("KINLET_USE_DBUS").contains('0');
    std::vector<std::unique_ptr<RunnerProcess>> runners;
    int performed = 0;
};

void SoakTest::initTestCase()
{
    qputenv("KINLET_PLUGIN_PATH", KINLET_SOAK_PLUGINS);
    for (const QString &name : overBus ? providers : QStringList()) {
        runners.push_back(std::make_unique<RunnerProcess>());
        QVERIFY(runners.back()->startAs(name, QStringLiteral(KINLET_RUNNER), {name}));
    }
    const KinletManager *manager = KinletManager::instance();
    while (manager->accounts().size() < providers.size())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void SoakTest::cleanupTestCase()
{
    KinletManager::cleanupInstance();
    runners.clear();
}

// Every second request is for one provider, the others are for all.
void SoakTest::performBatch(int size)
{
    KinletManager *manager = KinletManager::instance();
    std::vector<std::unique_ptr<SocialDataRequest>> requests;
    for (int i = 0; i < size; ++i, ++performed) {
        requests.push_back(makeRequest(performed));
        QList<SocialServiceAccount> accounts;
        if (i % 2)
            accounts.append(manager->account(providers.at(i / 2 % providers.size())));
        manager->performRequest(requests.back().get(), accounts);
    }
    for (int i = 0; i < size; ++i) {
        const SocialDataRequest &request = *requests.at(std::size_t(i));
        while (!request.isFinished())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const QString asked = i % 2 ? providers.at(i / 2 % providers.size()) : QString();
        const bool fails = asked.isEmpty() || asked == QLatin1String("failing");
        QCOMPARE(request.status(), SocialDataRequest::Finished);
        QCOMPARE(request.results().size(), asked.isEmpty() ? 4 : fails ? 0 : 2);
        QCOMPARE(request.errors().size(), fails && !overBus ? 1 : 0);
    }
}

void SoakTest::letAMinutePass() const
{
    StandingClock::advance(61000);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Takes the least that was ever found: what is on its way between the processes comes and goes.
void SoakTest::measure(Usages &usages) const
{
    const auto add = [&](const QString &name, Usage found) {
        Usage &usage = usages[name];
        if (usage.liveBytes > 0)
            found.liveBytes = std::min(found.liveBytes, usage.liveBytes);
        usage = found;
    };
    const QDBusConnection bus = QDBusConnection::sessionBus();
    for (const QString &name : overBus ? providers : QStringList()) {
        KinletRunnerInterface runner(BusNames::service(name), BusNames::path(name), bus, nullptr);
        QDBusPendingReply<QVariantMap> reply = runner.metaData();
        reply.waitForFinished();
        add(name, Usage::fromMap(reply.value()));
    }
    add(application, Usage::ofThisProcess());
}

void SoakTest::performUntil(int end, Usages &usages)
{
    while (performed < end && !QTest::currentTestFailed()) {
        performBatch(BatchSize);
        letAMinutePass();
        if (performed > end - MeasuredBatches * BatchSize)
            measure(usages);
    }
}

void SoakTest::nothingIsLeft()
{
    const int requests = qEnvironmentVariableIsSet("KINLET_SOAK_REQUESTS")
        ? qEnvironmentVariableIntValue("KINLET_SOAK_REQUESTS")
        : 20000;
    // Made now, so that they do not count.
    Usages before{{application, {}}};
    Usages after{{application, {}}};
    // More at once than ever later: queues keep the room that they have once needed.
    performBatch(5 * BatchSize);
    letAMinutePass();
    performUntil(requests / 2, before);
    const int half = performed;
    performUntil(requests, after);
    if (QTest::currentTestFailed())
        return;
    std::printf("%d requests in %.0f s; of each of the last %d is left:\n", performed,
                StandingClock::realSeconds(), performed - half);
    for (const auto &[name, end] : after) {
        const Usage &start = before.at(name);
        const qint64 live = end.liveBytes - start.liveBytes;
        std::printf("  %-11s %.3f bytes live, %.3f bytes resident; %d handles, %d timers\n",
                    qPrintable(name), double(live) / (performed - half),
                    double(end.residentBytes - start.residentBytes) / (performed - half),
                    end.handles - start.handles, end.timers);
        std::fflush(stdout);
        QVERIFY2(live < (overBus ? MostBytesOverBus : MostBytes), qPrintable(name));
        QCOMPARE(end.handles, start.handles);
        QCOMPARE(end.timers, 0);
    }
}

QTEST_GUILESS_MAIN(SoakTest)

#include "soaktest.moc"
