// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cli.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <vector>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int Patience = 60000;
const QString client = QStringLiteral(KINLET_CLI);

QList<QJsonObject> objectsIn(const QByteArray &lines)
{
    QList<QJsonObject> objects;
    const QList<QByteArray> list = lines.split('\n');
    for (const QByteArray &line : list) {
        if (line.isEmpty())
            continue;
        const QJsonDocument document = QJsonDocument::fromJson(line);
        if (!document.isObject())
            qFatal("Not an object: %s", line.constData());
        objects.append(document.object());
    }
    return objects;
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("Cannot write %s", qPrintable(path));
}

}

QList<QJsonObject> Ended::objects() const
{
    return objectsIn(out.toUtf8());
}

Cli::Cli() : environment(QProcessEnvironment::systemEnvironment())
{
    QDir(dir.path()).mkpath(QStringLiteral("plugins"));
    const auto set = [this](const char *name, const QString &value) {
        environment.insert(QLatin1String(name), value);
    };
    set("KINLET_PLUGIN_PATH", path(QStringLiteral("plugins")));
    set("KINLET_TEST_STORIES", dir.path());
    set("KINLET_TEST_LOG", path(QStringLiteral("log")));
    set("XDG_DATA_HOME", dataFolder());
    set("TERM", QStringLiteral("xterm"));
    environment.remove(QStringLiteral("COLUMNS"));
    environment.remove(QStringLiteral("NO_COLOR"));
}

void Cli::addProvider(const QString &name, const QByteArray &story)
{
    const QString file = QStringLiteral("cli_%1.so").arg(name);
    if (!QFile::link(QStringLiteral(STORY_PLUGINS "/") + file,
                     path(QStringLiteral("plugins/") + file)))
        qFatal("Cannot link %s", qPrintable(file));
    if (!QJsonDocument::fromJson(story).isObject())
        qFatal("Not a story: %s", story.constData());
    write(path(name + QStringLiteral(".json")), story);
}

void Cli::addLocal()
{
    if (!QFile::link(QStringLiteral(LOCAL_PLUGIN), path(QStringLiteral("plugins/local.so"))))
        qFatal("Cannot link the local provider");
}

void Cli::start(QProcess &process, const QStringList &arguments) const
{
    process.setProcessEnvironment(environment);
    process.start(client, arguments);
    if (!process.waitForStarted(Patience))
        qFatal("Cannot start %s", KINLET_CLI);
}

Ended Cli::end(QProcess &process)
{
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(Patience)) {
        process.kill();
        qFatal("The client does not end");
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

Ended Cli::run(const QStringList &arguments, const QByteArray &input)
{
    QProcess process;
    start(process, arguments);
    process.write(input);
    process.closeWriteChannel();
    return end(process);
}

Ended Cli::runInShell(const QStringList &arguments, const QString &after, const QString &before)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(
        QStringLiteral("/bin/sh"),
        QStringList{QStringLiteral("-c"), before + QStringLiteral("\"$0\" \"$@\" ") + after, client}
            + arguments);
    return end(process);
}

Ended Cli::runOnTerminal(const QStringList &arguments, int columns)
{
    return TerminalRun(*this, arguments, columns).end();
}

QList<QJsonObject> Cli::asked(const QString &kind) const
{
    QFile file(path(QStringLiteral("log")));
    QList<QJsonObject> entries;
    if (!file.open(QIODevice::ReadOnly))
        return entries;
    const QList<QJsonObject> all = objectsIn(file.readAll());
    for (const QJsonObject &entry : all) {
        if (entry[QLatin1String("event")] == QLatin1String("asked")
            && entry[QLatin1String("kind")] == kind)
            entries.append(entry);
    }
    return entries;
}

TerminalRun::TerminalRun(const Cli &cli, const QStringList &arguments, int columns)
{
    std::vector<QByteArray> words{client.toLocal8Bit()};
    for (const QString &argument : arguments)
        words.push_back(argument.toUtf8());
    const QStringList variables = cli.environment.toStringList();
    std::vector<QByteArray> settings;
    for (const QString &variable : variables)
        settings.push_back(variable.toLocal8Bit());
    const auto pointers = [](std::vector<QByteArray> &texts) {
        std::vector<char *> list;
        for (QByteArray &text : texts)
            list.push_back(text.data());
        list.push_back(nullptr);
        return list;
    };
    const std::vector<char *> argv = pointers(words);
    const std::vector<char *> envp = pointers(settings);
    winsize size = {};
    size.ws_row = 24;
    size.ws_col = ushort(columns);
    child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
        execve(argv[0], argv.data(), envp.data());
        _exit(127);
    }
    if (child < 0)
        qFatal("No terminal");
}

TerminalRun::~TerminalRun()
{
    if (child > 0) {
        kill(pid_t(child), SIGKILL);
        waitpid(pid_t(child), nullptr, 0);
    }
    close(terminal);
}

bool TerminalRun::readMore()
{
    pollfd waiting{terminal, POLLIN, 0};
    char buffer[4096];
    if (poll(&waiting, 1, Patience) <= 0)
        return false;
    const ssize_t count = read(terminal, buffer, sizeof(buffer));
    if (count > 0)
        output.append(buffer, int(count));
    return count > 0;
}

bool TerminalRun::readUntil(const QString &text)
{
    while (!output.contains(text.toUtf8())) {
        if (!readMore())
            return false;
    }
    return true;
}

void TerminalRun::type(const QByteArray &keys) const
{
    if (::write(terminal, keys.constData(), size_t(keys.size())) != keys.size())
        qFatal("Cannot type");
}

Ended TerminalRun::end()
{
    while (readMore()) { }
    int status = 0;
    waitpid(pid_t(child), &status, 0);
    child = 0;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            QString::fromUtf8(output).replace(QStringLiteral("\r\n"), QStringLiteral("\n")),
            QString()};
}

QByteArray json(const char *text)
{
    return QByteArray(text).replace('\'', '"');
}
