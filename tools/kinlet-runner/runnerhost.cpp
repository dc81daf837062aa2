// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "runnerhost.h"

#include "dbus/busnames.h"
#include "dbus/payload.h"
#include "requestkinds.h"
#include "runneradaptor.h"

#include <Kinlet/KinletInterface>
#include <Kinlet/SocialDataRequest>

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QMetaObject>

namespace {

// The bus carries no larger array.
constexpr int LargestArray = 64 * 1024 * 1024;
// Pushed records go out in messages of about this size at most.
constexpr int LargestPush = 16 * 1024 * 1024;

// Turns records into messages: each a list of byte arrays.
template <typename Record, typename Send>
void push(const QList<Record> &records, Send send)
{
    QVariantList message;
    int size = 0;
    for (const Record &record : records) {
        const QByteArray bytes = Payload::write(record);
        if (!message.isEmpty() && size + bytes.size() > LargestPush) {
            send(message);
            message.clear();
            size = 0;
        }
        message.append(bytes);
        size += int(bytes.size());
    }
    send(message);
}

}

RunnerHost::RunnerHost(KinletInterface *provider, const QString &name, const QDBusConnection &bus)
    : m_provider(provider), m_name(name), m_bus(bus)
{
    new RunnerAdaptor(this);
    m_callers.setConnection(bus);
    m_callers.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_callers, &QDBusServiceWatcher::serviceUnregistered, this, &RunnerHost::onCallerGone);
    connect(provider, &KinletInterface::dataUpdate, this, &RunnerHost::onDataUpdate);
    connect(provider, &KinletInterface::personsUpdate, this, &RunnerHost::onPersonsUpdate);
    connect(provider, &KinletInterface::error, this, &RunnerHost::onError);
}

RunnerHost::~RunnerHost() = default;

void RunnerHost::performRequest(int requestType, const QString &requestId,
                                const QByteArray &request)
{
    if (m_stopping) {
        refuse(QStringLiteral("This runner is leaving; ask again, and the bus starts a new one."));
        return;
    }
    SocialDataRequest *job = makeRequest(requestType);
    if (!job) {
        refuse(QStringLiteral("There is no request of kind %1.").arg(requestType));
        return;
    }
    if (!Payload::read(request, *job)) {
        delete job;
        refuse(QStringLiteral("These %1 bytes are no request of kind %2.")
                   .arg(request.size())
                   .arg(requestType));
        return;
    }
    const QString caller = message().service();
    m_jobs.insert(job, {caller, requestId, requestType});
    watchCaller(caller);
    connect(job, &SocialDataRequest::finished, this, &RunnerHost::onFinished);
    Q_EMIT used();
    // Not before the reply has gone out: the caller is not to wait for the provider.
    QMetaObject::invokeMethod(
        this, [this, job] { start(job); }, Qt::QueuedConnection);
}

void RunnerHost::start(SocialDataRequest *request)
{
    // The caller may have left meanwhile.
    if (m_jobs.contains(request))
        m_provider->performRequest(request);
}

QVariantMap RunnerHost::metaData()
{
    return m_provider->metaData();
}

void RunnerHost::refuse(const QString &reason)
{
    sendErrorReply(QDBusError::InvalidArgs, reason);
}

void RunnerHost::onFinished(SocialDataRequest *request)
{
    const auto entry = m_jobs.constFind(request);
    if (entry == m_jobs.constEnd())
        return;
    const Job job = *entry;
    m_jobs.erase(entry);
    QList<KinletError> errors = request->errors();
    QByteArray answer = Payload::write(*request);
    if (answer.size() > LargestArray) {
        errors.append(KinletError(KinletError::UnknownError,
                                  QStringLiteral("The answer is larger than the bus can carry.")));
        request->setResults({});
        answer = Payload::write(*request);
    }
    // To the caller alone: nobody else has asked.
    QDBusMessage signal = QDBusMessage::createTargetedSignal(
        job.caller, BusNames::path(m_name), QLatin1String(BusNames::RunnerInterface),
        QStringLiteral("requestFinished"));
    signal << job.requestType << job.requestId << answer << Payload::write(errors);
    m_bus.send(signal);
    if (request->status() == SocialDataRequest::Finished)
        request->deleteLater();
    else
        // The provider may go on with what it has only stopped. It is told once it has reported.
        QMetaObject::invokeMethod(
            this, [this, request] { abandon(request); }, Qt::QueuedConnection);
    Q_EMIT used();
}

// From its first request until it leaves the bus: to watch it for each request alone would cost two
// messages a request.
void RunnerHost::watchCaller(const QString &caller)
{
    if (m_callers.watchedServices().contains(caller))
        return;
    m_callers.addWatchedService(caller);
    // Somebody who does not wait for the reply may have left before the watch began.
    auto *watcher = new QDBusPendingCallWatcher(
        m_bus.interface()->asyncCall(QStringLiteral("NameHasOwner"), caller), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, caller] {
        watcher->deleteLater();
        const QDBusPendingReply<bool> isThere = *watcher;
        if (isThere.isValid() && !isThere.value())
            onCallerGone(caller);
    });
}

void RunnerHost::onCallerGone(const QString &caller)
{
    m_callers.removeWatchedService(caller);
    const QList<SocialDataRequest *> requests = m_jobs.keys();
    const int before = int(m_jobs.size());
    for (SocialDataRequest *request : requests) {
        if (m_jobs.value(request).caller == caller)
            cancel(request);
    }
    // Who leaves with nothing open has not asked again.
    if (int(m_jobs.size()) != before)
        Q_EMIT used();
}

// The provider may end other requests while it is told, or this one.
void RunnerHost::cancel(SocialDataRequest *request)
{
    if (m_jobs.remove(request) > 0)
        abandon(request);
}

void RunnerHost::abandon(SocialDataRequest *request)
{
    m_provider->cancelRequest(request);
    request->deleteLater();
}

void RunnerHost::stop()
{
    m_stopping = true;
    const QList<SocialDataRequest *> requests = m_jobs.keys();
    for (SocialDataRequest *request : requests)
        cancel(request);
}

void RunnerHost::onDataUpdate(const QList<SocialGenericData> &data,
                              const QList<QString> &updatedProperties)
{
    push(data, [&](const QVariantList &message) { Q_EMIT dataUpdate(message, updatedProperties); });
}

void RunnerHost::onPersonsUpdate(const QList<SocialNetworkPerson> &data,
                                 const QList<QString> &updatedProperties)
{
    push(data,
         [&](const QVariantList &message) { Q_EMIT personsUpdate(message, updatedProperties); });
}

void RunnerHost::onError(const QString &name, const QString &error, const QString &message)
{
    qWarning("%s: %s: %s", qPrintable(name), qPrintable(error), qPrintable(message));
    // As in an application's process: the provider is initialised anew, but not from inside init().
    if (m_recovering)
        return;
    m_recovering = true;
    m_provider->init();
    m_recovering = false;
}
