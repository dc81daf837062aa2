// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "provider/kinletinterface.h"

#include <QStringList>
#include <QVariantList>

#include <memory>

class KinletInterfaceProxyPrivate;
class KinletRunnerInterface;

/// A runner as a provider: requests go out under fresh ids, answers are matched to them, pushed
/// records are passed on.
class KINLET_AUTOTEST_EXPORT KinletInterfaceProxy : public KinletInterface {
    Q_OBJECT

public:
    /// Takes ownership of \a runner. The meta-data is "name" and nothing else: the runner is not
    /// asked.
    KinletInterfaceProxy(KinletRunnerInterface *runner, const QString &name);
    /// Requests that are still waiting are neither finished nor told.
    ~KinletInterfaceProxy() override;

    void init() override;
    QVariantMap metaData() override;
    /// Sends the request and returns. It is finished when the runner answers, always with status
    /// Finished and the errors that it has by then: what a runner reports of errors is not read.
    /// Without an answer it stays open, also when the runner or the bus has gone.
    void performRequest(SocialDataRequest *request) override;
    /// Does nothing: runners cannot be told, and an answer that comes later still finishes the
    /// request.
    void cancelRequest(SocialDataRequest *request) override;

private Q_SLOTS:
    void onDbusDataUpdate(const QVariantList &data, const QStringList &updatedProperties);
    void onDbusPersonsUpdate(const QVariantList &data, const QStringList &updatedProperties);
    // The id deliberately has no name here.
    void requestFinished(int requestType, const QString &, const QByteArray &request,
                         const QByteArray &error);

private:
    const std::unique_ptr<KinletInterfaceProxyPrivate> d;
};
