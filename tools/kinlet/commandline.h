// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/SocialActivity>

#include <QDateTime>
#include <QList>
#include <QPair>
#include <QRegExp>
#include <QStringList>

struct Command;

/// Where providers come from.
enum class Source { Environment, InProcess, Bus };

struct CommandLine {
    const Command *command = nullptr;
    QStringList arguments;
    /// Ids, or "all".
    QStringList accounts;
    /// 0 stands for the command's own.
    int limit = 0;
    QDateTime before;
    QDateTime after;
    QList<QPair<QString, QRegExp>> filters;
    /// The id of a person.
    QString profile;
    SocialActivity::Type type = SocialActivity::Status;
    bool json = false;
    bool absolute = false;
    Source source = Source::Environment;
    QString pluginPath;
    int startMilliseconds = 10000;
    int waitMilliseconds = 10000;
    /// Whether a check may change what others see of an account.
    bool post = false;
    int pauseMilliseconds = 200;

    /// What has to be printed instead of doing anything: the help or the version.
    QString information;
    /// What is wrong, in one line; the other fields mean nothing then.
    QString mistake;
};

/// Reads the arguments of the program, without its name.
CommandLine parseCommandLine(const QStringList &arguments);

/// The value of --account that stands for every account.
extern const QString allAccounts;
