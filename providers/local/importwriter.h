// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "activitystreams.h"
#include "database.h"

#include <Kinlet/SocialImportProgress>

#include <QSqlQuery>

#include <optional>

/**
 * Writes what is read from a document into the journal, inside a Transaction of the caller's.
 *
 * What the journal has already stays, but for what the document knows better: a text that is not
 * empty takes the place of an older one. Only its author can change an activity. Nothing comes in
 * under the ids that are the journal's own.
 */
class ImportWriter : public ImportSink {
public:
    /// Throws StoreError.
    explicit ImportWriter(Database &database);

    void person(const ImportedPerson &person) override;
    void activity(const ImportedActivity &activity) override;
    void like(const ImportedLike &like) override;
    void skipped(const QString &what, const QString &why) override;

    /// Why not everything could be written. What comes after a failure is ignored.
    const std::optional<StoreError> &failure() const { return failed; }
    /// How many persons have become more, and how many that were there have changed. Throws
    /// StoreError.
    SocialImportProgress counts() const;

private:
    bool isOwn(const QString &id, const QString &what);
    int write(QSqlQuery &query, const QVariantList &values);

    Database &database;
    QSqlQuery writePerson;
    QSqlQuery writeActivity;
    QSqlQuery writeLike;
    QSqlQuery touchActivity;
    qint64 lastPerson;
    qint64 lastChange;
    std::optional<StoreError> failed;
};
