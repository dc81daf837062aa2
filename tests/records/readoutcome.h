// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "records/socialgenericdata.h"
#include "support/streambytes.h"

#include <QIODevice>

/// What came of reading a record from bytes.
struct Outcome {
    QDataStream::Status status;
    qint64 position;
    QString className;
    // As Qt writes them: unlike a comparison of values, it tells null values and types apart.
    QByteArray properties;
};

inline bool operator==(const Outcome &left, const Outcome &right)
{
    return left.status == right.status && left.position == right.position
        && left.className == right.className && left.properties == right.properties;
}

inline Outcome readByKinlet(const QByteArray &bytes, int version, QDataStream::ByteOrder order)
{
    ByteReader in(bytes, version, order);
    SocialGenericData record;
    in >> record;
    return {in.status(), in.device()->pos(), record.className(), written(record.properties())};
}

inline Outcome readByQt(const QByteArray &bytes, int version, QDataStream::ByteOrder order)
{
    ByteReader in(bytes, version, order);
    QString className;
    QVariantMap properties;
    in >> className >> properties;
    return {in.status(), in.device()->pos(), className, written(properties)};
}
