// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QRegExp>

/**
 * Looks for a pattern in texts.
 *
 * QRegExp cannot be told to give up, and with some patterns it takes minutes for a page. So it is
 * not asked when the pattern and the length of the text do not rule that out.
 */
class PatternSearch {
public:
    /// \a pattern is valid.
    explicit PatternSearch(const QRegExp &pattern);

    const QRegExp &pattern() const { return m_pattern; }
    /// The longest text that it is looked for in.
    int longestText() const { return m_longestText; }
    /// \a text is no longer than that.
    bool isFoundIn(const QString &text) const { return m_pattern.indexIn(text) >= 0; }

private:
    QRegExp m_pattern;
    int m_longestText;
};
