// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QStringList>

/*
 * Texts of providers on a terminal. They may hold anything: control characters, scripts from right
 * to left, characters of two columns and of none.
 */

/// The text with nothing in it that steers a terminal: control characters made visible, directional
/// embeddings and overrides dropped. Line breaks stay, as '\n'.
QString cleaned(const QString &text);

/// The same on one line.
QString oneLine(const QString &text);

/// How many columns a clean text takes. What is drawn as one character counts once: a letter with
/// its accents, joined emoji, a flag.
int displayWidth(const QString &text);

/// The lines of a clean text, each at most \a width columns wide where a character is not wider; 0
/// breaks only at '\n'.
QStringList wrapped(const QString &text, int width);

/// The text between U+2068 and U+2069 if it holds anything written from right to left, so that it
/// does not reorder what stands beside it.
QString isolated(const QString &text);
