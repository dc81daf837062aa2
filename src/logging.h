// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QLoggingCategory>

/**
 * What each folder tells those who want to see it at work: the category "kinlet.FOLDER", silent
 * below critical until a rule such as "kinlet.*=true" turns it on.
 *
 * Debug messages follow requests and updates, info messages what comes and goes, warnings what went
 * wrong. They hold names, ids and numbers, never what people write, and they call no provider.
 */
namespace Log {

Q_DECLARE_LOGGING_CATEGORY(dbus)
Q_DECLARE_LOGGING_CATEGORY(manager)
Q_DECLARE_LOGGING_CATEGORY(plugins)
Q_DECLARE_LOGGING_CATEGORY(provider)
Q_DECLARE_LOGGING_CATEGORY(requests)

}
