// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/socialgetactivitiesrequest.h"

#include "records/streamreading_p.h"
#include "requests/socialdatarequest_p.h"
#include "requests/typedresults_p.h"

#include <QDataStream>

class SocialGetActivitiesRequestPrivate : public SocialDataRequestPrivate {
public:
    int type() const override { return SocialDataRequest::GetActivities; }

    QStringList personsFilter;
    qint32 limit = 0;
    QDateTime before;
    QDateTime after;
    SocialActivity::Type activityFilter = SocialActivity::UnknownType;
    QStringList activityIdsFilter;
    QString parentActivityIdFilter;
    KinletTimeline::TimelineType timelineType = KinletTimeline::Any;
    bool forceRefresh = false;
};

namespace {

SocialGetActivitiesRequestPrivate *data(const std::unique_ptr<SocialDataRequestPrivate> &d)
{
    return static_cast<SocialGetActivitiesRequestPrivate *>(d.get());
}

}

SocialGetActivitiesRequest::SocialGetActivitiesRequest()
    : SocialDataRequest(new SocialGetActivitiesRequestPrivate)
{
    setLimit(10);
    setActivityFilter(SocialActivity::AnyType);
    setTimelineType(KinletTimeline::Any);
}

SocialGetActivitiesRequest::~SocialGetActivitiesRequest() = default;

QStringList SocialGetActivitiesRequest::personsFilter() const
{
    return data(d_ptr)->personsFilter;
}

void SocialGetActivitiesRequest::setPersonsFilter(const QStringList &personIds)
{
    data(d_ptr)->personsFilter = personIds;
}

int SocialGetActivitiesRequest::limit() const
{
    return data(d_ptr)->limit;
}

void SocialGetActivitiesRequest::setLimit(int limit)
{
    data(d_ptr)->limit = limit;
}

QDateTime SocialGetActivitiesRequest::before() const
{
    return data(d_ptr)->before;
}

void SocialGetActivitiesRequest::setBefore(const QDateTime &before)
{
    data(d_ptr)->before = before;
}

QDateTime SocialGetActivitiesRequest::after() const
{
    return data(d_ptr)->after;
}

void SocialGetActivitiesRequest::setAfter(const QDateTime &after)
{
    data(d_ptr)->after = after;
}

SocialActivity::Type SocialGetActivitiesRequest::activityFilter() const
{
    return data(d_ptr)->activityFilter;
}

void SocialGetActivitiesRequest::setActivityFilter(SocialActivity::Type type)
{
    data(d_ptr)->activityFilter = type;
}

QStringList SocialGetActivitiesRequest::activityIdsFilter() const
{
    return data(d_ptr)->activityIdsFilter;
}

void SocialGetActivitiesRequest::setActivityIdsFilter(const QStringList &activityIds)
{
    data(d_ptr)->activityIdsFilter = activityIds;
}

QString SocialGetActivitiesRequest::parentActivityIdFilter() const
{
    return data(d_ptr)->parentActivityIdFilter;
}

void SocialGetActivitiesRequest::setParentActivityIdFilter(const QString &activityId)
{
    data(d_ptr)->parentActivityIdFilter = activityId;
}

KinletTimeline::TimelineType SocialGetActivitiesRequest::timelineType() const
{
    return data(d_ptr)->timelineType;
}

void SocialGetActivitiesRequest::setTimelineType(KinletTimeline::TimelineType type)
{
    data(d_ptr)->timelineType = type;
}

bool SocialGetActivitiesRequest::forceRefresh() const
{
    return data(d_ptr)->forceRefresh;
}

void SocialGetActivitiesRequest::setForceRefresh(bool force)
{
    data(d_ptr)->forceRefresh = force;
}

QList<SocialActivity> SocialGetActivitiesRequest::activities() const
{
    return typedResults<SocialActivity>(results());
}

void SocialGetActivitiesRequest::setActivities(const QList<SocialActivity> &activities)
{
    setResults(plainResults(activities));
}

// On the wire "after" deliberately comes before "before". The two types deliberately go out as
// signed bytes and come back unsigned: -1 is read as 255.

void SocialGetActivitiesRequest::serialize(QDataStream &stream)
{
    SocialDataRequest::serialize(stream);
    const auto *d = data(d_ptr);
    stream << d->personsFilter << d->limit << d->after << d->before << d->activityIdsFilter
           << d->parentActivityIdFilter << qint8(d->activityFilter) << qint8(d->timelineType)
           << d->forceRefresh;
}

void SocialGetActivitiesRequest::unserialize(QDataStream &stream)
{
    SocialDataRequest::unserialize(stream);
    auto *d = data(d_ptr);
    readList(stream, d->personsFilter);
    stream >> d->limit >> d->after >> d->before;
    readList(stream, d->activityIdsFilter);
    quint8 activityFilter = 0;
    quint8 timelineType = 0;
    readTexts(stream, d->parentActivityIdFilter);
    stream >> activityFilter >> timelineType >> d->forceRefresh;
    d->activityFilter = SocialActivity::Type(activityFilter);
    d->timelineType = KinletTimeline::TimelineType(timelineType);
}
