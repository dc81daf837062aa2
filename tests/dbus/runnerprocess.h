// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "dbus/busnames.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>
#include <QTest>

constexpr int LongMilliseconds = 20000;

inline bool isOnBus(const QString &id)
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(BusNames::service(id));
}

/// A runner in a process of its own, which ends with this object.
class RunnerProcess : public QProcess {
public:
    RunnerProcess() { setProcessChannelMode(ForwardedErrorChannel); }
    ~RunnerProcess() override
    {
        if (state() == NotRunning)
            return;
        terminate();
        waitForFinished(LongMilliseconds);
    }

    /// True once the runner with that id is on the bus.
    bool startAs(const QString &id, const QString &program, const QStringList &arguments)
    {
        start(program, arguments);
        return QTest::qWaitFor([=] { return isOnBus(id) || state() == NotRunning; },
                               LongMilliseconds)
            && isOnBus(id);
    }
};
