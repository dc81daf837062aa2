// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "requests/socialdatarequest.h"

/// Likes an activity, or takes a like back.
class KINLET_EXPORT SocialLikeActivityRequest : public SocialDataRequest {
    Q_OBJECT

public:
    /// Likes that activity, or takes the like back.
    Q_INVOKABLE explicit SocialLikeActivityRequest(const QString &activityId = QString(),
                                                   bool like = true);
    ~SocialLikeActivityRequest() override;

    /// The activity in question; null when none was given.
    QString activityId() const;
    /// True to like, false to take the like back.
    bool like() const;

    /// Appends the activity's id and like (one byte).
    void serialize(QDataStream &stream) override;
    void unserialize(QDataStream &stream) override;

public Q_SLOTS:
    /// For providers: ends the request with status Finished; if \a success is false with one error
    /// of type KinletError::LikeFailed and no description. For a description call
    /// setRequestProgress() instead.
    void likeResult(bool success);
};
