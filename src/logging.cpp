// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "logging.h"

namespace Log {

Q_LOGGING_CATEGORY(dbus, "kinlet.dbus", QtCriticalMsg)
Q_LOGGING_CATEGORY(manager, "kinlet.manager", QtCriticalMsg)
Q_LOGGING_CATEGORY(plugins, "kinlet.plugins", QtCriticalMsg)
Q_LOGGING_CATEGORY(provider, "kinlet.provider", QtCriticalMsg)
Q_LOGGING_CATEGORY(requests, "kinlet.requests", QtCriticalMsg)

}
