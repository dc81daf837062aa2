// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

class QDBusConnection;

/// Lets \a bus, which is connected, hold as many messages that wait to be handled as the bus itself
/// would keep for it.
///
/// libdbus stops reading at 63 MiB of them until some are handled. QtDBus handles them in another
/// thread than it reads in, and from there it cannot be told to read on: the connection would stay
/// deaf for ever, with whatever else the process does over it.
void raiseReceiveLimit(const QDBusConnection &bus);
