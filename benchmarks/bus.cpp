// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "busexchange.h"
#include "busmessages.h"
#include "busprocess.h"
#include "bussdbus.h"
#include "records/valuetypes.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QtDebug>

#include <csignal>
#include <map>
#include <string>

#include <sys/prctl.h>

namespace {

struct Contender {
    const char *name;
    std::unique_ptr<Exchange> (*make)(int records);
    /// What the process at the other end is started with; Kinlet's is its own program.
    const char *otherEnd;
    int (*serve)(int records);
};

const Contender contenders[] = {
    {"kinlet", makeKinletExchange, "", nullptr},
    {"sd-bus", makeSdBusExchange, "sd", serveSdBus},
    {"QtDBus", makeQtExchange, "qt", serveQt},
    {"QtDBus with records", makeQtRecordsExchange, "records", serveQtRecords}};

int serve(const QByteArray &otherEnd, int records)
{
    // Whatever ends the benchmark ends this.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const Contender &contender : contenders) {
        if (otherEnd == contender.otherEnd)
            return contender.serve(records);
    }
    return EXIT_FAILURE;
}

using Exchanges = std::map<std::string, std::unique_ptr<Exchange>>;

void addRow(Exchanges &exchanges, const Contender &contender, int records, int atOnce)
{
    const std::string what = std::to_string(records) + " records, ";
    const auto measure = [=, &contender, &exchanges](benchmark::State &state) {
        std::unique_ptr<Exchange> &exchange = exchanges[what + contender.name];
        if (!exchange)
            exchange = contender.make(records);
        if (atOnce == 1)
            state.counters["messages"] = messagesPerRequest(*exchange);
        for (auto _ : state)
            exchange->perform(atOnce);
    };
    const std::string name = what + std::to_string(atOnce) + " at once/" + contender.name;
    auto *row = benchmark::RegisterBenchmark(name.c_str(), measure);
    row->UseRealTime()->MeasureProcessCPUTime();
    // Those take seconds and hundreds of megabytes each.
    if (records * atOnce > 100000)
        row->Repetitions(3)->Iterations(1);
}

}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    qunsetenv("KINLET_USE_DBUS");
    KinletInitializer::init();
    if (argc == 4 && QByteArray(argv[1]) == "--serve")
        return serve(argv[2], QByteArray(argv[3]).toInt());
    benchmark::Initialize(&argc, argv);
    Exchanges exchanges;
    for (const int records : {10, 1000}) {
        for (const int atOnce : {1, 16, 256}) {
            for (const Contender &contender : contenders)
                addRow(exchanges, contender, records, atOnce);
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
