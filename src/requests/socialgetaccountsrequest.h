// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "records/typedrecords.h"
#include "requests/socialdatarequest.h"

/// Asks providers for the accounts that they serve. The manager does so for every provider it
/// finds.
class KINLET_EXPORT SocialGetAccountsRequest : public SocialDataRequest {
    Q_OBJECT

public:
    /// Asks for the accounts of all services.
    Q_INVOKABLE SocialGetAccountsRequest();
    ~SocialGetAccountsRequest() override;

    /// Ids of the services whose accounts are wanted; empty means all. It stays with this object:
    /// the stream form does not carry it, so copies and providers see an empty one.
    QStringList serviceFilter() const;
    /// Replaces the service filter.
    void setServiceFilter(const QStringList &serviceIds);

    /// The results as accounts, every record of them, in their order; empty before an answer.
    QList<SocialServiceAccount> accounts() const;
    /// For providers: replaces the results.
    void setAccounts(const QList<SocialServiceAccount> &accounts);
};
