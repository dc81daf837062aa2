// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "provider/socialrequestworker.h"

#include "logging.h"
#include "manager/kinletmanager.h"
#include "provider/kinletinterface.h"
#include "requests/socialdatarequest.h"

#include <QDataStream>
#include <QDateTime>
#include <QDebug>
#include <QHash>
#include <QIODevice>
#include <QMap>
#include <QMetaMethod>
#include <QMultiHash>
#include <QPointer>
#include <QSharedPointer>
#include <QTimer>

#include <utility>

// Everything a job calls may delete what it likes: the caller's request, providers, the manager and
// with it this worker. After each such call only what is guarded or looked up afresh is touched.

struct SocialRequestJob {
    QList<SocialDataRequest *> copies;
    QMap<SocialDataRequest *, QSharedPointer<KinletInterface>> copyProviders;
    SocialDataRequest *callerRequest;
    QDateTime startTime;
    bool done = false;
    bool callerAlive = true;
    // What has been merged last, and the lists of the copies that it was made of.
    QList<SocialGenericData> results = {};
    QList<QList<SocialGenericData>> parts = {};
};

class SocialRequestWorkerPrivate {
public:
    // Asked with the request, since the job itself may be gone.
    bool isOpen(SocialDataRequest *caller, SocialRequestJob *job) const
    {
        return jobsByRequest.contains(caller, job);
    }
    bool isQueued(SocialRequestJob *job) const { return queueNumbers.contains(job); }
    void startTimeout(SocialRequestWorker *worker, int milliseconds)
    {
        ++timeoutsDue;
        QTimer::singleShot(milliseconds, Qt::PreciseTimer, worker, SLOT(timeoutElapsed()));
    }

    QHash<SocialDataRequest *, SocialRequestJob *> jobsByCopy;
    // A request that is performed again before it has ended has several jobs.
    QMultiHash<SocialDataRequest *, SocialRequestJob *> jobsByRequest;
    QList<SocialRequestJob *> deleteQueue;
    // Where jobs stand in the queue, counted from the first that was ever in it: the queue holds
    // all jobs of a minute, too many to be searched.
    QHash<SocialRequestJob *, qint64> queueNumbers;
    qint64 takenFromQueue = 0;
    int timeoutsDue = 0;
};

namespace {

constexpr int TimeoutSeconds = 60;
// One millisecond more, so that a whole minute has passed when the timer strikes.
constexpr int TimeoutMilliseconds = TimeoutSeconds * 1000 + 1;
constexpr int DeletionMilliseconds = 60000;

struct Dispatch {
    QSharedPointer<KinletInterface> provider;
    QPointer<SocialDataRequest> copy;
};

// Keeps what is still the same since the last time: the answer of one of many providers costs no
// copy of all records.
void mergeResults(SocialRequestJob &job)
{
    int same = 0;
    int size = 0;
    while (same < job.parts.size()
           && job.parts.at(same).isSharedWith(job.copies.at(same)->results()))
        size += int(job.parts.at(same++).size());
    job.parts.erase(job.parts.begin() + same, job.parts.end());
    if (size < job.results.size())
        job.results.erase(job.results.begin() + size, job.results.end());
    for (int i = same; i < job.copies.size(); ++i) {
        job.parts.append(job.copies.at(i)->results());
        if (job.results.isEmpty())
            job.results = job.parts.last();
        else
            job.results += job.parts.last();
    }
}

// For walks during which the job may go.
QList<Dispatch> dispatchesOf(const SocialRequestJob &job)
{
    QList<Dispatch> dispatches;
    for (SocialDataRequest *copy : job.copies) {
        if (const QSharedPointer<KinletInterface> provider = job.copyProviders.value(copy))
            dispatches.append({provider, copy});
    }
    return dispatches;
}

// Accounts that no provider claims are left out.
QMultiHash<QString, QString> accountsByProvider(const KinletManager *manager,
                                                const QStringList &accountIds)
{
    QMultiHash<QString, QString> accounts;
    for (const QString &accountId : accountIds) {
        const QString name = manager->providerNameFromAccountId(accountId);
        if (!name.isEmpty())
            accounts.insert(name, accountId);
    }
    return accounts;
}

QMetaMethod slotNamed(const char *signature)
{
    const QMetaObject &worker = SocialRequestWorker::staticMetaObject;
    return worker.method(worker.indexOfSlot(signature));
}

void logDispatch(const SocialDataRequest *request, SocialDataRequest *copy, const QString &name)
{
    qCDebug(Log::provider) << request << "goes to" << name << "as" << copy;
    // So that each message about the copy names its provider.
    if (Log::requests().isDebugEnabled() || Log::provider().isWarningEnabled())
        copy->setObjectName(name);
}

}

SocialRequestWorker::SocialRequestWorker(QObject *parent)
    : QObject(parent), d(new SocialRequestWorkerPrivate)
{
}

SocialRequestWorker::~SocialRequestWorker() = default;

bool SocialRequestWorker::performRequest(SocialDataRequest *request)
{
    const QPointer<SocialRequestWorker> self(this);
    const QPointer<SocialDataRequest> caller(request);
    request->setRequestProgress(SocialDataRequest::Started, {});
    if (!self || !caller)
        return true;

    const KinletManager *manager = KinletManager::instance();
    const QStringList filter = request->performOnAccountsFilter();
    const QMultiHash<QString, QString> owned = accountsByProvider(manager, filter);
    const QList<QString> names =
        filter.isEmpty() ? manager->allProviderNames() : owned.uniqueKeys();

    auto *job = new SocialRequestJob{{}, {}, request, QDateTime::currentDateTimeUtc()};
    // The connections that SIGNAL() and SLOT() make, which would look for the names each time.
    static const auto finished = QMetaMethod::fromSignal(&SocialDataRequest::finished);
    static const auto onFinished = slotNamed("requestFinished(SocialDataRequest*)");
    for (const QString &name : names) {
        if (!manager->hasProvider(name))
            continue;
        SocialDataRequest *copy = requestCopy(request);
        if (!copy) {
            // The copies made so far are never started; they go with the job.
            deleteJob(job);
            request->setRequestProgress(SocialDataRequest::Finished,
                                        {KinletError(KinletError::NotPerformed)});
            return false;
        }
        if (!filter.isEmpty())
            copy->setPerformOnAccountsFilter(owned.values(name));
        job->copies.append(copy);
        d->jobsByCopy.insert(copy, job);
        job->copyProviders.insert(copy, manager->provider(name));
        connect(copy, finished, this, onFinished);
        logDispatch(request, copy, name);
    }
    d->jobsByRequest.insert(request, job);
    connect(request, SIGNAL(destroyed(QObject *)), this, SLOT(onRequestDisposed(QObject *)));
    startProviders(job);
    return true;
}

void SocialRequestWorker::startProviders(SocialRequestJob *job)
{
    const QPointer<SocialRequestWorker> self(this);
    SocialDataRequest *const caller = job->callerRequest;
    const QList<Dispatch> dispatches = dispatchesOf(*job);
    for (const Dispatch &dispatch : dispatches) {
        // Deliberately asked even if another has blocked for so long that the job has ended: the
        // copies live for a minute more, unless it runs an event loop for that time as well.
        if (!dispatch.copy)
            break;
        dispatch.provider->performRequest(dispatch.copy);
        if (!self)
            return;
    }
    if (!d->isOpen(caller, job))
        return;
    const bool completed = processResults(job);
    if (!self)
        return;
    if (completed || d->isQueued(job))
        deleteJob(job);
    else if (d->isOpen(caller, job))
        d->startTimeout(this, TimeoutMilliseconds);
}

bool SocialRequestWorker::cancelRequest(SocialDataRequest *request)
{
    Q_UNUSED(request)
    return false;
}

SocialDataRequest *SocialRequestWorker::requestCopy(SocialDataRequest *request)
{
    QObject *object = request->metaObject()->newInstance();
    auto *copy = qobject_cast<SocialDataRequest *>(object);
    if (!copy) {
        delete object;
        qCritical("static SocialDataRequest* SocialRequestWorker::requestCopy(SocialDataRequest*)");
        qCWarning(Log::provider) << request << "cannot be copied: its class makes no request";
        return nullptr;
    }
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    request->serialize(out);
    QDataStream in(bytes);
    copy->unserialize(in);
    return copy;
}

// Merges the copies into the caller's request. True if this call has completed the job: it is then
// to be passed to deleteJob(), save after the time-out. Until then nothing else deletes it.
bool SocialRequestWorker::processResults(SocialRequestJob *job)
{
    QList<KinletError> errors;
    SocialDataRequest::Status status = SocialDataRequest::Finished;
    for (const SocialDataRequest *copy : std::as_const(job->copies)) {
        status = qMin(status, copy->status());
        errors += copy->errors();
    }
    if (status != SocialDataRequest::Finished
        && job->startTime.secsTo(QDateTime::currentDateTimeUtc()) >= TimeoutSeconds) {
        // The text speaks of five seconds, the limit is sixty; both are known so.
        errors.append(KinletError(KinletError::ProviderTimeout,
                                  QStringLiteral("One of backends did not reply in 5 seconds")));
        status = SocialDataRequest::Finished;
    }
    const bool completed = status == SocialDataRequest::Finished;
    if (completed) {
        for (SocialDataRequest *copy : std::as_const(job->copies))
            d->jobsByCopy.remove(copy);
        d->jobsByRequest.remove(job->callerRequest, job);
        job->done = true;
    }
    if (job->callerAlive) {
        // Its list is that of the job, and a list that is shared is copied when it grows.
        job->callerRequest->setResults({});
        mergeResults(*job);
        job->callerRequest->setResults(job->results);
        if (completed) {
            job->results = {};
            job->parts = {};
        }
        job->callerRequest->setRequestProgress(status, errors);
    } else if (completed) {
        deleteJob(job);
    }
    return completed;
}

void SocialRequestWorker::requestFinished(SocialDataRequest *request)
{
    SocialRequestJob *job = d->jobsByCopy.value(request);
    if (!job) {
        qCDebug(Log::provider) << request << "is answered, but nobody waits for it";
        return;
    }
    const QPointer<SocialRequestWorker> self(this);
    const bool completed = processResults(job);
    // A slot on the caller's request may have let another answer complete the job meanwhile: then
    // it is in the queue, and asked for again it moves to its end.
    if (self && (completed || d->isQueued(job)))
        deleteJob(job);
}

void SocialRequestWorker::timeoutElapsed()
{
    d->timeoutsDue = qMax(0, d->timeoutsDue - 1);
    const QPointer<SocialRequestWorker> self(this);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const auto jobs = d->jobsByRequest;
    for (auto entry = jobs.cbegin(); entry != jobs.cend(); ++entry) {
        SocialRequestJob *const job = entry.value();
        if (!d->isOpen(entry.key(), job) || job->startTime.secsTo(now) < TimeoutSeconds)
            continue;
        const QList<Dispatch> dispatches = dispatchesOf(*job);
        for (const Dispatch &dispatch : dispatches) {
            if (!dispatch.copy || dispatch.copy->status() == SocialDataRequest::Finished)
                continue;
            qCWarning(Log::provider) << dispatch.copy.data() << "has not been answered in"
                                     << TimeoutSeconds << "seconds and is cancelled";
            dispatch.provider->cancelRequest(dispatch.copy);
            if (!self)
                return;
        }
        if (d->isOpen(entry.key(), job))
            processResults(job);
        if (!self)
            return;
    }
    // The clock may have been set back: then no timer would come for jobs that are too young now.
    if (d->timeoutsDue == 0 && !d->jobsByRequest.isEmpty()) {
        qint64 wait = TimeoutMilliseconds;
        for (const SocialRequestJob *job : std::as_const(d->jobsByRequest))
            wait = qMin(wait, TimeoutMilliseconds - job->startTime.msecsTo(now));
        d->startTimeout(this, int(qMax<qint64>(1, wait)));
    }
}

void SocialRequestWorker::onRequestDisposed(QObject *object)
{
    // Compared as a pointer only: the object is no request any more, and must not be cast to one.
    const QList<SocialRequestJob *> jobs =
        d->jobsByRequest.values(reinterpret_cast<SocialDataRequest *>(object));
    for (SocialRequestJob *job : jobs) {
        if (!job->callerAlive)
            continue;
        job->callerAlive = false;
        qCDebug(Log::provider) << "A request is deleted while" << job->copies.size()
                               << "providers work for it";
        processResults(job);
    }
}

void SocialRequestWorker::deleteJob(SocialRequestJob *job)
{
    const auto earlier = d->queueNumbers.constFind(job);
    if (earlier != d->queueNumbers.constEnd())
        d->deleteQueue[int(*earlier - d->takenFromQueue)] = nullptr;
    d->queueNumbers.insert(job, d->takenFromQueue + d->deleteQueue.size());
    d->deleteQueue.append(job);
    QTimer::singleShot(DeletionMilliseconds, Qt::PreciseTimer, this, SLOT(onDeferredDelete()));
}

void SocialRequestWorker::onDeferredDelete()
{
    if (d->deleteQueue.isEmpty())
        return;
    SocialRequestJob *job = d->deleteQueue.takeFirst();
    ++d->takenFromQueue;
    if (!job)
        return;
    d->queueNumbers.remove(job);
    for (SocialDataRequest *copy : std::as_const(job->copies)) {
        // Only copies that were made but never started are still entered.
        d->jobsByCopy.remove(copy);
        copy->deleteLater();
    }
    delete job;
}
