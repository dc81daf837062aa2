// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "managerinternals.h"

#include <QStringList>
#include <QVariant>

const QString accountId = QStringLiteral("account");
const QString serviceId = QStringLiteral("service");
const QString stateKey = QStringLiteral("State");
const QString progressKey = QStringLiteral("ImportProgress");

inline SocialServiceAccount importing(const QVariant &progress, const QString &id = accountId,
                                      const QString &service = serviceId)
{
    SocialServiceAccount account;
    account.setProperty(SocialGenericData::Id, id);
    account.setProperty(QStringLiteral("SocialServiceId"), service);
    account.setProperty(progressKey, progress);
    return account;
}

inline QVariant running()
{
    return QVariant::fromValue(SocialImportProgress{true, 9, 9, 9});
}

inline QVariant ended(int added, int removed, int merged)
{
    return QVariant::fromValue(SocialImportProgress{false, added, removed, merged});
}

/// Starts a list of what the manager emits about data and accounts.
inline void recordUpdates(QStringList *events)
{
    events->clear();
    QObject::connect(manager(), &KinletManager::dataUpdate, manager(),
                     [events] { events->append(QStringLiteral("data")); });
    QObject::connect(manager(), &KinletManager::accountsRemoved, manager(),
                     [events](const QStringList &ids) {
                         events->append(QStringLiteral("removed ") + ids.join(u','));
                     });
    QObject::connect(manager(), &KinletManager::importStarted, manager(),
                     [events](const QString &service, const QString &id) {
                         events->append(QStringLiteral("started %1 %2").arg(service, id));
                     });
    QObject::connect(
        manager(), &KinletManager::importEnded, manager(),
        [events](const QString &service, const QString &id, int added, int removed, int merged) {
            events->append(QStringLiteral("ended %1 %2 %3 %4 %5")
                               .arg(service, id)
                               .arg(added)
                               .arg(removed)
                               .arg(merged));
        });
}
