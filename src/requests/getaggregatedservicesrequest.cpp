// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/getaggregatedservicesrequest.h"

#include "requests/socialdatarequest_p.h"
#include "requests/typedresults_p.h"

class GetAggregatedServicesRequestPrivate : public SocialDataRequestPrivate {
public:
    int type() const override { return SocialDataRequest::GetAggregatedServices; }
};

GetAggregatedServicesRequest::GetAggregatedServicesRequest()
    : SocialDataRequest(new GetAggregatedServicesRequestPrivate)
{
}

GetAggregatedServicesRequest::~GetAggregatedServicesRequest() = default;

QList<SocialService> GetAggregatedServicesRequest::availableServices() const
{
    return typedResults<SocialService>(results());
}

void GetAggregatedServicesRequest::setAvailableServices(const QList<SocialService> &services)
{
    setResults(plainResults(services));
}
