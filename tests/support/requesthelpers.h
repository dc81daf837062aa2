// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "requests/socialdatarequest.h"
#include "support/streambytes.h"

inline QByteArray serialized(SocialDataRequest &request, int version = DefaultVersion,
                             QDataStream::ByteOrder order = QDataStream::BigEndian)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(version);
    stream.setByteOrder(order);
    request.serialize(stream);
    return bytes;
}

/// Reads bytes into a request; the result is the stream's status.
inline QDataStream::Status unserialize(SocialDataRequest &request, const QByteArray &bytes,
                                       int version = DefaultVersion,
                                       QDataStream::ByteOrder order = QDataStream::BigEndian)
{
    ByteReader stream(bytes, version, order);
    request.unserialize(stream);
    return stream.status();
}

/// Signatures of a class's own invokable constructors.
inline QStringList constructors(const QMetaObject &metaObject)
{
    QStringList signatures;
    for (int i = 0; i < metaObject.constructorCount(); ++i)
        signatures << QString::fromLatin1(metaObject.constructor(i).methodSignature());
    return signatures;
}

/// Argument names of a class's own invokable constructor, joined by commas.
inline QByteArray argumentNames(const QMetaObject &metaObject, const char *signature)
{
    const int index = metaObject.indexOfConstructor(signature);
    return index < 0 ? QByteArray("no such constructor")
                     : metaObject.constructor(index).parameterNames().join(',');
}

/// Signatures of the methods that a class adds to its base: signals, slots and invokable ones.
inline QStringList ownMethods(const QMetaObject &metaObject)
{
    QStringList signatures;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i)
        signatures << QString::fromLatin1(metaObject.method(i).methodSignature());
    return signatures;
}
