// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QByteArray>
#include <QList>
#include <QRegExp>
#include <QString>

struct sqlite3;
struct sqlite3_stmt;

/// What somebody would write who needs a journal and knows SQLite: its own interface, the journal's
/// tables and indexes, and no records.
class PlainJournal {
public:
    struct Activity {
        QString id;
        QString owner;
        QString parent;
        QString text;
        QString url;
        qint64 time = 0;
        int comments = 0;
        int likes = 0;
    };

    struct Person {
        QString id;
        QString screenName;
        QString name;
        QString summary;
        QString url;
        QString avatarUrl;
    };

    /// Reads a whole document as Qt does it. Texts stay in HTML.
    static QList<Activity> read(const QByteArray &document);

    /// Opens the file, or makes it with the journal's tables.
    explicit PlainJournal(const QString &path);
    ~PlainJournal();
    PlainJournal(const PlainJournal &) = delete;
    PlainJournal &operator=(const PlainJournal &) = delete;

    void run(const char *sql);
    /// In one transaction.
    void store(const QList<Activity> &activities);
    QList<Activity> newest(int count);
    /// The newest of these persons.
    QList<Activity> newestOf(const QList<QString> &owners, int count);
    QList<Person> persons(const QRegExp &screenName);

private:
    sqlite3_stmt *prepare(const QByteArray &sql);
    QList<Activity> activities(const QByteArray &conditions, const QList<QString> &texts);

    sqlite3 *database = nullptr;
};
