// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QDataStream>
#include <QIODevice>
#include <QList>
#include <QMap>
#include <QVariant>

/*
 * Readers that store what Qt's own readers of the same version store, but never reserve memory for
 * more elements than the bytes that are left could hold: Qt's trust the count and end the process.
 */

/// Bytes of the shortest string: its length.
constexpr int SmallestString = 4;

/// Reads a 32 bit count and that many elements, none of which takes less than \a smallest bytes.
/// The list is empty after an error. An earlier error of the stream is put aside meanwhile, as Qt
/// does.
template <typename T, typename Read>
void readList(QDataStream &in, QList<T> &list, int smallest, Read read)
{
    const QtPrivate::StreamStateSaver earlierError(&in);
    list.clear();
    quint32 count = 0;
    in >> count;
    const qint64 left = in.device() ? in.device()->bytesAvailable() : 0;
    list.reserve(int(qMin<qint64>(count, left / smallest)));
    for (quint32 i = 0; i < count; ++i) {
        T element;
        read(in, element);
        if (in.status() != QDataStream::Ok) {
            list.clear();
            return;
        }
        list.append(element);
    }
}

template <typename T>
void readList(QDataStream &in, QList<T> &list, int smallest)
{
    readList(in, list, smallest, [](QDataStream &stream, T &element) { stream >> element; });
}

/// Reads a count and that many texts with their values; the map is empty after an error. Lists
/// inside the values are read as above; values nested deeper than 500 levels are corrupt data.
void readVariantMap(QDataStream &in, QMap<QString, QVariant> &map);
