// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "answers.h"

#include "journal.h"
#include "store.h"

#include <Kinlet/KinletError>
#include <Kinlet/SocialGetActivitiesRequest>
#include <Kinlet/SocialGetLikersRequest>
#include <Kinlet/SocialLikeActivityRequest>
#include <Kinlet/SocialPostActivitiesRequest>

namespace Answers {

namespace {

[[noreturn]] void refuse(const QString &why)
{
    throw KinletError(KinletError::InvalidRequest, why);
}

void checkPost(const SocialPostActivitiesRequest &post)
{
    const SocialActivity::Type type = post.requestType();
    if (type != SocialActivity::Status && type != SocialActivity::Comment)
        throw KinletError(
            KinletError::UnsupportedRequest,
            QStringLiteral("The local journal takes statuses and comments, not type %1").arg(type));
    if (post.statusText().trimmed().isEmpty())
        refuse(QStringLiteral("The text is empty"));
    if (type == SocialActivity::Comment && post.postId().isEmpty())
        refuse(QStringLiteral("The comment does not say which activity it is about"));
    if (type == SocialActivity::Status && !post.postId().isEmpty())
        refuse(QStringLiteral("A status is not about another activity, but this one names \"%1\"")
                   .arg(post.postId()));
}

void checkPatterns(const SocialGetPersonsRequest &request)
{
    const QHash<QString, QRegExp> filter = request.propertyFilter();
    for (auto it = filter.begin(); it != filter.end(); ++it) {
        if (!it->isValid())
            refuse(QStringLiteral("The pattern \"%1\" for %2 is not valid: %3")
                       .arg(it->pattern(), it.key(), it->errorString()));
    }
}

void checkActivity(Store &store, const QString &id)
{
    if (!store.hasActivity(id))
        refuse(QStringLiteral("There is no activity \"%1\" in the local journal").arg(id));
}

template <typename Record>
QList<SocialGenericData> generic(const QList<Record> &records)
{
    return QList<SocialGenericData>(records.begin(), records.end());
}

QList<SocialGenericData> persons(Store &store, const SocialGetPersonsRequest &request)
{
    const auto *likers = qobject_cast<const SocialGetLikersRequest *>(&request);
    if (!likers)
        return generic(store.persons(request.propertyFilter()));
    checkActivity(store, likers->activityId());
    return generic(store.likers(likers->activityId(), request.propertyFilter()));
}

}

bool isWriting(const SocialDataRequest &request)
{
    return qobject_cast<const SocialPostActivitiesRequest *>(&request)
        || qobject_cast<const SocialLikeActivityRequest *>(&request);
}

void check(const SocialDataRequest &request)
{
    const QStringList accounts = request.performOnAccountsFilter();
    for (const QString &account : accounts) {
        if (account != Journal::Id)
            refuse(QStringLiteral("\"%1\" is not the account of the local journal").arg(account));
    }
    if (const auto *post = qobject_cast<const SocialPostActivitiesRequest *>(&request))
        checkPost(*post);
    else if (const auto *persons = qobject_cast<const SocialGetPersonsRequest *>(&request))
        checkPatterns(*persons);
    else if (!qobject_cast<const SocialGetActivitiesRequest *>(&request)
             && !qobject_cast<const SocialLikeActivityRequest *>(&request))
        throw KinletError(KinletError::UnsupportedRequest,
                          QStringLiteral("The local journal does not answer requests of kind %1")
                              .arg(request.type()));
}

QList<SocialGenericData> read(Store &store, const SocialDataRequest &request)
{
    if (const auto *activities = qobject_cast<const SocialGetActivitiesRequest *>(&request))
        return generic(store.activities(*activities));
    return persons(store, *qobject_cast<const SocialGetPersonsRequest *>(&request));
}

QList<SocialGenericData> write(Store &store, const SocialDataRequest &request)
{
    QString id;
    if (const auto *post = qobject_cast<const SocialPostActivitiesRequest *>(&request)) {
        if (post->requestType() == SocialActivity::Comment)
            checkActivity(store, post->postId());
        id = store.addActivity(post->requestType(), post->statusText(), post->postId());
    } else {
        const auto *like = qobject_cast<const SocialLikeActivityRequest *>(&request);
        id = like->activityId();
        checkActivity(store, id);
        store.setLiked(id, like->like());
    }
    return {store.activity(id)};
}

}
