// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "records/typedrecords.h"
#include "requests/socialdatarequest.h"

/// Publishes an activity: a status, or a comment on another activity.
class KINLET_EXPORT SocialPostActivitiesRequest : public SocialDataRequest {
    Q_OBJECT

public:
    /// \a postId is the activity that a comment is about; null for a status.
    Q_INVOKABLE explicit SocialPostActivitiesRequest(
        SocialActivity::Type requestType = SocialActivity::Status,
        const QString &statusText = QString(), const QString &postId = QString());
    ~SocialPostActivitiesRequest() override;

    /// What is to be published. One byte on the wire.
    SocialActivity::Type requestType() const;
    /// The text to publish; null when none was given.
    QString statusText() const;
    /// The activity that is commented on; null when there is none.
    QString postId() const;

    /// Appends type (8 bit), text, post id.
    void serialize(QDataStream &stream) override;
    void unserialize(QDataStream &stream) override;

public Q_SLOTS:
    /// For providers: ends the request with status Finished; if \a result is false with one error
    /// of type KinletError::PostFailed and no description. For a description call
    /// setRequestProgress() instead.
    void postResult(bool result);
};
