// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QString>

/**
 * The text of a piece of HTML, as a person would copy it out of a page. Paragraphs have a blank
 * line between, list entries begin with "- " or their number, a link whose text does not show its
 * URL has it in parentheses, pictures stand as their description. Scripts and styles are dropped.
 *
 * Any input is safe and takes time in proportion to its length. An angle bracket that begins no tag
 * stays, and so does everything from a tag on that never ends.
 */
QString htmlToText(const QString &html);

/// Plain text from outside made safe to keep: no control characters but line breaks and tabs, no
/// halves of characters, no space around it.
QString plainText(const QString &text);
