// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "changefeed.h"

#include "log.h"
#include "rows.h"
#include "store.h"

#include <QFile>
#include <QPointer>

namespace {

// A long import is told in parts, so that the event loop runs in between.
constexpr int BatchSize = 200;
// A commit is several writes to the log file.
constexpr int SettleTime = 50;
constexpr int SlowInterval = 5000;

}

ChangeFeed::ChangeFeed(Store &store, QObject *parent) : QObject(parent), store(store)
{
    soon.setSingleShot(true);
    connect(&soon, &QTimer::timeout, this, &ChangeFeed::look);
    connect(&slow, &QTimer::timeout, this, &ChangeFeed::look);
    connect(&watcher, &QFileSystemWatcher::fileChanged, this, &ChangeFeed::onFileChanged);
    // First the watch, then the state from which on it is to tell: nothing falls in between.
    watcher.addPath(store.database().path() + QStringLiteral("-wal"));
    slow.start(SlowInterval);
    lastPerson =
        store.database().value(QStringLiteral("SELECT MAX(change) FROM persons")).toLongLong();
    lastActivity =
        store.database().value(QStringLiteral("SELECT MAX(change) FROM activities")).toLongLong();
}

void ChangeFeed::wake()
{
    soon.start(0);
}

void ChangeFeed::onFileChanged(const QString &path)
{
    if (!watcher.files().contains(path))
        watcher.addPath(path);
    if (!soon.isActive())
        soon.start(SettleTime);
}

void ChangeFeed::look()
{
    const QPointer<ChangeFeed> self(this);
    try {
        const bool morePersons = tellPersons();
        if (!self)
            return;
        const bool moreActivities = tellActivities();
        if (!self)
            return;
        if (morePersons || moreActivities) {
            wake();
            return;
        }
    } catch (const StoreError &) {
        // The next request meets the same and reports it.
    }
    Q_EMIT caughtUp();
}

bool ChangeFeed::tellPersons()
{
    QList<SocialNetworkPerson> persons;
    {
        qint64 last = lastPerson;
        QSqlQuery rows = store.database().run(
            Rows::selectPersons()
                + QStringLiteral("WHERE p.change > ? ORDER BY p.change LIMIT %1").arg(BatchSize),
            {lastPerson});
        while (store.database().next(rows)) {
            persons.append(Rows::person(rows));
            last = Rows::personChange(rows);
        }
        lastPerson = last;
    }
    const bool more = persons.size() == BatchSize;
    if (!persons.isEmpty()) {
        qCDebug(localLog) << persons.size() << "persons have changed";
        Q_EMIT personsChanged(persons, Rows::personProperties());
    }
    return more;
}

bool ChangeFeed::tellActivities()
{
    QList<SocialGenericData> edited;
    QList<SocialGenericData> counted;
    {
        const qint64 before = lastActivity;
        qint64 last = before;
        QSqlQuery rows = store.database().run(
            Rows::selectActivities()
                + QStringLiteral("WHERE a.change > ? ORDER BY a.change LIMIT %1").arg(BatchSize),
            {before});
        while (store.database().next(rows)) {
            const bool isEdited = Rows::activityEdited(rows) > before;
            (isEdited ? edited : counted).append(Rows::activity(rows));
            last = Rows::activityChange(rows);
        }
        lastActivity = last;
    }
    const bool more = edited.size() + counted.size() == BatchSize;
    if (!edited.isEmpty() || !counted.isEmpty())
        qCDebug(localLog) << edited.size() + counted.size() << "activities have changed";
    const QPointer<ChangeFeed> self(this);
    if (!edited.isEmpty())
        Q_EMIT activitiesChanged(edited, Rows::activityProperties());
    if (self && !counted.isEmpty())
        Q_EMIT activitiesChanged(counted, Rows::countedProperties());
    return more;
}
