// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QRegExp>
#include <QString>

/// Whether QRegExp can compile the pattern in bounded time, memory and stack: at most 1,000
/// characters, groups nested at most 20 deep, repetition bounds that multiply to at most 1,000.
bool isSafePattern(const QString &pattern, QRegExp::PatternSyntax syntax);
