// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/plainreading_p.h"

#include <QBuffer>
#include <QDateTime>
#include <QtEndian>

#include <cstring>
#include <typeinfo>

PlainReader::PlainReader(QDataStream &in)
{
    QIODevice *device = in.device();
    // Not a class derived from it, which may read otherwise.
    if (device && typeid(*device) == typeid(QBuffer) && !device->isTransactionStarted()
        && !device->isTextModeEnabled() && in.version() >= QDataStream::Qt_5_2
        && in.byteOrder() == QDataStream::BigEndian
        && in.floatingPointPrecision() == QDataStream::DoublePrecision)
        m_buffer = static_cast<QBuffer *>(device);
    begin();
}

void PlainReader::begin()
{
    if (!m_buffer)
        return;
    m_at = m_buffer->data().constData() + m_buffer->pos();
    m_end = m_buffer->data().constData() + m_buffer->size();
}

void PlainReader::end()
{
    if (m_buffer)
        m_buffer->seek(m_at - m_buffer->data().constData());
}

bool PlainReader::readProperty(QString &key, QVariant &value)
{
    const char *const start = m_at;
    if (readText(key) && readValue(value))
        return true;
    m_at = start;
    return false;
}

template <typename T>
bool PlainReader::readNumber(T &number)
{
    if (m_end - m_at < qptrdiff(sizeof(T)))
        return false;
    number = qFromBigEndian<T>(m_at);
    m_at += sizeof(T);
    return true;
}

template <typename T>
bool PlainReader::readNumberValue(QVariant &value)
{
    T number;
    if (!readNumber(number))
        return false;
    value = QVariant(number);
    return true;
}

bool PlainReader::readText(QString &text)
{
    quint32 size = 0;
    if (!readNumber(size))
        return false;
    if (size == 0xffffffff) {
        text = QString();
        return true;
    }
    if (size % 2 != 0 || qptrdiff(size) > m_end - m_at)
        return false;
    text = QString(int(size / 2), Qt::Uninitialized);
    qFromBigEndian<quint16>(m_at, size / 2, text.data());
    m_at += size;
    return true;
}

bool PlainReader::readTime(QVariant &value)
{
    qint64 day = 0;
    qint32 milliseconds = 0;
    quint8 spec = 0;
    if (!readNumber(day) || !readNumber(milliseconds) || !readNumber(spec))
        return false;
    const QDate date = QDate::fromJulianDay(day);
    const QTime time = QTime::fromMSecsSinceStartOfDay(milliseconds);
    if (!date.isValid() || !time.isValid() || (spec != Qt::UTC && spec != Qt::LocalTime))
        return false;
    value = QDateTime(date, time, Qt::TimeSpec(spec));
    return true;
}

bool PlainReader::readValue(QVariant &value)
{
    quint32 type = 0;
    qint8 isNull = 0;
    if (!readNumber(type) || !readNumber(isNull) || isNull)
        return false;
    switch (type) {
    case QMetaType::Int:
        return readNumberValue<int>(value);
    case QMetaType::UInt:
        return readNumberValue<uint>(value);
    case QMetaType::LongLong:
        return readNumberValue<qlonglong>(value);
    case QMetaType::ULongLong:
        return readNumberValue<qulonglong>(value);
    case QMetaType::Double:
        return readNumberValue<double>(value);
    case QMetaType::Bool: {
        qint8 number = 0;
        if (!readNumber(number))
            return false;
        value = number != 0;
        return true;
    }
    case QMetaType::QString: {
        QString text;
        if (!readText(text))
            return false;
        value = text;
        return true;
    }
    case QMetaType::QDateTime:
        return readTime(value);
    default:
        return false;
    }
}
