// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/timelinerequestfactory.h"

#include "requests/socialgetactivitiesrequest.h"

SocialGetActivitiesRequest *TimelineRequestFactory::createHomepageTimelineRequest()
{
    auto *request = new SocialGetActivitiesRequest;
    request->setTimelineType(KinletTimeline::Homepage);
    request->setActivityFilter(SocialActivity::Status);
    return request;
}

SocialGetActivitiesRequest *
TimelineRequestFactory::createProfileTimelineRequest(const QStringList &personIds)
{
    auto *request = new SocialGetActivitiesRequest;
    request->setTimelineType(KinletTimeline::Profile);
    request->setActivityFilter(SocialActivity::Status);
    request->setPersonsFilter(personIds);
    request->setForceRefresh(true);
    return request;
}
