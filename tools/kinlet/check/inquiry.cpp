// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/inquiry.h"

#include "language.h"

#include <Kinlet/GetAggregatedServicesRequest>
#include <Kinlet/SocialGetAccountsRequest>
#include <Kinlet/SocialGetLikersRequest>
#include <Kinlet/SocialGetPersonsRequest>

namespace Kind {

const QString Services = QStringLiteral("services");
const QString Accounts = QStringLiteral("accounts");
const QString Persons = QStringLiteral("persons");
const QString Activities = QStringLiteral("activities");
const QString Likers = QStringLiteral("likers");

QStringList all()
{
    return {Services, Accounts, Persons, Activities, Likers};
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
    return inquiry<SocialGetLikersRequest>(
        Tool::tr("for the likers of an activity that does not exist"),
        QStringLiteral("kinlet-check:no-such-activity"));
}
