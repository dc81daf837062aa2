// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "database.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QUuid>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int BusyTimeout = 2000;

// SQLite's primary result codes.
constexpr int SqliteBusy = 5;
constexpr int SqliteCorrupt = 11;
constexpr int SqliteFull = 13;
constexpr int SqliteNotADatabase = 26;
// An input or output error: the file that connections share could not grow.
constexpr int SqliteSharedSize = 10 | (19 << 8);

StoreError::Kind kindOf(const QSqlError &error)
{
    const int code = error.nativeErrorCode().toInt();
    if (code == SqliteSharedSize)
        return StoreError::Full;
    // The higher bits only refine it.
    switch (code & 0xff) {
    case SqliteBusy:
        return StoreError::Busy;
    case SqliteFull:
        return StoreError::Full;
    case SqliteCorrupt:
    case SqliteNotADatabase:
        return StoreError::Damaged;
    default:
        return StoreError::Failed;
    }
}

QString message(StoreError::Kind kind, const QString &file, const QString &what)
{
    switch (kind) {
    case StoreError::Busy:
        return QStringLiteral("The journal %1 is busy: another program is writing to it").arg(file);
    case StoreError::Full:
        return QStringLiteral("The journal %1 cannot be written: the disk is full. Free some space")
            .arg(file);
    case StoreError::Damaged:
        return QStringLiteral(
                   "The journal %1 cannot be used: %2. Put a copy of it in its place, or "
                   "move it away to begin a new one")
            .arg(file, what);
    case StoreError::Failed:
        break;
    }
    return QStringLiteral("The journal %1 cannot be used: %2. See that it and its folder can be "
                          "written and that the disk works and has space left")
        .arg(file, what);
}

// What people write about themselves is nobody else's business, at no moment.
void makePrivateFile(const QString &path)
{
    const QString folder = QFileInfo(path).path();
    QDir().mkpath(QFileInfo(folder).path());
    mkdir(QFile::encodeName(folder).constData(), S_IRWXU);
    const int file = open(QFile::encodeName(path).constData(),
                          O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file != -1)
        close(file);
}

}

Database::Database(const QString &path)
    : file(path)
    , connection(QStringLiteral("kinlet-journal-")
                 + QUuid::createUuid().toString(QUuid::WithoutBraces))
    , database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection))
{
    makePrivateFile(path);
    database.setDatabaseName(path);
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(BusyTimeout));
    if (database.open())
        return;
    const QSqlError error = database.lastError();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
    fail(error);
}

Database::~Database()
{
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
}

QSqlQuery Database::prepare(const QString &sql)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        fail(query.lastError());
    return query;
}

void Database::execute(QSqlQuery &query, const QVariantList &values)
{
    for (int i = 0; i < values.size(); ++i) {
        const bool isText = values.at(i).userType() == QMetaType::QString;
        query.bindValue(i,
                        isText && values.at(i).toString().isNull() ? QString(QLatin1String(""))
                                                                   : values.at(i));
    }
    if (!query.exec())
        fail(query.lastError());
}

QSqlQuery Database::run(const QString &sql, const QVariantList &values)
{
    QSqlQuery query = prepare(sql);
    execute(query, values);
    return query;
}

bool Database::next(QSqlQuery &query)
{
    if (query.next())
        return true;
    if (query.lastError().isValid())
        fail(query.lastError());
    return false;
}

QVariant Database::value(const QString &sql, const QVariantList &values)
{
    QSqlQuery query = run(sql, values);
    return next(query) ? query.value(0) : QVariant();
}

void Database::fail(const QSqlError &error) const
{
    const QString what = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    const StoreError::Kind kind = kindOf(error);
    throw StoreError{kind, message(kind, file, what)};
}

Transaction::Transaction(Database &database, Patience patience) : database(database)
{
    if (patience == Now)
        database.run(QStringLiteral("PRAGMA busy_timeout = 0"));
    try {
        database.run(QStringLiteral("BEGIN IMMEDIATE"));
    } catch (const StoreError &) {
        database.run(QStringLiteral("PRAGMA busy_timeout = %1").arg(BusyTimeout));
        throw;
    }
    database.run(QStringLiteral("PRAGMA busy_timeout = %1").arg(BusyTimeout));
}

Transaction::~Transaction()
{
    if (!open)
        return;
    try {
        database.run(QStringLiteral("ROLLBACK"));
    } catch (const StoreError &) {
        // SQLite has undone it already, as it does after a failure to write.
    }
}

void Transaction::commit()
{
    database.run(QStringLiteral("COMMIT"));
    open = false;
    // SQLite shows a change to others only after the disk has taken it, which may be long after the
    // last write to the log. Who watches the log hears of the end by this.
    const QByteArray log = QFile::encodeName(database.path() + QStringLiteral("-wal"));
    utimensat(AT_FDCWD, log.constData(), nullptr, 0);
}
