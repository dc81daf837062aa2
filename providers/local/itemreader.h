// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "activitystreams.h"

#include <QJsonObject>

/// Turns ActivityStreams objects into what the sink takes, and says why if it cannot.
class ItemReader {
public:
    explicit ItemReader(ImportSink &sink);

    /// An actor, an activity, or an object that stands for its own creation.
    void read(const QJsonObject &item);
    /// Like read(), of an item that nobody has checked yet.
    void readUnchecked(const QJsonValue &item);

    /// Whether anything has gone to the sink.
    bool hasDelivered() const;
    void skip(const QJsonObject &what, const QString &why);

private:
    void readCreate(const QJsonObject &create);
    void readBoost(const QJsonObject &announce);
    void readLike(const QJsonObject &like);
    /// False, with the reason, if the object cannot stand in a timeline.
    bool readPost(const QJsonObject &post, const QJsonObject &create, QString *why);
    bool readPerson(const QJsonObject &actor);
    /// The persons and posts that come inside an activity; those that are only named are left out.
    void readPersonsOf(const QJsonObject &item);
    void readPostsOf(const QJsonObject &activity);

    ImportSink &m_sink;
    bool m_hasDelivered = false;
};
