// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "dbus/busnames.h"
#include "manager/kinletmanager.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QEventLoop>
#include <QProcess>
#include <QThread>
#include <QtDebug>

/// A process that owns a name on the bus; it ends with this object.
class BusProcess : public QProcess {
public:
    /// Waits until it is on the bus.
    BusProcess(const QString &busName, const QString &program, const QStringList &arguments)
    {
        setProcessChannelMode(ForwardedChannels);
        start(program, arguments);
        while (!QDBusConnection::sessionBus().interface()->isServiceRegistered(busName)) {
            if (waitForFinished(1) || state() == NotRunning)
                qFatal("%s does not start", qPrintable(program));
        }
    }
    ~BusProcess() override
    {
        kill();
        waitForFinished();
    }
};

/// kinlet-runner with a BenchmarkProvider of that name.
class BenchmarkRunner : public BusProcess {
public:
    explicit BenchmarkRunner(const QString &name)
        : BusProcess(BusNames::service(name), QStringLiteral(KINLET_RUNNER), {plugin(name)})
    {
    }

private:
    // The process inherits the name.
    static QString plugin(const QString &name)
    {
        qputenv("KINLET_BENCHMARK_PROVIDER", name.toLatin1());
        return QStringLiteral(KINLET_BENCHMARK_PLUGIN);
    }
};

/// The manager, once it knows the accounts of all who are on the bus.
inline KinletManager *readyManager()
{
    KinletManager *manager = KinletManager::instance();
    QEventLoop loop;
    QObject::connect(manager, &KinletManager::initialized, &loop, &QEventLoop::quit);
    if (!manager->isInitialized())
        loop.exec();
    return manager;
}
