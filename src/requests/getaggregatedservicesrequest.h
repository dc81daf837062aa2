// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "records/typedrecords.h"
#include "requests/socialdatarequest.h"

/// Asks providers for the services that they offer. The manager does so for every provider it
/// finds.
class KINLET_EXPORT GetAggregatedServicesRequest : public SocialDataRequest {
    Q_OBJECT

public:
    /// Asks for all services.
    Q_INVOKABLE GetAggregatedServicesRequest();
    ~GetAggregatedServicesRequest() override;

    /// The results as services, every record of them, in their order; empty before an answer.
    QList<SocialService> availableServices() const;
    /// For providers: replaces the results.
    void setAvailableServices(const QList<SocialService> &services);
};
