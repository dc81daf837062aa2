// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>

/// What a program has left behind.
struct Ended {
    int code = -1;
    QString out;
    QString err;

    /// Standard output, read as JSON line by line.
    QList<QJsonObject> objects() const;
};

/// The command-line client in a world of its own: its providers, their stories, its data folder.
class Cli {
public:
    Cli();

    /// Adds the provider "alder", "birch", "cedar" or "local", which tells the story.
    void addProvider(const QString &name, const QByteArray &story = "{}");
    /// Adds the real provider "local".
    void addLocal();

    /// Runs the client to its end, with \a input as its standard input.
    Ended run(const QStringList &arguments, const QByteArray &input = {});
    /// Runs it from a shell, with what stands behind the command, for example "> /dev/full", and
    /// before it.
    Ended runInShell(const QStringList &arguments, const QString &after,
                     const QString &before = QString());
    /// Runs it on a terminal of that many columns, where standard error goes too.
    Ended runOnTerminal(const QStringList &arguments, int columns);
    /// Starts it and returns.
    void start(QProcess &process, const QStringList &arguments) const;
    /// What it has left behind, once it has ended.
    static Ended end(QProcess &process);

    /// What the providers were asked for, except services and accounts, as they wrote it down.
    QList<QJsonObject> asked(const QString &kind) const;
    QString dataFolder() const { return dir.filePath(QStringLiteral("data")); }
    QString path(const QString &name) const { return dir.filePath(name); }

    QProcessEnvironment environment;

private:
    QTemporaryDir dir;
};

/// Starts on a terminal and stays in the hands of the caller.
class TerminalRun {
public:
    TerminalRun(const Cli &cli, const QStringList &arguments, int columns);
    ~TerminalRun();
    /// Reads until the output holds the text. False at its end, or after half a minute.
    bool readUntil(const QString &text);
    void type(const QByteArray &keys) const;
    Ended end();

private:
    bool readMore();

    int terminal = -1;
    qint64 child = 0;
    QByteArray output;
};

/// JSON written with single quotes, for stories.
QByteArray json(const char *text);
