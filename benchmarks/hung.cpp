// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// How long an application waits for those who answer when one provider does not.

#include "benchmarkprovider.h"
#include "busprocess.h"
#include "requests/socialgetpersonsrequest.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QElapsedTimer>

#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int MostProviders = 32;
constexpr int RecordsEach = 10;

/// Sees each partial answer.
class WatchedRequest : public SocialGetPersonsRequest {
public:
    explicit WatchedRequest(int wantedRecords) : m_wanted(wantedRecords) { }

    void setRequestProgress(Status status, const QList<KinletError> &errors) override
    {
        SocialGetPersonsRequest::setRequestProgress(status, errors);
        if (m_seconds == 0 && results().size() == m_wanted) {
            m_seconds = double(m_clock.nsecsElapsed()) / 1e9;
            m_loop.quit();
        }
    }

    /// Until it holds the records that are wanted.
    double performedIn(const QList<SocialServiceAccount> &accounts)
    {
        m_clock.start();
        KinletManager::instance()->performRequest(this, accounts);
        // Those in this process have answered already.
        if (m_seconds == 0)
            m_loop.exec();
        return m_seconds;
    }

private:
    const int m_wanted;
    double m_seconds = 0;
    QElapsedTimer m_clock;
    QEventLoop m_loop;
};

QString name(const QString &kind, int number)
{
    return kind + QString::number(number);
}

QList<SocialServiceAccount> accountsOf(const QString &kind, int providers, bool lastHangs)
{
    const KinletManager *manager = KinletManager::instance();
    QList<SocialServiceAccount> accounts;
    for (int i = 0; i < providers - 1; ++i)
        accounts.append(manager->account(BenchmarkProvider::account(name(kind, i), "10")));
    if (lastHangs)
        accounts.append(
            manager->account(BenchmarkProvider::account(name(kind, providers - 1), "never")));
    return accounts;
}

void addRow(const QString &kind, int providers, bool lastHangs)
{
    const bool overBus = kind == QLatin1String("runner");
    const auto measure = [=](benchmark::State &state) {
        const QList<SocialServiceAccount> accounts = accountsOf(kind, providers, lastHangs);
        for (auto _ : state) {
            WatchedRequest request((providers - 1) * RecordsEach);
            state.SetIterationTime(request.performedIn(accounts));
        }
    };
    const std::string what = "1 of " + std::to_string(providers) + " hangs, "
        + (overBus ? "over the bus/" : "in process/");
    // What hangs is waited for a minute more, and what has answered is kept for one.
    benchmark::RegisterBenchmark((what + (lastHangs ? "kinlet" : "none hangs")).c_str(), measure)
        ->UseManualTime()
        ->Iterations(overBus ? 20 : 200);
}

}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    qunsetenv("KINLET_USE_DBUS");
    benchmark::Initialize(&argc, argv);
    const QString inProcess = QStringLiteral("provider");
    const QString overBus = QStringLiteral("runner");
    std::vector<std::unique_ptr<BenchmarkRunner>> runners;
    for (int i = 0; i < MostProviders; ++i)
        runners.push_back(std::make_unique<BenchmarkRunner>(name(overBus, i)));
    KinletManager *manager = readyManager();
    for (int i = 0; i < MostProviders; ++i)
        manager->addProvider(QSharedPointer<KinletInterface>(
            new BenchmarkProvider(name(inProcess, i)), &QObject::deleteLater));
    for (const QString &kind : {inProcess, overBus}) {
        for (const int providers : {2, 8, MostProviders}) {
            addRow(kind, providers, true);
            addRow(kind, providers, false);
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    KinletManager::cleanupInstance();
    return EXIT_SUCCESS;
}
