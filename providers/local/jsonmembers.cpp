// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "jsonmembers.h"

#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

constexpr int BufferSize = 64 * 1024;
constexpr int MaximalSize = 16 * 1024 * 1024;
constexpr int MaximalDepth = 500;

bool isSpace(int byte)
{
    return byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t';
}

/// Looks for the comma, colon or closing bracket behind a value that comes in pieces.
class ValueEnd {
public:
    /// How many of the bytes belong to the value: all of them if its end is not among them.
    qsizetype find(const char *bytes, qsizetype count)
    {
        for (qsizetype at = 0; at < count; ++at) {
            if (m_quoted) {
                m_quoted = m_escaped || bytes[at] != '"';
                m_escaped = !m_escaped && bytes[at] == '\\';
            } else if (step(bytes[at])) {
                return at;
            }
        }
        return count;
    }
    bool isTooDeep() const { return m_depth > MaximalDepth; }

private:
    bool step(char byte)
    {
        switch (byte) {
        case '"':
            m_quoted = true;
            return false;
        case '[':
        case '{':
            ++m_depth;
            return isTooDeep();
        case ']':
        case '}':
            --m_depth;
            return m_depth < 0;
        case ',':
        case ':':
            return m_depth == 0;
        default:
            return false;
        }
    }

    int m_depth = 0;
    bool m_quoted = false;
    bool m_escaped = false;
};

} // namespace

JsonMembers::JsonMembers(QIODevice &device) : m_device(device)
{
    // Space that is reserved is kept from value to value.
    m_text.reserve(BufferSize);
}

QString JsonMembers::key() const
{
    return m_key;
}

QJsonValue JsonMembers::value() const
{
    return m_value;
}

QString JsonMembers::error() const
{
    return m_error;
}

JsonMembers::Token JsonMembers::fail(const QString &error)
{
    m_error = error;
    return Error;
}

int JsonMembers::peek()
{
    if (m_bufferAt == m_buffer.size()) {
        m_bufferStart += m_buffer.size();
        m_bufferAt = 0;
        m_buffer = m_device.read(BufferSize);
        if (m_buffer.isEmpty()) {
            return -1;
        }
    }
    return static_cast<unsigned char>(m_buffer.at(m_bufferAt));
}

int JsonMembers::peekVisible()
{
    while (isSpace(peek())) {
        ++m_bufferAt;
    }
    return peek();
}

JsonMembers::Token JsonMembers::next()
{
    switch (m_place) {
    case Start:
        return start();
    case FirstMember:
    case AfterMember:
        return member();
    case FirstItem:
    case AfterItem:
        break;
    }
    return item();
}

JsonMembers::Token JsonMembers::start()
{
    if (peek() == 0xEF && m_buffer.startsWith("\xEF\xBB\xBF")) {
        m_bufferAt += 3;
    }
    const int first = peekVisible();
    if (first == -1) {
        return fail(QStringLiteral("it is empty"));
    }
    if (first == '[') {
        return fail(QStringLiteral("it is an array: several objects belong into a collection"));
    }
    if (first == '"') {
        return fail(QStringLiteral("it is a text, not an object"));
    }
    if (first == '-' || (first >= '0' && first <= '9')) {
        return fail(QStringLiteral("it is a number, not an object"));
    }
    if (first != '{') {
        return fail(QStringLiteral("it is not JSON: it does not begin with an object"));
    }
    ++m_bufferAt;
    m_place = FirstMember;
    return member();
}

JsonMembers::Token JsonMembers::member()
{
    const int first = peekVisible();
    if (first == '}') {
        return end();
    }
    if (m_place == AfterMember) {
        if (first != ',') {
            return fail(QStringLiteral("it is not JSON: a comma or its end is missing"));
        }
        ++m_bufferAt;
    }
    if (!readValue()) {
        return Error;
    }
    if (!m_value.isString() || peek() != ':') {
        return fail(QStringLiteral("it is not JSON: the name of a member is missing"));
    }
    ++m_bufferAt;
    m_key = m_value.toString();
    const bool streamed = m_key == QLatin1String("items") || m_key == QLatin1String("orderedItems");
    if (streamed && peekVisible() == '[') {
        ++m_bufferAt;
        m_place = FirstItem;
        return item();
    }
    m_place = AfterMember;
    if (!readValue()) {
        return Error;
    }
    m_memberBytes += m_text.size();
    if (m_memberBytes > MaximalSize) {
        return fail(QStringLiteral("it is too large: its members are more than 16 MiB"));
    }
    return Member;
}

JsonMembers::Token JsonMembers::item()
{
    const int first = peekVisible();
    if (first == ']') {
        ++m_bufferAt;
        m_place = AfterMember;
        m_value = QJsonArray();
        return Member;
    }
    if (m_place == AfterItem) {
        if (first != ',') {
            return fail(QStringLiteral("it is not JSON: a comma between items is missing"));
        }
        ++m_bufferAt;
    }
    m_place = AfterItem;
    return readValue() ? Item : Error;
}

JsonMembers::Token JsonMembers::end()
{
    ++m_bufferAt;
    if (peekVisible() != -1) {
        return fail(QStringLiteral("it is not JSON: something follows its end"));
    }
    return End;
}

/// Reads up to the comma, colon or closing bracket that ends a value.
bool JsonMembers::readText()
{
    m_text.resize(0);
    ValueEnd end;
    peekVisible();
    while (peek() != -1) {
        const char *const rest = m_buffer.constData() + m_bufferAt;
        const qsizetype size = end.find(rest, m_buffer.size() - m_bufferAt);
        m_text.append(rest, static_cast<int>(size));
        m_bufferAt += size;
        if (end.isTooDeep()) {
            m_error = QStringLiteral("it is nested too deeply");
            return false;
        }
        if (m_text.size() > MaximalSize) {
            m_error = QStringLiteral("it is too large: one value is more than 16 MiB");
            return false;
        }
        if (m_bufferAt < m_buffer.size()) {
            return true;
        }
    }
    m_error = QStringLiteral("it is not JSON: it ends in the middle");
    return false;
}

bool JsonMembers::readValue()
{
    const qint64 begin = m_bufferStart + m_bufferAt;
    if (!readText()) {
        return false;
    }
    // Qt 5 reads only objects and arrays by themselves.
    QJsonParseError problem;
    const QJsonDocument document = QJsonDocument::fromJson('[' + m_text + ']', &problem);
    if (problem.error == QJsonParseError::IllegalUTF8String) {
        m_error = QStringLiteral("it is not in UTF-8, near byte %1").arg(begin);
        return false;
    }
    if (problem.error != QJsonParseError::NoError || document.array().size() != 1) {
        m_error = QStringLiteral("it is not JSON: no value after byte %1").arg(begin);
        return false;
    }
    m_value = document.array().first();
    return true;
}
