// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "importwriter.h"

#include "rows.h"

#include <Kinlet/SocialActivity>

#include <QLoggingCategory>

// Silent unless asked for: archives are full of what a journal has no place for.
Q_LOGGING_CATEGORY(lcImport, "kinlet.local.import", QtCriticalMsg)

namespace {

QString personStatement()
{
    return QStringLiteral(
        "INSERT INTO persons (id, screenName, name, summary, url, avatarUrl, change) "
        "VALUES (?, ?, ?, ?, ?, ?, (SELECT COALESCE(MAX(change), 0) + 1 FROM persons)) "
        "ON CONFLICT (id) DO UPDATE SET "
        "screenName = COALESCE(NULLIF(excluded.screenName, ''), screenName), "
        "name = COALESCE(NULLIF(excluded.name, ''), name), "
        "summary = COALESCE(NULLIF(excluded.summary, ''), summary), "
        "url = COALESCE(NULLIF(excluded.url, ''), url), "
        "avatarUrl = COALESCE(NULLIF(excluded.avatarUrl, ''), avatarUrl), "
        "change = excluded.change "
        "WHERE excluded.screenName NOT IN ('', screenName) OR excluded.name NOT IN ('', name) "
        "OR excluded.summary NOT IN ('', summary) OR excluded.url NOT IN ('', url) "
        "OR excluded.avatarUrl NOT IN ('', avatarUrl)");
}

QString activityStatement()
{
    return QStringLiteral(
        "INSERT INTO activities (id, type, owner, parent, boosted, text, time, url, media, edited, "
        "change) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, "
        "(SELECT COALESCE(MAX(change), 0) + 1 FROM activities), "
        "(SELECT COALESCE(MAX(change), 0) + 1 FROM activities)) "
        "ON CONFLICT (id) DO UPDATE SET "
        "type = excluded.type, "
        "parent = COALESCE(NULLIF(excluded.parent, ''), parent), "
        "boosted = COALESCE(NULLIF(excluded.boosted, ''), boosted), "
        "text = COALESCE(NULLIF(excluded.text, ''), text), "
        "time = excluded.time, "
        "url = COALESCE(NULLIF(excluded.url, ''), url), "
        "media = COALESCE(NULLIF(excluded.media, ''), media), "
        "edited = excluded.edited, "
        "change = excluded.change "
        "WHERE excluded.owner = owner AND (excluded.type <> type OR excluded.time <> time "
        "OR excluded.parent NOT IN ('', parent) OR excluded.boosted NOT IN ('', boosted) "
        "OR excluded.text NOT IN ('', text) OR excluded.url NOT IN ('', url) "
        "OR excluded.media NOT IN ('', media))");
}

}

ImportWriter::ImportWriter(Database &database)
    : database(database)
    , writePerson(database.prepare(personStatement()))
    , writeActivity(database.prepare(activityStatement()))
    , writeLike(database.prepare(
          QStringLiteral("INSERT OR IGNORE INTO likes (activity, person, time) VALUES (?, ?, ?)")))
    , touchActivity(database.prepare(
          QStringLiteral("UPDATE activities SET change = (SELECT MAX(change) + 1 FROM activities) "
                         "WHERE id = ?")))
    , lastPerson(database.value(QStringLiteral("SELECT MAX(number) FROM persons")).toLongLong())
    , lastChange(database.value(QStringLiteral("SELECT MAX(change) FROM persons")).toLongLong())
{
}

void ImportWriter::person(const ImportedPerson &person)
{
    if (isOwn(person.id, person.id))
        return;
    write(
        writePerson,
        {person.id, person.screenName, person.name, person.summary, person.url, person.avatarUrl});
}

void ImportWriter::activity(const ImportedActivity &activity)
{
    if (isOwn(activity.id, activity.id) || isOwn(activity.authorId, activity.id))
        return;
    const auto type = activity.kind == ImportedActivity::Comment ? SocialActivity::Comment
                                                                 : SocialActivity::Status;
    const int written =
        write(writeActivity,
              {activity.id, int(type), activity.authorId, activity.inReplyTo, activity.boostOf,
               activity.text, activity.published.toMSecsSinceEpoch(), activity.url,
               Rows::mediaText(activity.media)});
    if (written > 0 && !activity.inReplyTo.isEmpty())
        write(touchActivity, {activity.inReplyTo});
}

void ImportWriter::like(const ImportedLike &like)
{
    if (isOwn(like.personId, like.activityId))
        return;
    const qint64 time = like.time.isValid() ? like.time.toMSecsSinceEpoch() : 0;
    if (write(writeLike, {like.activityId, like.personId, time}) > 0)
        write(touchActivity, {like.activityId});
}

void ImportWriter::skipped(const QString &what, const QString &why)
{
    constexpr int longest = 200;
    qCInfo(lcImport) << "Skipped" << what.left(longest) << "-" << why.left(longest);
}

SocialImportProgress ImportWriter::counts() const
{
    SocialImportProgress counts;
    counts.contactsAdded =
        database
            .value(QStringLiteral("SELECT COUNT(*) FROM persons WHERE number > ?"), {lastPerson})
            .toInt();
    counts.contactsMerged =
        database
            .value(QStringLiteral("SELECT COUNT(*) FROM persons WHERE change > ? AND number <= ?"),
                   {lastChange, lastPerson})
            .toInt();
    return counts;
}

bool ImportWriter::isOwn(const QString &id, const QString &what)
{
    if (!id.startsWith(QLatin1String("local:")))
        return false;
    skipped(what, QStringLiteral("ids that begin with \"local:\" are the journal's own"));
    return true;
}

int ImportWriter::write(QSqlQuery &query, const QVariantList &values)
{
    if (failed)
        return 0;
    try {
        database.execute(query, values);
        const int rows = query.numRowsAffected();
        query.finish();
        return rows;
    } catch (const StoreError &error) {
        failed = error;
        return 0;
    }
}
