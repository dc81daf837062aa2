// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "load/stormprovider.h"

#include "load/storm.h"

StormProvider::StormProvider(Storm &storm, const QString &providerName, const QStringList &ids)
    : name(providerName), accountIds(ids), m_storm(storm)
{
    alive.insert(this);
}

StormProvider::~StormProvider()
{
    alive.remove(this);
}

QVariantMap StormProvider::metaData()
{
    return {{QStringLiteral("name"), name}};
}

void StormProvider::performRequest(SocialDataRequest *request)
{
    m_storm.providerAsked(*this, request);
}

void StormProvider::cancelRequest(SocialDataRequest *request)
{
    m_storm.providerCancelled(request);
}

QList<SocialService> StormProvider::services()
{
    SocialService service;
    service.setProperty(SocialGenericData::Id, QStringLiteral("service-") + name);
    return {service};
}

QList<SocialServiceAccount> StormProvider::accounts()
{
    QList<SocialServiceAccount> accounts;
    for (const QString &id : accountIds) {
        SocialServiceAccount account;
        account.setProperty(SocialGenericData::Id, id);
        account.setProperty(SocialServiceAccount::SocialServiceId,
                            QStringLiteral("service-") + name);
        accounts.append(account);
    }
    return accounts;
}
