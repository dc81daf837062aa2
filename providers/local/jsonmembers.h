// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QString>

class QIODevice;

/**
 * Takes one JSON object from a device apart while it is read. Each member comes as one value,
 * except that the elements of the arrays "items" and "orderedItems" come one by one, so that memory
 * does not grow with their number; behind them such an array comes as an empty one.
 *
 * Only the outermost brackets and commas are found here; each value's text goes through Qt's JSON
 * parser, which also checks its UTF-8. That parser lets control characters stand in texts, and so
 * do documents in the wild.
 */
class JsonMembers {
public:
    enum Token { Member, Item, End, Error };

    explicit JsonMembers(QIODevice &device);

    /// Reads on to the next member or item. After End and Error it is not called again.
    Token next();
    /// Name of the member that was read, or of the array that the item is from.
    QString key() const;
    QJsonValue value() const;
    /// What is wrong, in one English line, after Error.
    QString error() const;

private:
    enum Place { Start, FirstMember, AfterMember, FirstItem, AfterItem };

    Token start();
    Token member();
    Token item();
    Token end();
    Token fail(const QString &error);

    /// The next byte, which stays where it is, or -1 at the end.
    int peek();
    int peekVisible();
    bool readText();
    bool readValue();

    QIODevice &m_device;
    QByteArray m_buffer;
    qsizetype m_bufferAt = 0;
    qint64 m_bufferStart = 0;
    Place m_place = Start;
    QByteArray m_text;
    qsizetype m_memberBytes = 0;
    QString m_key;
    QJsonValue m_value;
    QString m_error;
};
