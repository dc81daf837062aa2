// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// What providers push, on its way to the application.

#include "logging.h"
#include "manager/kinletmanager.h"
#include "manager/kinletmanager_p.h"

#include <QPointer>

#include <algorithm>

namespace {

// Values of SocialServiceAccount::State that mean the account is gone.
bool isGone(int state)
{
    return state == 4 || state == 5;
}

}

// The names of the updated properties alone decide: once account news is among them, no record of
// the list is passed on as data.
void KinletManager::onDataUpdate(const QList<SocialGenericData> &data,
                                 const QList<QString> &updatedProperties)
{
    auto *provider = dynamic_cast<KinletInterface *>(sender());
    if (!provider)
        return;
    const QString name = providerName(provider);
    if (name.isEmpty()) {
        qCWarning(Log::manager) << "An update of a provider without a name is dropped";
        return;
    }
    qCDebug(Log::manager) << "The provider" << name << "has news of" << data.size()
                          << "records, updated:" << updatedProperties;
    const bool progress = updatedProperties.contains(SocialServiceAccount::ImportProgress);
    const bool state = updatedProperties.contains(SocialServiceAccount::State);
    if (!progress && !state) {
        Q_EMIT dataUpdate(data, updatedProperties);
        return;
    }
    // A slot may end the manager, and with it the provider that owns the list.
    const QPointer<KinletManager> self(this);
    const QList<SocialGenericData> records = data;
    if (progress)
        importProgressUpdate(name, records);
    if (self && state)
        accountStateUpdate(name, records);
}

void KinletManager::accountStateUpdate(const QString &providerName,
                                       const QList<SocialGenericData> &data)
{
    Q_UNUSED(providerName)
    QStringList gone;
    for (const SocialGenericData &record : data) {
        if (record.className() == SocialServiceAccount::ClassName
            && isGone(record.variantProperty(SocialServiceAccount::State).toInt()))
            gone.append(record.id());
    }
    // Deliberately silent before start-up is complete, unlike imports. The registry keeps the
    // accounts.
    if (isInitialized() && !gone.isEmpty()) {
        qCInfo(Log::manager) << "Accounts are gone:" << gone;
        Q_EMIT accountsRemoved(gone);
    }
}

void KinletManager::importProgressUpdate(const QString &providerName,
                                         const QList<SocialGenericData> &data)
{
    const QPointer<KinletManager> self(this);
    // Creates the entry, even if nothing is found below.
    d->accountCache[providerName];
    for (const SocialGenericData &record : data) {
        const QString id = record.id();
        const QString serviceId = record.property(SocialServiceAccount::SocialServiceId);
        if (record.className() != SocialServiceAccount::ClassName || id.isEmpty()
            || serviceId.isEmpty() || !record.hasProperty(SocialServiceAccount::ImportProgress))
            continue;
        const auto entry = d->accountCache.find(providerName);
        if (entry != d->accountCache.end()) {
            const auto cached = std::find_if(
                entry->begin(), entry->end(),
                [&id](const SocialServiceAccount &account) { return account.id() == id; });
            if (cached != entry->end())
                *cached = SocialServiceAccount(record);
        }
        // Another type reads as the default: not running, nothing counted.
        const auto progress = record.variantProperty(SocialServiceAccount::ImportProgress)
                                  .value<SocialImportProgress>();
        if (progress.running)
            Q_EMIT importStarted(serviceId, id);
        else
            Q_EMIT importEnded(serviceId, id, progress.contactsAdded, progress.contactsRemoved,
                               progress.contactsMerged);
        if (!self)
            return;
    }
}
