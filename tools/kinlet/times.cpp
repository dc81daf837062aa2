// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "times.h"

#include "language.h"

namespace {

QString minutesText(int count, bool past)
{
    if (past)
        return count == 1 ? Tool::tr("1 minute ago") : Tool::tr("%n minutes ago", nullptr, count);
    return count == 1 ? Tool::tr("in 1 minute") : Tool::tr("in %n minutes", nullptr, count);
}

QString hoursText(int count, bool past)
{
    if (past)
        return count == 1 ? Tool::tr("1 hour ago") : Tool::tr("%n hours ago", nullptr, count);
    return count == 1 ? Tool::tr("in 1 hour") : Tool::tr("in %n hours", nullptr, count);
}

QString daysText(int count, bool past)
{
    if (past)
        return count == 1 ? Tool::tr("1 day ago") : Tool::tr("%n days ago", nullptr, count);
    return count == 1 ? Tool::tr("in 1 day") : Tool::tr("in %n days", nullptr, count);
}

}

QString relativeTime(const QDateTime &time, const QDateTime &now)
{
    if (!time.isValid())
        return QString();
    const qint64 passed = time.secsTo(now);
    const qint64 seconds = qAbs(passed);
    constexpr qint64 minute = 60, hour = 60 * minute, day = 24 * hour;
    if (seconds < minute)
        return Tool::tr("just now");
    if (seconds >= 30 * day)
        return time.toLocalTime().date().toString(Qt::ISODate);
    const bool past = passed > 0;
    if (seconds < hour)
        return minutesText(int(seconds / minute), past);
    return seconds < day ? hoursText(int(seconds / hour), past)
                         : daysText(int(seconds / day), past);
}

QString absoluteTime(const QDateTime &time)
{
    if (!time.isValid())
        return QString();
    const QDateTime local = time.toLocalTime();
    const int minutes = local.offsetFromUtc() / 60;
    return QStringLiteral("%1 %2%3:%4")
        .arg(local.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")),
             minutes < 0 ? QStringLiteral("-") : QStringLiteral("+"))
        .arg(qAbs(minutes) / 60, 2, 10, QLatin1Char('0'))
        .arg(qAbs(minutes) % 60, 2, 10, QLatin1Char('0'));
}

QDateTime parsedTime(const QString &text)
{
    return QDateTime::fromString(text, Qt::ISODate);
}
