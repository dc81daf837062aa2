// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <sys/resource.h>

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QTest>

/// Lets allocations fail that a few hundred bytes of input cannot justify: all that would make the
/// process larger by the allowance. Sanitizers reserve address space of their own: under them the
/// other checks have to do.
inline void limitMemory(rlim_t allowance = 256 * 1024 * 1024)
{
#if defined(__SANITIZE_ADDRESS__)
    constexpr bool isSanitized = true;
#elif defined(__has_feature)
    constexpr bool isSanitized = __has_feature(address_sanitizer);
#else
    constexpr bool isSanitized = false;
#endif
    if (isSanitized)
        return;
    QFile statm(QStringLiteral("/proc/self/statm"));
    QVERIFY(statm.open(QIODevice::ReadOnly));
    const rlim_t pages = statm.readAll().split(' ').first().toULongLong();
    const rlim_t limit = pages * 4096 + allowance;
    const rlimit limits{limit, limit};
    QCOMPARE(setrlimit(RLIMIT_AS, &limits), 0);
}

/// Counts that no reader may believe, as big-endian bytes.
inline QList<QByteArray> hostileCounts()
{
    return {QByteArray::fromHex("ffffffff"), QByteArray::fromHex("fffffffe"),
            QByteArray::fromHex("80000000"), QByteArray::fromHex("7fffffff"),
            QByteArray::fromHex("10000000"), QByteArray::fromHex("08000000")};
}
