// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "kinletexport.h"

#include <QObject>
#include <QVariantMap>

/**
 * Root class of every plug-in. A plug-in that answers requests derives from KinletInterface
 * instead.
 *
 * All calls come on the thread that owns the manager, the application's main thread, and all
 * signals are to be emitted there.
 */
class KINLET_EXPORT PersonCollectorInterface : public QObject {
    Q_OBJECT

public:
    /// Plug-ins are made without a parent: who loads them deletes them.
    explicit PersonCollectorInterface(QObject *parent = nullptr);
    ~PersonCollectorInterface() override;

    /// Prepares the plug-in. The loader calls it once after loading, and again when the plug-in has
    /// emitted error(); so does kinlet-runner. Nobody calls it for a provider that is given to
    /// KinletManager::addProvider(). A failure is reported through error().
    virtual void init() = 0;

    /// Describes the plug-in. "name" is its identifier: a text that no other plug-in uses, and not
    /// empty, or else the manager drops its data updates. Other entries are the plug-in's own.
    /// Called before init(), and often.
    virtual QVariantMap metaData() = 0;

Q_SIGNALS:
    /// A failure outside any request. \a name is the plug-in's own "name"; the loader then calls
    /// init() again, once for every plug-in that it holds.
    void error(const QString &name, const QString &error, const QString &message);
};
