// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "check/inquiry.h"
#include "check/rules.h"

#include <Kinlet/KinletInterface>

#include <functional>
#include <vector>

/// What a check is told.
struct CheckSettings {
    QString file;
    /// The kinds of requests to ask for: those that are known to be answered.
    QStringList kinds;
    int waitMilliseconds = 0;
    int pauseMilliseconds = 0;
    /// Whether the account may be changed.
    bool post = false;
};

/// A provider under examination. Functions that cannot go on throw a Finding.
class Probe {
public:
    /// Tells what is being done, and which rule is broken if the process does not survive it.
    using Diary = std::function<void(const QString &doing, const QString &rule)>;

    Probe(const CheckSettings &settings, Diary diary);
    ~Probe();
    Probe(const Probe &) = delete;
    Probe &operator=(const Probe &) = delete;

    void load();
    /// The provider's meta-data before init() and after it, and the names that error() had.
    struct Names {
        QVariant before;
        QVariant after;
        QStringList inErrors;
    };
    const Names &names() const { return seenNames; }

    /// How long init() took.
    qint64 initMilliseconds() const { return initTime; }

    /// Hands the request over and returns. It lives until the provider is gone.
    Asked perform(Inquiry inquiry);
    /// Hands over a request of the caller's, which the caller keeps.
    void start(const Asked &asked);
    /// Waits until it has ended. Throws the verdict on a provider that does not answer in time.
    void await(const Asked &asked, Verdict onSilence = Verdict::NotChecked);
    /// perform() and await()
    Asked ask(Inquiry inquiry, Verdict onSilence = Verdict::NotChecked);
    /// The results. Throws if there are none because of an error.
    QList<SocialGenericData> records(Inquiry inquiry);

    /// Activities, as many as a look at the rules takes; \a set changes the request.
    using Setter = std::function<void(SocialGetActivitiesRequest &)>;
    QList<SocialGenericData> activities(const QString &what, const Setter &set = {});
    QStringList accountIds();

    void cancel(SocialDataRequest *request);
    /// Lets the event loop run, for late answers to come.
    void rest(int milliseconds);
    void note(const QString &doing, const QString &rule = QString()) const;

    const CheckSettings settings;
    /// Lists of ids by the kind of records, to compare with those that another process is given.
    QVariantMap ids;

private:
    const Diary diary;
    std::unique_ptr<KinletInterface> plugin;
    Names seenNames;
    qint64 initTime = 0;
    std::vector<Inquiry> inquiries;
};

/// How long an answer too many is waited for where one took that long.
int timeForMore(qint64 milliseconds);
/// More than the default limit, so that there is something to compare.
constexpr int ManyActivities = 50;

/// The error in words: its type, and its description if it has one.
QString errorText(const KinletError &error);
