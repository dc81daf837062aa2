// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "database.h"

#include <Kinlet/SocialActivity>
#include <Kinlet/SocialNetworkPerson>
#include <Kinlet/SocialServiceAccount>

#include <QHash>
#include <QList>
#include <QRegExp>

class SocialGetActivitiesRequest;

/// The journal in its file. All functions throw StoreError.
class Store {
public:
    using PropertyFilter = QHash<QString, QRegExp>;

    /// The person's folder for Kinlet's data, made by the first store.
    static QString folder();

    /// Opens local.db in folder(); makes it, its account and its person if need be.
    Store();

    /// What the journal is stored in.
    Database &database() { return file; }

    SocialServiceAccount account();
    /// Those in whose properties each pattern is found. This and the next one throw a KinletError,
    /// too, if that may take minutes.
    QList<SocialNetworkPerson> persons(const PropertyFilter &filter);
    /// Who of them likes the activity, in the order in which they came to like it.
    QList<SocialNetworkPerson> likers(const QString &activityId, const PropertyFilter &filter);
    QList<SocialActivity> activities(const SocialGetActivitiesRequest &filters);
    bool hasActivity(const QString &id);
    SocialActivity activity(const QString &id);

    /// What has been undone for want of room on the disk may still take up room there: frees it if
    /// possible. Does not throw.
    void giveBackRoom();

    // These belong into a Transaction.

    /// Adds an activity of the journal's own person, now; its id. \a parent is what it comments on,
    /// or empty.
    QString addActivity(SocialActivity::Type type, const QString &text, const QString &parent);
    /// Whether the journal's own person likes the activity.
    void setLiked(const QString &activityId, bool liked);

private:
    void addMe();
    void markChanged(const QString &activityId);

    Database file;
};
