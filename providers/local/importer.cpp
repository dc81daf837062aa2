// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "importer.h"

#include "activitystreams.h"
#include "database.h"
#include "importwriter.h"

#include <QElapsedTimer>
#include <QFile>
#include <QPointer>

namespace {

constexpr int SliceTime = 15;
constexpr int RetryTime = 500;
constexpr int SlowInterval = 5000;

}

/// A document that is being read, and the transaction that it goes into.
struct Importer::Document {
    Document(const QString &folder, const QString &name, const QString &databasePath)
        : name(name)
        , file(folder + QLatin1Char('/') + name)
        , readable(file.open(QFile::ReadOnly))
        , database(databasePath)
        , transaction(database)
        , writer(database)
        , reader(file, writer)
    {
    }

    const QString name;
    QFile file;
    const bool readable;
    Database database;
    Transaction transaction;
    ImportWriter writer;
    ActivityStreamsReader reader;
};

Importer::Importer(const QString &folder, const QString &databasePath, QObject *parent)
    : QObject(parent)
    , folder(folder + QStringLiteral("/import"))
    , databasePath(databasePath)
    , role(folder + QStringLiteral("/import.lock"))
{
    // An import may take long. Whether a holder is alive is told by its process alone.
    role.setStaleLockTime(0);
    next.setSingleShot(true);
    connect(&next, &QTimer::timeout, this, &Importer::look);
    connect(&slow, &QTimer::timeout, this, &Importer::look);
    connect(&slices, &QTimer::timeout, this, &Importer::readSlice);
    connect(&watcher, &QFileSystemWatcher::directoryChanged, this, [this] { lookLater(0); });
    watcher.addPath(this->folder.path());
    // For folders that cannot be watched.
    slow.start(SlowInterval);
    lookLater(0);
}

Importer::~Importer() = default;

void Importer::proceed()
{
    waiting = false;
    lookLater(0);
}

void Importer::lookLater(int milliseconds)
{
    if (!next.isActive())
        next.start(milliseconds);
}

void Importer::look()
{
    if (document || waiting)
        return;
    if (folder.isEmpty()) {
        role.unlock();
        return;
    }
    // What is to be read is asked under the lock: who held it before may have dealt with it.
    const bool locked = role.isLocked() || role.tryLock(0);
    const QString name = locked ? folder.next() : QString();
    if (name.isNull())
        lookLater(RetryTime);
    else
        begin(name);
}

void Importer::begin(const QString &name)
{
    QString problem;
    try {
        document = std::make_unique<Document>(folder.path(), name, databasePath);
    } catch (const StoreError &error) {
        if (error.kind == StoreError::Busy) {
            lookLater(RetryTime);
            return;
        }
        problem = error.text;
    }
    const QPointer<Importer> self(this);
    Q_EMIT started();
    if (!self)
        return;
    if (document) {
        slices.start(0);
        return;
    }
    // The document may be good: it stays, for the next start.
    folder.leave(name);
    reject(name, problem);
}

void Importer::readSlice()
{
    QElapsedTimer time;
    time.start();
    auto state = ActivityStreamsReader::Unfinished;
    while (document->readable && !document->writer.failure()
           && state == ActivityStreamsReader::Unfinished && !time.hasExpired(SliceTime))
        state = document->reader.readNext();
    if (state == ActivityStreamsReader::Unfinished && document->readable
        && !document->writer.failure())
        return;
    slices.stop();
    finish();
}

void Importer::finish()
{
    const QString name = document->name;
    QString badDocument;
    QString badStore;
    SocialImportProgress counts;
    if (!document->readable) {
        badDocument = QStringLiteral("It cannot be read: ") + document->file.errorString();
    } else if (document->writer.failure()) {
        badStore = document->writer.failure()->text;
    } else if (!document->reader.reason().isEmpty()) {
        badDocument = document->reader.reason();
    } else {
        try {
            counts = document->writer.counts();
            document->transaction.commit();
        } catch (const StoreError &error) {
            badStore = error.text;
        }
    }
    document.reset();
    if (!badStore.isEmpty()) {
        folder.leave(name);
        reject(name, badStore);
    } else if (!badDocument.isEmpty()) {
        folder.moveToFailed(name, badDocument);
        reject(name, badDocument);
    } else {
        folder.moveToDone(name);
        waiting = true;
        Q_EMIT finished(counts);
    }
}

void Importer::reject(const QString &name, const QString &reason)
{
    waiting = true;
    const QPointer<Importer> self(this);
    Q_EMIT rejected(name, reason);
    if (self)
        Q_EMIT finished(SocialImportProgress());
}
