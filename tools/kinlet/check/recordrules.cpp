// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/probe.h"
#include "check/rules.h"
#include "language.h"

#include <Kinlet/SocialActivity>

#include <QDateTime>
#include <QSet>

#include <algorithm>

namespace {

struct Content {
    QString kind;
    QList<SocialGenericData> records;
};

// One answer of persons and one of activities, as far as it has any, for these accounts.
QList<Content> contentOf(Probe &probe, const QStringList &accounts = {})
{
    QList<Content> all;
    for (const QString &kind : {Kind::Persons, Kind::Activities}) {
        if (!probe.settings.kinds.contains(kind))
            continue;
        Inquiry inquiry = plainInquiry(kind);
        if (!accounts.isEmpty())
            inquiry.what =
                Tool::tr("%1 of the account \"%2\"").arg(inquiry.what, accounts.constFirst());
        inquiry.request->setPerformOnAccountsFilter(accounts);
        const QList<SocialGenericData> records = probe.ask(std::move(inquiry)).reports->results;
        if (!records.isEmpty())
            all.append({kind, records});
    }
    return all;
}

QStringList idsOf(const QList<SocialGenericData> &records)
{
    QStringList ids;
    for (const SocialGenericData &record : records)
        ids.append(record.id());
    return ids;
}

QDateTime timeOf(const SocialGenericData &activity)
{
    return activity.variantProperty(SocialActivity::StartTime).toDateTime();
}

QList<QDateTime> timesOf(const QList<SocialGenericData> &activities)
{
    QList<QDateTime> times;
    for (const SocialGenericData &activity : activities) {
        if (timeOf(activity).isValid())
            times.append(timeOf(activity));
    }
    std::sort(times.begin(), times.end());
    return times;
}

}

void checkRecords(Probe &probe)
{
    const QStringList accounts = probe.accountIds();
    const QList<Content> all = contentOf(probe);
    if (all.isEmpty())
        notChecked(Tool::tr("it gave no persons and no activities"));
    for (const Content &content : all) {
        for (const SocialGenericData &record : content.records) {
            if (record.id().isEmpty())
                broken(Tool::tr("one of its %1 has no \"Id\"").arg(Kind::text(content.kind)));
            if (!accounts.contains(record.parentAccount()))
                broken(Tool::tr("\"%1\" among its %2 has the \"ParentAccount\" \"%3\", which "
                                "is no account of it")
                           .arg(record.id(), Kind::text(content.kind), record.parentAccount()));
        }
    }
}

void checkIds(Probe &probe)
{
    const QList<Content> first = contentOf(probe);
    const QList<Content> second = contentOf(probe);
    if (first.isEmpty() || first.size() != second.size())
        notChecked(Tool::tr("it gave no persons and no activities"));
    for (int i = 0; i < first.size(); ++i) {
        const QStringList before = idsOf(first[i].records);
        const QStringList after = idsOf(second[i].records);
        QSet<QString> seen(before.begin(), before.end());
        seen.remove(QString());
        const auto named = std::count_if(before.begin(), before.end(),
                                         [](const QString &id) { return !id.isEmpty(); });
        if (seen.size() < named)
            broken(Tool::tr("two of its %1 have the same \"Id\"").arg(Kind::text(first[i].kind)));
        const auto kept = std::count_if(after.begin(), after.end(),
                                        [&seen](const QString &id) { return seen.contains(id); });
        // Something may have been published or deleted meanwhile, but not most of it.
        if (2 * kept < seen.size())
            broken(Tool::tr("asked twice for %1, it gave other ids the second time")
                       .arg(Kind::text(first[i].kind)));
    }
}

void checkFilter(Probe &probe)
{
    const QStringList accounts = probe.accountIds();
    if (accounts.size() < 2)
        notChecked(Tool::tr("it takes two accounts to judge"));
    if (contentOf(probe).isEmpty())
        notChecked(Tool::tr("it gave no persons and no activities"));
    for (const QString &account : accounts) {
        const QList<Content> all = contentOf(probe, {account});
        for (const Content &content : all) {
            for (const SocialGenericData &record : content.records) {
                const QString parent = record.parentAccount();
                if (accounts.contains(parent) && parent != account)
                    broken(Tool::tr("asked for %1 of the account \"%2\", it gave some of "
                                    "\"%3\"")
                               .arg(Kind::text(content.kind), account, parent));
            }
        }
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
    if (some.size() > limit)
        broken(Tool::tr("asked %1, it gave %2").arg(what).arg(some.size()));
    const QList<QDateTime> times = timesOf(all);
    const QList<QDateTime> left = timesOf(some);
    if (!times.isEmpty() && !left.isEmpty() && left.last() < times.last())
        broken(Tool::tr("asked %1, it left out the newest").arg(what));
}

void checkTimes(Probe &probe)
{
    const QList<QDateTime> times = timesOf(probe.activities(Tool::tr("for activities")));
    if (times.isEmpty())
        notChecked(Tool::tr("it gave no activity with a StartTime"));
    const QDateTime newest = times.last();
    const QDateTime oldest = times.first();
    const QList<QDateTime> older = timesOf(
        probe.activities(Tool::tr("for activities before a time"),
                         [&](SocialGetActivitiesRequest &request) { request.setBefore(newest); }));
    if (!older.isEmpty() && older.last() >= newest)
        broken(
            Tool::tr("asked for activities before %1, it gave one of %2")
                .arg(newest.toString(Qt::ISODateWithMs), older.last().toString(Qt::ISODateWithMs)));
    const QList<QDateTime> newer = timesOf(
        probe.activities(Tool::tr("for activities after a time"),
                         [&](SocialGetActivitiesRequest &request) { request.setAfter(oldest); }));
    if (!newer.isEmpty() && newer.first() <= oldest)
        broken(Tool::tr("asked for activities after %1, it gave one of %2")
                   .arg(oldest.toString(Qt::ISODateWithMs),
                        newer.first().toString(Qt::ISODateWithMs)));
}
