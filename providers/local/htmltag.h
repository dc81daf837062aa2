// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QString>

/// One tag of HTML, or a comment or declaration, which have no name.
struct HtmlTag {
    /// Whether the angle bracket at the position begins one; other brackets are text.
    static bool beginsAt(const QString &html, qsizetype position);
    static HtmlTag read(const QString &html, qsizetype position);

    /// The value of an attribute, decoded; empty if there is none.
    QString attribute(const QString &wanted) const;

    /// In lower case.
    QString name;
    bool closing = false;
    QString attributes;
    /// Where the HTML goes on, -1 if the tag never ends.
    qsizetype end = -1;
};
