// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "plugins/socialpluginrepository.h"

#include <memory>

class SocialPluginLoaderPrivate;

/**
 * Loads plug-ins into this process: the files *.so of one directory, KINLET_PLUGIN_PATH or the
 * default.
 *
 * All loading happens in the constructor, on the calling thread. A file that cannot be used is
 * reported to Qt's message handler and skipped.
 */
class KINLET_AUTOTEST_EXPORT SocialPluginLoader : public SocialPluginRepository {
    Q_OBJECT

public:
    /// Initialises the plug-ins of \a initList, or all if that is empty; those of \a excludeList
    /// are never kept.
    SocialPluginLoader(const QStringList &initList, const QStringList &excludeList,
                       QObject *parent);
    /// Unloads every plug-in.
    ~SocialPluginLoader() override;

    /// The loader that the manager uses: everything is loaded, only providers are initialised. The
    /// caller owns it.
    static SocialPluginLoader *createClassLoader();

    /// Loads every plug-in of \a dir (empty: the plug-in directory), initialises none, and emits
    /// pluginsLoaded().
    void loadPlugins(const QString &dir);
    /// Loads and initialises one file and emits pluginsLoaded(); false, and no signal, if it gives
    /// no id.
    bool loadPlugin(const QString &path);
    /// Loads one file and emits pluginLoaded(); its plug-in id, which may be empty. A null string,
    /// and no signal, if the file is not taken. A plug-in held under that id before is replaced,
    /// but stays in memory.
    QString loadPluginImpl(const QString &path);
    /// Initialises every plug-in.
    void initPlugins();
    /// Initialises one plug-in, each time it is called; false if there is none of that id.
    bool initPlugin(const QString &id);
    /// Forgets every plug-in, also those removed or replaced, and deletes their objects. Emits
    /// nothing.
    void unloadAllPlugins();

    /// Sorted by QString's order.
    QStringList validPlugins() const override;
    /// The object stays, and its errors are still heard, until all are unloaded. Emits nothing.
    void removePlugin(const QString &id) override;
    PersonCollectorInterface *plugin(const QString &id) override;
    KinletInterface *kinletPlugin(const QString &id) override;

Q_SIGNALS:
    /// A scan has ended. Who connects later than the constructor gets it at once, and so does
    /// everybody who is connected already.
    void pluginsLoaded();

public Q_SLOTS:
    /// Initialises the plug-in \a name again, once for every plug-in held. A name that is not held
    /// is held from then on, without a plug-in.
    void onError(const QString &name, const QString &error, const QString &message);

protected:
    void connectNotify(const QMetaMethod &signal) override;

private:
    const std::unique_ptr<SocialPluginLoaderPrivate> d;
    bool loaded = false;
};
