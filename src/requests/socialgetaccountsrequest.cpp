// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/socialgetaccountsrequest.h"

#include "requests/socialdatarequest_p.h"
#include "requests/typedresults_p.h"

class SocialGetAccountsRequestPrivate : public SocialDataRequestPrivate {
public:
    int type() const override { return SocialDataRequest::GetAccounts; }

    QStringList serviceFilter;
};

// The service filter is deliberately no part of the stream form, which is that of the base class.

SocialGetAccountsRequest::SocialGetAccountsRequest()
    : SocialDataRequest(new SocialGetAccountsRequestPrivate)
{
}

SocialGetAccountsRequest::~SocialGetAccountsRequest() = default;

QStringList SocialGetAccountsRequest::serviceFilter() const
{
    return static_cast<const SocialGetAccountsRequestPrivate *>(d_ptr.get())->serviceFilter;
}

void SocialGetAccountsRequest::setServiceFilter(const QStringList &serviceIds)
{
    static_cast<SocialGetAccountsRequestPrivate *>(d_ptr.get())->serviceFilter = serviceIds;
}

QList<SocialServiceAccount> SocialGetAccountsRequest::accounts() const
{
    return typedResults<SocialServiceAccount>(results());
}

void SocialGetAccountsRequest::setAccounts(const QList<SocialServiceAccount> &accounts)
{
    setResults(plainResults(accounts));
}
