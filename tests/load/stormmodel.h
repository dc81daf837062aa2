// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "requests/kinleterror.h"
#include "requests/socialdatarequest.h"

#include <QHash>
#include <QMap>
#include <QPointer>
#include <QSet>

#include <deque>
#include <map>
#include <memory>
#include <vector>

/// One thing that a provider does with its copy of a request.
struct StormAnswer {
    SocialDataRequest::Status status;
    QStringList ids;
    QList<KinletError::Type> errors;
};

/// A provider's copy of a request, as the rules have it.
struct StormCopy {
    QString provider;
    QObject *providerObject = nullptr;
    QPointer<SocialDataRequest> object;
    /// What the provider is still going to do.
    std::deque<StormAnswer> plan;

    SocialDataRequest::Status status = SocialDataRequest::Started;
    QStringList ids;
    QList<int> errors;
    bool cancelled = false;
};

/// What an application learns of a request.
struct StormReport {
    SocialDataRequest::Status status;
    QStringList ids;
    QList<int> errors;

    bool operator==(const StormReport &other) const
    {
        return status == other.status && ids == other.ids && errors == other.errors;
    }
    QString toString() const;
};

/// A request and what is known of it.
struct StormJob {
    enum Phase { Fresh, Dispatching, Waiting, Closed };

    int number = 0;
    int kind = 0;
    QStringList filter;
    QPointer<SocialDataRequest> caller;
    bool callerAlive = true;

    Phase phase = Fresh;
    qint64 asked = 0;
    /// When the asking was over, which is when its time-out begins to run.
    qint64 waiting = 0;
    qint64 closed = 0;
    /// When the minute began after which its copies are deleted.
    qint64 queued = 0;
    /// Timed out while the application held its request: copies are kept for good.
    bool kept = false;
    /// Who is still to be asked, with the accounts for each.
    QMap<QString, QStringList> toAsk;
    std::deque<StormCopy> copies;
    /// Reports that answers have made due.
    int due = 0;
    bool hasDispatchReport = false;
    /// How often the signal has to be emitted, and has been.
    int finishes = 0;
    int finished = 0;

    bool isOpen() const { return phase == Dispatching || phase == Waiting; }
};

/**
 * What has to happen to every request, from the rules and from what application and providers do.
 * The functions are told of the one and of the other; what breaks a rule is kept in problems.
 */
class StormModel {
public:
    using Job = std::shared_ptr<StormJob>;

    // The registry of accounts. An answer counts even if its provider has been removed.
    void providerAdded(const QString &name) { registered.insert(name); }
    void providerRemoved(const QString &name);
    void accountsAnswered(const QString &name, const QStringList &ids);
    QStringList accounts() const;
    QStringList accountsOf(const QString &name) const;
    QString ownerOf(const QString &accountId) const;

    // What the application does.
    void asking(const Job &job) { dispatching.push_back(job); }
    void started(const Job &job);
    void askedFor(const Job &job);
    void callerGoing(const Job &job);
    void timersStriking();
    void timersStruck(const std::vector<Job> &jobs);

    // What the library does.
    Job providerAsked(const QString &provider, SocialDataRequest *copy);
    void cancelled(const Job &job, StormCopy &copy);
    void cancelReturned(const Job &job);
    void reported(const Job &job, const StormReport &report);

    // What providers do: before and after the request is told.
    bool answering(const Job &job, StormCopy &copy, const StormAnswer &answer);
    void answered(const Job &job, bool heard);

    void check(bool isRight, const char *rule);

    QSet<QString> registered;
    QStringList problems;
    // How often what has happened.
    std::map<QString, int> counts;

private:
    void check(bool isRight, const Job &job, const char *rule);
    StormReport merged(const StormJob &job) const;
    bool isOverdue(const StormJob &job) const;
    void close(StormJob &job);
    void timedOut(const Job &job);
    void checkDeletion(const Job &job);

    std::map<QString, QStringList> accountLists;
    QHash<QString, QSet<QString>> owners;
    std::vector<Job> dispatching;
    bool timersStrike = false;
    qint64 struckAt = 0;
};
