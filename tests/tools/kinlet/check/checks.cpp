// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "checks.h"

#include <QFile>

#include <algorithm>

QString provider(const Cli &cli, const QString &fault)
{
    const QString path = cli.path(fault + QStringLiteral(".so"));
    const QString source = fault == QLatin1String("no-library") ? QStringLiteral("/etc/passwd")
        : fault == QLatin1String("wrong-root") ? QStringLiteral(KINLET_TEST_PLUGINS "/wrongroot.so")
                                               : QStringLiteral(FAULTY_PLUGIN);
    if (!QFile::copy(source, path))
        qFatal("Cannot copy %s", qPrintable(source));
    return path;
}

QStringList checkOf(const QString &file, const QStringList &options)
{
    return QStringList{QStringLiteral("check"), file, QStringLiteral("--json")} + options;
}

void Checks::add(const QString &fault, const QStringList &options)
{
    checks.push_back({fault, options, nullptr, nullptr});
}

void Checks::startFrom(std::vector<Check>::iterator first)
{
    constexpr std::ptrdiff_t together = 8;
    auto running = std::count_if(first, checks.end(), [](const Check &check) {
        return check.process && !check.process->waitForFinished(0)
            && check.process->state() != QProcess::NotRunning;
    });
    for (auto check = first; check != checks.end() && running < together; ++check) {
        if (check->process)
            continue;
        check->cli = std::make_unique<Cli>();
        check->process = std::make_unique<QProcess>();
        check->cli->start(*check->process,
                          checkOf(provider(*check->cli, check->fault), check->options));
        ++running;
    }
}

Ended Checks::ended(const QString &fault)
{
    constexpr int beat = 100;
    const auto asked = std::find_if(checks.begin(), checks.end(),
                                    [&](const Check &check) { return check.fault == fault; });
    do {
        startFrom(asked);
    } while (!asked->process->waitForFinished(beat)
             && asked->process->state() != QProcess::NotRunning);
    const Ended ended = Cli::end(*asked->process);
    asked->process.reset();
    asked->cli.reset();
    return ended;
}
