// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/sociallikeactivityrequest.h"

#include "records/streamreading_p.h"
#include "requests/socialdatarequest_p.h"

#include <QDataStream>

class SocialLikeActivityRequestPrivate : public SocialDataRequestPrivate {
public:
    SocialLikeActivityRequestPrivate(const QString &id, bool toLike) : activityId(id), like(toLike)
    {
    }
    int type() const override { return SocialDataRequest::LikeActivity; }

    QString activityId;
    bool like;
};

namespace {

SocialLikeActivityRequestPrivate *data(const std::unique_ptr<SocialDataRequestPrivate> &d)
{
    return static_cast<SocialLikeActivityRequestPrivate *>(d.get());
}

}

SocialLikeActivityRequest::SocialLikeActivityRequest(const QString &activityId, bool like)
    : SocialDataRequest(new SocialLikeActivityRequestPrivate(activityId, like))
{
}

SocialLikeActivityRequest::~SocialLikeActivityRequest() = default;

QString SocialLikeActivityRequest::activityId() const
{
    return data(d_ptr)->activityId;
}

bool SocialLikeActivityRequest::like() const
{
    return data(d_ptr)->like;
}

void SocialLikeActivityRequest::serialize(QDataStream &stream)
{
    SocialDataRequest::serialize(stream);
    stream << activityId() << like();
}

void SocialLikeActivityRequest::unserialize(QDataStream &stream)
{
    SocialDataRequest::unserialize(stream);
    auto *d = data(d_ptr);
    readTexts(stream, d->activityId);
    stream >> d->like;
}

void SocialLikeActivityRequest::likeResult(bool success)
{
    // Finished deliberately, never Stopped: the error alone tells that it failed.
    QList<KinletError> errors;
    if (!success)
        errors.append(KinletError(KinletError::LikeFailed));
    setRequestProgress(Finished, errors);
}
