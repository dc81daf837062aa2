// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "quotes.h"

#include <Kinlet/KinletAction>
#include <Kinlet/SocialGetActivitiesRequest>
#include <Kinlet/SocialPostActivitiesRequest>

#include <QDateTime>
#include <QTimer>

#include <utility>

void Quotes::init()
{
    quotes.clear();
    publish(QStringLiteral("Festina lente."));
}

QVariantMap Quotes::metaData()
{
    return {{QStringLiteral("name"), QStringLiteral("quotes")},
            {QStringLiteral("version"), QStringLiteral("1.0")}};
}

QList<SocialService> Quotes::services()
{
    SocialService service;
    service.setProperty(SocialService::Id, QStringLiteral("quotes"));
    service.setProperty(SocialService::Description, QStringLiteral("Quotes"));
    service.setProperty(SocialService::SocialActions, int(KinletAction::Post));
    return {service};
}

QList<SocialServiceAccount> Quotes::accounts()
{
    SocialServiceAccount account;
    account.setProperty(SocialServiceAccount::Id, QStringLiteral("quotes:account"));
    account.setProperty(SocialServiceAccount::SocialServiceId, QStringLiteral("quotes"));
    account.setProperty(SocialServiceAccount::ProfileId, QStringLiteral("quotes:me"));
    account.setProperty(SocialServiceAccount::AccountName, QStringLiteral("My quotes"));
    return {account};
}

void Quotes::performRequest(SocialDataRequest *request)
{
    const int type = request->type();
    if (type != SocialDataRequest::GetActivities && type != SocialDataRequest::PostActivities) {
        KinletInterface::performRequest(request);
        return;
    }
    // Stands for the reply of a server.
    auto *reply = new QTimer(this);
    reply->setSingleShot(true);
    connect(reply, &QTimer::timeout, this, [this, request] { answer(request); });
    replies.insert(request, reply);
    reply->start(10);
}

void Quotes::cancelRequest(SocialDataRequest *request)
{
    // With the reply goes what would have used the request.
    delete replies.take(request);
}

void Quotes::answer(SocialDataRequest *request)
{
    replies.take(request)->deleteLater();
    if (auto *post = qobject_cast<SocialPostActivitiesRequest *>(request)) {
        request->setRequestProgress(SocialDataRequest::Finished, publish(post->statusText()));
    } else if (auto *wanted = qobject_cast<SocialGetActivitiesRequest *>(request)) {
        // Only the bounds: examples/provider shows how the other filters are applied.
        QList<SocialActivity> found;
        for (const SocialActivity &quote : std::as_const(quotes)) {
            const QDateTime time = quote.variantProperty(SocialActivity::StartTime).toDateTime();
            if ((wanted->before().isNull() || time < wanted->before())
                && (wanted->after().isNull() || time > wanted->after())
                && (wanted->limit() < 1 || found.size() < wanted->limit()))
                found.append(quote);
        }
        wanted->setActivities(found);
        request->setRequestProgress(SocialDataRequest::Finished, {});
    }
}

QList<KinletError> Quotes::publish(const QString &text)
{
    if (text.trimmed().isEmpty())
        return {KinletError(KinletError::PostFailed, QStringLiteral("There is no text."))};
    SocialActivity quote;
    quote.setProperty(SocialActivity::Id, QStringLiteral("quotes:%1").arg(quotes.size()));
    quote.setProperty(SocialActivity::Description, text);
    quote.setProperty(SocialActivity::OwnerPersonId, QStringLiteral("quotes:me"));
    quote.setProperty(SocialActivity::ActivityType, int(SocialActivity::Status));
    quote.setProperty(SocialActivity::StartTime, QDateTime::currentDateTimeUtc());
    quote.setParentAccount(QStringLiteral("quotes:account"));
    quotes.prepend(quote);
    Q_EMIT dataUpdate({quote}, quote.properties().keys());
    return {};
}
