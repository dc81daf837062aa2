// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/socialgetlikersrequest.h"

#include "requests/socialgetpersonsrequest_p.h"

#include "records/streamreading_p.h"

#include <QDataStream>

class SocialGetLikersRequestPrivate : public SocialGetPersonsRequestPrivate {
public:
    explicit SocialGetLikersRequestPrivate(const QString &id) : activityId(id) { }
    int type() const override { return SocialDataRequest::GetLikers; }

    QString activityId;
};

namespace {

SocialGetLikersRequestPrivate *data(const std::unique_ptr<SocialDataRequestPrivate> &d)
{
    return static_cast<SocialGetLikersRequestPrivate *>(d.get());
}

}

SocialGetLikersRequest::SocialGetLikersRequest(const QString &activityId)
    : SocialGetPersonsRequest(new SocialGetLikersRequestPrivate(activityId))
{
}

SocialGetLikersRequest::~SocialGetLikersRequest() = default;

QString SocialGetLikersRequest::activityId() const
{
    return data(d_ptr)->activityId;
}

void SocialGetLikersRequest::serialize(QDataStream &stream)
{
    SocialGetPersonsRequest::serialize(stream);
    stream << data(d_ptr)->activityId;
}

void SocialGetLikersRequest::unserialize(QDataStream &stream)
{
    SocialGetPersonsRequest::unserialize(stream);
    readTexts(stream, data(d_ptr)->activityId);
}
