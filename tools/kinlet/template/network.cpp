// SPDX-FileCopyrightText: @YEAR@ The @NAME@ developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "network.h"

#include <QDateTime>
#include <QTimer>

namespace {

const QString serviceId = QStringLiteral("@NAME@");
const QStringList accountIds{QStringLiteral("@NAME@:ada"), QStringLiteral("@NAME@:ben")};

QString personId(const QString &account)
{
    return account + QStringLiteral(":me");
}

QList<SocialNetworkPerson> samplePersons()
{
    QList<SocialNetworkPerson> all;
    for (const QString &account : accountIds) {
        SocialNetworkPerson person;
        person.setProperty(SocialNetworkPerson::Id, personId(account));
        person.setProperty(SocialNetworkPerson::ScreenName, account.section(QLatin1Char(':'), 1));
        person.setParentAccount(account);
        all.append(person);
    }
    return all;
}

QList<SocialActivity> sampleActivities()
{
    const QDateTime newest({2026, 1, 1}, {12, 0}, Qt::UTC);
    QList<SocialActivity> all;
    for (int i = 0; i < 4; ++i) {
        const QString account = accountIds[i % 2];
        SocialActivity status;
        status.setProperty(SocialActivity::Id, QStringLiteral("@NAME@:status:%1").arg(i));
        status.setProperty(SocialActivity::OwnerPersonId, personId(account));
        status.setProperty(SocialActivity::Description, QStringLiteral("Status %1").arg(i));
        status.setProperty(SocialActivity::ActivityType, int(SocialActivity::Status));
        status.setProperty(SocialActivity::StartTime, newest.addSecs(-3600 * i));
        status.setParentAccount(account);
        all.append(status);
    }
    return all;
}

// Stands for the way to a server and back.
void finishSoon(Reply *reply)
{
    QTimer::singleShot(10, reply, &Reply::finished);
}

}

// FILL IN: the network's name, icon and page, and what users can do there (SocialActions).
SocialService Network::service() const
{
    SocialService service;
    service.setProperty(SocialService::Id, serviceId);
    service.setProperty(SocialService::Description, QStringLiteral("@NAME@"));
    service.setProperty(SocialService::ProviderName, QStringLiteral("@NAME@"));
    return service;
}

// FILL IN: the accounts that the user has set up, from the user's settings or keyring.
QList<SocialServiceAccount> Network::accounts() const
{
    QList<SocialServiceAccount> all;
    for (const QString &id : accountIds) {
        SocialServiceAccount account;
        account.setProperty(SocialServiceAccount::Id, id);
        account.setProperty(SocialServiceAccount::SocialServiceId, serviceId);
        account.setProperty(SocialServiceAccount::ProfileId, personId(id));
        account.setProperty(SocialServiceAccount::AccountName, id.section(QLatin1Char(':'), 1));
        all.append(account);
    }
    return all;
}

// FILL IN: the contacts of the accounts, asked from the network with QNetworkAccessManager.
// When its answer has come, fill in the reply, or its errors with a description each, and emit
// finished(). Make the QNetworkReply a child of the reply: then it is aborted with it.
Reply *Network::fetchPersons()
{
    auto *reply = new Reply(this);
    reply->persons = samplePersons();
    finishSoon(reply);
    return reply;
}

// FILL IN: what was published, asked for in the same way; its ids must stay the same.
Reply *Network::fetchActivities()
{
    auto *reply = new Reply(this);
    reply->activities = sampleActivities();
    finishSoon(reply);
    return reply;
}
