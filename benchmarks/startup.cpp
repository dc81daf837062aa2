// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "childprocess.h"

#include "manager/kinletmanager.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QPluginLoader>
#include <QTemporaryDir>

#include <chrono>
#include <memory>
#include <string>

#include <dlfcn.h>

/*
 * A manager that starts with plug-ins in its process, and how long it takes to load the same files
 * only.
 */

namespace {

using Clock = std::chrono::steady_clock;

double secondsBetween(Clock::time_point start, Clock::time_point end)
{
    return std::chrono::duration<double>(end - start).count();
}

struct Seconds {
    double all;
    double loading;
    double init;
    double asking;
};

// When the first plug-in was called so.
Clock::time_point noted(const char *event)
{
    return Clock::time_point(Clock::duration(qApp->property(event).toLongLong()));
}

Seconds startManager(const QString &folder)
{
    int count = 0;
    QCoreApplication application(count, nullptr);
    qputenv("KINLET_PLUGIN_PATH", QFile::encodeName(folder));
    const Clock::time_point start = Clock::now();
    if (!KinletManager::instance()->isInitialized())
        std::abort();
    const Clock::time_point end = Clock::now();
    const Clock::time_point firstInit = noted("firstInit");
    const Clock::time_point firstRequest = noted("firstRequest");
    return {secondsBetween(start, end), secondsBetween(start, firstInit),
            secondsBetween(firstInit, firstRequest), secondsBetween(firstRequest, end)};
}

template <typename Load>
Seconds loadFiles(const QString &folder, Load load)
{
    int count = 0;
    QCoreApplication application(count, nullptr);
    const Clock::time_point start = Clock::now();
    const QStringList files = QDir(folder).entryList(QDir::Files);
    for (const QString &file : files) {
        if (!load(folder + QLatin1Char('/') + file))
            std::abort();
    }
    return {secondsBetween(start, Clock::now()), 0, 0, 0};
}

Seconds loadPlugins(const QString &folder)
{
    return loadFiles(folder, [](const QString &path) { return QPluginLoader(path).instance(); });
}

Seconds openLibraries(const QString &folder)
{
    return loadFiles(folder, [](const QString &path) {
        return dlopen(QFile::encodeName(path).constData(), RTLD_LAZY);
    });
}

void measure(benchmark::State &state, int plugins, Seconds (*start)(const QString &))
{
    const QTemporaryDir folder;
    for (int i = 0; i < plugins; ++i)
        QFile::copy(QStringLiteral(KINLET_BENCHMARK_PLUGINS "/startprovider.so"),
                    folder.filePath(QStringLiteral("p%1.so").arg(i)));
    Seconds sum{0, 0, 0, 0};
    for (auto _ : state) {
        const Seconds one = inChildProcess([&] { return start(folder.path()); });
        state.SetIterationTime(one.all);
        sum = {sum.all + one.all, sum.loading + one.loading, sum.init + one.init,
               sum.asking + one.asking};
    }
    if (sum.loading == 0)
        return;
    const auto milliseconds = [&](double seconds) {
        return benchmark::Counter(1000 * seconds, benchmark::Counter::kAvgIterations);
    };
    state.counters["ms loading"] = milliseconds(sum.loading);
    state.counters["ms init"] = milliseconds(sum.init);
    state.counters["ms asking"] = milliseconds(sum.asking);
}

void add(const char *contender, int plugins, Seconds (*start)(const QString &))
{
    const std::string name = std::to_string(plugins) + " plug-ins/" + contender;
    benchmark::RegisterBenchmark(name.c_str(),
                                 [=](benchmark::State &state) { measure(state, plugins, start); })
        ->Iterations(5)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

}

int main(int argc, char **argv)
{
    qputenv("KINLET_USE_DBUS", "0");
    for (const int plugins : {1, 8, 32}) {
        add("kinlet", plugins, startManager);
        add("QPluginLoader", plugins, loadPlugins);
        add("dlopen", plugins, openLibraries);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
