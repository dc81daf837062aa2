// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "../cli.h"

#include <memory>
#include <vector>

/// A copy of the faulty provider that has this fault, or another file of that kind.
QString provider(const Cli &cli, const QString &fault);

/// The arguments that have the file checked, for a result in JSON.
QStringList checkOf(const QString &file, const QStringList &options);

/// Checks of faulty providers. A few of them run at a time, since each waits most of the time.
class Checks {
public:
    void add(const QString &fault, const QStringList &options);
    /// What the check of that fault leaves behind. Those that were added later run meanwhile.
    Ended ended(const QString &fault);

private:
    struct Check {
        QString fault;
        QStringList options;
        std::unique_ptr<Cli> cli;
        std::unique_ptr<QProcess> process;
    };
    void startFrom(std::vector<Check>::iterator first);

    std::vector<Check> checks;
};
