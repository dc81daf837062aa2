// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "commandline.h"
#include "report.h"

class Output;
class Session;

/// What a command works with.
struct Context {
    const CommandLine &line;
    Session &session;
    Output &out;
    Report &report;
};

struct Command {
    QString name;
    /// The names of its arguments, separated by blanks; in brackets those that can be left out.
    QString arguments;
    QString description;
    /// The options that it takes beyond those that every command takes.
    QStringList options;
    /// Whether the providers must have reported their accounts before it runs.
    bool needsStart = true;
    ExitCode (*run)(Context &context) = nullptr;
    /// In place of run(), for a command that uses no providers.
    ExitCode (*runAlone)(const CommandLine &line, Output &out, Report &report) = nullptr;
};

const QList<Command> &allCommands();

ExitCode runServices(Context &context);
ExitCode runAccounts(Context &context);
ExitCode runProviders(Context &context);
ExitCode runPersons(Context &context);
ExitCode runTimeline(Context &context);
ExitCode runShow(Context &context);
ExitCode runPost(Context &context);
ExitCode runComment(Context &context);
ExitCode runLike(Context &context);
ExitCode runUnlike(Context &context);
ExitCode runLikers(Context &context);
ExitCode runImport(Context &context);
ExitCode runWatch(Context &context);
ExitCode runRunners(const CommandLine &line, Output &out, Report &report);
ExitCode runCheck(const CommandLine &line, Output &out, Report &report);
ExitCode runNewProvider(const CommandLine &line, Output &out, Report &report);
