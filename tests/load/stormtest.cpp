// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// 64 providers with 10,000 accounts, requests of every kind, and everybody does what they like when
// they like: providers answer at once, later, twice, in parts, with errors or never, come and go;
// requests are destroyed at every moment. What becomes of each request is compared with a model of
// the rules: each report, how often it finishes and with what, and that nothing comes after the
// end.
//
// KINLET_STORM_SEED is where the random numbers start. The storm takes some hundred steps, or
// lasts KINLET_STORM_SECONDS. The same seed gives the same storm as long as hashes have the same
// order.

#include "load/storm.h"
#include "load/standingclock.h"

#include "manager/kinletmanager.h"

#include <QCoreApplication>
#include <QTest>

#include <cstdio>

namespace {

constexpr int Steps = 1200;
constexpr int DefaultSeed = 20;

int setting(const char *variable, int otherwise)
{
    return qEnvironmentVariableIsSet(variable) ? qEnvironmentVariableIntValue(variable) : otherwise;
}

}

class StormTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyRequestEndsByTheRules();
};

void StormTest::everyRequestEndsByTheRules()
{
    const int seed = setting("KINLET_STORM_SEED", DefaultSeed);
    const int seconds = setting("KINLET_STORM_SECONDS", 0);
    std::printf("KINLET_STORM_SEED=%d\n", seed);
    std::fflush(stdout);
    Storm storm{unsigned(seed)};
    const auto goesOn = [&](int steps) {
        return seconds > 0 ? StandingClock::realSeconds() < seconds : steps < Steps;
    };
    int steps = 0;
    while (storm.model.problems.isEmpty() && goesOn(steps)) {
        storm.step();
        ++steps;
    }
    if (storm.model.problems.isEmpty())
        storm.calmDown();
    std::printf("%d steps in %.0f s\n", steps, StandingClock::realSeconds());
    for (const auto &[what, times] : storm.model.counts)
        std::printf("%8d %s\n", times, qPrintable(what));
    std::fflush(stdout);
    QVERIFY2(storm.model.problems.isEmpty(),
             qPrintable(storm.model.problems.join(QLatin1Char('\n'))));
    for (const char *what : {"finished", "requests timed out", "answers after the end",
                             "destroyed in asking", "destroyed between", "destroyed in finished"})
        QVERIFY2(storm.model.counts[QLatin1String(what)] > 0, what);
    KinletManager::cleanupInstance();
}

QTEST_GUILESS_MAIN(StormTest)

#include "stormtest.moc"
