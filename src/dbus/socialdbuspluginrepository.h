// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "plugins/socialpluginrepository.h"

#include <memory>

class SocialDBusPluginRepositoryPrivate;

/**
 * Finds runners on the session bus and follows those that the bus can start.
 *
 * The bus is asked in the constructor, which blocks until it answers. A runner that is running then
 * is held from the start; one that the bus can start is also noticed when it comes and goes; one
 * that comes later and cannot be started by the bus is not found. Without a bus there are no
 * runners, and Qt's message handler is told so.
 */
class KINLET_AUTOTEST_EXPORT SocialDBusPluginRepository : public SocialPluginRepository {
    Q_OBJECT

public:
    explicit SocialDBusPluginRepository(QObject *parent);
    /// The proxies stay: whoever was handed one owns it.
    ~SocialDBusPluginRepository() override;

    QStringList validPlugins() const override;
    void removePlugin(const QString &id) override;
    /// Always null: runners are reached as providers only.
    PersonCollectorInterface *plugin(const QString &id) override;
    KinletInterface *kinletPlugin(const QString &id) override;

public Q_SLOTS:
    /// Makes a proxy, which takes the place of one for the same name, and emits pluginLoaded().
    /// Other names than those of runners are ignored, here and below.
    void addServiceIfProvider(const QString &serviceName);
    /// Forgets the proxy, if there is one, and emits pluginRemoved() in any case.
    void onServiceUnregistered(const QString &serviceName);
    /// Watches the runners that the bus can start now. Makes no proxies.
    void updateInstalledPlugins();

private:
    void collectPlugins();

    const std::unique_ptr<SocialDBusPluginRepositoryPrivate> d;
};
