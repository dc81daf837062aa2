// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "journalsandbox.h"

#include <QProcess>
#include <QTest>

/// An application of its own. It ends with this object.
class Application {
public:
    explicit Application(const QStringList &arguments)
    {
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral(KINLET_JOURNAL_PROCESS), arguments);
    }
    ~Application()
    {
        process.kill();
        process.waitForFinished();
    }

    QStringList lines()
    {
        said += process.readAll();
        return QString::fromUtf8(said).split(QLatin1Char('\n'));
    }
    bool says(const QString &start)
    {
        return QTest::qWaitFor([&] { return count(start) > 0; }, 60000);
    }
    int count(const QString &start)
    {
        int found = 0;
        const QStringList all = lines();
        for (const QString &line : all)
            found += line.startsWith(start) ? 1 : 0;
        return found;
    }
    bool ends() { return process.waitForFinished(120000); }
    /// The most memory that it has had at any time, in KiB.
    int peakMemory() const
    {
        const QString path = QStringLiteral("/proc/%1/status").arg(process.processId());
        const QString status = QString::fromLatin1(JournalSandbox::read(path));
        return status.section(QLatin1String("VmHWM:"), 1)
            .simplified()
            .section(QLatin1Char(' '), 0, 0)
            .toInt();
    }

    QProcess process;

private:
    QByteArray said;
};
