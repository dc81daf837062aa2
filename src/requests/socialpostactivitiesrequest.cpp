// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/socialpostactivitiesrequest.h"

#include "records/streamreading_p.h"
#include "requests/socialdatarequest_p.h"

#include <QDataStream>

class SocialPostActivitiesRequestPrivate : public SocialDataRequestPrivate {
public:
    SocialPostActivitiesRequestPrivate(const QString &text, const QString &post,
                                       SocialActivity::Type type)
        : statusText(text), postId(post), requestType(type)
    {
    }
    int type() const override { return SocialDataRequest::PostActivities; }

    QString statusText;
    QString postId;
    SocialActivity::Type requestType;
};

namespace {

SocialPostActivitiesRequestPrivate *data(const std::unique_ptr<SocialDataRequestPrivate> &d)
{
    return static_cast<SocialPostActivitiesRequestPrivate *>(d.get());
}

}

SocialPostActivitiesRequest::SocialPostActivitiesRequest(SocialActivity::Type requestType,
                                                         const QString &statusText,
                                                         const QString &postId)
    : SocialDataRequest(new SocialPostActivitiesRequestPrivate(statusText, postId, requestType))
{
}

SocialPostActivitiesRequest::~SocialPostActivitiesRequest() = default;

SocialActivity::Type SocialPostActivitiesRequest::requestType() const
{
    return data(d_ptr)->requestType;
}

QString SocialPostActivitiesRequest::statusText() const
{
    return data(d_ptr)->statusText;
}

QString SocialPostActivitiesRequest::postId() const
{
    return data(d_ptr)->postId;
}

// On the wire the type deliberately comes before the texts. It goes out as a signed byte and comes
// back unsigned: -1 is read as 255.

void SocialPostActivitiesRequest::serialize(QDataStream &stream)
{
    SocialDataRequest::serialize(stream);
    stream << qint8(requestType()) << statusText() << postId();
}

void SocialPostActivitiesRequest::unserialize(QDataStream &stream)
{
    SocialDataRequest::unserialize(stream);
    auto *d = data(d_ptr);
    quint8 requestType = 0;
    stream >> requestType;
    readTexts(stream, d->statusText, d->postId);
    d->requestType = SocialActivity::Type(requestType);
}

void SocialPostActivitiesRequest::postResult(bool result)
{
    // Finished deliberately, never Stopped: the error alone tells that it failed.
    QList<KinletError> errors;
    if (!result)
        errors.append(KinletError(KinletError::PostFailed));
    setRequestProgress(Finished, errors);
}
