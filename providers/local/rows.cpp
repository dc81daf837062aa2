// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "rows.h"

#include "journal.h"

#include <Kinlet/SocialActivityAttachment>

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QVariant>

namespace Rows {

namespace {

enum PersonColumn { Id, ScreenName, Name, Summary, Url, AvatarUrl, PersonChange };

enum ActivityColumn {
    ActivityId,
    Type,
    Owner,
    Parent,
    Text,
    Time,
    MediaText,
    CommentCount,
    LikeCount,
    IsLikedByMe,
    Boosted,
    BoostedText,
    BoostedUrl,
    BoostedAuthor,
    ActivityChange,
    ActivityEdited
};

QString firstText(const QStringList &candidates)
{
    for (const QString &candidate : candidates) {
        if (!candidate.isEmpty())
            return candidate;
    }
    return QString();
}

QVariant unlessEmpty(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

QList<Media> mediaOf(const QString &text)
{
    QList<Media> all;
    const QJsonArray list = QJsonDocument::fromJson(text.toUtf8()).array();
    for (const QJsonValue &value : list) {
        const QJsonArray fields = value.toArray();
        Media media;
        media.kind = fields.at(0).toInt();
        media.firstText = fields.at(1).toString();
        media.secondText = fields.at(2).toString();
        media.thirdText = fields.at(3).toString();
        all.append(media);
    }
    return all;
}

// Media, and for a boost what was boosted.
void setAttachment(SocialActivity &activity, const QSqlQuery &row)
{
    const QString boosted = row.value(Boosted).toString();
    SocialActivityAttachment attachment;
    attachment.media = mediaOf(row.value(MediaText).toString());
    if (!boosted.isEmpty()) {
        attachment.secondText = row.value(BoostedAuthor).toString();
        attachment.thirdText = row.value(BoostedText).toString();
        attachment.fourthText = firstText({row.value(BoostedUrl).toString(), boosted});
    }
    if (!boosted.isEmpty() || !attachment.media.isEmpty())
        activity.setProperty(SocialActivity::Attachment, QVariant::fromValue(attachment));
}

}

QString selectPersons()
{
    return QStringLiteral(
        "SELECT p.id, p.screenName, p.name, p.summary, p.url, p.avatarUrl, p.change "
        "FROM persons p ");
}

SocialNetworkPerson person(const QSqlQuery &row)
{
    SocialNetworkPerson person;
    person.setParentAccount(Journal::Id);
    const QStringList keys = personProperties();
    for (const QString &key : keys)
        person.setProperty(key, personProperty(row, key));
    return person;
}

QVariant personProperty(const QSqlQuery &row, const QString &key)
{
    const auto text = [&row](PersonColumn column) { return row.value(column).toString(); };
    if (key == SocialNetworkPerson::Id)
        return text(Id);
    if (key == SocialNetworkPerson::Description)
        return firstText({text(Name), text(ScreenName), text(Id)});
    if (key == SocialNetworkPerson::ParentAccount)
        return Journal::Id;
    if (key == SocialNetworkPerson::ScreenName)
        return firstText({text(ScreenName), text(Name), text(Id)});
    if (key == SocialNetworkPerson::FirstName)
        return unlessEmpty(text(Name).section(QLatin1Char(' '), 0, 0));
    if (key == SocialNetworkPerson::LastName)
        return unlessEmpty(text(Name).section(QLatin1Char(' '), 1));
    if (key == SocialNetworkPerson::AboutMe)
        return unlessEmpty(text(Summary));
    if (key == SocialNetworkPerson::ProfileLink)
        return unlessEmpty(text(Url));
    if (key == SocialNetworkPerson::AvatarList && !text(AvatarUrl).isEmpty())
        return QVariantList{text(AvatarUrl)};
    return QVariant();
}

qint64 personChange(const QSqlQuery &row)
{
    return row.value(PersonChange).toLongLong();
}

QStringList personProperties()
{
    return {SocialNetworkPerson::Id,          SocialNetworkPerson::Description,
            SocialNetworkPerson::ScreenName,  SocialNetworkPerson::FirstName,
            SocialNetworkPerson::LastName,    SocialNetworkPerson::AboutMe,
            SocialNetworkPerson::ProfileLink, SocialNetworkPerson::AvatarList};
}

QString selectActivities()
{
    return QStringLiteral(
               "SELECT a.id, a.type, a.owner, a.parent, a.text, a.time, a.media, "
               "(SELECT COUNT(*) FROM activities c WHERE c.parent = a.id), "
               "(SELECT COUNT(*) FROM likes l WHERE l.activity = a.id), "
               "EXISTS (SELECT 1 FROM likes l WHERE l.activity = a.id AND l.person = '%1'), "
               "a.boosted, b.text, b.url, o.name, a.change, a.edited "
               "FROM activities a "
               "LEFT JOIN activities b ON b.id = a.boosted "
               "LEFT JOIN persons o ON o.id = b.owner ")
        .arg(Journal::Me);
}

SocialActivity activity(const QSqlQuery &row)
{
    SocialActivity activity;
    activity.setProperty(SocialActivity::Id, row.value(ActivityId));
    // What was boosted speaks for the boost, which has no words of its own.
    activity.setProperty(SocialActivity::Description,
                         firstText({row.value(Text).toString(), row.value(BoostedText).toString(),
                                    row.value(Boosted).toString()}));
    activity.setParentAccount(Journal::Id);
    activity.setProperty(SocialActivity::ActivityType, row.value(Type).toInt());
    activity.setProperty(SocialActivity::OwnerPersonId, row.value(Owner));
    activity.setProperty(SocialActivity::StartTime,
                         QDateTime::fromMSecsSinceEpoch(row.value(Time).toLongLong(), Qt::UTC));
    activity.setProperty(SocialActivity::ParentActivityId,
                         unlessEmpty(row.value(Parent).toString()));
    activity.setProperty(SocialActivity::CommentCount, row.value(CommentCount).toInt());
    activity.setProperty(SocialActivity::LikeCount, row.value(LikeCount).toInt());
    activity.setProperty(SocialActivity::IsLikedByMe, row.value(IsLikedByMe).toBool());
    setAttachment(activity, row);
    return activity;
}

qint64 activityChange(const QSqlQuery &row)
{
    return row.value(ActivityChange).toLongLong();
}

qint64 activityEdited(const QSqlQuery &row)
{
    return row.value(ActivityEdited).toLongLong();
}

QStringList activityProperties()
{
    return {SocialActivity::Id,           SocialActivity::Description,
            SocialActivity::ActivityType, SocialActivity::OwnerPersonId,
            SocialActivity::StartTime,    SocialActivity::ParentActivityId,
            SocialActivity::CommentCount, SocialActivity::LikeCount,
            SocialActivity::IsLikedByMe,  SocialActivity::Attachment};
}

QStringList countedProperties()
{
    return {SocialActivity::CommentCount, SocialActivity::LikeCount, SocialActivity::IsLikedByMe};
}

QString mediaText(const QList<Media> &media)
{
    if (media.isEmpty())
        return QString();
    QJsonArray list;
    for (const Media &one : media)
        list.append(QJsonArray{one.kind, one.firstText, one.secondText, one.thirdText});
    return QString::fromUtf8(QJsonDocument(list).toJson(QJsonDocument::Compact));
}

}
