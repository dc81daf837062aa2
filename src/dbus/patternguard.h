// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QString>

#include <optional>

/**
 * What it costs QRegExp to compile the pattern: about the number of states and of pairs of them
 * that it keeps. Nothing if it cannot be trusted with the pattern: one of more than 1,000
 * characters, with groups nested deeper than 20, with repetition bounds that multiply to more than
 * 1,000 or with more than 13 look-aheads, each counted as often as groups and parts of look-aheads
 * are repeated. Look-aheads inside look-aheads cost more than they take to compile, because of what
 * it takes to match them.
 */
std::optional<qint64> patternCost(const QString &pattern, int syntax);
