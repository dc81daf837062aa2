// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/kinletrunnerinterface.h"

#include "dbus/busnames.h"

KinletRunnerInterface::KinletRunnerInterface(const QString &service, const QString &path,
                                             const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, BusNames::RunnerInterface, connection, parent)
{
}

KinletRunnerInterface::~KinletRunnerInterface() = default;

QDBusPendingReply<> KinletRunnerInterface::performRequest(int requestType, const QString &requestId,
                                                          const QByteArray &request)
{
    return asyncCallWithArgumentList(
        QStringLiteral("performRequest"),
        {QVariant(requestType), QVariant(requestId), QVariant(request)});
}

QDBusPendingReply<QVariantMap> KinletRunnerInterface::metaData()
{
    return asyncCallWithArgumentList(QStringLiteral("metaData"), {});
}
