// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "dbus/payload.h"
#include "records/socialgenericdata.h"
#include "requests/socialdatarequest.h"

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QVariant>

/// The bytes of the values, one after the other, in the stream version of the bus.
template <typename... T>
QByteArray streamed(const T &...values)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    (out << ... << values);
    return bytes;
}

/// A record with one property "k", whose value has these bytes.
inline QByteArray recordWithValue(const QByteArray &value)
{
    return streamed(QString(), quint32(1), QStringLiteral("k")) + value;
}

/// The head of a value of that type.
inline QByteArray valueOfType(quint32 type)
{
    return streamed(type, qint8(0));
}

/// A value of a type with a name of its own.
inline QByteArray valueOfType(const char *name)
{
    return streamed(quint32(1024), qint8(0), QByteArray(name, int(qstrlen(name)) + 1));
}

/// The bytes of a record in another stream version.
inline QByteArray written(const SocialGenericData &record, int version)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(version);
    out << record;
    return bytes;
}

/// Reads by the stream operator, without any guard. True if it ended cleanly.
inline bool readPlainly(const QByteArray &bytes, int version, SocialGenericData &record)
{
    QDataStream in(bytes);
    in.setVersion(version);
    in >> record;
    return in.status() == QDataStream::Ok && in.atEnd();
}

inline bool readPlainly(const QByteArray &bytes, int version, SocialDataRequest &request)
{
    QDataStream in(bytes);
    in.setVersion(version);
    request.unserialize(in);
    return in.status() == QDataStream::Ok && in.atEnd();
}

/// What a payload is worth by the rule of the two stream versions.
template <typename T>
bool readInTwoVersions(const QByteArray &bytes, T &value)
{
    if (readPlainly(bytes, QDataStream::Qt_5_15, value)
        || readPlainly(bytes, QDataStream::Qt_4_8, value))
        return true;
    readPlainly(bytes, QDataStream::Qt_5_15, value);
    return false;
}
