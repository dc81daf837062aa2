// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "records/typedrecords.h"
#include "records/valuetypes.h"
#include "requests/socialdatarequest.h"

#include <QDateTime>

/**
 * Asks for activities of a timeline.
 *
 * A new request asks each provider for 10 activities of any type from any timeline. The library
 * carries the filters; providers apply them, each activity having to pass all that are set.
 */
class KINLET_EXPORT SocialGetActivitiesRequest : public SocialDataRequest {
    Q_OBJECT

public:
    /// Asks for 10 activities of any kind.
    Q_INVOKABLE SocialGetActivitiesRequest();
    ~SocialGetActivitiesRequest() override;

    /// Ids of the persons who published the activities; empty means everybody.
    QStringList personsFilter() const;
    /// Replaces the persons.
    void setPersonsFilter(const QStringList &personIds);

    /// How many activities each provider may answer with, the newest ones; less than 1 means no
    /// limit. Initially 10.
    int limit() const;
    /// Replaces the limit.
    void setLimit(int limit);

    /// Only activities older than this; null means no bound.
    QDateTime before() const;
    /// Replaces the bound.
    void setBefore(const QDateTime &before);

    /// Only activities newer than this; null means no bound.
    QDateTime after() const;
    /// Replaces the bound.
    void setAfter(const QDateTime &after);

    /// Only activities of this type. Initially SocialActivity::AnyType. One byte on the wire.
    SocialActivity::Type activityFilter() const;
    /// Replaces the type.
    void setActivityFilter(SocialActivity::Type type);

    /// Only the activities with these ids; empty means any.
    QStringList activityIdsFilter() const;
    /// Replaces the ids.
    void setActivityIdsFilter(const QStringList &activityIds);

    /// Only comments on this activity; null means any activity.
    QString parentActivityIdFilter() const;
    /// Replaces the activity.
    void setParentActivityIdFilter(const QString &activityId);

    /// The timeline to take them from. Initially KinletTimeline::Any. One byte on the wire.
    KinletTimeline::TimelineType timelineType() const;
    /// Replaces the timeline.
    void setTimelineType(KinletTimeline::TimelineType type);

    /// Whether a provider should ask its network even if it holds a fresh answer. Initially false.
    bool forceRefresh() const;
    /// Replaces the choice.
    void setForceRefresh(bool force);

    /// The results as activities, every record of them, in their order; empty before an answer.
    QList<SocialActivity> activities() const;
    /// For providers: replaces the results.
    void setActivities(const QList<SocialActivity> &activities);

    /// Appends persons, limit (32 bit), after, before, activity ids, parent id, type (8 bit),
    /// timeline (8 bit), force refresh (one byte).
    void serialize(QDataStream &stream) override;
    void unserialize(QDataStream &stream) override;
};
