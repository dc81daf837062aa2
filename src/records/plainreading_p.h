// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QDataStream>
#include <QVariant>

class QBuffer;

/**
 * Reads what most properties are, texts, numbers and times, right from the bytes that a stream
 * reads from; QDataStream asks its device for each number. It leaves to the stream whatever is less
 * simple: other types, other settings, other devices, and bytes that are cut short or corrupt.
 */
class PlainReader {
public:
    explicit PlainReader(QDataStream &in);

    /// Reads a text and a value. False if they are left to the stream.
    bool readProperty(QString &key, QVariant &value);
    /// Reads a text; if it is left to the stream, nothing else may follow.
    bool readText(QString &text);
    /// Lets the stream go on from here; begin() comes before anything else is read by this.
    void end();
    void begin();

private:
    bool readValue(QVariant &value);
    bool readTime(QVariant &value);
    template <typename T>
    bool readNumber(T &number);
    template <typename T>
    bool readNumberValue(QVariant &value);

    /// Null if nothing can be read.
    QBuffer *m_buffer = nullptr;
    const char *m_at = nullptr;
    const char *m_end = nullptr;
};
