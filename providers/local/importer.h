// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "database.h"
#include "importfolder.h"

#include <Kinlet/SocialImportProgress>

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

/**
 * Reads the documents of the import folder into the journal, one after the other, each in one
 * transaction, in slices between which the event loop runs.
 *
 * Of all processes that use the journal one imports at a time. What it leaves undone when it ends,
 * another one does; a document of which it has read only a part is read anew. So is, after a while,
 * one that could not be written to the journal.
 */
class Importer : public QObject {
    Q_OBJECT

public:
    /// The import folder is below \a folder. Begins when the event loop runs.
    Importer(const QString &folder, const QString &databasePath, QObject *parent);
    ~Importer() override;

    /// Goes on after finished().
    void proceed();
    /// Writes nothing more to the journal, because of \a reason.
    void stop(const StoreError &reason);

Q_SIGNALS:
    /// A document has been begun. finished() follows.
    void started();
    /// The journal could not be written. problem() follows.
    void storeFailed(const StoreError &error);
    /// The document \a name has not been imported, or not been moved away.
    void problem(const QString &name, const QString &what);
    /// The document has been dealt with. The next one waits for proceed().
    void finished(const SocialImportProgress &counts);

private:
    struct Document;

    void lookLater(int milliseconds);
    void look();
    void begin(const QString &name);
    void readSlice();
    void finish();
    void leave(const QString &name, const StoreError &error);
    void end(const QString &name, const QStringList &problems, const SocialImportProgress &counts);

    ImportFolder folder;
    const QString databasePath;
    QFileSystemWatcher watcher;
    QTimer next;
    QTimer slow;
    QTimer slices;
    QTimer again;
    std::unique_ptr<Document> document;
    std::optional<StoreError> stopped;
    bool waiting = false;
};
