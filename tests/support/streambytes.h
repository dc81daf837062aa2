// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QTest>

Q_DECLARE_METATYPE(QDataStream::ByteOrder)

/// The stream version that applications of this Qt use when they choose none.
constexpr int DefaultVersion = QDataStream::Qt_DefaultCompiledVersion;

/// Bytes from hexadecimal digits; blanks set fields apart.
inline QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

template <typename T>
QByteArray written(const T &value, int version = DefaultVersion,
                   QDataStream::ByteOrder order = QDataStream::BigEndian)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(version);
    stream.setByteOrder(order);
    stream << value;
    return bytes;
}

/// A stream over bytes, with the settings of a table row.
class ByteReader : public QDataStream {
public:
    explicit ByteReader(const QByteArray &bytes, int version = DefaultVersion,
                        QDataStream::ByteOrder order = QDataStream::BigEndian)
        : QDataStream(bytes)
    {
        setVersion(version);
        setByteOrder(order);
    }
};

/// The columns that addByteRows() fills, behind one for the value.
inline void addByteColumns()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<QDataStream::ByteOrder>("order");
    QTest::addColumn<QByteArray>("bytes");
}

/// Rows for a value whose bytes are the same in every stream version.
template <typename T>
void addByteRows(const char *name, const T &value, const char *bigEndian, const char *littleEndian)
{
    constexpr std::pair<const char *, int> versions[] = {{"Qt_4_8", QDataStream::Qt_4_8},
                                                         {"Qt_5_15", QDataStream::Qt_5_15},
                                                         {"default", DefaultVersion}};
    for (const auto &[versionName, version] : versions) {
        QTest::addRow("%s, %s, big-endian", name, versionName)
            << value << version << QDataStream::BigEndian << hex(bigEndian);
        QTest::addRow("%s, %s, little-endian", name, versionName)
            << value << version << QDataStream::LittleEndian << hex(littleEndian);
    }
}
