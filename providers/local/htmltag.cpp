// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "htmltag.h"

#include "htmlentities.h"

#include <QRegularExpression>

namespace {

bool isLetter(QChar character)
{
    return (character >= QLatin1Char('a') && character <= QLatin1Char('z'))
        || (character >= QLatin1Char('A') && character <= QLatin1Char('Z'));
}

bool endsName(QChar character)
{
    return character.isSpace() || character == QLatin1Char('/') || character == QLatin1Char('>');
}

/// The bracket that ends a tag; those in quoted values do not.
qsizetype closingBracket(const QString &html, qsizetype position)
{
    QChar quote;
    QChar before;
    for (; position < html.size(); ++position) {
        const QChar character = html.at(position);
        if (!quote.isNull()) {
            quote = character == quote ? QChar() : quote;
        } else if (character == QLatin1Char('>')) {
            return position;
        } else if (before == QLatin1Char('=')
                   && (character == QLatin1Char('"') || character == QLatin1Char('\''))) {
            quote = character;
        }
        before = character.isSpace() ? before : character;
    }
    return -1;
}

qsizetype behind(const QString &html, const QString &terminator, qsizetype position)
{
    const qsizetype found = html.indexOf(terminator, position);
    return found == -1 ? -1 : found + terminator.size();
}

} // namespace

bool HtmlTag::beginsAt(const QString &html, qsizetype position)
{
    const QString next = html.mid(position + 1, 2);
    if (next.isEmpty()) {
        return false;
    }
    const QChar first = next.at(0);
    return isLetter(first) || first == QLatin1Char('!') || first == QLatin1Char('?')
        || (first == QLatin1Char('/') && next.size() == 2 && isLetter(next.at(1)));
}

HtmlTag HtmlTag::read(const QString &html, qsizetype position)
{
    HtmlTag tag;
    const QString opening = html.mid(position, 4);
    if (opening == QLatin1String("<!--")) {
        tag.end = behind(html, QStringLiteral("-->"), position + 4);
        return tag;
    }
    if (opening.at(1) == QLatin1Char('!') || opening.at(1) == QLatin1Char('?')) {
        tag.end = behind(html, QStringLiteral(">"), position);
        return tag;
    }
    tag.closing = opening.at(1) == QLatin1Char('/');
    const qsizetype nameStart = position + (tag.closing ? 2 : 1);
    qsizetype nameEnd = nameStart;
    while (nameEnd < html.size() && !endsName(html.at(nameEnd))) {
        ++nameEnd;
    }
    const qsizetype bracket = closingBracket(html, nameEnd);
    if (bracket != -1) {
        tag.name = html.mid(nameStart, nameEnd - nameStart).toLower();
        tag.attributes = html.mid(nameEnd, bracket - nameEnd);
        tag.end = bracket + 1;
    }
    return tag;
}

QString HtmlTag::attribute(const QString &wanted) const
{
    static const QRegularExpression form(
        QStringLiteral("([^\\s=/]+)(?:\\s*=\\s*(?:\"([^\"]*)\"|'([^']*)'|([^\\s\"'][^\\s]*)))?"));
    QRegularExpressionMatchIterator all = form.globalMatch(attributes);
    while (all.hasNext()) {
        const QRegularExpressionMatch attribute = all.next();
        if (attribute.captured(1).compare(wanted, Qt::CaseInsensitive) == 0) {
            // The first group is the name; without another there is no value.
            const int last = attribute.lastCapturedIndex();
            return last > 1 ? decodeHtmlEntities(attribute.captured(last)) : QString();
        }
    }
    return QString();
}
