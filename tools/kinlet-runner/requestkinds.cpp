// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requestkinds.h"

#include <Kinlet/GetAggregatedServicesRequest>
#include <Kinlet/SocialDataRequest>
#include <Kinlet/SocialGetAccountsRequest>
#include <Kinlet/SocialGetActivitiesRequest>
#include <Kinlet/SocialGetLikersRequest>
#include <Kinlet/SocialGetPersonsRequest>
#include <Kinlet/SocialLikeActivityRequest>
#include <Kinlet/SocialPostActivitiesRequest>

SocialDataRequest *makeRequest(int kind)
{
    switch (kind) {
    case SocialDataRequest::GenericRequest:
        return new SocialDataRequest;
    case SocialDataRequest::GetAggregatedServices:
        return new GetAggregatedServicesRequest;
    case SocialDataRequest::GetAccounts:
        return new SocialGetAccountsRequest;
    case SocialDataRequest::GetPersons:
        return new SocialGetPersonsRequest;
    case SocialDataRequest::GetActivities:
        return new SocialGetActivitiesRequest;
    case SocialDataRequest::PostActivities:
        return new SocialPostActivitiesRequest;
    case SocialDataRequest::LikeActivity:
        return new SocialLikeActivityRequest;
    case SocialDataRequest::GetLikers:
        return new SocialGetLikersRequest;
    default:
        return nullptr;
    }
}
