// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/receivelimit.h"

#include <QDBusConnection>
#include <QLibrary>

void raiseReceiveLimit(const QDBusConnection &bus)
{
    // What a session bus keeps for a connection that does not read.
    constexpr long limit = 1000000000;
    // From the library that QtDBus has loaded.
    using SetLimit = void (*)(void *connection, long size);
    const auto setLimit = reinterpret_cast<SetLimit>(
        QLibrary::resolve(QStringLiteral("dbus-1"), 3, "dbus_connection_set_max_received_size"));
    if (setLimit)
        setLimit(bus.internalPointer(), limit);
}
