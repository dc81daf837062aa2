// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "busmessages.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>
#include <QtDebug>

#include <cmath>

namespace {

// The lines before the one with that word.
int linesUntil(QProcess &monitor, const char *word)
{
    for (int lines = 0;; ++lines) {
        while (!monitor.canReadLine()) {
            if (!monitor.waitForReadyRead())
                qFatal("dbus-monitor sees no %s", word);
        }
        if (monitor.readLine().contains(word))
            return lines;
    }
}

}

double messagesPerRequest(Exchange &exchange)
{
    constexpr int requests = 20;
    // The first one may cost more.
    exchange.perform(1);
    QProcess monitor;
    monitor.start(QStringLiteral("dbus-monitor"),
                  {QStringLiteral("--session"), QStringLiteral("--profile")});
    // It gives its name back once it monitors.
    linesUntil(monitor, "NameLost");
    exchange.perform(requests);
    // Asked of the bus, after all of that.
    QDBusConnection::sessionBus().interface()->call(QStringLiteral("GetId"));
    const int messages = linesUntil(monitor, "GetId");
    monitor.kill();
    monitor.waitForFinished();
    // A signal may have come before the last reply.
    return std::round(double(messages) / requests);
}
