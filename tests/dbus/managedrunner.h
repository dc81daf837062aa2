// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "dbus/fakerunner.h"
#include "dbus/payload.h"
#include "dbus/testbus.h"
#include "records/typedrecords.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetpersonsrequest.h"

/// A runner that the manager knows as a provider. It owns its name from the start, has one account,
/// and answers with one record, both named after its id.
class ManagedRunner : public FakeRunner {
public:
    explicit ManagedRunner(const QString &id) : FakeRunner({busName(id)}), m_id(id) { }

    SocialServiceAccount account() const
    {
        SocialServiceAccount account;
        account.setProperty(SocialGenericData::Id, m_id);
        return account;
    }

    /// Answers what the manager asks of a provider that is new to it.
    void answerStartUp()
    {
        finish(m_id, nextCall().requestId(), answer<GetAggregatedServicesRequest>());
        finish(m_id, nextCall().requestId(), answer<SocialGetAccountsRequest>());
    }

    /// Answers the next request.
    void answerNext() { answerTo(nextCall().requestId()); }
    void answerTo(const QString &requestId)
    {
        finish(m_id, requestId, answer<SocialGetPersonsRequest>());
    }

    /// Is killed while the answer leaves.
    void dieAnswering(const QString &requestId)
    {
        // Larger than what a connection takes at once.
        FakeRunner::dieAnswering(
            m_id, requestId, answer<SocialGetPersonsRequest>(QString(4000000, QLatin1Char('x'))));
    }

    /// Pushes that many updates with one record each.
    void pushUpdates(int count)
    {
        push(m_id, QStringLiteral("dataUpdate"), {Payload::write(account())}, {}, 1, count);
    }

    const QString &id() const { return m_id; }

private:
    template <typename Request>
    QByteArray answer(const QString &description = {}) const
    {
        SocialGenericData record(account());
        record.setProperty(SocialGenericData::Description, description);
        Request request;
        request.setResults({record});
        return Payload::write(request);
    }

    const QString m_id;
};
