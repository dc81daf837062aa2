// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "provider/kinletinterface.h"

#include "logging.h"
#include "requests/socialdatarequest.h"
#include "requests/typedresults_p.h"

KinletInterface::KinletInterface(QObject *parent) : PersonCollectorInterface(parent) { }

KinletInterface::~KinletInterface() = default;

void KinletInterface::performRequest(SocialDataRequest *request)
{
    QList<KinletError> errors;
    switch (request->type()) {
    case SocialDataRequest::GetAggregatedServices:
        request->setResults(plainResults(services()));
        break;
    case SocialDataRequest::GetAccounts:
        request->setResults(plainResults(accounts()));
        break;
    default:
        qCWarning(Log::provider) << request << "is of a kind that its provider does not support";
        errors.append(KinletError(KinletError::UnsupportedRequest));
    }
    request->setRequestProgress(SocialDataRequest::Finished, errors);
}

void KinletInterface::cancelRequest(SocialDataRequest *request)
{
    Q_UNUSED(request)
}

QList<SocialService> KinletInterface::services()
{
    return {};
}

QList<SocialServiceAccount> KinletInterface::accounts()
{
    return {};
}
