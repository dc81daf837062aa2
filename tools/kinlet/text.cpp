// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "text.h"

#include <QTextBoundaryFinder>

#include <algorithm>

#include <wchar.h>

namespace {

constexpr uint ZeroWidthJoiner = 0x200d;
constexpr uint EmojiStyle = 0xfe0f;

uint codePointAt(const QString &text, int index)
{
    const QChar unit = text.at(index);
    if (unit.isHighSurrogate() && index + 1 < text.size() && text.at(index + 1).isLowSurrogate())
        return QChar::surrogateToUcs4(unit, text.at(index + 1));
    return unit.unicode();
}

int unitsOf(uint codePoint)
{
    return QChar::requiresSurrogates(codePoint) ? 2 : 1;
}

int columnsOf(uint codePoint)
{
    const int columns = ::wcwidth(wchar_t(codePoint));
    return columns < 0 ? 1 : columns;
}

bool isSymbol(uint codePoint)
{
    return QChar::category(codePoint) == QChar::Symbol_Other;
}

bool isRegionalIndicator(uint codePoint)
{
    return codePoint >= 0x1f1e6 && codePoint <= 0x1f1ff;
}

bool isSkinTone(uint codePoint)
{
    return codePoint >= 0x1f3fb && codePoint <= 0x1f3ff;
}

// What is drawn as one character.
struct Cluster {
    int units = 0;
    int columns = 0;
};

Cluster clusterAt(const QString &text, int start)
{
    const uint base = codePointAt(text, start);
    Cluster cluster{unitsOf(base), columnsOf(base)};
    bool joined = false;
    while (start + cluster.units < text.size()) {
        const uint next = codePointAt(text, start + cluster.units);
        const bool flag = isRegionalIndicator(base) && isRegionalIndicator(next)
            && cluster.units == unitsOf(base);
        const bool emoji = isSymbol(base) && ((joined && isSymbol(next)) || isSkinTone(next));
        if (!flag && !emoji && columnsOf(next) > 0)
            break;
        if (flag || next == EmojiStyle)
            cluster.columns = 2;
        joined = next == ZeroWidthJoiner;
        cluster.units += unitsOf(next);
    }
    return cluster;
}

QString harmless(uint codePoint)
{
    if (codePoint == '\t')
        return QStringLiteral("    ");
    if (codePoint < 0x20)
        return QString(QChar(0x2400 + codePoint));
    if (codePoint == 0x7f)
        return QString(QChar(0x2421));
    if (codePoint == 0x2028 || codePoint == 0x2029)
        return QStringLiteral("\n");
    // Soft hyphens, and what opens or closes a directional run, possibly without end.
    if (codePoint == 0xad || (codePoint >= 0x202a && codePoint <= 0x202e)
        || (codePoint >= 0x2066 && codePoint <= 0x2069))
        return QString();
    const bool control = codePoint >= 0x80 && codePoint < 0xa0;
    if (control || QChar::isSurrogate(codePoint) || QChar::isNonCharacter(codePoint))
        return QString(QChar(QChar::ReplacementCharacter));
    const char32_t one = codePoint;
    return QString::fromUcs4(&one, 1);
}

// Appends the piece, which may be longer than a line, to the lines.
void addPiece(const QString &piece, int width, QStringList &lines, int &used)
{
    int bare = int(piece.size());
    while (bare > 0 && piece.at(bare - 1) == QLatin1Char(' '))
        --bare;
    if (used > 0 && used + displayWidth(piece.left(bare)) > width) {
        lines.append(QString());
        used = 0;
    }
    for (int i = 0; i < piece.size();) {
        const Cluster cluster = clusterAt(piece, i);
        // Blanks may hang over the edge: they are cut off below.
        if (used > 0 && used + cluster.columns > width && i < bare) {
            lines.append(QString());
            used = 0;
        }
        lines.last() += piece.mid(i, cluster.units);
        used += cluster.columns;
        i += cluster.units;
    }
}

QString withoutTrailingBlanks(QString line)
{
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    return line;
}

}

QString cleaned(const QString &text)
{
    QString clean;
    clean.reserve(text.size());
    for (int i = 0; i < text.size();) {
        const uint codePoint = codePointAt(text, i);
        i += unitsOf(codePoint);
        const bool carriageReturn = codePoint == '\r';
        if (carriageReturn && i < text.size() && text.at(i) == QLatin1Char('\n'))
            ++i;
        clean += carriageReturn || codePoint == '\n' ? QStringLiteral("\n") : harmless(codePoint);
    }
    return clean;
}

QString oneLine(const QString &text)
{
    return cleaned(text).replace(QLatin1Char('\n'), QLatin1Char(' ')).trimmed();
}

int displayWidth(const QString &text)
{
    int columns = 0;
    for (int i = 0; i < text.size();) {
        const Cluster cluster = clusterAt(text, i);
        columns += cluster.columns;
        i += cluster.units;
    }
    return columns;
}

QStringList wrapped(const QString &text, int width)
{
    const QStringList paragraphs = text.split(QLatin1Char('\n'));
    if (width <= 0)
        return paragraphs;
    QStringList lines;
    for (const QString &paragraph : paragraphs) {
        lines.append(QString());
        int used = 0;
        QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, paragraph);
        for (int from = 0, to = 0; (to = int(breaks.toNextBoundary())) > 0; from = to)
            addPiece(paragraph.mid(from, to - from), width, lines, used);
    }
    std::transform(lines.cbegin(), lines.cend(), lines.begin(), withoutTrailingBlanks);
    return lines;
}

QString isolated(const QString &text)
{
    for (int i = 0; i < text.size();) {
        const uint codePoint = codePointAt(text, i);
        const QChar::Direction direction = QChar::direction(codePoint);
        if (direction == QChar::DirR || direction == QChar::DirAL)
            return QChar(0x2068) + text + QChar(0x2069);
        i += unitsOf(codePoint);
    }
    return text;
}
