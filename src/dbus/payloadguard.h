// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QByteArray>

/*
 * How many of a payload's bytes are safe for Qt's readers: all of them, or those before the place
 * where it becomes unsafe. The version is QDataStream::Qt_5_15 or Qt_4_8, the byte order
 * big-endian.
 *
 * Unsafe are: counts of more elements than the bytes that are left could hold; values nested deeper
 * than 64 levels; values of types other than basic ones, their lists and maps, dates, times, URLs
 * and types that are registered; patterns that are too much for QRegExp (dbus/patternguard.h),
 * which compiles them while it reads; time specs that Qt does not know, which Qt 5 reads into a
 * value that crashes later; names of time zones that leave the folder of the zones; and what
 * exceeds the allowance.
 */

/// How much one message may hold of what is small on the bus and large in memory. What is read
/// counts.
struct Allowance {
    /// Each is kilobytes once compiled.
    int patterns = 1000;
    /// As patternCost() tells.
    qint64 patternCost = 2000000;
    /// Qt 6 makes room for more than a hundred entries in each.
    int hashes = 100000;
};

/// For the stream form of a request of that kind (SocialDataRequest::Type).
int safeRequestBytes(const QByteArray &bytes, int version, int kind, Allowance &allowance);

/// For the stream form of one record.
int safeRecordBytes(const QByteArray &bytes, int version, Allowance &allowance);
