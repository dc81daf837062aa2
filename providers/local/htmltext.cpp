// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "htmltext.h"

#include "htmlentities.h"
#include "htmltag.h"
#include "textwriter.h"

#include <QSet>
#include <QUrl>
#include <QVector>

#include <algorithm>

namespace {

bool isParagraph(const QString &name)
{
    static const QSet<QString> names = {
        QStringLiteral("address"),    QStringLiteral("article"), QStringLiteral("aside"),
        QStringLiteral("blockquote"), QStringLiteral("dl"),      QStringLiteral("figure"),
        QStringLiteral("footer"),     QStringLiteral("h1"),      QStringLiteral("h2"),
        QStringLiteral("h3"),         QStringLiteral("h4"),      QStringLiteral("h5"),
        QStringLiteral("h6"),         QStringLiteral("header"),  QStringLiteral("hr"),
        QStringLiteral("p"),          QStringLiteral("pre"),     QStringLiteral("section"),
        QStringLiteral("table")};
    return names.contains(name);
}

bool isLine(const QString &name)
{
    static const QSet<QString> names = {QStringLiteral("caption"), QStringLiteral("dd"),
                                        QStringLiteral("details"), QStringLiteral("div"),
                                        QStringLiteral("dt"),      QStringLiteral("figcaption"),
                                        QStringLiteral("summary"), QStringLiteral("tr")};
    return names.contains(name);
}

bool isCell(const QString &name)
{
    return name == QLatin1String("td") || name == QLatin1String("th");
}

bool isUnseen(const QString &name)
{
    static const QSet<QString> names = {QStringLiteral("script"), QStringLiteral("style"),
                                        QStringLiteral("template"), QStringLiteral("title")};
    return names.contains(name);
}

/// What is left of a URL when it is written for people.
QString essence(const QString &url)
{
    QString rest = url.trimmed();
    for (const char *prefix : {"https://", "http://", "mailto:", "www."}) {
        if (rest.startsWith(QLatin1String(prefix), Qt::CaseInsensitive)) {
            rest.remove(0, static_cast<int>(qstrlen(prefix)));
        }
    }
    if (rest.endsWith(QLatin1Char('/'))) {
        rest.chop(1);
    }
    return rest;
}

/// The URL of a link that is worth being shown: mentions and hashtags say it all by themselves.
QString linkUrl(const HtmlTag &tag)
{
    const QString classes = tag.attribute(QStringLiteral("class"));
    if (classes.contains(QLatin1String("mention")) || classes.contains(QLatin1String("hashtag"))) {
        return QString();
    }
    const QString url = tag.attribute(QStringLiteral("href")).trimmed();
    const QString scheme = QUrl(url).scheme();
    const bool shown = scheme == QLatin1String("https") || scheme == QLatin1String("http")
        || scheme == QLatin1String("mailto");
    return shown ? url : QString();
}

/// Walks through the HTML once, from tag to tag.
class Converter {
public:
    explicit Converter(const QString &html) : m_html(html) { }

    QString run();

private:
    void readText(qsizetype end);
    void readTag();
    void handle(const HtmlTag &tag);
    void list(const HtmlTag &tag);
    void startEntry();
    void closeLink();
    void skipUnseen(const QString &name);

    const QString m_html;
    qsizetype m_at = 0;
    TextWriter m_out;
    /// For each open list the number of its next entry, 0 if it has no numbers.
    QVector<int> m_lists;
    QString m_linkUrl;
    qsizetype m_linkStart = 0;
};

QString Converter::run()
{
    while (m_at < m_html.size()) {
        const qsizetype bracket = m_html.indexOf(QLatin1Char('<'), m_at);
        readText(bracket == -1 ? m_html.size() : bracket);
        if (bracket != -1) {
            readTag();
        }
    }
    closeLink();
    return plainText(m_out.text());
}

void Converter::readText(qsizetype end)
{
    while (m_at < end) {
        qsizetype length = 1;
        const QChar character = m_html.at(m_at);
        const QString decoded =
            character == QLatin1Char('&') ? decodeHtmlEntity(m_html, m_at, &length) : QString();
        if (decoded.isEmpty()) {
            m_out.writeCollapsed(character);
        } else {
            m_out.write(decoded);
        }
        m_at += length;
    }
}

void Converter::readTag()
{
    if (!HtmlTag::beginsAt(m_html, m_at)) {
        m_out.write(m_html.at(m_at));
        ++m_at;
        return;
    }
    const HtmlTag tag = HtmlTag::read(m_html, m_at);
    if (tag.end == -1) {
        readText(m_html.size());
        return;
    }
    m_at = tag.end;
    handle(tag);
}

void Converter::handle(const HtmlTag &tag)
{
    if (tag.name == QLatin1String("a")) {
        closeLink();
        m_linkUrl = tag.closing ? QString() : linkUrl(tag);
        m_linkStart = m_out.text().size();
    } else if (tag.name == QLatin1String("br")) {
        m_out.breakLine();
    } else if (tag.name == QLatin1String("li")) {
        m_out.setMark(QString());
        m_out.startLine();
        if (!tag.closing) {
            startEntry();
        }
    } else if (tag.name == QLatin1String("ul") || tag.name == QLatin1String("ol")) {
        list(tag);
    } else if (tag.name == QLatin1String("img")) {
        m_out.write(tag.attribute(QStringLiteral("alt")));
    } else if (isParagraph(tag.name)) {
        m_out.startParagraph();
        m_out.setPreformatted(tag.name == QLatin1String("pre") && !tag.closing);
    } else if (isLine(tag.name)) {
        m_out.startLine();
    } else if (isCell(tag.name)) {
        m_out.writeCollapsed(QLatin1Char(' '));
    } else if (isUnseen(tag.name) && !tag.closing) {
        skipUnseen(tag.name);
    }
}

void Converter::list(const HtmlTag &tag)
{
    const bool outermost = m_lists.size() <= (tag.closing ? 1 : 0);
    if (!tag.closing) {
        m_lists.append(tag.name == QLatin1String("ol") ? 1 : 0);
    } else if (!m_lists.isEmpty()) {
        m_lists.removeLast();
    }
    m_out.setMark(QString());
    if (outermost) {
        m_out.startParagraph();
    } else {
        m_out.startLine();
    }
}

void Converter::startEntry()
{
    const int number = m_lists.isEmpty() ? 0 : m_lists.last();
    if (number == 0) {
        m_out.setMark(QStringLiteral("- "));
    } else {
        m_out.setMark(QStringLiteral("%1. ").arg(number));
        ++m_lists.last();
    }
}

void Converter::closeLink()
{
    if (m_linkUrl.isEmpty()) {
        return;
    }
    const QString shown = m_out.text().mid(m_linkStart).trimmed();
    if (shown.isEmpty()) {
        m_out.write(m_linkUrl);
    } else if (essence(shown) != essence(m_linkUrl)) {
        m_out.write(QStringLiteral(" (%1)").arg(m_linkUrl));
    }
    m_linkUrl.clear();
}

void Converter::skipUnseen(const QString &name)
{
    const qsizetype closing = m_html.indexOf(QLatin1String("</") + name, m_at, Qt::CaseInsensitive);
    m_at = closing == -1 ? m_html.size() : closing;
}

bool isControl(QChar character)
{
    return (character < QLatin1Char(' ') && character != QLatin1Char('\n')
            && character != QLatin1Char('\t'))
        || (character >= QChar(0x7F) && character < QChar(0xA0));
}

bool isPlain(QChar character)
{
    return !character.isSurrogate() && !isControl(character);
}

} // namespace

QString htmlToText(const QString &html)
{
    return Converter(plainText(html)).run();
}

QString plainText(const QString &text)
{
    // As most texts are.
    if (std::all_of(text.begin(), text.end(), isPlain)) {
        return text.trimmed();
    }
    QString plain;
    plain.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar character = text.at(at);
        const QChar next = at + 1 < text.size() ? text.at(at + 1) : QChar();
        if (character.isHighSurrogate() && next.isLowSurrogate()) {
            plain += character;
            plain += next;
            ++at;
        } else if (character.isSurrogate()) {
            plain += QChar(QChar::ReplacementCharacter);
        } else if (character == QLatin1Char('\r')) {
            if (next != QLatin1Char('\n')) {
                plain += QLatin1Char('\n');
            }
        } else if (!isControl(character)) {
            plain += character;
        }
    }
    return plain.trimmed();
}
