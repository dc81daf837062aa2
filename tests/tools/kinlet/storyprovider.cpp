// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "storyprovider.h"

#include <Kinlet/KinletError>
#include <Kinlet/SocialGetActivitiesRequest>
#include <Kinlet/SocialGetLikersRequest>
#include <Kinlet/SocialLikeActivityRequest>
#include <Kinlet/SocialPostActivitiesRequest>

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <csignal>

namespace {

const QString name = QStringLiteral(STORY_NAME);

QVariant propertyValue(const QString &key, const QJsonValue &value)
{
    if (key == SocialActivity::StartTime)
        return value.isDouble()
            ? QDateTime::currentDateTimeUtc().addSecs(qint64(value.toDouble() * -60))
            : QDateTime::fromString(value.toString(), Qt::ISODate);
    if (key == SocialActivity::Attachment) {
        SocialActivityAttachment attachment;
        attachment.firstText = value[QLatin1String("title")].toString();
        attachment.fourthText = value[QLatin1String("url")].toString();
        const QJsonArray media = value[QLatin1String("pictures")].toArray();
        for (const QJsonValue one : media)
            attachment.media.append(
                {Media::Image, one.toString(), {}, QStringLiteral("a picture")});
        return QVariant::fromValue(attachment);
    }
    if (key == SocialServiceAccount::ImportProgress) {
        const QJsonArray counts = value.toArray();
        return QVariant::fromValue(SocialImportProgress{
            counts.isEmpty(), counts.at(0).toInt(), counts.at(1).toInt(), counts.at(2).toInt()});
    }
    return value.toVariant();
}

QList<SocialGenericData> records(const QJsonValue &list, const QString &className)
{
    QList<SocialGenericData> records;
    const QJsonArray array = list.toArray();
    for (const QJsonValue element : array) {
        const QJsonObject object = element.toObject();
        SocialGenericData record(className);
        for (auto it = object.begin(); it != object.end(); ++it)
            record.setProperty(it.key(), propertyValue(it.key(), it.value()));
        records.append(record);
    }
    return records;
}

template <typename Typed>
QList<Typed> typed(const QList<SocialGenericData> &records)
{
    QList<Typed> list;
    for (const SocialGenericData &record : records)
        list.append(Typed(record));
    return list;
}

QString kindOf(const SocialDataRequest &request)
{
    switch (request.type()) {
    case SocialDataRequest::GetAggregatedServices:
        return QStringLiteral("services");
    case SocialDataRequest::GetAccounts:
        return QStringLiteral("accounts");
    case SocialDataRequest::GetPersons:
        return QStringLiteral("persons");
    case SocialDataRequest::GetActivities:
        return QStringLiteral("activities");
    case SocialDataRequest::PostActivities:
        return QStringLiteral("post");
    case SocialDataRequest::LikeActivity:
        return QStringLiteral("like");
    case SocialDataRequest::GetLikers:
        return QStringLiteral("likers");
    default:
        return QString();
    }
}

void describe(QJsonObject &entry, SocialDataRequest *request)
{
    const auto insert = [&](const char *key, const QJsonValue &value) {
        entry.insert(QLatin1String(key), value);
    };
    if (const auto *asked = qobject_cast<SocialGetActivitiesRequest *>(request)) {
        insert("ids", QJsonArray::fromStringList(asked->activityIdsFilter()));
        insert("parent", asked->parentActivityIdFilter());
        insert("persons", QJsonArray::fromStringList(asked->personsFilter()));
        insert("limit", asked->limit());
        insert("type", int(asked->activityFilter()));
        insert("timeline", int(asked->timelineType()));
        insert("before", asked->before().toUTC().toString(Qt::ISODate));
        insert("after", asked->after().toUTC().toString(Qt::ISODate));
    } else if (const auto *post = qobject_cast<SocialPostActivitiesRequest *>(request)) {
        insert("text", post->statusText());
        insert("id", post->postId());
        insert("type", int(post->requestType()));
    } else if (const auto *like = qobject_cast<SocialLikeActivityRequest *>(request)) {
        insert("id", like->activityId());
        insert("like", like->like());
    } else if (const auto *asked = qobject_cast<SocialGetPersonsRequest *>(request)) {
        const QHash<QString, QRegExp> filter = asked->propertyFilter();
        QJsonObject patterns;
        for (auto it = filter.begin(); it != filter.end(); ++it)
            patterns.insert(it.key(), it.value().pattern());
        insert("filter", patterns);
    }
}

void log(const QString &event, SocialDataRequest *request)
{
    QFile file(qEnvironmentVariable("KINLET_TEST_LOG"));
    if (!file.open(QIODevice::Append))
        return;
    QJsonObject entry{{QStringLiteral("provider"), name},
                      {QStringLiteral("event"), event},
                      {QStringLiteral("kind"), kindOf(*request)},
                      {QStringLiteral("accounts"),
                       QJsonArray::fromStringList(request->performOnAccountsFilter())}};
    describe(entry, request);
    file.write(QJsonDocument(entry).toJson(QJsonDocument::Compact) + '\n');
}

}

StoryProvider::StoryProvider()
{
    QFile file(qEnvironmentVariable("KINLET_TEST_STORIES") + QStringLiteral("/%1.json").arg(name));
    if (file.open(QIODevice::ReadOnly))
        story = QJsonDocument::fromJson(file.readAll()).object();
}

void StoryProvider::init()
{
    const QJsonArray messages = story[QLatin1String("messages")].toArray();
    for (const QJsonValue message : messages)
        qWarning("%s", qUtf8Printable(message.toString()));
    connect(&pushing, &QTimer::timeout, this, &StoryProvider::push);
    pushing.setSingleShot(true);
    pushing.start(0);
}

QVariantMap StoryProvider::metaData()
{
    QVariantMap map = story[QLatin1String("metaData")].toObject().toVariantMap();
    map.insert(QStringLiteral("name"), name);
    return map;
}

QList<SocialService> StoryProvider::services()
{
    return typed<SocialService>(
        records(story[QLatin1String("services")], SocialService::ClassName));
}

QList<SocialServiceAccount> StoryProvider::accounts()
{
    return typed<SocialServiceAccount>(
        records(story[QLatin1String("accounts")], SocialServiceAccount::ClassName));
}

QList<SocialGenericData> StoryProvider::activities(const SocialGetActivitiesRequest &request)
{
    QList<SocialGenericData> matching;
    const auto all = records(story[QLatin1String("activities")], SocialActivity::ClassName);
    for (const SocialGenericData &record : all) {
        const QStringList ids = request.activityIdsFilter();
        const QString parent = request.parentActivityIdFilter();
        const QStringList accounts = request.performOnAccountsFilter();
        const bool otherAccount = !accounts.isEmpty() && !record.parentAccount().isEmpty()
            && !accounts.contains(record.parentAccount());
        if (otherAccount || (!ids.isEmpty() && !ids.contains(record.id()))
            || (!parent.isEmpty() && record.property(SocialActivity::ParentActivityId) != parent))
            continue;
        matching.append(record);
    }
    return request.limit() < 1 ? matching : matching.mid(0, request.limit());
}

QList<SocialGenericData> StoryProvider::persons(const SocialGetPersonsRequest &request)
{
    QList<SocialGenericData> matching;
    const QHash<QString, QRegExp> filter = request.propertyFilter();
    const auto all = records(story[QLatin1String("persons")], SocialNetworkPerson::ClassName);
    for (const SocialGenericData &record : all) {
        bool matches = true;
        for (auto it = filter.begin(); it != filter.end(); ++it)
            matches = matches && it.value().indexIn(record.property(it.key())) >= 0;
        if (matches)
            matching.append(record);
    }
    return matching;
}

QList<SocialGenericData> StoryProvider::found(SocialDataRequest *request)
{
    switch (request->type()) {
    case SocialDataRequest::GetAggregatedServices:
        return records(story[QLatin1String("services")], SocialService::ClassName);
    case SocialDataRequest::GetAccounts:
        return records(story[QLatin1String("accounts")], SocialServiceAccount::ClassName);
    case SocialDataRequest::GetPersons:
        return persons(*qobject_cast<SocialGetPersonsRequest *>(request));
    case SocialDataRequest::GetActivities:
        return activities(*qobject_cast<SocialGetActivitiesRequest *>(request));
    case SocialDataRequest::GetLikers: {
        const QString id = qobject_cast<SocialGetLikersRequest *>(request)->activityId();
        const QJsonArray likers = story[QLatin1String("likers")].toObject()[id].toArray();
        QList<SocialGenericData> result;
        const auto all = persons(*qobject_cast<SocialGetPersonsRequest *>(request));
        for (const SocialGenericData &person : all) {
            if (likers.contains(person.id()))
                result.append(person);
        }
        return result;
    }
    case SocialDataRequest::PostActivities: {
        SocialGenericData posted(SocialActivity::ClassName);
        posted.setProperty(SocialGenericData::Id, QStringLiteral("posted-1"));
        return {posted};
    }
    default:
        return {};
    }
}

void StoryProvider::performRequest(SocialDataRequest *request)
{
    const QString kind = kindOf(*request);
    const auto lists = [&](const char *key) {
        return story[QLatin1String(key)].toArray().contains(kind);
    };
    log(QStringLiteral("asked"), request);
    if (lists("interrupts"))
        std::raise(SIGINT);
    if (lists("silent")) {
        request->setResults(found(request).mid(0, story[QLatin1String("partial")].toInt()));
        request->setRequestProgress(SocialDataRequest::Progressing, {});
        return;
    }
    QList<KinletError> errors;
    const QJsonArray told = story[QLatin1String("errors")].toObject()[kind].toArray();
    for (const QJsonValue error : told)
        errors.append(KinletError(KinletError::Type(error[0].toInt()), error[1].toString()));
    request->setResults(found(request));
    request->setRequestProgress(
        lists("stops") ? SocialDataRequest::Stopped : SocialDataRequest::Finished, errors);
}

void StoryProvider::cancelRequest(SocialDataRequest *request)
{
    log(QStringLiteral("cancelled"), request);
}

void StoryProvider::push()
{
    const QJsonArray pushes = story[QLatin1String("pushes")].toArray();
    for (const QJsonValue one : pushes) {
        const QJsonArray names = one[QLatin1String("updated")].toArray();
        QStringList updated;
        for (const QJsonValue property : names)
            updated.append(property.toString());
        const QString className = one[QLatin1String("class")].toString();
        const auto data = records(one[QLatin1String("records")], className);
        if (className == SocialNetworkPerson::ClassName)
            Q_EMIT personsUpdate(typed<SocialNetworkPerson>(data), updated);
        else
            Q_EMIT dataUpdate(data, updated);
    }
}

#include "moc_storyprovider.cpp"
