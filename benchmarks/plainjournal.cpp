// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plainjournal.h"

#include "schema.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <sqlite3.h>

namespace {

constexpr int Status = 1;
constexpr int Comment = 3;

void bind(sqlite3_stmt *statement, int place, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    sqlite3_bind_text(statement, place, bytes.constData(), int(bytes.size()), SQLITE_TRANSIENT);
}

QString text(sqlite3_stmt *row, int column)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(row, column)),
                             sqlite3_column_bytes(row, column));
}

}

QList<PlainJournal::Activity> PlainJournal::read(const QByteArray &document)
{
    QList<Activity> activities;
    const QJsonArray items =
        QJsonDocument::fromJson(document).object().value(QLatin1String("orderedItems")).toArray();
    for (const QJsonValue &item : items) {
        const QJsonObject post = item.toObject().value(QLatin1String("object")).toObject();
        Activity activity;
        activity.id = post.value(QLatin1String("id")).toString();
        activity.owner = post.value(QLatin1String("attributedTo")).toString();
        activity.parent = post.value(QLatin1String("inReplyTo")).toString();
        activity.text = post.value(QLatin1String("content")).toString();
        activity.url = post.value(QLatin1String("url")).toString();
        activity.time =
            QDateTime::fromString(post.value(QLatin1String("published")).toString(), Qt::ISODate)
                .toMSecsSinceEpoch();
        activities.append(activity);
    }
    return activities;
}

PlainJournal::PlainJournal(const QString &path)
{
    const bool isNew = !QFile::exists(path);
    if (sqlite3_open(QFile::encodeName(path).constData(), &database) != SQLITE_OK)
        qFatal("%s", sqlite3_errmsg(database));
    run("PRAGMA journal_mode = WAL");
    if (!isNew)
        return;
    for (const QString &statement : journalMigrations().constFirst())
        run(statement.toUtf8().constData());
}

PlainJournal::~PlainJournal()
{
    sqlite3_close(database);
}

void PlainJournal::run(const char *sql)
{
    if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        qFatal("%s: %s", sql, sqlite3_errmsg(database));
}

sqlite3_stmt *PlainJournal::prepare(const QByteArray &sql)
{
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v2(database, sql.constData(), -1, &statement, nullptr) != SQLITE_OK)
        qFatal("%s: %s", sql.constData(), sqlite3_errmsg(database));
    return statement;
}

void PlainJournal::store(const QList<Activity> &activities)
{
    run("BEGIN IMMEDIATE");
    sqlite3_stmt *const insert =
        prepare("INSERT OR IGNORE INTO activities (id, type, owner, parent, boosted, text, time, "
                "url, media, edited, change) VALUES (?, ?, ?, ?, '', ?, ?, ?, '', ?9, ?9)");
    sqlite3_int64 change = 0;
    for (const Activity &activity : activities) {
        bind(insert, 1, activity.id);
        sqlite3_bind_int(insert, 2, activity.parent.isEmpty() ? Status : Comment);
        bind(insert, 3, activity.owner);
        // A null text would be no text to SQLite.
        bind(insert, 4, activity.parent);
        bind(insert, 5, activity.text);
        sqlite3_bind_int64(insert, 6, activity.time);
        bind(insert, 7, activity.url);
        sqlite3_bind_int64(insert, 9, ++change);
        if (sqlite3_step(insert) != SQLITE_DONE)
            qFatal("%s", sqlite3_errmsg(database));
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    run("COMMIT");
}

QList<PlainJournal::Activity> PlainJournal::activities(const QByteArray &conditions,
                                                       const QList<QString> &texts)
{
    sqlite3_stmt *const row =
        prepare("SELECT a.id, a.owner, a.parent, a.text, a.url, a.time, "
                "(SELECT COUNT(*) FROM activities c WHERE c.parent = a.id), "
                "(SELECT COUNT(*) FROM likes l WHERE l.activity = a.id) FROM activities a "
                + conditions);
    for (int i = 0; i < texts.size(); ++i)
        bind(row, i + 1, texts.at(i));
    QList<Activity> found;
    while (sqlite3_step(row) == SQLITE_ROW)
        found.append({text(row, 0), text(row, 1), text(row, 2), text(row, 3), text(row, 4),
                      sqlite3_column_int64(row, 5), sqlite3_column_int(row, 6),
                      sqlite3_column_int(row, 7)});
    sqlite3_finalize(row);
    return found;
}

QList<PlainJournal::Activity> PlainJournal::newest(int count)
{
    return activities("ORDER BY a.time DESC, a.number DESC LIMIT " + QByteArray::number(count), {});
}

QList<PlainJournal::Activity> PlainJournal::newestOf(const QList<QString> &owners, int count)
{
    const QByteArray places = QByteArray(", ?").repeated(int(owners.size())).mid(2);
    return activities("WHERE a.number IN (SELECT number FROM activities WHERE owner IN (" + places
                          + ") ORDER BY time DESC, number DESC LIMIT " + QByteArray::number(count)
                          + ") ORDER BY a.time DESC, a.number DESC",
                      owners);
}

QList<PlainJournal::Person> PlainJournal::persons(const QRegExp &screenName)
{
    sqlite3_stmt *const row =
        prepare("SELECT id, screenName, name, summary, url, avatarUrl FROM persons");
    QList<Person> found;
    while (sqlite3_step(row) == SQLITE_ROW) {
        const QString name = text(row, 1);
        if (screenName.indexIn(name) >= 0)
            found.append(
                {text(row, 0), name, text(row, 2), text(row, 3), text(row, 4), text(row, 5)});
    }
    sqlite3_finalize(row);
    return found;
}
