// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "schema.h"

#include "database.h"

#include <QFileInfo>

namespace {

// "Knlt"
constexpr int ApplicationId = 0x4b6e6c74;
constexpr qint64 LargestChecked = qint64(64) * 1024 * 1024;

// The number of migrations that the file has seen.
int checkedVersion(Database &database, int newest)
{
    // In one statement: another process may be making the journal just now.
    QSqlQuery row = database.run(QStringLiteral("SELECT application_id, user_version, "
                                                "(SELECT COUNT(*) FROM sqlite_master) "
                                                "FROM pragma_application_id, pragma_user_version"));
    database.next(row);
    const int application = row.value(0).toInt();
    const int version = row.value(1).toInt();
    // A file without anything in it is what a process leaves that died at the wrong moment.
    const bool empty = row.value(2).toInt() == 0;
    if (application != ApplicationId && !(application == 0 && version == 0 && empty))
        throw StoreError{
            StoreError::Damaged,
            QStringLiteral("The file %1 is another program's, not a journal. Move it away to begin "
                           "a journal")
                .arg(database.path())};
    if (version < 0 || version > newest)
        throw StoreError{
            StoreError::Damaged,
            QStringLiteral("The journal %1 was written by a newer program, which is needed to read "
                           "it: its version is %2, the newest that this one knows is %3")
                .arg(database.path())
                .arg(version)
                .arg(newest)};
    return version;
}

// Finds damage before anything is written next to it. In a large file, which would take too long to
// check, it shows when somebody comes across it.
void checkPages(Database &database)
{
    if (QFileInfo(database.path()).size() > LargestChecked)
        return;
    const QString result = database.value(QStringLiteral("PRAGMA quick_check(1)")).toString();
    if (result != QLatin1String("ok"))
        throw StoreError{StoreError::Damaged,
                         QStringLiteral("The journal %1 is damaged: %2. Put a copy of it in its "
                                        "place, or move it away to begin a new one")
                             .arg(database.path(), result.simplified())};
}

}

const Migrations &journalMigrations()
{
    // A row's "change" is the number of the last change to its record, counted within its table:
    // whoever remembers a number finds everything that came later. "edited" is the same for the
    // row itself, leaving out what the record only counts.
    static const Migrations migrations{
        {QStringLiteral("CREATE TABLE persons ("
                        "number INTEGER PRIMARY KEY, "
                        "id TEXT NOT NULL UNIQUE, "
                        "screenName TEXT NOT NULL, "
                        "name TEXT NOT NULL, "
                        "summary TEXT NOT NULL, "
                        "url TEXT NOT NULL, "
                        "avatarUrl TEXT NOT NULL, "
                        "change INTEGER NOT NULL UNIQUE)"),
         // Times are milliseconds since 1970, media a JSON array; '' is for what is not there.
         QStringLiteral("CREATE TABLE activities ("
                        "number INTEGER PRIMARY KEY, "
                        "id TEXT NOT NULL UNIQUE, "
                        "type INTEGER NOT NULL, "
                        "owner TEXT NOT NULL, "
                        "parent TEXT NOT NULL, "
                        "boosted TEXT NOT NULL, "
                        "text TEXT NOT NULL, "
                        "time INTEGER NOT NULL, "
                        "url TEXT NOT NULL, "
                        "media TEXT NOT NULL, "
                        "edited INTEGER NOT NULL, "
                        "change INTEGER NOT NULL UNIQUE)"),
         QStringLiteral("CREATE INDEX activitiesByTime ON activities (time)"),
         QStringLiteral("CREATE INDEX activitiesByOwner ON activities (owner, time)"),
         QStringLiteral("CREATE INDEX activitiesByParent ON activities (parent, time)"),
         QStringLiteral("CREATE INDEX activitiesByType ON activities (type, time)"),
         QStringLiteral("CREATE TABLE likes ("
                        "activity TEXT NOT NULL, "
                        "person TEXT NOT NULL, "
                        "time INTEGER NOT NULL, "
                        "PRIMARY KEY (activity, person)) WITHOUT ROWID"),
         QStringLiteral("CREATE INDEX likesByPerson ON likes (person, activity)")}};
    return migrations;
}

void prepareSchema(Database &database, const Migrations &migrations)
{
    const int newest = int(migrations.size());
    const int found = checkedVersion(database, newest);
    checkPages(database);
    if (found == newest)
        return;
    // Again: another process may have been faster. The application id comes with the first table,
    // so that no process ever takes a half-made journal for another program's file.
    Transaction transaction(database, Transaction::Soon);
    for (int version = checkedVersion(database, newest); version < newest; ++version) {
        for (const QString &statement : migrations.at(version))
            database.run(statement);
        database.run(QStringLiteral("PRAGMA user_version = %1").arg(version + 1));
    }
    database.run(QStringLiteral("PRAGMA application_id = %1").arg(ApplicationId));
    transaction.commit();
}
