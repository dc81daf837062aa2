// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "kinletexport.h"

#include <QDBusAbstractInterface>
#include <QDBusPendingReply>
#include <QVariantMap>

/// Talks to one runner, a provider in another process. Its introspection data is
/// dbus/com.orvane.kinlet.runner.xml.
class KINLET_AUTOTEST_EXPORT KinletRunnerInterface : public QDBusAbstractInterface {
    Q_OBJECT

public:
    KinletRunnerInterface(const QString &service, const QString &path,
                          const QDBusConnection &connection, QObject *parent);
    ~KinletRunnerInterface() override;

public Q_SLOTS:
    /// Returns at once. The answer comes by requestFinished() with the same id; the reply only
    /// tells that the runner has taken the request.
    QDBusPendingReply<> performRequest(int requestType, const QString &requestId,
                                       const QByteArray &request);
    /// The runner's description of itself.
    QDBusPendingReply<QVariantMap> metaData();

Q_SIGNALS:
    void dataUpdate(const QVariantList &data, const QStringList &updatedProperties);
    void personsUpdate(const QVariantList &data, const QStringList &updatedProperties);
    void requestFinished(int requestType, const QString &requestId, const QByteArray &request,
                         const QByteArray &error);
};
