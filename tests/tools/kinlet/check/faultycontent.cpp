// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "faultycontent.h"

#include <Kinlet/SocialGetActivitiesRequest>

#include "../../../plugins/files/pluginname.h"

#include <QDateTime>
#include <QUuid>

#include <algorithm>

#include <unistd.h>

bool fault(const char *name)
{
    static const QString file = pluginName();
    return file == QLatin1String(name);
}

namespace {

QString idOf(const QString &id)
{
    if (fault("random-ids"))
        return QUuid::createUuid().toString();
    if (fault("ids-of-this-start"))
        return QStringLiteral("%1:%2").arg(id).arg(::getpid());
    return fault("same-ids") ? QStringLiteral("same") : id;
}

Records ofAccounts(const Records &records, const SocialDataRequest &request)
{
    QStringList accounts = request.performOnAccountsFilter();
    if (!accounts.isEmpty() && fault("empty-when-filtered"))
        return {};
    if (fault("heeds-one-account"))
        accounts = accounts.mid(0, 1);
    Records wanted;
    for (const SocialGenericData &record : records) {
        if (accounts.isEmpty() || fault("unfiltered") || accounts.contains(record.parentAccount()))
            wanted.append(record);
    }
    return wanted;
}

}

Records persons(const SocialDataRequest &request)
{
    Records all;
    if (fault("no-accounts"))
        return all;
    for (const QString &account : {FirstAccount, SecondAccount}) {
        SocialNetworkPerson person;
        const QString own = fault("ids-shared-by-accounts") ? QString() : account;
        person.setProperty(SocialNetworkPerson::Id, idOf(own + QStringLiteral(":person")));
        if (account != FirstAccount || !fault("orphans"))
            person.setParentAccount(account);
        all.append(person);
    }
    return ofAccounts(all, request);
}

Records activities(const SocialGetActivitiesRequest &request)
{
    Records all;
    const bool bounded = !request.before().isNull() || !request.after().isNull();
    if (fault("no-accounts") || fault("no-activities") || (bounded && fault("empty-when-bounded")))
        return all;
    const bool comment =
        fault("status-not-first") && request.activityFilter() != SocialActivity::Status;
    const QDateTime noon({2026, 1, 1}, {12, 0}, Qt::UTC);
    for (int i = comment ? -1 : 0; i < 4; ++i) {
        const QDateTime time = noon.addSecs(-3600 * i);
        if ((!request.before().isNull() && time >= request.before() && !fault("ignores-before"))
            || (!request.after().isNull() && time <= request.after() && !fault("ignores-after")))
            continue;
        SocialActivity activity;
        activity.setProperty(SocialActivity::Id, idOf(QStringLiteral("activity:%1").arg(i)));
        activity.setProperty(SocialActivity::StartTime, time);
        if (!fault("likes-unknown"))
            activity.setProperty(SocialActivity::IsLikedByMe, false);
        activity.setParentAccount(i % 2 == 0 ? FirstAccount : SecondAccount);
        all.append(activity);
    }
    all = ofAccounts(all, request);
    if (fault("unnamed-records") && !all.isEmpty())
        all.first().removeProperty(SocialGenericData::Id);
    if (fault("empty-when-limited") && request.limit() < all.size())
        return {};
    if (fault("oldest-first"))
        std::reverse(all.begin(), all.end());
    if (fault("empty-without-limit") && request.limit() < 1)
        return {};
    if (request.limit() > 0 && !fault("greedy"))
        all = all.mid(0, request.limit());
    // The order is the provider's own.
    if (fault("status-not-first"))
        std::reverse(all.begin(), all.end());
    return all;
}
