// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>

/// Thrown when the journal's file cannot be used.
struct StoreError {
    enum Kind {
        Failed,
        /// Another connection is writing; the same again may succeed later.
        Busy,
        /// There is no room left on the disk.
        Full,
        /// The file is not what it should be. Trying again will not help.
        Damaged
    };

    Kind kind = Failed;
    /// One English line: what is wrong and what to do about it.
    QString text;
};

/**
 * One connection to an SQLite file. All its functions throw StoreError.
 *
 * Readers do not wait for writers, except for moments at which SQLite tidies up after a connection
 * that has ended; they last milliseconds.
 */
class Database {
public:
    /// Opens the file, or makes it with the folders above it.
    explicit Database(const QString &path);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    QString path() const { return file; }

    QSqlQuery prepare(const QString &sql);
    /// Null texts are stored as empty ones.
    void execute(QSqlQuery &query, const QVariantList &values);
    QSqlQuery run(const QString &sql, const QVariantList &values = {});
    /// Goes on to the next row; false behind the last. Not all rows may be readable, which the
    /// query itself would not tell from their end.
    bool next(QSqlQuery &query);
    /// The first column of the first row; invalid if there is none.
    QVariant value(const QString &sql, const QVariantList &values = {});

private:
    [[noreturn]] void fail(const QSqlError &error) const;

    const QString file;
    const QString connection;
    QSqlDatabase database;
};

/// The write lock, held until the end of the scope. What was not committed by then is undone.
class Transaction {
public:
    enum Patience {
        /// Throws StoreError of the kind Busy at once if another connection holds the lock.
        Now,
        /// Throws it after a moment.
        Soon
    };

    explicit Transaction(Database &database, Patience patience = Now);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    /// Who watches the log file is told once others can see the change.
    void commit();

private:
    Database &database;
    bool open = true;
};
