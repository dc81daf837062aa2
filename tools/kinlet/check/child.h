// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "check/probe.h"

/*
 * Each rule is checked in a process of its own, so that a provider which crashes or hangs harms
 * that one check only. The process is this program again; it tells what it does and what it has
 * found, one JSON object a line.
 */

/// The first argument of such a process.
extern const QString childArgument;

/// The process: \a arguments are what follows the first. Returns what it ends with.
int runChild(const QStringList &arguments);

/// What has become of such a process.
struct ChildResult {
    Finding finding;
    /// How it ended before its time, in words, or empty.
    QString accident;
    /// The rule that a provider breaks that ends it so; empty for the general one.
    QString accidentRule;
    /// Lists of ids by the kind of records.
    QVariantMap ids;
    /// Why there is no such process, in words, or empty. The provider has nothing to do with it.
    QString obstacle;
};

/// Runs such a process to its end.
ChildResult checkInChild(const Rule &rule, const CheckSettings &settings);
