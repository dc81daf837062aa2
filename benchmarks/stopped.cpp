// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// How long an application's event loop stands still while requests go to a runner whose process
// does not move: the longest time between two ticks of a timer of one millisecond.

#include "benchmarkprovider.h"
#include "busprocess.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <csignal>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

const QString provider = QStringLiteral("stopped");

using Request = std::unique_ptr<SocialDataRequest>;

Request makeQuestion()
{
    return std::make_unique<SocialGetPersonsRequest>();
}

Request makePost()
{
    return std::make_unique<SocialPostActivitiesRequest>(SocialActivity::Status,
                                                         QString(500000, QLatin1Char('x')));
}

struct Row {
    const char *what;
    int requests;
    Request (*make)();
};

const Row rows[] = {{"256 small requests", 256, makeQuestion},
                    {"16 posts of a megabyte", 16, makePost}};

/// One request at each tick, and as many ticks without one.
class Pace {
public:
    explicit Pace(const Row &row) : m_row(row)
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { tick(); });
    }

    /// Seconds.
    double longestGap()
    {
        m_clock.start();
        m_timer.start(1);
        m_loop.exec();
        return double(m_longest) / 1e9;
    }

    void waitForAnswers()
    {
        while (std::any_of(m_asked.begin(), m_asked.end(),
                           [](const Request &request) { return !request->isFinished(); }))
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

private:
    void tick()
    {
        m_longest = std::max(m_longest, m_clock.nsecsElapsed());
        m_clock.start();
        if (++m_ticks > 2 * m_row.requests) {
            m_timer.stop();
            m_loop.quit();
        } else if (m_ticks <= m_row.requests) {
            m_asked.push_back(m_row.make());
            KinletManager *manager = KinletManager::instance();
            manager->performRequest(m_asked.back().get(),
                                    {manager->account(BenchmarkProvider::account(provider, "10"))});
        }
    }

    const Row &m_row;
    QTimer m_timer;
    QEventLoop m_loop;
    QElapsedTimer m_clock;
    qint64 m_longest = 0;
    int m_ticks = 0;
    std::vector<Request> m_asked;
};

void measure(benchmark::State &state, const Row &row, pid_t runner, bool stops)
{
    for (auto _ : state) {
        if (stops)
            ::kill(runner, SIGSTOP);
        Pace pace(row);
        state.SetIterationTime(pace.longestGap());
        ::kill(runner, SIGCONT);
        pace.waitForAnswers();
    }
}

}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    qunsetenv("KINLET_USE_DBUS");
    benchmark::Initialize(&argc, argv);
    const BenchmarkRunner runner(provider);
    readyManager();
    const auto longest = [](const std::vector<double> &gaps) {
        return *std::max_element(gaps.begin(), gaps.end());
    };
    for (const Row &row : rows) {
        for (const bool stops : {true, false})
            benchmark::RegisterBenchmark(
                (std::string(row.what) + (stops ? "/kinlet" : "/none stopped")).c_str(), measure,
                row, pid_t(runner.processId()), stops)
                ->UseManualTime()
                ->Iterations(1)
                ->ComputeStatistics("max", longest);
    }
    benchmark::RunSpecifiedBenchmarks();
    KinletManager::cleanupInstance();
    return EXIT_SUCCESS;
}
