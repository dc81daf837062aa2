// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/inquiry.h"

#include "language.h"

#include <Kinlet/GetAggregatedServicesRequest>
#include <Kinlet/SocialGetAccountsRequest>
#include <Kinlet/SocialGetLikersRequest>
#include <Kinlet/SocialGetPersonsRequest>
#include <Kinlet/SocialLikeActivityRequest>

namespace Kind {

const QString Services = QStringLiteral("services");
const QString Accounts = QStringLiteral("accounts");
const QString Persons = QStringLiteral("persons");
const QString Activities = QStringLiteral("activities");
const QString Likers = QStringLiteral("likers");
const QString Like = QStringLiteral("like");

QStringList all()
{
    return {Services, Accounts, Persons, Activities, Likers, Like};
}

// Words that are the same after "for", "its" and "two of its" in any language.
QString text(const QString &kind)
{
    if (kind == Services)
        return Tool::tr("services", "after: asked for");
    if (kind == Accounts)
        return Tool::tr("accounts", "after: asked for");
    if (kind == Persons)
        return Tool::tr("persons", "after: asked for");
    if (kind == Activities)
        return Tool::tr("activities", "after: asked for");
    return Tool::tr("likers", "after: asked for");
}

}

bool Reports::ended() const
{
    return statuses.contains(SocialDataRequest::Stopped)
        || statuses.contains(SocialDataRequest::Finished);
}

Inquiry plainInquiry(const QString &kind)
{
    const QString what = Tool::tr("for %1").arg(Kind::text(kind));
    if (kind == Kind::Services)
        return inquiry<GetAggregatedServicesRequest>(what);
    if (kind == Kind::Accounts)
        return inquiry<SocialGetAccountsRequest>(what);
    if (kind == Kind::Persons)
        return inquiry<SocialGetPersonsRequest>(what);
    if (kind == Kind::Activities)
        return inquiry<SocialGetActivitiesRequest>(what);
    const QString unknown = QStringLiteral("kinlet-check:no-such-activity");
    if (kind == Kind::Likers)
        return inquiry<SocialGetLikersRequest>(
            Tool::tr("for the likers of an activity that does not exist"), unknown);
    return inquiry<SocialLikeActivityRequest>(
        Tool::tr("to take back the like of an activity that does not exist"), unknown, false);
}

QString statusMistake(const Asked &asked)
{
    if (!asked.reports->statuses.contains(SocialDataRequest::Stopped))
        return QString();
    return Tool::tr("asked %1, it ended with status Stopped").arg(asked.what);
}

QString onceMistake(const Asked &asked)
{
    const QList<SocialDataRequest::Status> &statuses = asked.reports->statuses;
    const auto times = statuses.count(SocialDataRequest::Finished);
    if (times > 1)
        return Tool::tr("asked once %1, it answered %2 times").arg(asked.what).arg(times);
    if (times == 1 && statuses.last() != SocialDataRequest::Finished)
        return Tool::tr("asked %1, it reported progress after it had answered").arg(asked.what);
    if (asked.request->results().size() != asked.reports->results.size())
        return Tool::tr("asked %1, it set results after it had answered").arg(asked.what);
    return QString();
}
