// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/streamreading_p.h"

#include <QHash>
#include <QMultiHash>
#include <QMultiMap>
#include <QStringList>
#include <QtEndian>

namespace {

// Far more than people nest, and far less than the stack holds.
constexpr int DeepestNesting = 500;
// A type id and the flag that tells a null value.
constexpr int SmallestVariant = 5;

// Qt 5 keeps every value of a repeated key, Qt 6 the last one.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
void insert(QMap<QString, QVariant> &map, const QString &key, const QVariant &value)
{
    static_cast<QMultiMap<QString, QVariant> &>(map).insert(key, value);
}
void insert(QHash<QString, QVariant> &hash, const QString &key, const QVariant &value)
{
    static_cast<QMultiHash<QString, QVariant> &>(hash).insert(key, value);
}
#else
template <typename Map>
void insert(Map &map, const QString &key, const QVariant &value)
{
    map.insert(key, value);
}
#endif

void readVariant(QDataStream &in, QVariant &value, int depth);

template <typename Map>
void readMap(QDataStream &in, Map &map, int depth)
{
    const QtPrivate::StreamStateSaver earlierError(&in);
    map.clear();
    quint32 count = 0;
    in >> count;
    for (quint32 i = 0; i < count; ++i) {
        QString key;
        QVariant value;
        in >> key;
        readVariant(in, value, depth);
        if (in.status() != QDataStream::Ok) {
            map.clear();
            return;
        }
        insert(map, key, value);
    }
}

// The type of the container of values that comes next, or UnknownType for anything that Qt can be
// left to read: other types, and empty containers, which may carry the flag of a null value.
int nextContainer(QDataStream &in)
{
    constexpr int countOffset = SmallestVariant;
    constexpr int headerSize = countOffset + 4;
    char header[headerSize];
    if (in.version() < QDataStream::Qt_4_2 || !in.device()
        || in.device()->peek(header, headerSize) != headerSize)
        return QMetaType::UnknownType;
    const bool bigEndian = in.byteOrder() == QDataStream::BigEndian;
    const auto number = [&](int offset) {
        return bigEndian ? qFromBigEndian<quint32>(header + offset)
                         : qFromLittleEndian<quint32>(header + offset);
    };
    return number(countOffset) == 0 ? int(QMetaType::UnknownType) : int(number(0));
}

template <typename Container, typename Read>
void readContainer(QDataStream &in, QVariant &value, Read read)
{
    quint32 type;
    qint8 isNull;
    in >> type >> isNull;
    Container container;
    read(container);
    value = QVariant::fromValue(container);
}

void readVariant(QDataStream &in, QVariant &value, int depth)
{
    if (depth > DeepestNesting) {
        in.setStatus(QDataStream::ReadCorruptData);
        return;
    }
    switch (nextContainer(in)) {
    case QMetaType::QVariantList:
        readContainer<QVariantList>(in, value, [&](QVariantList &list) {
            readList(in, list, SmallestVariant, [depth](QDataStream &stream, QVariant &element) {
                readVariant(stream, element, depth + 1);
            });
        });
        break;
    case QMetaType::QVariantMap:
        readContainer<QVariantMap>(in, value,
                                   [&](QVariantMap &map) { readMap(in, map, depth + 1); });
        break;
    case QMetaType::QVariantHash:
        readContainer<QVariantHash>(in, value,
                                    [&](QVariantHash &hash) { readMap(in, hash, depth + 1); });
        break;
    case QMetaType::QStringList:
        readContainer<QStringList>(in, value,
                                   [&](QStringList &list) { readList(in, list, SmallestString); });
        break;
    case QMetaType::QByteArrayList:
        readContainer<QByteArrayList>(
            in, value, [&](QByteArrayList &list) { readList(in, list, SmallestString); });
        break;
    default:
        in >> value;
    }
}

}

void readVariantMap(QDataStream &in, QMap<QString, QVariant> &map)
{
    readMap(in, map, 0);
}
