// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "patternsearch.h"

#include <cmath>
#include <limits>

namespace {

// Each takes a few nanoseconds.
constexpr double MostSteps = 1e9;

// A part of a pattern, as the automaton that QRegExp makes of it.
struct Part {
    double states = 0;
    // Of those, how many can come first and last, and how often one can follow another.
    double first = 0;
    double last = 0;
    double links = 0;
    bool isOptional = true;
    double captures = 0;
};

Part sequence(const Part &a, const Part &b)
{
    return {a.states + b.states,
            a.first + (a.isOptional ? b.first : 0),
            b.last + (b.isOptional ? a.last : 0),
            a.links + b.links + a.last * b.first,
            a.isOptional && b.isOptional,
            a.captures + b.captures};
}

Part either(const Part &a, const Part &b)
{
    return {
        a.states + b.states,          a.first + b.first,      a.last + b.last, a.links + b.links,
        a.isOptional || b.isOptional, a.captures + b.captures};
}

Part optional(Part part)
{
    part.isOptional = true;
    return part;
}

Part endless(Part part)
{
    part.links += part.last * part.first;
    return part;
}

// Takes a valid pattern apart, of any syntax of regular expressions.
class PatternScan {
public:
    explicit PatternScan(const QString &pattern) : m_pattern(pattern), m_whole(alternatives()) { }

    double steps(double length) const;

private:
    bool takes(char character);
    bool isAtEnd() const { return m_position >= m_pattern.size(); }
    int number();
    Part alternatives();
    Part terms();
    Part atom();
    Part escape();
    Part set();
    Part group();
    Part repeated(Part part);
    Part copies(const Part &part);

    const QString m_pattern;
    int m_position = 0;
    bool m_isEndless = false;
    bool m_refers = false;
    // Of look-aheads: how deep they are in each other, and what is in them.
    int m_depth = 0;
    int m_deepest = 0;
    double m_ahead = 0;
    const Part m_whole;
};

bool PatternScan::takes(char character)
{
    const bool isThere = !isAtEnd() && m_pattern.at(m_position) == QLatin1Char(character);
    m_position += isThere ? 1 : 0;
    return isThere;
}

int PatternScan::number()
{
    // Of repetitions QRegExp takes fewer.
    constexpr int largest = 10000;
    int value = 0;
    for (; !isAtEnd() && m_pattern.at(m_position).isDigit(); ++m_position)
        value = qMin(largest, value * 10 + m_pattern.at(m_position).digitValue());
    return value;
}

Part PatternScan::alternatives()
{
    Part all = terms();
    while (takes('|'))
        all = either(all, terms());
    return all;
}

Part PatternScan::terms()
{
    Part all;
    while (!isAtEnd() && m_pattern.at(m_position) != QLatin1Char('|')
           && m_pattern.at(m_position) != QLatin1Char(')'))
        all = sequence(all, repeated(atom()));
    return all;
}

Part PatternScan::atom()
{
    constexpr Part character{1, 1, 1, 0, false};
    if (takes('('))
        return group();
    if (takes('['))
        return set();
    if (takes('\\'))
        return escape();
    ++m_position;
    return character;
}

// Numbers of characters are taken for characters; "\\b" and "\\B" for some that may be missing.
Part PatternScan::escape()
{
    const QChar letter = isAtEnd() ? QChar() : m_pattern.at(m_position++);
    Part part{1, 1, 1, 0, letter == QLatin1Char('b') || letter == QLatin1Char('B')};
    if (letter >= QLatin1Char('1') && letter <= QLatin1Char('9')) {
        number();
        m_isEndless = true;
        m_refers = true;
        part.isOptional = true;
    }
    return part;
}

// The rest of a set of characters such as "[^]a-z]".
Part PatternScan::set()
{
    takes('^');
    takes(']');
    while (!isAtEnd() && !takes(']'))
        m_position += m_pattern.at(m_position) == QLatin1Char('\\') ? 2 : 1;
    return {1, 1, 1, 0, false};
}

// The rest of a group. A look-ahead takes no characters, but goes through what follows.
Part PatternScan::group()
{
    const bool isSpecial = takes('?');
    const bool isAhead = isSpecial && !takes(':');
    if (isAhead) {
        ++m_position;
        m_deepest = qMax(m_deepest, ++m_depth);
    }
    Part part = alternatives();
    takes(')');
    if (!isAhead) {
        part.captures += isSpecial ? 0 : 1;
        return part;
    }
    --m_depth;
    m_ahead += part.links + part.first;
    return {};
}

// With what follows the part: "*", "+", "?", "{n}", "{n,}", "{,m}" or "{n,m}". A greedy one is
// captured.
Part PatternScan::repeated(Part part)
{
    const Part once = part;
    ++part.captures;
    if (takes('{'))
        return copies(part);
    if (takes('?'))
        return optional(part);
    const bool isStar = takes('*');
    if (!isStar && !takes('+'))
        return once;
    m_isEndless = true;
    return isStar ? optional(endless(part)) : endless(part);
}

Part PatternScan::copies(const Part &part)
{
    const int least = number();
    int most = least;
    bool isEndless = false;
    if (takes(',')) {
        const int start = m_position;
        most = number();
        isEndless = m_position == start;
    }
    takes('}');
    Part all;
    for (int i = 0; i < qMax(least, isEndless ? 1 : most); ++i)
        all = sequence(all, i < least ? part : optional(part));
    m_isEndless = m_isEndless || isEndless;
    return isEndless ? endless(all) : all;
}

// It is tried at each character, and from there goes through the text until it can no longer match.
// At each character there a look-ahead goes through the text again, and so may what refers to a
// group and waits for as many characters as that has.
double PatternScan::steps(double length) const
{
    constexpr double capturesInAStep = 8;
    const double links =
        (m_whole.links + m_whole.first + m_ahead) * (1 + m_whole.captures / capturesInAStep);
    const double farthest = m_isEndless ? length : qMin(length, m_whole.states);
    return links * length * farthest * std::pow(length, m_deepest + (m_refers ? 1 : 0));
}

// A wildcard in that syntax; its sets are taken for more than they are.
QString asRegExp(const QRegExp &pattern)
{
    if (pattern.patternSyntax() != QRegExp::Wildcard
        && pattern.patternSyntax() != QRegExp::WildcardUnix)
        return pattern.pattern();
    QString text;
    const QString wildcard = pattern.pattern();
    for (const QChar character : wildcard)
        text += QLatin1String(character == QLatin1Char('*') ? ".*" : ".");
    return text;
}

}

PatternSearch::PatternSearch(const QRegExp &pattern)
    : m_pattern(pattern), m_longestText(std::numeric_limits<int>::max())
{
    if (pattern.patternSyntax() == QRegExp::FixedString)
        return;
    const PatternScan scan(asRegExp(pattern));
    m_longestText = 0;
    for (int bit = 1 << 30; bit > 0; bit /= 2) {
        if (scan.steps(m_longestText + bit) <= MostSteps)
            m_longestText += bit;
    }
}
