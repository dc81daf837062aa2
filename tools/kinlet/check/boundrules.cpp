// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/probe.h"
#include "language.h"

#include <Kinlet/SocialActivity>

#include <QDateTime>

#include <algorithm>

namespace {

// In ascending order.
QList<QDateTime> timesOf(const QList<SocialGenericData> &activities)
{
    QList<QDateTime> times;
    for (const SocialGenericData &activity : activities) {
        const QDateTime time = activity.variantProperty(SocialActivity::StartTime).toDateTime();
        if (time.isValid())
            times.append(time);
    }
    std::sort(times.begin(), times.end());
    return times;
}

QString textOf(const QDateTime &time)
{
    return time.toString(Qt::ISODateWithMs);
}

QString beforeMistake(Probe &probe, const QDateTime &bound, bool hasOlder)
{
    const QList<QDateTime> older = timesOf(
        probe.activities(Tool::tr("for activities before a time"),
                         [&](SocialGetActivitiesRequest &request) { request.setBefore(bound); }));
    if (older.isEmpty() && hasOlder)
        return Tool::tr("asked for activities before %1, it gave none").arg(textOf(bound));
    if (!older.isEmpty() && older.last() >= bound)
        return Tool::tr("asked for activities before %1, it gave one of %2")
            .arg(textOf(bound), textOf(older.last()));
    return QString();
}

QString afterMistake(Probe &probe, const QDateTime &bound, bool hasNewer)
{
    const QList<QDateTime> newer = timesOf(
        probe.activities(Tool::tr("for activities after a time"),
                         [&](SocialGetActivitiesRequest &request) { request.setAfter(bound); }));
    if (newer.isEmpty() && hasNewer)
        return Tool::tr("asked for activities after %1, it gave none").arg(textOf(bound));
    if (!newer.isEmpty() && newer.first() <= bound)
        return Tool::tr("asked for activities after %1, it gave one of %2")
            .arg(textOf(bound), textOf(newer.first()));
    return QString();
}

}

void checkLimit(Probe &probe)
{
    const QList<SocialGenericData> all = probe.activities(Tool::tr("for activities"));
    if (all.size() < 2)
        notChecked(Tool::tr("it takes two activities to judge"));
    const int limit = int(std::min<qsizetype>(all.size(), ManyActivities)) - 1;
    const QString what = Tool::tr("for at most %n activities", nullptr, limit);
    const QList<SocialGenericData> some = probe.activities(
        what, [limit](SocialGetActivitiesRequest &request) { request.setLimit(limit); });
    if (some.isEmpty())
        broken(Tool::tr("asked %1, it gave none").arg(what));
    if (some.size() > limit)
        broken(Tool::tr("asked %1, it gave %2").arg(what).arg(some.size()));
    const QList<QDateTime> times = timesOf(all);
    const QList<QDateTime> left = timesOf(some);
    if (!times.isEmpty() && !left.isEmpty() && left.last() < times.last())
        broken(Tool::tr("asked %1, it left out the newest").arg(what));
    const QList<SocialGenericData> unlimited =
        probe.activities(Tool::tr("for activities without a limit"),
                         [](SocialGetActivitiesRequest &request) { request.setLimit(0); });
    if (unlimited.isEmpty())
        broken(Tool::tr("asked for activities without a limit (0), it gave none"));
}

void checkTimes(Probe &probe)
{
    const QList<QDateTime> times = timesOf(probe.activities(Tool::tr("for activities")));
    if (times.isEmpty())
        notChecked(Tool::tr("it gave no activity with a StartTime"));
    const bool differ = times.first() < times.last();
    requireNone(
        {beforeMistake(probe, times.last(), differ), afterMistake(probe, times.first(), differ)});
}
