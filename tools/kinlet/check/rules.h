// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

class Probe;

enum class Verdict { Kept, Broken, NotChecked };

/// What has come of a rule, and why. A rule's check throws it; one that returns says "kept".
struct Finding {
    Verdict verdict = Verdict::Kept;
    QString text;
};

[[noreturn]] void broken(const QString &text);
[[noreturn]] void notChecked(const QString &text);
/// Throws that it is broken and all the mistakes, unless they are all empty.
void requireNone(QStringList mistakes);

/// A part of the contract between Kinlet and its providers.
struct Rule {
    QString name;
    /// What a provider does that keeps it.
    QString promise;
    /// What the author of one that does not can do.
    QString advice;
    /// The kinds of requests that have to be answered for the rule to be judged.
    QStringList needs;
    /// Runs in a process of its own. Null for the rule that is judged by how those processes end.
    void (*check)(Probe &probe);
};

/// In the order in which they are checked.
const QList<Rule> &allRules();
/// Null if there is none of that name.
const Rule *findRule(const QString &name);

/// The kinds of records whose ids, in lists by kind, are others now than they were before.
QStringList changedKinds(const QVariantMap &before, const QVariantMap &after);

void checkLoads(Probe &probe);
void checkName(Probe &probe);
void checkAnswers(Probe &probe);
void checkStatus(Probe &probe);
void checkOnce(Probe &probe);
void checkServices(Probe &probe);
void checkAccounts(Probe &probe);
void checkRecords(Probe &probe);
void checkIds(Probe &probe);
void checkFilter(Probe &probe);
void checkLimit(Probe &probe);
void checkTimes(Probe &probe);
void checkErrors(Probe &probe);
void checkUnsupported(Probe &probe);
void checkCancelled(Probe &probe);
void checkDeleted(Probe &probe);
void checkPauses(Probe &probe);
void checkPost(Probe &probe);
void checkLike(Probe &probe);
