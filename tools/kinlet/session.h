// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "interrupt.h"

#include <Kinlet/KinletError>
#include <Kinlet/SocialDataRequest>
#include <Kinlet/SocialServiceAccount>

#include <QList>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

class KinletManager;
class QEventLoop;
class Report;
struct CommandLine;

/// A provider, and which of its accounts are meant. Without accounts it is the provider as a whole.
struct Target {
    QString provider;
    QList<SocialServiceAccount> accounts;
};

/// A request to one provider, so that its answer, its errors and its silence are known to be its
/// own.
struct Question {
    Target target;
    std::unique_ptr<SocialDataRequest> request;
};

struct Answer {
    Target target;
    /// Also of a provider that has not answered, as far as it had come.
    QList<SocialGenericData> records;
    QList<KinletError> errors;
    bool complete = false;
};

/// A record, and the provider that it came from.
struct Entry {
    QString provider;
    SocialGenericData record;
};

/// The manager from its start to its end.
class Session {
public:
    Session(const CommandLine &line, Report &report);
    ~Session();

    KinletManager *manager() const;
    bool hasProviders() const;
    /// In alphabetical order.
    QStringList providers() const;

    /// Waits until every provider has reported its accounts. Those that take too long are reported
    /// and left out. False if none is left, or if it was interrupted.
    bool start();
    /// Whether start() has left out a provider, whose accounts nobody knows.
    bool hasLeftOut() const { return leftOut; }
    /// Looks up the accounts of the command line. False, and reported, if one is unknown.
    bool chooseAccounts();

    /// The chosen accounts, or all if none was chosen.
    QList<SocialServiceAccount> accounts() const;
    /// The providers of the chosen accounts, or all; without those that have kept silent before.
    QList<Target> targets() const;
    /// The account with its provider.
    Target targetOf(const SocialServiceAccount &account) const;
    /// The account's name for people.
    static QString accountName(const SocialServiceAccount &account);

    /// Asks all at once and waits for the answers, which are in the order of the questions. A
    /// provider that does not answer in time is reported. After an interruption nothing is asked.
    QList<Answer> ask(std::vector<Question> questions);
    /// The same with one request for each target.
    QList<Answer> askEach(const QList<Target> &targets,
                          const std::function<std::unique_ptr<SocialDataRequest>()> &request);

    /// Runs the loop until it is quit, for at most \a milliseconds, or until an interruption; a
    /// negative time never passes.
    void run(QEventLoop &loop, int milliseconds);
    bool interrupted() const { return interrupt.happened(); }
    /// Reports that an interruption has left something undone, unless a failure says so already.
    void reportInterruption();
    /// Waits until the descriptor has something to read, or its end. False if interrupted first.
    bool waitToRead(int descriptor) const { return interrupt.waitToRead(descriptor); }

private:
    void perform(const Question &question);
    void reportSilence(const QStringList &silentNow);

    const CommandLine &line;
    Report &report;
    Interrupt interrupt;
    QList<SocialServiceAccount> chosen;
    QStringList silent;
    bool leftOut = false;
};

/// Every record of the answers.
QList<Entry> entriesOf(const QList<Answer> &answers);
