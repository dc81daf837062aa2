// SPDX-FileCopyrightText: @YEAR@ The @NAME@ developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "provider.h"

#include <QDateTime>

#include <algorithm>

namespace {

bool isOfAccounts(const SocialGenericData &record, const SocialDataRequest &request)
{
    const QStringList accounts = request.performOnAccountsFilter();
    return accounts.isEmpty() || accounts.contains(record.parentAccount());
}

// Kinlet carries the filters; providers apply them.
bool isWanted(const SocialActivity &activity, const SocialGetActivitiesRequest &request)
{
    const QStringList ids = request.activityIdsFilter();
    const QStringList persons = request.personsFilter();
    const int type = activity.variantProperty(SocialActivity::ActivityType).toInt();
    const QDateTime time = activity.variantProperty(SocialActivity::StartTime).toDateTime();
    const QString parent = request.parentActivityIdFilter();
    return isOfAccounts(activity, request) && (ids.isEmpty() || ids.contains(activity.id()))
        && (persons.isEmpty() || persons.contains(activity.property(SocialActivity::OwnerPersonId)))
        && (request.activityFilter() == SocialActivity::AnyType || request.activityFilter() == type)
        && (parent.isEmpty() || parent == activity.property(SocialActivity::ParentActivityId))
        && (request.before().isNull() || time < request.before())
        && (request.after().isNull() || time > request.after());
}

bool matches(const SocialNetworkPerson &person, const QHash<QString, QRegExp> &filter)
{
    for (auto it = filter.begin(); it != filter.end(); ++it) {
        if (it->indexIn(person.property(it.key())) < 0)
            return false;
    }
    return true;
}

}

// FILL IN: read settings, begin to connect. What fails here is reported with error().
void Provider::init() { }

QVariantMap Provider::metaData()
{
    return {{QStringLiteral("name"), QStringLiteral("@NAME@")}};
}

QList<SocialService> Provider::services()
{
    return {network.service()};
}

QList<SocialServiceAccount> Provider::accounts()
{
    return network.accounts();
}

void Provider::performRequest(SocialDataRequest *request)
{
    Reply *reply = nullptr;
    switch (request->type()) {
    case SocialDataRequest::GetPersons:
        reply = network.fetchPersons();
        break;
    case SocialDataRequest::GetActivities:
    case SocialDataRequest::GetLikers:
        reply = network.fetchActivities();
        break;
    // FILL IN: PostActivities and LikeActivity, if the network lets users post and like.
    default:
        // Answers the registry requests from services() and accounts(), and refuses the rest.
        KinletInterface::performRequest(request);
        return;
    }
    replies.insert(request, reply);
    connect(reply, &Reply::finished, this, [this, request] { answer(request); });
}

void Provider::cancelRequest(SocialDataRequest *request)
{
    // With the reply goes what would have used the request.
    delete replies.take(request);
}

void Provider::answer(SocialDataRequest *request)
{
    Reply *reply = replies.take(request);
    reply->deleteLater();
    if (!reply->errors.isEmpty())
        request->setRequestProgress(SocialDataRequest::Finished, reply->errors);
    else if (auto *activities = qobject_cast<SocialGetActivitiesRequest *>(request))
        answerActivities(activities, *reply);
    else if (auto *likers = qobject_cast<SocialGetLikersRequest *>(request))
        answerLikers(likers, *reply);
    else
        answerPersons(qobject_cast<SocialGetPersonsRequest *>(request), *reply);
}

void Provider::answerActivities(SocialGetActivitiesRequest *request, const Reply &reply)
{
    const bool isLimited = request->limit() > 0;
    QList<SocialActivity> wanted;
    for (const SocialActivity &activity : reply.activities) {
        if (isLimited && wanted.size() == request->limit())
            break;
        if (isWanted(activity, *request))
            wanted.append(activity);
    }
    request->setActivities(wanted);
    request->setRequestProgress(SocialDataRequest::Finished, {});
}

void Provider::answerLikers(SocialGetLikersRequest *request, const Reply &reply)
{
    const QList<SocialActivity> &all = reply.activities;
    const bool known = std::any_of(all.begin(), all.end(), [request](const SocialActivity &one) {
        return one.id() == request->activityId();
    });
    // FILL IN: who likes it, with setPersons(). So far nobody does.
    QList<KinletError> errors;
    if (!known)
        errors.append(
            KinletError(KinletError::InvalidRequest,
                        QStringLiteral("There is no activity \"%1\"").arg(request->activityId())));
    request->setRequestProgress(SocialDataRequest::Finished, errors);
}

void Provider::answerPersons(SocialGetPersonsRequest *request, const Reply &reply)
{
    QList<SocialNetworkPerson> wanted;
    for (const SocialNetworkPerson &person : reply.persons) {
        if (isOfAccounts(person, *request) && matches(person, request->propertyFilter()))
            wanted.append(person);
    }
    request->setPersons(wanted);
    request->setRequestProgress(SocialDataRequest::Finished, {});
}
