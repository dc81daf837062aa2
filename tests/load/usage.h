// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "support/runningtimers.h"

#include <QDir>
#include <QFile>
#include <QVariantMap>

#include <cstddef>
#include <malloc.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
// The compiler has it without a header.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

/// What a process holds.
struct Usage {
    qint64 liveBytes;
    qint64 residentBytes;
    int handles;
    int timers;

    /// This process. Its memory is counted whole and exactly only if all of it comes from one arena
    /// and threads keep none back; GLIBC_TUNABLES sees to both.
    static Usage ofThisProcess()
    {
        QFile statm(QStringLiteral("/proc/self/statm"));
        if (!statm.open(QIODevice::ReadOnly))
            qFatal("There is no /proc");
        const qint64 pages = statm.readAll().split(' ').value(1).toLongLong();
        statm.close();
        const auto handles = QDir(QStringLiteral("/proc/self/fd"))
                                 .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System);
        return {allocatedBytes(), pages * sysconf(_SC_PAGESIZE), int(handles.size()),
                int(runningTimers().size())};
    }

    static Usage fromMap(const QVariantMap &map)
    {
        return {map.value(QStringLiteral("liveBytes")).toLongLong(),
                map.value(QStringLiteral("residentBytes")).toLongLong(),
                map.value(QStringLiteral("handles")).toInt(),
                map.value(QStringLiteral("timers")).toInt()};
    }
    QVariantMap toMap() const
    {
        return {{QStringLiteral("liveBytes"), liveBytes},
                {QStringLiteral("residentBytes"), residentBytes},
                {QStringLiteral("handles"), handles},
                {QStringLiteral("timers"), timers}};
    }

private:
    static qint64 allocatedBytes()
    {
#if defined(__SANITIZE_ADDRESS__)
        return qint64(__sanitizer_get_current_allocated_bytes());
#else
        const struct mallinfo2 info = mallinfo2();
        return qint64(info.uordblks + info.hblkhd);
#endif
    }
};
