// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "support/scriptedprovider.h"

#include "requests/socialgetactivitiesrequest.h"

/// A request that records every progress report that reaches it. Without Q_OBJECT on purpose: its
/// copies are plain activities requests.
class WatchedRequest : public SocialGetActivitiesRequest {
public:
    struct Report {
        Status status;
        QStringList ids;
        QList<int> errors;

        bool operator==(const Report &other) const
        {
            return status == other.status && ids == other.ids && errors == other.errors;
        }
    };

    void setRequestProgress(Status status, const QList<KinletError> &errors) override
    {
        reports.append({status, idsOf(results()), typesOf(errors)});
        SocialGetActivitiesRequest::setRequestProgress(status, errors);
        if (const auto hook = onReport)
            hook(status);
    }

    QList<Report> reports;
    /// Run after each report, as its last step: it may delete the request.
    std::function<void(Status)> onReport;
};
