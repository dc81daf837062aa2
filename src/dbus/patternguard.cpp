// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/patternguard.h"

#include <QRegExp>
#include <QtAlgorithms>

#include <utility>

namespace {

constexpr int LongestPattern = 1000;
constexpr int DeepestGroup = 20;
constexpr int LargestRepetition = 1000;
// QRegExp loses the memory of further ones.
constexpr int MostLookaheads = 13;

// Takes a pattern apart as QRegExp's parser does, which goes on after an error: it passes over the
// wrong character, whatever that is, and what follows still counts.
class PatternScan {
public:
    explicit PatternScan(const QString &pattern) : m_pattern(pattern) { }

    bool run();
    qint64 cost(bool greedy) const;

private:
    bool isAt(char character) const
    {
        return m_position < m_pattern.size() && m_pattern.at(m_position) == QLatin1Char(character);
    }
    int number();
    void escape();
    void set();
    void group();
    void lookahead();
    void groupEnd();
    void repetition(bool afterGroup);

    const QString &m_pattern;
    int m_position = 0;
    int m_depth = 0;
    int m_repetitions = 1;
    qint64 m_atoms = 0;
    qint64 m_captures = 0;
    int m_lookaheads = 0;
    // One bit for each depth at which a look-ahead is open.
    quint32 m_openLookaheads = 0;
    int m_doublings = 0;
    bool m_branches = false;
    // How often groups may be repeated, and whether the last character ended one.
    int m_groupCopies = 1;
    bool m_isGroupEnd = false;
};

// Decimal digits; more than LargestRepetition stands for all that is.
int PatternScan::number()
{
    int value = 0;
    for (; m_position < m_pattern.size(); ++m_position) {
        const int digit = m_pattern.at(m_position).unicode() - '0';
        if (digit < 0 || digit > 9)
            break;
        value = qMin(value * 10 + digit, LargestRepetition + 1);
    }
    return value;
}

// What a backslash stands before. A reference to a group may name one that is not there: QRegExp
// makes room for as many.
void PatternScan::escape()
{
    constexpr int mostGroups = 0xffff;
    ++m_atoms;
    if (m_position < m_pattern.size() && m_pattern.at(m_position) >= QLatin1Char('1')
        && m_pattern.at(m_position) <= QLatin1Char('9')) {
        m_branches = true;
        const int group = number();
        m_captures += group > LargestRepetition ? mostGroups : group;
    } else {
        ++m_position;
    }
}

// The rest of a set of characters such as "[^]a-z]".
void PatternScan::set()
{
    ++m_atoms;
    if (isAt('^'))
        ++m_position;
    if (isAt(']'))
        ++m_position;
    while (m_position < m_pattern.size() && !isAt(']'))
        m_position += isAt('\\') ? 2 : 1;
    ++m_position;
}

void PatternScan::group()
{
    ++m_depth;
    ++m_captures;
    if (!isAt('?'))
        return;
    ++m_position;
    if (isAt('=') || isAt('!'))
        lookahead();
    ++m_position;
}

// What it encloses may be read twice, and so again for each that it encloses. It is tried at every
// character of a text, and what it encloses at every character from there.
void PatternScan::lookahead()
{
    constexpr int doublingsByText = 4;
    ++m_lookaheads;
    m_doublings += 1 + doublingsByText * int(qPopulationCount(m_openLookaheads));
    m_openLookaheads |= 1U << m_depth;
}

void PatternScan::groupEnd()
{
    m_openLookaheads &= ~(1U << m_depth);
    m_depth = qMax(0, m_depth - 1);
    m_isGroupEnd = true;
}

// The rest of "{n}", "{n,}", "{,m}" or "{n,m}".
void PatternScan::repetition(bool afterGroup)
{
    ++m_captures;
    int largest = number();
    if (isAt(',')) {
        m_branches = true;
        ++m_position;
        largest = qMax(largest, number());
    }
    ++m_position;
    m_repetitions = qMin(m_repetitions * qMax(1, largest), LargestRepetition + 1);
    // When the text of a look-ahead is wrong, what repeats its first part repeats the look-ahead.
    if (afterGroup || m_openLookaheads != 0)
        m_groupCopies = qMin(m_groupCopies * qMax(1, largest), LargestRepetition + 1);
}

bool PatternScan::run()
{
    while (m_position < m_pattern.size()) {
        const bool afterGroup = std::exchange(m_isGroupEnd, false);
        switch (m_pattern.at(m_position++).unicode()) {
        case '\\':
            escape();
            break;
        case '[':
            set();
            break;
        case '(':
            group();
            break;
        case ')':
            groupEnd();
            break;
        case '{':
            repetition(afterGroup);
            break;
        case '*':
        case '?':
        case '|':
            m_branches = true;
            Q_FALLTHROUGH();
        case '+':
            ++m_captures;
            break;
        default:
            ++m_atoms;
            break;
        }
        if (m_depth > DeepestGroup || m_repetitions > LargestRepetition
            || m_lookaheads * m_groupCopies > MostLookaheads)
            return false;
    }
    return true;
}

// Parts that can be left out connect each state with all others. Every state keeps all captures,
// and with greedy repetitions each copy of one captures on its own.
qint64 PatternScan::cost(bool greedy) const
{
    const qint64 states = m_atoms * m_repetitions;
    const qint64 captures = greedy ? m_captures * m_repetitions : m_captures;
    // Together they do not overflow.
    constexpr qint64 tooMuch = qint64(1) << 40;
    constexpr int mostDoublings = 20;
    const qint64 cost = states * ((m_branches ? states : 1) + captures);
    return qMin(cost, tooMuch) << qMin(m_doublings, mostDoublings);
}

// Whether the name of a property such as "\p{Lu}" is none: what the parser passes over as a name
// it reads as a pattern inside a look-ahead.
bool hidesText(const QString &pattern)
{
    const QString begin = QStringLiteral("\\p{");
    for (int at = 0; (at = int(pattern.indexOf(begin, at, Qt::CaseInsensitive))) >= 0;) {
        at += int(begin.size());
        for (; at < pattern.size() && pattern.at(at) != QLatin1Char('}'); ++at) {
            const QChar character = pattern.at(at);
            if (!character.isLetterOrNumber() && character != QLatin1Char('-')
                && character != QLatin1Char(','))
                return true;
        }
    }
    return false;
}

}

std::optional<qint64> patternCost(const QString &pattern, int syntax)
{
    const qint64 size = pattern.size();
    if (size > LongestPattern || (syntax == QRegExp::W3CXmlSchema11 && hidesText(pattern)))
        return std::nullopt;
    if (syntax == QRegExp::FixedString)
        return size;
    if (syntax == QRegExp::Wildcard || syntax == QRegExp::WildcardUnix)
        return pattern.contains(QLatin1Char('*')) ? size * size : size;
    PatternScan scan(pattern);
    if (!scan.run())
        return std::nullopt;
    return scan.cost(syntax == QRegExp::RegExp2 || syntax == QRegExp::W3CXmlSchema11);
}
