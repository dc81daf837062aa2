// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "load/stormmodel.h"

#include <random>

class StormProvider;

/**
 * An application and its providers that do what they like, by a row of random numbers: alone, and
 * again inside everything that they are told. The model is told of all of it.
 */
class Storm {
public:
    explicit Storm(unsigned seed);

    /// Does one thing.
    void step();
    /// Lets everything come to its end, and checks what is left then.
    void calmDown();

    // From requests.
    void requestReported(const StormModel::Job &job);
    void requestFinished(const StormModel::Job &job);
    // From providers.
    void providerAsked(StormProvider &provider, SocialDataRequest *request);
    void providerCancelled(SocialDataRequest *request);

    StormModel model;

private:
    /// A request of the manager's own that a provider has not answered yet.
    struct LateAccounts {
        QPointer<SocialDataRequest> request;
        QString provider;
        QStringList ids;
        QList<SocialGenericData> records;
    };

    int below(int limit) { return int(m_random() % unsigned(limit)); }
    bool oneIn(int chances) { return below(chances) == 0; }
    QStringList newIds();
    QStringList someAccounts();
    void count(const char *what) { ++model.counts[QLatin1String(what)]; }

    void ask();
    SocialDataRequest *makeRequest(const StormModel::Job &job);
    void answerSome(int most);
    void answerOne(const StormModel::Job &job);
    void answer(const StormModel::Job &job, StormCopy &copy);
    std::deque<StormAnswer> makePlan(const StormModel::Job &job);
    QList<KinletError::Type> someErrors(int kind);
    void destroySomething();
    void destroy(const StormModel::Job &job, const char *moment);
    void interfere(const StormModel::Job &job);
    void addOrRemoveProvider();
    void addProvider(int number);
    void answerRegistry(StormProvider &provider, SocialDataRequest *request);
    void answerLateAccounts();
    void lookUp();
    void block();
    void advance(int milliseconds);
    void forget();
    void checkProviders();

    std::mt19937 m_random;
    std::vector<StormModel::Job> m_jobs;
    std::vector<StormCopy> m_kept;
    std::vector<LateAccounts> m_lateAccounts;
    // What the registry holds of the providers.
    QHash<QString, QObject *> m_registered;
    bool m_registering = false;
    int m_depth = 0;
    int m_requests = 0;
    int m_ids = 0;
};
