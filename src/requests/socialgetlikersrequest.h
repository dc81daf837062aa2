// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "requests/socialgetpersonsrequest.h"

/// Asks who likes an activity. The likers are persons().
class KINLET_EXPORT SocialGetLikersRequest : public SocialGetPersonsRequest {
    Q_OBJECT

public:
    /// Asks for the likers of that activity.
    Q_INVOKABLE explicit SocialGetLikersRequest(const QString &activityId = QString());
    ~SocialGetLikersRequest() override;

    /// The activity in question; null when none was given.
    QString activityId() const;

    /// Appends the activity's id to the form of a persons request.
    void serialize(QDataStream &stream) override;
    void unserialize(QDataStream &stream) override;
};
