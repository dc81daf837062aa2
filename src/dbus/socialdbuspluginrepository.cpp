// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/socialdbuspluginrepository.h"

#include "dbus/busnames.h"
#include "dbus/kinletinterfaceproxy.h"
#include "dbus/kinletrunnerinterface.h"
#include "dbus/receivelimit.h"
#include "logging.h"

#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDebug>
#include <QMap>
#include <QPointer>

#include <algorithm>

class SocialDBusPluginRepositoryPrivate {
public:
    // Guarded: whoever was handed one may have deleted it.
    QMap<QString, QPointer<KinletInterfaceProxy>> plugins;
    QDBusServiceWatcher *watcher;
};

namespace {

// The names of runners among those that the bus lists by that method; none if it refuses.
QStringList runnerNames(const QString &method)
{
    QDBusInterface daemon(BusNames::daemon(), QStringLiteral("/"), BusNames::daemon(),
                          QDBusConnection::sessionBus());
    const QDBusMessage reply = daemon.call(method);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        qCWarning(Log::dbus) << "The bus refuses" << method << "with" << reply.errorName();
        return {};
    }
    QStringList names = reply.arguments().value(0).toStringList();
    names.erase(
        std::remove_if(names.begin(), names.end(),
                       [](const QString &name) { return !name.startsWith(BusNames::prefix()); }),
        names.end());
    return names;
}

}

SocialDBusPluginRepository::SocialDBusPluginRepository(QObject *parent)
    : SocialPluginRepository(parent)
    , d(new SocialDBusPluginRepositoryPrivate{{}, new QDBusServiceWatcher(this)})
{
    collectPlugins();
}

SocialDBusPluginRepository::~SocialDBusPluginRepository() = default;

void SocialDBusPluginRepository::collectPlugins()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qCritical() << "void SocialDBusPluginRepository::collectPlugins()"
                    << "D-Bus not running? Not able to connect to social networks.\n";
        return;
    }
    raiseReceiveLimit(bus);
    // Before the lists are asked for: nobody who comes or goes meanwhile is missed.
    d->watcher->setConnection(bus);
    connect(d->watcher, SIGNAL(serviceRegistered(QString)), this,
            SLOT(addServiceIfProvider(QString)));
    connect(d->watcher, SIGNAL(serviceUnregistered(QString)), this,
            SLOT(onServiceUnregistered(QString)));
    updateInstalledPlugins();
    const QStringList running = runnerNames(QStringLiteral("ListNames"));
    for (const QString &name : running)
        addServiceIfProvider(name);
}

void SocialDBusPluginRepository::updateInstalledPlugins()
{
    const QStringList installed = runnerNames(QStringLiteral("ListActivatableNames"));
    for (const QString &name : installed) {
        if (d->watcher->watchedServices().contains(name))
            continue;
        qCDebug(Log::dbus) << name << "is watched: the bus can start it";
        d->watcher->addWatchedService(name);
    }
}

void SocialDBusPluginRepository::addServiceIfProvider(const QString &serviceName)
{
    const QString id = BusNames::id(serviceName);
    if (id.isEmpty())
        return;
    auto *runner = new KinletRunnerInterface(serviceName, BusNames::path(id),
                                             QDBusConnection::sessionBus(), nullptr);
    qCInfo(Log::dbus) << "The runner" << id << "has appeared";
    // Takes the place of an earlier one, which is left to whoever was handed it.
    d->plugins.insert(id, new KinletInterfaceProxy(runner, id));
    Q_EMIT pluginLoaded(id);
}

void SocialDBusPluginRepository::onServiceUnregistered(const QString &serviceName)
{
    const QString id = BusNames::id(serviceName);
    if (id.isEmpty())
        return;
    qCInfo(Log::dbus) << "The runner" << id << "has vanished";
    removePlugin(id);
    // Deliberately also if it never was a plug-in.
    Q_EMIT pluginRemoved(id);
}

QStringList SocialDBusPluginRepository::validPlugins() const
{
    return d->plugins.keys();
}

void SocialDBusPluginRepository::removePlugin(const QString &id)
{
    d->plugins.remove(id);
}

PersonCollectorInterface *SocialDBusPluginRepository::plugin(const QString &id)
{
    Q_UNUSED(id)
    return nullptr;
}

KinletInterface *SocialDBusPluginRepository::kinletPlugin(const QString &id)
{
    return d->plugins.value(id);
}
