// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/scriptedprovider.h"

#include "manager/kinletmanager.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>

ScriptedProvider::ScriptedProvider(const QString &providerName, const QStringList &accountIds)
    : name(providerName)
{
    SocialService service;
    service.setProperty(SocialGenericData::Id, QStringLiteral("service-") + name);
    serviceList.append(service);
    for (const QString &id : accountIds) {
        SocialServiceAccount account;
        account.setProperty(SocialGenericData::Id, id);
        account.setProperty(SocialServiceAccount::SocialServiceId, service.id());
        accountList.append(account);
    }
}

ScriptedProvider *ScriptedProvider::add(const QString &name, const QStringList &accountIds)
{
    auto *provider = new ScriptedProvider(name, accountIds);
    return add(provider) ? provider : nullptr;
}

bool ScriptedProvider::add(ScriptedProvider *provider)
{
    return KinletManager::instance()->addProvider(
        QSharedPointer<KinletInterface>(provider, &QObject::deleteLater));
}

void ScriptedProvider::remove(const QString &name)
{
    QMetaObject::invokeMethod(KinletManager::instance(), "onPluginRemoved", Qt::DirectConnection,
                              Q_ARG(QString, name));
}

void ScriptedProvider::init() { }

QVariantMap ScriptedProvider::metaData()
{
    return {{QStringLiteral("name"), name}};
}

void ScriptedProvider::performRequest(SocialDataRequest *request)
{
    const bool registry = request->type() == SocialDataRequest::GetAggregatedServices
        || request->type() == SocialDataRequest::GetAccounts;
    if (registry && answersRegistry) {
        KinletInterface::performRequest(request);
        return;
    }
    received.append(request);
    if (const Script script = onPerform)
        script(request);
}

void ScriptedProvider::cancelRequest(SocialDataRequest *request)
{
    cancelled.append(request);
    if (const Script script = onCancel)
        script(request);
}

QList<SocialService> ScriptedProvider::services()
{
    return serviceList;
}

QList<SocialServiceAccount> ScriptedProvider::accounts()
{
    return accountList;
}

SocialDataRequest *ScriptedProvider::last() const
{
    return received.isEmpty() ? nullptr : received.last().data();
}

void ScriptedProvider::answer(const QStringList &ids, SocialDataRequest::Status status,
                              const QList<KinletError> &errors)
{
    answering(ids, status, errors)(last());
}

ScriptedProvider::Script ScriptedProvider::answering(const QStringList &ids,
                                                     SocialDataRequest::Status status,
                                                     const QList<KinletError> &errors)
{
    return [=](SocialDataRequest *request) {
        request->setResults(recordsWithIds(ids));
        request->setRequestProgress(status, errors);
    };
}

QList<ScriptedProvider *> addProviders(int count)
{
    QList<ScriptedProvider *> added;
    for (int i = 0; i < count; ++i)
        added.append(ScriptedProvider::add(QStringLiteral("P%1").arg(i)));
    const QList<QString> names = KinletManager::instance()->allProviderNames();
    std::sort(added.begin(), added.end(),
              [&](auto *a, auto *b) { return names.indexOf(a->name) < names.indexOf(b->name); });
    return added;
}

QList<SocialGenericData> recordsWithIds(const QStringList &ids)
{
    QList<SocialGenericData> records;
    for (const QString &id : ids) {
        SocialGenericData record(QStringLiteral("Record"));
        record.setProperty(SocialGenericData::Id, id);
        records.append(record);
    }
    return records;
}

QStringList idsOf(const QList<SocialGenericData> &records)
{
    QStringList ids;
    for (const SocialGenericData &record : records)
        ids.append(record.id());
    return ids;
}

QList<int> typesOf(const QList<KinletError> &errors)
{
    QList<int> types;
    for (const KinletError &error : errors)
        types.append(error.type());
    return types;
}

void runDeferredDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
