// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "exampleprovider.h"

#include <Kinlet/SocialGetActivitiesRequest>

#include <QDateTime>

namespace {

const auto serviceId = QStringLiteral("example");
const auto accountId = QStringLiteral("example:account");

SocialActivity onlyStatus()
{
    SocialActivity status;
    status.setProperty(SocialActivity::Id, QStringLiteral("example:1"));
    status.setProperty(SocialActivity::Description, QStringLiteral("Hello from the provider"));
    status.setProperty(SocialActivity::ActivityType, int(SocialActivity::Status));
    status.setProperty(SocialActivity::StartTime, QDateTime({2026, 1, 1}, {12, 0}, Qt::UTC));
    status.setParentAccount(accountId);
    return status;
}

}

void ExampleProvider::init()
{
    // Nothing to prepare. A provider that cannot start emits error() here.
}

QVariantMap ExampleProvider::metaData()
{
    return {{QStringLiteral("name"), QStringLiteral("example")}};
}

QList<SocialService> ExampleProvider::services()
{
    SocialService service;
    service.setProperty(SocialService::Id, serviceId);
    service.setProperty(SocialService::Description, QStringLiteral("Example network"));
    return {service};
}

QList<SocialServiceAccount> ExampleProvider::accounts()
{
    SocialServiceAccount account;
    account.setProperty(SocialServiceAccount::Id, accountId);
    account.setProperty(SocialServiceAccount::SocialServiceId, serviceId);
    account.setProperty(SocialServiceAccount::AccountName, QStringLiteral("Example account"));
    return {account};
}

void ExampleProvider::performRequest(SocialDataRequest *request)
{
    auto *activities = qobject_cast<SocialGetActivitiesRequest *>(request);
    if (!activities) {
        // Answers the registry requests from services() and accounts(), and refuses the rest.
        KinletInterface::performRequest(request);
        return;
    }
    // The library carries the filters; a provider applies them, this one only the limit.
    if (activities->limit() > 0)
        activities->setActivities({onlyStatus()});
    activities->setRequestProgress(SocialDataRequest::Finished, {});
}
