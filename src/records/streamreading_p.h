// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>

/*
 * Readers that store what Qt's own readers of the same version store, but take memory only for
 * elements that are there: Qt's reserve it for as many as the stream claims and end the process.
 */

void readElement(QDataStream &in, QString &text);
void readElement(QDataStream &in, QByteArray &bytes);

template <typename T>
void readElement(QDataStream &in, T &element)
{
    in >> element;
}

/// Reads several texts, one after the other.
template <typename... Texts>
void readTexts(QDataStream &in, Texts &...texts)
{
    (readElement(in, texts), ...);
}

/// Reads a 32 bit count and that many elements. The list is empty after an error. An earlier error
/// of the stream is put aside meanwhile, as Qt does.
template <typename T, typename Read>
void readList(QDataStream &in, QList<T> &list, Read read)
{
    const QtPrivate::StreamStateSaver earlierError(&in);
    list.clear();
    quint32 count = 0;
    in >> count;
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
void readList(QDataStream &in, QList<T> &list)
{
    readList(in, list, [](QDataStream &stream, T &element) { readElement(stream, element); });
}

/// Reads a count and that many texts with their values; the map is empty after an error. Lists
/// inside the values are read as above; values nested deeper than 500 levels are corrupt data.
void readVariantMap(QDataStream &in, QMap<QString, QVariant> &map);
