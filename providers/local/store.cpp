// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "store.h"

#include "activityquery.h"
#include "journal.h"
#include "patternsearch.h"
#include "rows.h"
#include "schema.h"

#include <Kinlet/KinletError>

#include <QDateTime>
#include <QFileInfo>
#include <QMap>
#include <QStandardPaths>
#include <QUuid>

namespace {

using Searches = QMap<QString, PatternSearch>;

[[noreturn]] void refuse(const QString &property, const PatternSearch &search, const QString &text)
{
    throw KinletError(
        KinletError::InvalidRequest,
        QStringLiteral(
            "The pattern \"%1\" for %2 may take minutes in a text of %3 characters, which "
            "somebody in the local journal has there; it is good for %4. Use one in "
            "which less is repeated or optional")
            .arg(search.pattern().pattern(), property)
            .arg(text.size())
            .arg(search.longestText()));
}

bool matches(const QSqlQuery &person, const Searches &searches)
{
    for (auto it = searches.begin(); it != searches.end(); ++it) {
        const QVariant value = Rows::personProperty(person, it.key());
        if (!value.isValid())
            return false;
        const QString text = value.toString();
        if (text.size() > it->longestText())
            refuse(it.key(), *it, text);
        if (!it->isFoundIn(text))
            return false;
    }
    return true;
}

QList<SocialNetworkPerson> matching(Database &file, QSqlQuery query,
                                    const Store::PropertyFilter &filter)
{
    Searches searches;
    for (auto it = filter.begin(); it != filter.end(); ++it)
        searches.insert(it.key(), PatternSearch(*it));
    QList<SocialNetworkPerson> persons;
    while (file.next(query)) {
        if (matches(query, searches))
            persons.append(Rows::person(query));
    }
    return persons;
}

}

QString Store::folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/kinlet");
}

Store::Store() : file(folder() + QStringLiteral("/local.db"))
{
    // SQLite would open it for reading and say so only when something is written.
    if (!QFileInfo(file.path()).isWritable())
        throw StoreError{StoreError::Failed,
                         QStringLiteral("The journal %1 may not be written. Make the file and its "
                                        "folder writable")
                             .arg(file.path())};
    prepareSchema(file, journalMigrations());
    // Stays with the file. Readers and a writer do not wait for each other then.
    file.run(QStringLiteral("PRAGMA journal_mode = WAL"));
    if (!file.value(QStringLiteral("SELECT 1 FROM persons WHERE id = ?"), {Journal::Me}).isValid())
        addMe();
}

void Store::addMe()
{
    const SocialServiceAccount account = Journal::account(Journal::fullName());
    Transaction transaction(file, Transaction::Soon);
    // Another process may have been faster.
    file.run(QStringLiteral("INSERT OR IGNORE INTO persons "
                            "(id, screenName, name, summary, url, avatarUrl, change) "
                            "VALUES (?, ?, ?, '', '', ?, "
                            "(SELECT COALESCE(MAX(change), 0) + 1 FROM persons))"),
             {Journal::Me, account.property(SocialServiceAccount::UserName),
              account.property(SocialServiceAccount::AccountName),
              account.property(SocialServiceAccount::Avatar)});
    transaction.commit();
}

SocialServiceAccount Store::account()
{
    return Journal::account(
        file.value(QStringLiteral("SELECT name FROM persons WHERE id = ?"), {Journal::Me})
            .toString());
}

QList<SocialNetworkPerson> Store::persons(const PropertyFilter &filter)
{
    return matching(file, file.run(Rows::selectPersons() + QStringLiteral("ORDER BY p.number")),
                    filter);
}

QList<SocialNetworkPerson> Store::likers(const QString &activityId, const PropertyFilter &filter)
{
    // An archive may hold a like of somebody about whom nothing else is known.
    return matching(
        file,
        file.run(QStringLiteral("SELECT l.person, p.screenName, p.name, p.summary, p.url, "
                                "p.avatarUrl FROM likes l LEFT JOIN persons p ON p.id = l.person "
                                "WHERE l.activity = ? ORDER BY l.time, l.person"),
                 {activityId}),
        filter);
}

QList<SocialActivity> Store::activities(const SocialGetActivitiesRequest &filters)
{
    const ActivityQuery query(filters);
    QSqlQuery rows = file.run(query.sql, query.values);
    QList<SocialActivity> activities;
    while (file.next(rows))
        activities.append(Rows::activity(rows));
    return activities;
}

bool Store::hasActivity(const QString &id)
{
    return file.value(QStringLiteral("SELECT 1 FROM activities WHERE id = ?"), {id}).isValid();
}

SocialActivity Store::activity(const QString &id)
{
    QSqlQuery rows = file.run(Rows::selectActivities() + QStringLiteral("WHERE a.id = ?"), {id});
    return file.next(rows) ? Rows::activity(rows) : SocialActivity();
}

void Store::giveBackRoom()
{
    try {
        // Moves the log into the file, and then cuts it off.
        file.run(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
    } catch (const StoreError &) {
        // The log stays; what is written next takes the place of what was undone.
    }
}

QString Store::addActivity(SocialActivity::Type type, const QString &text, const QString &parent)
{
    const QString id =
        QStringLiteral("local:") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    file.run(QStringLiteral("INSERT INTO activities (id, type, owner, parent, boosted, text, time, "
                            "url, media, edited, change) VALUES (?, ?, ?, ?, '', ?, ?, '', '', "
                            "(SELECT COALESCE(MAX(change), 0) + 1 FROM activities), "
                            "(SELECT COALESCE(MAX(change), 0) + 1 FROM activities))"),
             {id, int(type), Journal::Me, parent, text, QDateTime::currentMSecsSinceEpoch()});
    markChanged(parent);
    return id;
}

void Store::setLiked(const QString &activityId, bool liked)
{
    const QSqlQuery change = liked
        ? file.run(QStringLiteral("INSERT OR IGNORE INTO likes (activity, person, time) "
                                  "VALUES (?, ?, ?)"),
                   {activityId, Journal::Me, QDateTime::currentMSecsSinceEpoch()})
        : file.run(QStringLiteral("DELETE FROM likes WHERE activity = ? AND person = ?"),
                   {activityId, Journal::Me});
    if (change.numRowsAffected() > 0)
        markChanged(activityId);
}

void Store::markChanged(const QString &activityId)
{
    file.run(QStringLiteral("UPDATE activities SET change = "
                            "(SELECT MAX(change) + 1 FROM activities) WHERE id = ?"),
             {activityId});
}
