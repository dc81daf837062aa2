// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "childprocess.h"

#include "dbus/busnames.h"
#include "manager/kinletmanager.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDataStream>
#include <QFile>
#include <QIODevice>
#include <QTemporaryDir>
#include <QThread>

#include <chrono>
#include <string>
#include <vector>

#include <signal.h>

/*
 * A manager that starts with runners that wait on the bus already, and plain calls that list the
 * names and ask each runner for the same. Connecting to the bus is part of both.
 */

namespace {

using Clock = std::chrono::steady_clock;

struct Seconds {
    double all;
    double finding;
};

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

QStringList runnerNames()
{
    const QDBusMessage reply = QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
        BusNames::daemon(), QStringLiteral("/"), BusNames::daemon(), QStringLiteral("ListNames")));
    return reply.arguments().value(0).toStringList().filter(BusNames::prefix());
}

Seconds startManager()
{
    int count = 0;
    QCoreApplication application(count, nullptr);
    const Clock::time_point start = Clock::now();
    KinletManager *manager = KinletManager::instance();
    const double finding = secondsSince(start);
    if (!manager->isInitialized()) {
        QObject::connect(manager, &KinletManager::initialized, &application,
                         &QCoreApplication::quit);
        application.exec();
    }
    return {secondsSince(start), finding};
}

class Answers : public QObject {
    Q_OBJECT

public:
    int missing = 0;

public Q_SLOTS:
    void onFinished(int, const QString &, const QByteArray &, const QByteArray &)
    {
        if (--missing == 0)
            QCoreApplication::quit();
    }
};

QByteArray written(SocialDataRequest &&request)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    request.serialize(out);
    return bytes;
}

Seconds callPlainly()
{
    int count = 0;
    QCoreApplication application(count, nullptr);
    const QByteArray services = written(GetAggregatedServicesRequest());
    const QByteArray accounts = written(SocialGetAccountsRequest());
    const Clock::time_point start = Clock::now();
    QDBusConnection bus = QDBusConnection::sessionBus();
    Answers answers;
    const QString interface = QLatin1String(BusNames::RunnerInterface);
    const QStringList names = runnerNames();
    for (const QString &name : names) {
        const QString path = BusNames::path(BusNames::id(name));
        bus.connect(name, path, interface, QStringLiteral("requestFinished"), &answers,
                    SLOT(onFinished(int, QString, QByteArray, QByteArray)));
        const auto ask = [&](int kind, const QByteArray &request) {
            QDBusMessage call = QDBusMessage::createMethodCall(name, path, interface,
                                                               QStringLiteral("performRequest"));
            call << kind << QString::number(++answers.missing) << request;
            bus.asyncCall(call);
        };
        ask(SocialDataRequest::GetAggregatedServices, services);
        ask(SocialDataRequest::GetAccounts, accounts);
    }
    const double finding = secondsSince(start);
    application.exec();
    return {secondsSince(start), finding};
}

class Runners {
public:
    explicit Runners(int count)
    {
        for (int i = 0; i < count; ++i) {
            const QString file = m_folder.filePath(QStringLiteral("p%1.so").arg(i));
            QFile::copy(QStringLiteral(KINLET_BENCHMARK_PLUGINS "/startprovider.so"), file);
            const QByteArray path = QFile::encodeName(file);
            m_processes.push_back(fork());
            if (m_processes.back() == 0) {
                execl(KINLET_RUNNER, KINLET_RUNNER, path.constData(), nullptr);
                _exit(1);
            }
        }
        inChildProcess([count] {
            int none = 0;
            QCoreApplication application(none, nullptr);
            while (runnerNames().size() < count)
                QThread::msleep(10);
            return true;
        });
    }
    ~Runners()
    {
        for (const pid_t process : m_processes)
            kill(process, SIGTERM);
        for (const pid_t process : m_processes)
            waitpid(process, nullptr, 0);
    }
    Runners(const Runners &) = delete;
    Runners &operator=(const Runners &) = delete;

private:
    const QTemporaryDir m_folder;
    std::vector<pid_t> m_processes;
};

void measure(benchmark::State &state, int count, Seconds (*start)())
{
    const Runners runners(count);
    // Runners are slower with their first request.
    inChildProcess(start);
    double finding = 0;
    for (auto _ : state) {
        const Seconds one = inChildProcess(start);
        state.SetIterationTime(one.all);
        finding += one.finding;
    }
    state.counters["ms until all are asked"] =
        benchmark::Counter(1000 * finding, benchmark::Counter::kAvgIterations);
}

void add(const char *contender, int runners, Seconds (*start)())
{
    const std::string name = std::to_string(runners) + " runners/" + contender;
    benchmark::RegisterBenchmark(name.c_str(),
                                 [=](benchmark::State &state) { measure(state, runners, start); })
        ->Iterations(5)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

}

int main(int argc, char **argv)
{
    qunsetenv("KINLET_USE_DBUS");
    for (const int runners : {1, 8, 32}) {
        add("kinlet", runners, startManager);
        add("QtDBus", runners, callPlainly);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

#include "runnerstartup.moc"
