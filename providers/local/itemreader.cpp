// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "itemreader.h"

#include "htmltext.h"
#include "posttext.h"
#include "validity.h"
#include "vocabulary.h"

#include <QUrl>

using namespace ActivityStreams;

namespace {

enum Role { Other, Person, Post, Create, Boost, Like };

Role roleOf(const QJsonObject &object)
{
    static const QHash<QString, Role> roles = {{QStringLiteral("Application"), Person},
                                               {QStringLiteral("Group"), Person},
                                               {QStringLiteral("Organization"), Person},
                                               {QStringLiteral("Person"), Person},
                                               {QStringLiteral("Service"), Person},
                                               {QStringLiteral("Article"), Post},
                                               {QStringLiteral("Audio"), Post},
                                               {QStringLiteral("Document"), Post},
                                               {QStringLiteral("Event"), Post},
                                               {QStringLiteral("Image"), Post},
                                               {QStringLiteral("Note"), Post},
                                               {QStringLiteral("Page"), Post},
                                               {QStringLiteral("Question"), Post},
                                               {QStringLiteral("Video"), Post},
                                               {QStringLiteral("Create"), Create},
                                               {QStringLiteral("Announce"), Boost},
                                               {QStringLiteral("Like"), Like}};
    const QStringList all = types(object);
    for (const QString &type : all) {
        const Role role = roles.value(type, Other);
        if (role != Other) {
            return role;
        }
    }
    return Other;
}

QString typeName(const QJsonObject &object)
{
    const QStringList all = types(object);
    return all.isEmpty() ? QStringLiteral("something without a type") : all.first().left(100);
}

QString authorOf(const QJsonObject &post, const QJsonObject &create)
{
    const QString author = firstId(post, QStringLiteral("attributedTo"));
    return author.isEmpty() ? firstId(create, QStringLiteral("actor")) : author;
}

/// When it was published, or else last changed.
QDateTime timeOf(const QJsonObject &post, const QJsonObject &create)
{
    for (const char *key : {"published", "updated"}) {
        for (const QJsonObject &object : {post, create}) {
            const QDateTime found = time(object, QString::fromLatin1(key));
            if (found.isValid()) {
                return found;
            }
        }
    }
    return QDateTime();
}

} // namespace

ItemReader::ItemReader(ImportSink &sink) : m_sink(sink) { }

bool ItemReader::hasDelivered() const
{
    return m_hasDelivered;
}

void ItemReader::skip(const QJsonObject &what, const QString &why)
{
    m_hasDelivered = true;
    const QString id = idOf(what);
    m_sink.skipped(id.isEmpty() ? typeName(what) : id, why);
}

void ItemReader::readUnchecked(const QJsonValue &item)
{
    if (item.isString()) {
        // What is no URL may be something that a person has written.
        const QString text = item.toString();
        m_hasDelivered = true;
        m_sink.skipped(QUrl(text).isRelative() ? QStringLiteral("a text") : text,
                       QStringLiteral("it is only a reference"));
        return;
    }
    const QString found = item.isObject() ? problem(item.toObject())
                                          : QStringLiteral("it is neither an object nor a URL");
    if (found.isEmpty()) {
        read(item.toObject());
    } else {
        skip(item.toObject(), found);
    }
}

void ItemReader::read(const QJsonObject &item)
{
    switch (roleOf(item)) {
    case Person:
        if (!readPerson(item)) {
            skip(item, QStringLiteral("it has no id"));
        }
        return;
    case Post: {
        QString why;
        if (!readPost(item, QJsonObject(), &why)) {
            skip(item, why);
        }
        return;
    }
    case Create:
        return readCreate(item);
    case Boost:
        return readBoost(item);
    case Like:
        return readLike(item);
    case Other:
        break;
    }
    skip(item, QStringLiteral("%1 has no place in a journal").arg(typeName(item)));
}

void ItemReader::readCreate(const QJsonObject &create)
{
    const QVector<QJsonValue> things = values(create, QStringLiteral("object"));
    if (things.isEmpty()) {
        skip(create, QStringLiteral("it does not say what was created"));
    }
    for (const QJsonValue &thing : things) {
        const QJsonObject post = thing.toObject();
        QString why;
        if (!thing.isObject()) {
            why = QStringLiteral("of what was created it has only a reference");
        } else if (roleOf(post) != Post) {
            why = QStringLiteral("%1 was created").arg(typeName(post));
        } else if (readPost(post, create, &why)) {
            continue;
        }
        skip(create, why);
    }
}

void ItemReader::readBoost(const QJsonObject &announce)
{
    readPersonsOf(announce);
    readPostsOf(announce);
    ImportedActivity boost;
    boost.kind = ImportedActivity::Boost;
    boost.id = idOf(announce);
    boost.authorId = firstId(announce, QStringLiteral("actor"));
    boost.boostOf = firstId(announce, QStringLiteral("object"));
    boost.published = timeOf(announce, QJsonObject());
    boost.url = usableUrl(firstUrl(announce, QStringLiteral("url")));
    if (boost.id.isEmpty() || boost.boostOf.isEmpty() || !boost.published.isValid()) {
        skip(announce, QStringLiteral("its id, its time or the id of what was boosted is missing"));
        return;
    }
    m_hasDelivered = true;
    m_sink.activity(boost);
}

void ItemReader::readLike(const QJsonObject &like)
{
    readPersonsOf(like);
    readPostsOf(like);
    ImportedLike liked;
    liked.personId = firstId(like, QStringLiteral("actor"));
    liked.time = timeOf(like, QJsonObject());
    const QVector<QJsonValue> things = values(like, QStringLiteral("object"));
    bool any = false;
    for (const QJsonValue &thing : things) {
        liked.activityId = idOf(thing);
        if (!liked.personId.isEmpty() && !liked.activityId.isEmpty()) {
            any = true;
            m_hasDelivered = true;
            m_sink.like(liked);
        }
    }
    if (!any) {
        skip(like, QStringLiteral("the id of who likes or of what is liked is missing"));
    }
}

bool ItemReader::readPost(const QJsonObject &post, const QJsonObject &create, QString *why)
{
    readPersonsOf(create);
    readPersonsOf(post);
    ImportedActivity activity;
    activity.id = idOf(post).isEmpty() ? idOf(create) : idOf(post);
    activity.authorId = authorOf(post, create);
    activity.inReplyTo = firstId(post, QStringLiteral("inReplyTo"));
    activity.kind =
        activity.inReplyTo.isEmpty() ? ImportedActivity::Status : ImportedActivity::Comment;
    activity.text = postText(post);
    activity.published = timeOf(post, create);
    activity.url = usableUrl(firstUrl(post, QStringLiteral("url")));
    activity.media = postMedia(post);
    if (activity.id.isEmpty()) {
        *why = QStringLiteral("it has no id");
    } else if (!activity.published.isValid()) {
        *why = QStringLiteral("it has no time that can be read");
    } else if (activity.text.isEmpty() && activity.media.isEmpty()) {
        *why = QStringLiteral("it has neither text nor media");
    } else {
        m_hasDelivered = true;
        m_sink.activity(activity);
        return true;
    }
    return false;
}

bool ItemReader::readPerson(const QJsonObject &actor)
{
    ImportedPerson person;
    person.id = idOf(actor);
    if (person.id.isEmpty()) {
        return false;
    }
    person.screenName = plainText(actor.value(QLatin1String("preferredUsername")).toString());
    person.name = plainText(text(actor, QStringLiteral("name")));
    person.summary = htmlToText(text(actor, QStringLiteral("summary")));
    person.url = usableUrl(firstUrl(actor, QStringLiteral("url")));
    person.avatarUrl = usableUrl(firstUrl(actor, QStringLiteral("icon")));
    m_hasDelivered = true;
    m_sink.person(person);
    return true;
}

void ItemReader::readPersonsOf(const QJsonObject &item)
{
    for (const char *key : {"actor", "attributedTo"}) {
        const QVector<QJsonValue> actors = values(item, QString::fromLatin1(key));
        for (const QJsonValue &actor : actors) {
            // Whoever acts is a person, whatever its type; a link or a bare id tells nothing.
            if (actor.toObject().contains(QLatin1String("name"))
                || actor.toObject().contains(QLatin1String("preferredUsername"))) {
                readPerson(actor.toObject());
            }
        }
    }
}

void ItemReader::readPostsOf(const QJsonObject &activity)
{
    const QVector<QJsonValue> things = values(activity, QStringLiteral("object"));
    for (const QJsonValue &thing : things) {
        QString why;
        if (roleOf(thing.toObject()) == Post) {
            readPost(thing.toObject(), QJsonObject(), &why);
        }
    }
}
