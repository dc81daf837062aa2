// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "manager/kinletmanager.h"
#include "provider/kinletinterface.h"
#include "requests/socialgetpersonsrequest.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QPointer>
#include <QTemporaryDir>

#include <algorithm>
#include <string>
#include <vector>

/*
 * One persons request to providers that answer inside the call, through the manager and, as an
 * application would do without it, by calling each provider and appending what it found.
 *
 * Providers that hold their records hand out a list that is there already, which is all that is
 * left to do then, so that only the dispatch remains; others make the records for each request, as
 * providers do that read them from a network.
 */

namespace {

QList<SocialGenericData> makePersons(int count)
{
    QList<SocialGenericData> persons;
    persons.reserve(count);
    for (int i = 0; i < count; ++i) {
        SocialNetworkPerson person;
        person.setProperty(SocialGenericData::Id, i);
        person.setProperty(SocialNetworkPerson::ScreenName, QStringLiteral("ada%1").arg(i));
        person.setProperty(SocialNetworkPerson::FirstName, QStringLiteral("Ada"));
        person.setProperty(SocialNetworkPerson::LastName, QStringLiteral("Lovelace"));
        person.setProperty(SocialNetworkPerson::ProfileLink,
                           QStringLiteral("https://example.org/@ada%1").arg(i));
        persons.append(person);
    }
    return persons;
}

class Provider : public KinletInterface {
public:
    Provider(const QString &name, int records, bool isMaking)
        : m_name(name), m_records(records), m_isMaking(isMaking), m_held(makePersons(records))
    {
    }

    void init() override { }
    QVariantMap metaData() override { return {{QStringLiteral("name"), m_name}}; }

    void performRequest(SocialDataRequest *request) override
    {
        if (request->type() != SocialDataRequest::GetPersons) {
            KinletInterface::performRequest(request);
            return;
        }
        m_last = request;
        request->setResults(m_isMaking ? makePersons(m_records) : m_held);
        request->setRequestProgress(SocialDataRequest::Finished, {});
    }

    // The manager keeps what it gave to a provider for a minute, too long for the memory of a
    // machine that does nothing but ask.
    void forget()
    {
        if (m_last)
            m_last->setResults({});
    }

private:
    const QString m_name;
    const int m_records;
    const bool m_isMaking;
    const QList<SocialGenericData> m_held;
    QPointer<SocialDataRequest> m_last;
};

using Providers = std::vector<QSharedPointer<Provider>>;

struct Kinlet {
    explicit Kinlet(const Providers &providers) : providers(providers)
    {
        for (const auto &provider : providers)
            KinletManager::instance()->addProvider(provider);
    }
    ~Kinlet() { KinletManager::cleanupInstance(); }

    int ask()
    {
        SocialGetPersonsRequest request;
        KinletManager::instance()->performRequest(&request, {});
        for (const auto &provider : providers)
            provider->forget();
        return int(request.results().size() + request.errors().size());
    }

    const Providers &providers;
};

struct DirectCalls {
    int ask()
    {
        QList<SocialGenericData> results;
        QList<KinletError> errors;
        for (const auto &provider : providers) {
            SocialGetPersonsRequest request;
            provider->performRequest(&request);
            results += request.results();
            errors += request.errors();
        }
        return int(results.size() + errors.size());
    }

    const Providers &providers;
};

template <typename Contender>
void ask(benchmark::State &state, int count, int records, bool isMaking)
{
    Providers providers;
    for (int i = 0; i < count; ++i)
        providers.emplace_back(new Provider(QStringLiteral("p%1").arg(i), records, isMaking));
    Contender contender{providers};
    if (contender.ask() != count * records)
        state.SkipWithError("Not all records came");
    for (auto _ : state)
        benchmark::DoNotOptimize(contender.ask());
}

template <typename Contender>
void add(const char *contender, int providers, int records, bool isMaking)
{
    const std::string name = std::to_string(providers) + " x " + std::to_string(records)
        + (isMaking ? " made/" : " held/") + contender;
    // Few: every request leaves a job for a minute. The first, before them, finds cold caches.
    const int iterations = std::max(20, 20'000 / (providers * (isMaking ? records : 10)));
    benchmark::RegisterBenchmark(
        name.c_str(),
        [=](benchmark::State &state) { ask<Contender>(state, providers, records, isMaking); })
        ->Iterations(iterations)
        ->Unit(benchmark::kMicrosecond);
}

}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QTemporaryDir noPlugins;
    qputenv("KINLET_USE_DBUS", "0");
    qputenv("KINLET_PLUGIN_PATH", noPlugins.path().toLocal8Bit());
    for (const bool isMaking : {true, false}) {
        for (const int records : {10, 1000}) {
            for (const int providers : {1, 4, 16, 64}) {
                add<Kinlet>("kinlet", providers, records, isMaking);
                add<DirectCalls>("direct calls", providers, records, isMaking);
            }
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
