// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// The manager's registry of services and accounts.

#include "logging.h"
#include "manager/kinletmanager.h"
#include "manager/kinletmanager_p.h"
#include "requests/socialdatarequest.h"
#include "requests/typedresults_p.h"

#include <algorithm>

namespace {

// Two hashes with the same keys may differ in their order; the names give one that is the same for
// both.
template <typename Record>
QStringList providersInOrder(const QHash<QString, QList<Record>> &cache)
{
    QStringList names = cache.keys();
    std::sort(names.begin(), names.end());
    return names;
}

template <typename Record>
QList<Record> allRecords(const QHash<QString, QList<Record>> &cache)
{
    QList<Record> all;
    const QStringList names = providersInOrder(cache);
    for (const QString &name : names)
        all += cache.value(name);
    return all;
}

template <typename Record>
Record recordWithId(const QList<Record> &records, const QString &id)
{
    for (const Record &record : records) {
        if (record.id() == id)
            return record;
    }
    return Record();
}

}

QList<SocialService> KinletManager::services() const
{
    return allRecords(d->serviceCache);
}

SocialService KinletManager::service(const QString &serviceId) const
{
    return recordWithId(services(), serviceId);
}

SocialService KinletManager::service(const SocialServiceAccount &account) const
{
    return service(account.property(SocialServiceAccount::SocialServiceId));
}

QList<SocialServiceAccount> KinletManager::accounts() const
{
    return allRecords(d->accountCache);
}

SocialServiceAccount KinletManager::account(const QString &accountId) const
{
    return recordWithId(accounts(), accountId);
}

QList<SocialServiceAccount> KinletManager::accounts(const SocialService &service) const
{
    QList<SocialServiceAccount> found;
    const QList<SocialServiceAccount> all = accounts();
    for (const SocialServiceAccount &account : all) {
        if (account.property(SocialServiceAccount::SocialServiceId) == service.id())
            found.append(account);
    }
    return found;
}

QString KinletManager::providerNameFromAccountId(const QString &accountId) const
{
    const QStringList names = providersInOrder(d->accountCache);
    for (const QString &name : names) {
        const QList<SocialServiceAccount> accounts = d->accountCache.value(name);
        for (const SocialServiceAccount &account : accounts) {
            if (account.id() == accountId)
                return name;
        }
    }
    return QString();
}

SocialService KinletManager::serviceFromAccountId(const QString &accountId) const
{
    return service(account(accountId));
}

void KinletManager::onGetServicesFinished(SocialDataRequest *request)
{
    const QString name = d->initRequests.value(request);
    if (d->initRequests.remove(request) == 0)
        return;
    qCDebug(Log::manager) << "The provider" << name << "has" << request->results().size()
                          << "services";
    d->serviceCache.insert(name, typedResults<SocialService>(request->results()));
    request->deleteLater();
}

void KinletManager::onGetAccountsFinished(SocialDataRequest *request)
{
    const QString name = d->initRequests.value(request);
    if (d->initRequests.remove(request) == 0)
        return;
    qCDebug(Log::manager) << "The provider" << name << "has" << request->results().size()
                          << "accounts";
    d->accountCache.insert(name, typedResults<SocialServiceAccount>(request->results()));
    request->deleteLater();
    if (isInitialized())
        return;
    d->pendingProviders.removeAll(name);
    if (d->collecting || !d->pendingProviders.isEmpty())
        return;
    d->initializedFlag = true;
    qCDebug(Log::manager) << "Start-up is complete";
    Q_EMIT initialized();
}
