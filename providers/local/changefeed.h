// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/SocialGenericData>
#include <Kinlet/SocialNetworkPerson>

#include <QFileSystemWatcher>
#include <QObject>
#include <QStringList>
#include <QTimer>

class Store;

/**
 * Tells what is new in the journal, whoever wrote it: this process or another one.
 *
 * Who writes to the journal appends to SQLite's log file and touches it once the change can be
 * seen, and the system tells who watches that file. Only where it does not, a look every few
 * seconds has to do.
 */
class ChangeFeed : public QObject {
    Q_OBJECT

public:
    /// Tells what comes from now on. The store outlives the feed. Throws StoreError.
    ChangeFeed(Store &store, QObject *parent);

    /// Looks as soon as the event loop runs. caughtUp() follows.
    void wake();

Q_SIGNALS:
    void personsChanged(const QList<SocialNetworkPerson> &persons,
                        const QList<QString> &updatedProperties);
    void activitiesChanged(const QList<SocialGenericData> &activities,
                           const QList<QString> &updatedProperties);
    /// Everything that had been stored when the feed last looked has been told.
    void caughtUp();

private:
    void onFileChanged(const QString &path);
    void look();
    bool tellPersons();
    bool tellActivities();

    Store &store;
    QFileSystemWatcher watcher;
    QTimer soon;
    QTimer slow;
    qint64 lastPerson;
    qint64 lastActivity;
};
