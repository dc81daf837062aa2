// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "textwriter.h"

#include <algorithm>

namespace {

/// One blank line at most.
constexpr int MostBreaks = 2;

bool isSpace(QChar character)
{
    return character == QLatin1Char(' ') || character == QLatin1Char('\t')
        || character == QLatin1Char('\n') || character == QLatin1Char('\f');
}

} // namespace

void TextWriter::write(QChar character)
{
    if (!m_text.isEmpty()) {
        if (m_breaks > 0) {
            m_text += QString(m_breaks, QLatin1Char('\n'));
        } else if (m_space) {
            m_text += QLatin1Char(' ');
        }
    }
    if (!m_mark.isEmpty()) {
        m_text += m_mark;
        m_mark.clear();
    }
    m_text += character;
    m_breaks = 0;
    m_space = false;
}

void TextWriter::write(const QString &text)
{
    for (const QChar character : text) {
        write(character);
    }
}

void TextWriter::writeCollapsed(QChar character)
{
    if (m_preformatted && character == QLatin1Char('\n')) {
        breakLine();
    } else if (!m_preformatted && isSpace(character)) {
        m_space = true;
    } else {
        write(character);
    }
}

void TextWriter::breakLine()
{
    m_breaks = std::min(m_breaks + 1, MostBreaks);
}

void TextWriter::startLine()
{
    m_breaks = std::max(m_breaks, 1);
}

void TextWriter::startParagraph()
{
    m_breaks = MostBreaks;
}

void TextWriter::setMark(const QString &mark)
{
    m_mark = mark;
}

void TextWriter::setPreformatted(bool preformatted)
{
    m_preformatted = preformatted;
}

const QString &TextWriter::text() const
{
    return m_text;
}
