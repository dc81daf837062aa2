// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QString>

/// Puts text together from pieces of a page: runs of white space become one space, and lines and
/// paragraphs break once, however many elements end there.
class TextWriter {
public:
    /// A character that stays as it is.
    void write(QChar character);
    void write(const QString &text);
    /// A character of the page's own text, where line breaks and spaces only separate words.
    void writeCollapsed(QChar character);

    void breakLine();
    void startLine();
    void startParagraph();
    /// Stands before the next text; replaces a mark that had no text.
    void setMark(const QString &mark);
    void setPreformatted(bool preformatted);

    const QString &text() const;

private:
    QString m_text;
    QString m_mark;
    int m_breaks = 0;
    bool m_space = false;
    bool m_preformatted = false;
};
