// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "records/socialgenericdata.h"

#include <QByteArray>
#include <QDataStream>
#include <QVariant>

#include <cstdint>

/*
 * What the fuzz targets share. Each defines LLVMFuzzerTestOneInput(); libFuzzer keeps the input of
 * a call that ends the process.
 */

/// Ends the process, with \a what it should have been, unless \a holds.
void check(bool holds, const char *what);

/// The bytes of one call, without a copy.
inline QByteArray inputBytes(const uint8_t *data, size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
}

/// How a stream is read. The first byte of an input chooses it, so that a target tries them all; 0
/// and 1 are the forms that the bus knows.
struct StreamForm {
    explicit StreamForm(uint8_t choice);

    void applyTo(QDataStream &stream) const;
    /// Whether it is one of the forms that the bus knows.
    bool isOfBus() const;

    int version;
    QDataStream::ByteOrder order;
};

/// Whether records may be read from the bytes although nothing has called them safe. Qt 5 trusts
/// what it reads of patterns and times.
bool canBeRead(const QByteArray &bytes);

/// Whether Qt's own readers are to read what Kinlet's have left at that place with that status.
bool isCompared(const QByteArray &bytes, QDataStream::Status status);

/// How many values there are, those inside other values included.
qint64 countValues(const QVariant &value);
qint64 countValues(const QList<SocialGenericData> &records);

/// Writes a value so that equal ones have equal bytes: hashes in the order of their keys, times
/// without the name of their zone, which Qt itself does not always keep.
void writeSorted(QDataStream &out, const QVariant &value);
void writeSorted(QDataStream &out, const QDateTime &time);
void writeSorted(QDataStream &out, const SocialGenericData &record);
