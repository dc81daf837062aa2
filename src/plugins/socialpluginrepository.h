// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "kinletexport.h"

#include <QObject>
#include <QStringList>

class KinletInterface;
class PersonCollectorInterface;

/// A source of plug-ins, each known by its id. It owns what it hands out.
class KINLET_AUTOTEST_EXPORT SocialPluginRepository : public QObject {
    Q_OBJECT

public:
    explicit SocialPluginRepository(QObject *parent = nullptr);
    ~SocialPluginRepository() override;

    /// Ids of the plug-ins held. An id may stand for none: both look-ups then give null.
    virtual QStringList validPlugins() const = 0;
    /// Forgets one plug-in, if it is held. Emits nothing.
    virtual void removePlugin(const QString &id) = 0;
    /// The plug-in, or null.
    virtual PersonCollectorInterface *plugin(const QString &id) = 0;
    /// The plug-in as a provider, or null.
    virtual KinletInterface *kinletPlugin(const QString &id) = 0;

Q_SIGNALS:
    /// The plug-in is held and can be looked up.
    void pluginLoaded(const QString &pluginId);
    /// The plug-in has gone by itself and is not held any more.
    void pluginRemoved(const QString &pluginId);
};
