// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/inquiry.h"

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

}

bool Reports::ended() const
{
    return statuses.contains(SocialDataRequest::Stopped)
        || statuses.contains(SocialDataRequest::Finished);
}

Inquiry plainInquiry(const QString &kind)
{
    const QString what = QStringLiteral("for ") + kind;
    if (kind == Kind::Services)
        return inquiry<GetAggregatedServicesRequest>(what);
    if (kind == Kind::Accounts)
        return inquiry<SocialGetAccountsRequest>(what);
    if (kind == Kind::Persons)
        return inquiry<SocialGetPersonsRequest>(what);
    if (kind == Kind::Activities)
        return inquiry<SocialGetActivitiesRequest>(what);
    return inquiry<SocialGetLikersRequest>(
        QStringLiteral("for the likers of an activity that does not exist"),
        QStringLiteral("kinlet-check:no-such-activity"));
}
