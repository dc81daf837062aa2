// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <string_view>

/**
 * Walks over the bytes of a big-endian QDataStream without making anything of them. Follows Qt's
 * readers step by step: like them it goes on after a short or corrupt field, with the status set,
 * so that it meets what they will meet.
 */
class StreamWalk {
public:
    StreamWalk(const QByteArray &bytes, int version) : m_bytes(bytes), m_version(version) { }

    /// The bytes before the first place that was called unsafe.
    int safeBytes() const { return m_unsafeAt < 0 ? int(m_bytes.size()) : m_unsafeAt; }

protected:
    int position() const { return m_position; }
    int version() const { return m_version; }
    int left() const { return int(m_bytes.size()) - m_position; }

    void unsafe(int position);
    bool skip(int size);
    template <typename T>
    T number();
    // Views, for on Qt 5 even an array that only points elsewhere takes memory of its own.
    /// The UTF-16 code units of a string.
    std::string_view text();
    std::string_view byteArray();

    /// A container whose shortest element has that many bytes.
    template <typename Element>
    void elements(int smallest, Element element);
    void texts();
    /// A map of texts to values.
    template <typename Value>
    void map(int smallestValue, Value value);

    void date();
    void dateTime();
    /// What \a read takes from a stream that stands here.
    template <typename Read>
    void readBy(Read read);

    static constexpr int SmallestText = 4;

private:
    // As the containers of QDataStream do: an earlier error is put aside and comes back at the end.
    class Container {
    public:
        explicit Container(StreamWalk &walk) : m_walk(walk), m_earlier(walk.m_status)
        {
            walk.m_status = QDataStream::Ok;
        }
        ~Container()
        {
            if (m_earlier != QDataStream::Ok)
                m_walk.m_status = m_earlier;
        }
        Q_DISABLE_COPY(Container)

    private:
        StreamWalk &m_walk;
        const QDataStream::Status m_earlier;
    };

    bool goesOn() const { return m_status == QDataStream::Ok && m_unsafeAt < 0; }
    void fail(QDataStream::Status status);
    std::string_view block(quint32 size);
    void timeZone();

    const QByteArray &m_bytes;
    const int m_version;
    int m_position = 0;
    int m_unsafeAt = -1;
    QDataStream::Status m_status = QDataStream::Ok;
};

template <typename T>
T StreamWalk::number()
{
    const char *at = m_bytes.constData() + m_position;
    return skip(sizeof(T)) ? qFromBigEndian<T>(at) : T(0);
}

template <typename Element>
void StreamWalk::elements(int smallest, Element element)
{
    const Container container(*this);
    const int at = m_position;
    const auto count = number<quint32>();
    if (count > quint32(left() / smallest))
        unsafe(at);
    for (quint32 i = 0; i < count && goesOn(); ++i)
        element();
}

template <typename Value>
void StreamWalk::map(int smallestValue, Value value)
{
    elements(SmallestText + smallestValue, [&] {
        text();
        value();
    });
}

template <typename Read>
void StreamWalk::readBy(Read read)
{
    QDataStream in(QByteArray::fromRawData(m_bytes.constData() + m_position, left()));
    in.setVersion(m_version);
    in.setStatus(m_status);
    read(in);
    m_position += int(in.device()->pos());
    m_status = in.status();
}
