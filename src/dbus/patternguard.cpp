// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/patternguard.h"

namespace {

constexpr int LongestPattern = 1000;
constexpr int DeepestGroup = 20;
constexpr int LargestRepetition = 1000;

// Reads "{n}", "{n,}", "{,m}" or "{n,m}" at the position, and moves to its end; the larger bound,
// at least 1.
int repetition(const QString &pattern, int &position)
{
    int bound = 0;
    int largest = 1;
    while (++position < pattern.size() && pattern.at(position) != QLatin1Char('}')) {
        const int digit = pattern.at(position).digitValue();
        bound = digit < 0 ? 0 : qMin(bound * 10 + digit, LargestRepetition + 1);
        largest = qMax(largest, bound);
    }
    return largest;
}

// Moves to the end of a set of characters such as "[^]a-z]".
void skipSet(const QString &pattern, int &position)
{
    ++position;
    if (position < pattern.size() && pattern.at(position) == QLatin1Char('^'))
        ++position;
    if (position < pattern.size() && pattern.at(position) == QLatin1Char(']'))
        ++position;
    while (position < pattern.size() && pattern.at(position) != QLatin1Char(']'))
        position += pattern.at(position) == QLatin1Char('\\') ? 2 : 1;
}

}

bool isSafePattern(const QString &pattern, QRegExp::PatternSyntax syntax)
{
    if (pattern.size() > LongestPattern)
        return false;
    if (syntax == QRegExp::FixedString || syntax == QRegExp::Wildcard
        || syntax == QRegExp::WildcardUnix)
        return true;
    int depth = 0;
    int repetitions = 1;
    for (int position = 0; position < pattern.size(); ++position) {
        switch (pattern.at(position).unicode()) {
        case '\\':
            ++position;
            break;
        case '[':
            skipSet(pattern, position);
            break;
        case '(':
            if (++depth > DeepestGroup)
                return false;
            break;
        case ')':
            --depth;
            break;
        case '{':
            repetitions *= repetition(pattern, position);
            if (repetitions > LargestRepetition)
                return false;
            break;
        default:
            break;
        }
    }
    return true;
}
