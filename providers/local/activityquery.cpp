// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "activityquery.h"

#include "journal.h"
#include "rows.h"

#include <Kinlet/SocialGetActivitiesRequest>

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

// One value, however many texts: SQLite limits the number of values.
QString jsonList(const QStringList &texts)
{
    const QJsonDocument document(QJsonArray::fromStringList(texts));
    return QString::fromUtf8(document.toJson(QJsonDocument::Compact));
}

}

ActivityQuery::ActivityQuery(const SocialGetActivitiesRequest &request)
{
    addLists(request);
    addTimes(request);
    addTimeline(request);
    if (!request.parentActivityIdFilter().isEmpty())
        add(QStringLiteral("a.parent = ?"), request.parentActivityIdFilter());
    if (request.activityFilter() != SocialActivity::AnyType)
        add(QStringLiteral("a.type = ?"), int(request.activityFilter()));
    const QString order = QStringLiteral(" ORDER BY a.time DESC, a.number DESC");
    QString filter = QStringLiteral("WHERE TRUE") + conditions;
    // First which ones: what is said about an activity takes longer than to sort it.
    if (sorted && request.limit() > 0)
        filter = QStringLiteral("WHERE a.number IN (SELECT a.number FROM activities a ") + filter
            + order + QStringLiteral(" LIMIT ?)") + order;
    else
        filter += order + QStringLiteral(" LIMIT ?");
    sql = Rows::selectActivities() + filter;
    // Below 0 means no limit to SQLite.
    values.append(request.limit() > 0 ? request.limit() : -1);
}

void ActivityQuery::addLists(const SocialGetActivitiesRequest &request)
{
    const QStringList persons = request.personsFilter();
    const QStringList ids = request.activityIdsFilter();
    sorted = persons.size() > 1 || !ids.isEmpty();
    // One person's are in their order.
    if (persons.size() == 1)
        add(QStringLiteral("a.owner = ?"), persons.constFirst());
    else if (!persons.isEmpty())
        add(QStringLiteral("a.owner IN (SELECT value FROM json_each(?))"), jsonList(persons));
    if (!ids.isEmpty())
        add(QStringLiteral("a.id IN (SELECT value FROM json_each(?))"), jsonList(ids));
}

void ActivityQuery::addTimes(const SocialGetActivitiesRequest &request)
{
    if (request.before().isValid())
        add(QStringLiteral("a.time < ?"), request.before().toMSecsSinceEpoch());
    if (request.after().isValid())
        add(QStringLiteral("a.time > ?"), request.after().toMSecsSinceEpoch());
}

void ActivityQuery::addTimeline(const SocialGetActivitiesRequest &request)
{
    switch (request.timelineType()) {
    case KinletTimeline::Any:
    case KinletTimeline::Homepage:
    // The filter of persons says whose.
    case KinletTimeline::Profile:
        break;
    case KinletTimeline::Personal:
        add(QStringLiteral("a.owner = ?"), Journal::Me);
        break;
    case KinletTimeline::Favorites:
        sorted = true;
        add(QStringLiteral("a.id IN (SELECT activity FROM likes WHERE person = ?)"), Journal::Me);
        break;
    case KinletTimeline::Private:
        add(QStringLiteral("a.type = ?"), int(SocialActivity::Message));
        break;
    case KinletTimeline::Custom:
    default:
        // The journal has no such timeline: nothing is in it.
        conditions += QStringLiteral(" AND FALSE");
        break;
    }
}

void ActivityQuery::add(const QString &condition, const QVariant &value)
{
    conditions += QStringLiteral(" AND ") + condition;
    values.append(value);
}
