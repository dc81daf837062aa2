// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "dbus/fakerunner.h"
#include "dbus/kinletinterfaceproxy.h"
#include "dbus/kinletrunnerinterface.h"
#include "dbus/payload.h"
#include "records/typedrecords.h"
#include "requests/socialgetpersonsrequest.h"

#include <QDBusConnection>

#include <memory>

constexpr int Patience = 60000;

/// A client of the runner with that id.
inline std::unique_ptr<KinletRunnerInterface> clientOf(const QString &id)
{
    return std::make_unique<KinletRunnerInterface>(FakeRunner::busName(id), QLatin1Char('/') + id,
                                                   QDBusConnection::sessionBus(), nullptr);
}

/// A runner in another process and the proxy for it.
class ProxiedRunner {
public:
    explicit ProxiedRunner(const QString &runnerId = QStringLiteral("fake"))
        : id(runnerId)
        , runner({FakeRunner::busName(runnerId)})
        , proxy(new KinletInterfaceProxy(clientOf(runnerId).release(), runnerId))
    {
    }

    /// The id under which the runner has got the request.
    QString perform(SocialDataRequest &request)
    {
        proxy->performRequest(&request);
        return runner.nextCall().requestId();
    }
    void answer(const QString &requestId, const QByteArray &request, const QByteArray &error = {},
                int times = 1)
    {
        runner.finish(id, requestId, request, error, times);
    }
    void push(const char *member, const QVariantList &data, const QStringList &properties = {},
              int times = 1)
    {
        runner.push(id, QString::fromLatin1(member), data, properties, times);
    }

    const QString id;
    FakeRunner runner;
    std::unique_ptr<KinletInterfaceProxy> proxy;
};

inline SocialGenericData record(const QString &id)
{
    SocialGenericData record(SocialActivity::ClassName);
    record.setProperty(SocialGenericData::Id, id);
    return record;
}

/// The request as a runner sends it back: with these results and that status.
inline QByteArray answered(SocialDataRequest &request, const QStringList &ids,
                           SocialDataRequest::Status status = SocialDataRequest::Finished)
{
    QList<SocialGenericData> results;
    for (const QString &id : ids)
        results.append(record(id));
    request.setResults(results);
    request.setRequestProgress(status, {});
    return Payload::write(request);
}

inline QByteArray personsAnswer(const QStringList &ids = {},
                                SocialDataRequest::Status status = SocialDataRequest::Finished)
{
    SocialGetPersonsRequest request;
    return answered(request, ids, status);
}

inline QStringList idsOf(const SocialDataRequest &request)
{
    QStringList ids;
    const QList<SocialGenericData> results = request.results();
    for (const SocialGenericData &result : results)
        ids.append(result.id());
    return ids;
}

inline QStringList ids(const char *id)
{
    return {QString::fromLatin1(id)};
}
