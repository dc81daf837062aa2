// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "localprovider.h"

#include "answers.h"
#include "changefeed.h"
#include "importer.h"
#include "journal.h"
#include "log.h"
#include "store.h"

#include <Kinlet/GetAggregatedServicesRequest>
#include <Kinlet/SocialGetAccountsRequest>
#include <Kinlet/SocialLikeActivityRequest>
#include <Kinlet/SocialPostActivitiesRequest>

namespace {

constexpr int WriteRetryTime = 50;
// Half of what the library waits for a provider.
constexpr int WritePatience = 30000;

void end(SocialDataRequest *request, const QList<SocialGenericData> &results,
         const QList<KinletError> &errors = {})
{
    request->setResults(results);
    request->setRequestProgress(SocialDataRequest::Finished, errors);
}

KinletError::Type failureType(const SocialDataRequest &request)
{
    if (qobject_cast<const SocialPostActivitiesRequest *>(&request))
        return KinletError::PostFailed;
    if (qobject_cast<const SocialLikeActivityRequest *>(&request))
        return KinletError::LikeFailed;
    return KinletError::UnknownError;
}

}

LocalProvider::LocalProvider(QObject *parent) : KinletInterface(parent)
{
    nextWrite.setSingleShot(true);
    connect(&nextWrite, &QTimer::timeout, this, &LocalProvider::writeOn);
}

LocalProvider::~LocalProvider()
{
    // Before the store, which the feed reads.
    delete importer;
    delete feed;
}

void LocalProvider::init()
{
    // It is called again after each error(): what is there already stays.
    if (!openStore())
        report();
}

QVariantMap LocalProvider::metaData()
{
    return {{QStringLiteral("name"), Journal::Id}};
}

QList<SocialService> LocalProvider::services()
{
    return {Journal::service()};
}

QList<SocialServiceAccount> LocalProvider::accounts()
{
    if (openStore()) {
        try {
            return {store->account()};
        } catch (const StoreError &error) {
            note(error);
        }
    }
    // The account is there all the same: requests to it tell what is wrong.
    return {Journal::account(Journal::fullName())};
}

void LocalProvider::performRequest(SocialDataRequest *request)
{
    if (qobject_cast<GetAggregatedServicesRequest *>(request)
        || qobject_cast<SocialGetAccountsRequest *>(request)) {
        answerRegistry(request);
        return;
    }
    try {
        Answers::check(*request);
    } catch (const KinletError &error) {
        end(request, {}, {error});
        return;
    }
    if (!openStore()) {
        const QPointer<LocalProvider> self(this);
        end(request, {}, {KinletError(failureType(*request), failure)});
        if (self)
            report();
    } else if (Answers::isWriting(*request)) {
        Write write{request, {}};
        write.waiting.start();
        writes.append(write);
        writeOn();
    } else {
        finish(request,
               attempt(*request, [this, request] { return Answers::read(*store, *request); }));
    }
}

void LocalProvider::cancelRequest(SocialDataRequest *request)
{
    for (Write &write : writes) {
        if (write.request == request)
            write.request.clear();
    }
}

bool LocalProvider::openStore()
{
    if (store || damaged)
        return !damaged;
    try {
        store = std::make_unique<Store>();
        watchStore();
        qCInfo(localLog) << "The journal" << store->database().path() << "is open";
        reportedFailure.clear();
        return true;
    } catch (const StoreError &error) {
        store.reset();
        qCWarning(localLog) << "The journal cannot be opened:" << error.text;
        failure = error.text;
        return false;
    }
}

void LocalProvider::watchStore()
{
    feed = new ChangeFeed(*store, this);
    connect(feed, &ChangeFeed::personsChanged, this, &LocalProvider::personsUpdate);
    connect(feed, &ChangeFeed::activitiesChanged, this, &LocalProvider::dataUpdate);
    connect(feed, &ChangeFeed::caughtUp, this, &LocalProvider::onCaughtUp);
    importer = new Importer(Store::folder(), store->database().path(), this);
    connect(importer, &Importer::started, this, [this] {
        SocialImportProgress progress;
        progress.running = true;
        pushImportProgress(progress);
    });
    connect(importer, &Importer::storeFailed, this, &LocalProvider::note);
    connect(importer, &Importer::problem, this, [this](const QString &name, const QString &what) {
        Q_EMIT error(Journal::Id, QStringLiteral("import"), name + QStringLiteral(": ") + what);
    });
    connect(importer, &Importer::finished, this, [this](const SocialImportProgress &counts) {
        importEnd = counts;
        feed->wake();
    });
}

void LocalProvider::onCaughtUp()
{
    if (!importEnd)
        return;
    const SocialImportProgress counts = *importEnd;
    importEnd.reset();
    const QPointer<LocalProvider> self(this);
    pushImportProgress(counts);
    if (self)
        importer->proceed();
}

void LocalProvider::pushImportProgress(const SocialImportProgress &progress)
{
    SocialServiceAccount account = accounts().constFirst();
    account.setProperty(SocialServiceAccount::ImportProgress, QVariant::fromValue(progress));
    Q_EMIT dataUpdate({account}, {SocialServiceAccount::ImportProgress});
}

// Nothing is written any more to what has turned out damaged.
void LocalProvider::note(const StoreError &error)
{
    failure = error.text;
    if (error.kind != StoreError::Busy)
        qCWarning(localLog) << "The journal cannot be used:" << failure;
    if (error.kind == StoreError::Full)
        store->giveBackRoom();
    if (error.kind != StoreError::Damaged)
        return;
    damaged = true;
    importer->stop(error);
}

// Once for each failure: every error() makes the loader call init() again.
void LocalProvider::report()
{
    if (failure == reportedFailure)
        return;
    reportedFailure = failure;
    Q_EMIT error(Journal::Id, QStringLiteral("store"), failure);
}

void LocalProvider::answerRegistry(SocialDataRequest *request)
{
    QList<SocialGenericData> records;
    if (const auto *wanted = qobject_cast<SocialGetAccountsRequest *>(request)) {
        if (wanted->serviceFilter().isEmpty() || wanted->serviceFilter().contains(Journal::Id))
            records.append(accounts().constFirst());
    } else {
        records.append(services().constFirst());
    }
    const QPointer<LocalProvider> self(this);
    if (openStore()) {
        end(request, records);
        return;
    }
    end(request, records, {KinletError(KinletError::UnknownError, failure)});
    if (self)
        report();
}

LocalProvider::Outcome LocalProvider::attempt(const SocialDataRequest &request,
                                              const std::function<Records()> &work)
{
    Outcome outcome;
    try {
        if (damaged)
            throw StoreError{StoreError::Damaged, failure};
        outcome.results = work();
    } catch (const KinletError &error) {
        outcome.errors.append(error);
    } catch (const StoreError &error) {
        outcome.errors.append(KinletError(failureType(request), error.text));
        outcome.busy = error.kind == StoreError::Busy;
        outcome.failed = !outcome.busy;
        note(error);
    }
    return outcome;
}

void LocalProvider::finish(SocialDataRequest *request, const Outcome &outcome)
{
    const QPointer<LocalProvider> self(this);
    end(request, outcome.results, outcome.errors);
    if (self && outcome.failed)
        report();
}

// In the order in which they were asked for, when no other connection is writing.
void LocalProvider::writeOn()
{
    const QPointer<LocalProvider> self(this);
    while (self && !writes.isEmpty()) {
        const Write write = writes.takeFirst();
        SocialDataRequest *const request = write.request;
        if (!request)
            continue;
        const Outcome outcome = attempt(*request, [this, request] {
            Transaction transaction(store->database());
            const Records records = Answers::write(*store, *request);
            transaction.commit();
            return records;
        });
        if (outcome.busy && !write.waiting.hasExpired(WriteRetryTime))
            qCDebug(localLog) << request << "waits while another connection writes";
        if (outcome.busy && !write.waiting.hasExpired(WritePatience)) {
            writes.prepend(write);
            nextWrite.start(WriteRetryTime);
            return;
        }
        // The next failure is another one then.
        if (outcome.errors.isEmpty())
            reportedFailure.clear();
        finish(request, outcome);
    }
    if (self)
        feed->wake();
}
