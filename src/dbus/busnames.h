// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QString>

/// Every name, path and prefix that a runner and its clients must agree on.
namespace BusNames {

/// The interface that a runner's object implements.
constexpr char RunnerInterface[] = "com.orvane.kinlet.runner";

/// What every runner's service name begins with; the rest is the id of its provider.
inline QString prefix()
{
    return QStringLiteral("com.orvane.kinlet.");
}

inline QString service(const QString &id)
{
    return prefix() + id;
}

/// Path of the object of the runner with that id. Not checked, deliberately: an id with a dot gives
/// one that the bus refuses.
inline QString path(const QString &id)
{
    return QLatin1Char('/') + id;
}

/// The id behind a service name; empty if it is not the name of a runner.
inline QString id(const QString &service)
{
    return service.startsWith(prefix()) ? service.mid(prefix().size()) : QString();
}

/// The bus itself: its service and its interface are called alike.
inline QString daemon()
{
    return QStringLiteral("org.freedesktop.DBus");
}

}
