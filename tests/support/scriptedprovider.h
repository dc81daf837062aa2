// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "provider/kinletinterface.h"
#include "requests/kinleterror.h"
#include "requests/socialdatarequest.h"

#include <QPointer>

#include <functional>

/**
 * A provider that does what a test tells it, when the test tells it, and remembers what it was
 * asked.
 *
 * Services and accounts requests are answered inside the call, from the lists below. Every other
 * request, and those too once answersRegistry is false, is kept in received and left unanswered
 * until the test answers it, unless onPerform does something else. The provider never touches a
 * request on its own.
 */
class ScriptedProvider : public KinletInterface {
    Q_OBJECT

public:
    using Script = std::function<void(SocialDataRequest *)>;

    /// A provider of that name with one account for each of \a accountIds, all of the service
    /// "service-" + name.
    explicit ScriptedProvider(const QString &name, const QStringList &accountIds = {});

    /// The same, registered with KinletManager::instance(), which owns it.
    static ScriptedProvider *add(const QString &name, const QStringList &accountIds = {});
    /// Registers a provider that was set up before. The manager owns it.
    static bool add(ScriptedProvider *provider);
    /// Removes it from KinletManager::instance() as its repository would.
    static void remove(const QString &name);

    void init() override;
    QVariantMap metaData() override;
    void performRequest(SocialDataRequest *request) override;
    void cancelRequest(SocialDataRequest *request) override;
    QList<SocialService> services() override;
    QList<SocialServiceAccount> accounts() override;

    /// The request received last.
    SocialDataRequest *last() const;
    /// Answers the request received last with one record for each of \a ids.
    void answer(const QStringList &ids = {},
                SocialDataRequest::Status status = SocialDataRequest::Finished,
                const QList<KinletError> &errors = {});
    /// A script that gives that answer.
    static Script answering(const QStringList &ids,
                            SocialDataRequest::Status status = SocialDataRequest::Finished,
                            const QList<KinletError> &errors = {});

    const QString name;
    /// Every request received, in order; null once it has been deleted.
    QList<QPointer<SocialDataRequest>> received;
    /// Every request cancelled, in order. Compare only: they may be gone.
    QList<SocialDataRequest *> cancelled;
    /// Run inside performRequest() after the request has been remembered, and inside
    /// cancelRequest().
    Script onPerform;
    Script onCancel;
    /// Whether services and accounts requests are answered from the lists.
    bool answersRegistry = true;
    QList<SocialService> serviceList;
    QList<SocialServiceAccount> accountList;
};

/// So many providers "P0", "P1" and so on, registered with KinletManager::instance(), in the order
/// in which they are asked.
QList<ScriptedProvider *> addProviders(int count);
/// A record of each id, of class "Record".
QList<SocialGenericData> recordsWithIds(const QStringList &ids);
/// The ids of the records, in their order.
QStringList idsOf(const QList<SocialGenericData> &records);
/// The types of the errors, in their order.
QList<int> typesOf(const QList<KinletError> &errors);
/// Runs what deleteLater() has scheduled so far.
void runDeferredDeletes();
