// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QString>
#include <QVariantList>

class SocialGetActivitiesRequest;

/// A query with the values for its places.
struct ActivityQuery {
    /// Every filter of \a request has to be passed. The newest activity comes first; of those with
    /// the same time the one that was stored last.
    explicit ActivityQuery(const SocialGetActivitiesRequest &request);

    QString sql;
    QVariantList values;

private:
    void addLists(const SocialGetActivitiesRequest &request);
    void addTimes(const SocialGetActivitiesRequest &request);
    void addTimeline(const SocialGetActivitiesRequest &request);
    void add(const QString &condition, const QVariant &value);

    QString conditions;
    // Whether they are not found in their order.
    bool sorted = false;
};
