// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/streamwalk.h"

#include <QString>

#include <climits>

void StreamWalk::unsafe(int position)
{
    if (m_unsafeAt < 0)
        m_unsafeAt = position;
}

void StreamWalk::fail(QDataStream::Status status)
{
    if (m_status == QDataStream::Ok)
        m_status = status;
}

// What is there of a field that is cut short is used up, as by Qt.
bool StreamWalk::skip(int size)
{
    const bool whole = size <= left();
    if (!whole)
        fail(QDataStream::ReadPastEnd);
    m_position += qMin(size, left());
    return whole;
}

std::string_view StreamWalk::block(quint32 size)
{
    const char *at = m_bytes.constData() + m_position;
    return skip(int(qMin<quint32>(size, INT_MAX))) ? std::string_view(at, size)
                                                   : std::string_view();
}

std::string_view StreamWalk::text()
{
    const auto size = number<quint32>();
    if (size == 0xffffffff || size == 0)
        return {};
    if (size % 2 != 0) {
        fail(QDataStream::ReadCorruptData);
        return {};
    }
    return block(size);
}

std::string_view StreamWalk::byteArray()
{
    const auto size = number<quint32>();
    return size == 0xffffffff ? std::string_view() : block(size);
}

void StreamWalk::texts()
{
    elements(SmallestText, [this] { text(); });
}

void StreamWalk::date()
{
    skip(m_version < QDataStream::Qt_5_0 ? sizeof(quint32) : sizeof(qint64));
}

void StreamWalk::dateTime()
{
    date();
    skip(sizeof(quint32));
    const int at = m_position;
    const auto spec = number<quint8>();
    if (m_version < QDataStream::Qt_5_0)
        return;
    if (spec == Qt::OffsetFromUTC) {
        skip(sizeof(qint32));
    } else if (spec == Qt::TimeZone) {
        timeZone();
    } else if (spec > Qt::TimeZone) {
        unsafe(at);
    }
}

void StreamWalk::timeZone()
{
    const int at = m_position;
    const auto zone = [this] {
        QString id;
        const std::string_view units = text();
        for (size_t i = 0; i + 1 < units.size(); i += 2)
            id.append(QChar(qFromBigEndian<quint16>(units.data() + i)));
        return id;
    };
    QString id = zone();
    if (id == QLatin1String("OffsetFromUtc")) {
        id = zone();
        skip(sizeof(qint32));
        text();
        text();
        skip(sizeof(qint32));
        text();
    }
    // Qt opens the file of that name.
    if (id.contains(QLatin1String("..")))
        unsafe(at);
}
