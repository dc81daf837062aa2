// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "exampleprovider.h"

#include <Kinlet/SocialGetActivitiesRequest>

#include <QDateTime>

namespace {

const auto serviceId = QStringLiteral("example");
const auto accountId = QStringLiteral("example:account");
const auto personId = QStringLiteral("example:person");

SocialActivity onlyStatus()
{
    SocialActivity status;
    status.setProperty(SocialActivity::Id, QStringLiteral("example:1"));
    status.setProperty(SocialActivity::OwnerPersonId, personId);
    status.setProperty(SocialActivity::Description, QStringLiteral("Hello from the provider"));
    status.setProperty(SocialActivity::ActivityType, int(SocialActivity::Status));
    status.setProperty(SocialActivity::StartTime, QDateTime({2026, 1, 1}, {12, 0}, Qt::UTC));
    status.setParentAccount(accountId);
    return status;
}

// The library carries the filters; providers apply them. One status is within any limit.
bool isWanted(const SocialActivity &activity, const SocialGetActivitiesRequest &request)
{
    const QStringList ids = request.activityIdsFilter();
    const QStringList persons = request.personsFilter();
    const QDateTime time = activity.variantProperty(SocialActivity::StartTime).toDateTime();
    return (ids.isEmpty() || ids.contains(activity.id()))
        && (persons.isEmpty() || persons.contains(personId))
        && (request.activityFilter() == SocialActivity::AnyType
            || request.activityFilter() == SocialActivity::Status)
        && request.parentActivityIdFilter().isEmpty()
        && (request.before().isNull() || time < request.before())
        && (request.after().isNull() || time > request.after());
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
    account.setProperty(SocialServiceAccount::ProfileId, personId);
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
    const SocialActivity status = onlyStatus();
    if (isWanted(status, *activities))
        activities->setActivities({status});
    activities->setRequestProgress(SocialDataRequest::Finished, {});
}
