// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QDateTime>

/// "5 minutes ago", "in 2 hours"; the date when it is 30 days away or more. Empty for an invalid
/// time.
QString relativeTime(const QDateTime &time, const QDateTime &now);

/// Date, time and offset from UTC, in the local time zone. Empty for an invalid time.
QString absoluteTime(const QDateTime &time);

/// Reads a date or a date and time in ISO 8601 form; local time unless it says otherwise. Invalid
/// when it is neither.
QDateTime parsedTime(const QString &text);
