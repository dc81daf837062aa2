// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "times.h"

namespace {

QString counted(qint64 count, const QString &unit)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(unit,
                                                    count == 1 ? QString() : QStringLiteral("s"));
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
        return QStringLiteral("just now");
    if (seconds >= 30 * day)
        return time.toLocalTime().date().toString(Qt::ISODate);
    const QString distance = seconds < hour ? counted(seconds / minute, QStringLiteral("minute"))
        : seconds < day                     ? counted(seconds / hour, QStringLiteral("hour"))
                                            : counted(seconds / day, QStringLiteral("day"));
    return (passed > 0 ? QStringLiteral("%1 ago") : QStringLiteral("in %1")).arg(distance);
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
