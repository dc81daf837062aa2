// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "importer.h"

#include "activitystreams.h"
#include "importwriter.h"
#include "log.h"

#include <QElapsedTimer>
#include <QFile>
#include <QPointer>

namespace {

constexpr int SliceTime = 15;
constexpr int RetryTime = 500;
constexpr int SlowInterval = 5000;
// A disk is not freed, nor made writable, in a moment.
constexpr int AgainTime = 60000;

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
    : QObject(parent), folder(folder + QStringLiteral("/import")), databasePath(databasePath)
{
    next.setSingleShot(true);
    connect(&next, &QTimer::timeout, this, &Importer::look);
    connect(&slow, &QTimer::timeout, this, &Importer::look);
    connect(&slices, &QTimer::timeout, this, &Importer::readSlice);
    again.setSingleShot(true);
    connect(&again, &QTimer::timeout, this, [this] {
        this->folder.takeBack();
        lookLater(0);
    });
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

void Importer::stop(const StoreError &reason)
{
    stopped = reason;
}

void Importer::lookLater(int milliseconds)
{
    if (!next.isActive())
        next.start(milliseconds);
}

void Importer::look()
{
    if (document || waiting || stopped)
        return;
    if (folder.isEmpty()) {
        folder.release();
        return;
    }
    // What is to be read is asked under the lock: who held it before may have dealt with it.
    const QString name = folder.claim() ? folder.next() : QString();
    if (name.isNull())
        lookLater(RetryTime);
    else
        begin(name);
}

void Importer::begin(const QString &name)
{
    std::optional<StoreError> problem;
    try {
        document = std::make_unique<Document>(folder.path(), name, databasePath);
    } catch (const StoreError &error) {
        if (error.kind == StoreError::Busy) {
            lookLater(RetryTime);
            return;
        }
        problem = error;
    }
    qCInfo(localLog) << "The import of" << name << "begins";
    const QPointer<Importer> self(this);
    Q_EMIT started();
    if (!self)
        return;
    if (problem)
        leave(name, *problem);
    else
        slices.start(0);
}

void Importer::readSlice()
{
    QElapsedTimer time;
    time.start();
    auto state = ActivityStreamsReader::Unfinished;
    const auto goesOn = [this, &state] {
        return document->readable && !stopped && !document->writer.failure()
            && state == ActivityStreamsReader::Unfinished;
    };
    while (goesOn() && !time.hasExpired(SliceTime))
        state = document->reader.readNext();
    if (goesOn())
        return;
    slices.stop();
    finish();
}

void Importer::finish()
{
    const QString name = document->name;
    QString badDocument;
    std::optional<StoreError> badStore = stopped ? stopped : document->writer.failure();
    SocialImportProgress counts;
    if (!document->readable) {
        badDocument = QStringLiteral("It cannot be read: ") + document->file.errorString();
    } else if (!badStore && !document->reader.reason().isEmpty()) {
        badDocument = document->reader.reason();
    } else if (!badStore) {
        try {
            counts = document->writer.counts();
            document->transaction.commit();
        } catch (const StoreError &error) {
            badStore = error;
        }
    }
    document.reset();
    if (badStore) {
        leave(name, *badStore);
        return;
    }
    const bool good = badDocument.isEmpty();
    const bool moved = good ? folder.moveToDone(name) : folder.moveToFailed(name, badDocument);
    QStringList problems;
    if (!good)
        problems.append(badDocument);
    if (!moved)
        problems.append(QStringLiteral("It cannot be moved away and will be read again at the next "
                                       "start. See that the folder %1 may be written")
                            .arg(folder.path()));
    end(name, problems, counts);
}

// The document may be good: it stays.
void Importer::leave(const QString &name, const StoreError &error)
{
    folder.leave(name);
    if (!again.isActive())
        again.start(AgainTime);
    const QPointer<Importer> self(this);
    Q_EMIT storeFailed(error);
    if (self)
        end(name, {error.text}, SocialImportProgress());
}

void Importer::end(const QString &name, const QStringList &problems,
                   const SocialImportProgress &counts)
{
    waiting = true;
    qCInfo(localLog) << "The import of" << name << "ends with" << problems.size() << "problems and"
                     << counts.contactsAdded << "new persons";
    const QPointer<Importer> self(this);
    for (const QString &text : problems) {
        if (self)
            Q_EMIT problem(name, text);
    }
    if (self)
        Q_EMIT finished(counts);
}
