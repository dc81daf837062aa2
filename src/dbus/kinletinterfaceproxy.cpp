// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/kinletinterfaceproxy.h"

#include "dbus/kinletrunnerinterface.h"
#include "dbus/payload.h"
#include "dbus/payloadguard.h"
#include "logging.h"
#include "requests/socialdatarequest.h"

#include <QDBusPendingCallWatcher>
#include <QMap>
#include <QPointer>
#include <QUuid>

class KinletInterfaceProxyPrivate {
public:
    KinletRunnerInterface *runner;
    QVariantMap metaData;
    QMap<QString, QPointer<SocialDataRequest>> pendingRequests;
};

namespace {

// Nothing is left out: what holds no byte array reads as an empty one.
template <typename Record>
QList<Record> readRecords(const QVariantList &data)
{
    QList<Record> records;
    records.reserve(data.size());
    Allowance allowance;
    for (const QVariant &element : data) {
        Record record;
        Payload::read(element.toByteArray(), record, allowance);
        records.append(record);
    }
    return records;
}

// Nobody else hears of it: the request just stays open.
void logRefusal(const QDBusPendingCall &call, const QString &requestId, QObject *parent)
{
    auto *watcher = new QDBusPendingCallWatcher(call, parent);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, requestId] {
        if (watcher->isError())
            qCWarning(Log::dbus) << requestId << "is refused with" << watcher->error().name();
        watcher->deleteLater();
    });
}

}

KinletInterfaceProxy::KinletInterfaceProxy(KinletRunnerInterface *runner, const QString &name)
    : d(new KinletInterfaceProxyPrivate{runner, {{QStringLiteral("name"), name}}, {}})
{
    runner->setParent(this);
    connect(runner, SIGNAL(dataUpdate(QVariantList, QStringList)), this,
            SLOT(onDbusDataUpdate(QVariantList, QStringList)));
    connect(runner, SIGNAL(personsUpdate(QVariantList, QStringList)), this,
            SLOT(onDbusPersonsUpdate(QVariantList, QStringList)));
    connect(runner, SIGNAL(requestFinished(int, QString, QByteArray, QByteArray)), this,
            SLOT(requestFinished(int, QString, QByteArray, QByteArray)));
}

KinletInterfaceProxy::~KinletInterfaceProxy()
{
    delete d->runner;
}

void KinletInterfaceProxy::init() { }

QVariantMap KinletInterfaceProxy::metaData()
{
    return d->metaData;
}

void KinletInterfaceProxy::performRequest(SocialDataRequest *request)
{
    const QByteArray bytes = Payload::write(*request);
    const QString id = QUuid::createUuid().toString();
    d->pendingRequests.insert(id, request);
    qCDebug(Log::dbus) << request << "goes to" << d->runner->service() << "as" << id << "in"
                       << bytes.size() << "bytes";
    const auto call = d->runner->performRequest(request->type(), id, bytes);
    if (Log::dbus().isWarningEnabled())
        logRefusal(call, id, this);
}

void KinletInterfaceProxy::cancelRequest(SocialDataRequest *request)
{
    Q_UNUSED(request)
}

void KinletInterfaceProxy::requestFinished(int requestType, const QString &requestId,
                                           const QByteArray &request, const QByteArray &error)
{
    Q_UNUSED(requestType)
    // A runner's errors deliberately stay behind.
    Q_UNUSED(error)
    // Deliberately leaves an entry for an id that is not known, and that of a deleted request.
    const QPointer<SocialDataRequest> waiting = d->pendingRequests[requestId];
    if (!waiting) {
        qCDebug(Log::dbus) << d->runner->service() << "answers" << requestId
                           << "that nobody waits for";
        return;
    }
    qCDebug(Log::dbus) << d->runner->service() << "answers" << requestId << "in" << request.size()
                       << "bytes";
    Payload::read(request, *waiting);
    d->pendingRequests.remove(requestId);
    waiting->setRequestProgress(SocialDataRequest::Finished, waiting->errors());
}

void KinletInterfaceProxy::onDbusDataUpdate(const QVariantList &data,
                                            const QStringList &updatedProperties)
{
    qCDebug(Log::dbus) << d->runner->service() << "has news of" << data.size()
                       << "records, updated:" << updatedProperties;
    Q_EMIT dataUpdate(readRecords<SocialGenericData>(data), updatedProperties);
}

void KinletInterfaceProxy::onDbusPersonsUpdate(const QVariantList &data,
                                               const QStringList &updatedProperties)
{
    qCDebug(Log::dbus) << d->runner->service() << "has news of" << data.size()
                       << "persons, updated:" << updatedProperties;
    Q_EMIT personsUpdate(readRecords<SocialNetworkPerson>(data), updatedProperties);
}
