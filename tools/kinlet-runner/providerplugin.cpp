// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "providerplugin.h"

#include "language.h"

#include <QDir>
#include <QFileInfo>
#include <QPluginLoader>

QString pluginFolder()
{
    const QString folder = QString::fromLocal8Bit(qgetenv("KINLET_PLUGIN_PATH"));
    return folder.isEmpty() ? QStringLiteral("/usr/lib/kinlet-1.0/plugins") : folder;
}

QStringList pluginFiles()
{
    const QDir folder(pluginFolder(), QStringLiteral("*.so"), QDir::Name | QDir::IgnoreCase,
                      QDir::Files);
    QStringList paths;
    const QStringList names = folder.entryList();
    for (const QString &name : names)
        paths.append(folder.absoluteFilePath(name));
    return paths;
}

LoadedProvider loadFile(const QString &path)
{
    LoadedProvider loaded;
    // Never unloaded: the library stays as long as the process. Qt would look for a relative path
    // in folders of its own, not in the working folder.
    QPluginLoader loader(QFileInfo(path).absoluteFilePath());
    QObject *root = loader.instance();
    if (!root) {
        loaded.problem = Tool::tr("%1 cannot be loaded: %2").arg(path, loader.errorString());
        return loaded;
    }
    auto *provider = qobject_cast<KinletInterface *>(root);
    if (!provider) {
        loaded.problem = Tool::tr("%1 is a plug-in, but no provider").arg(path);
        return loaded;
    }
    loaded.provider.reset(provider);
    loaded.name = provider->metaData().value(QStringLiteral("name")).toString();
    return loaded;
}

LoadedProvider loadByName(const QString &name)
{
    QStringList paths = pluginFiles();
    const QString likely = QDir(pluginFolder()).absoluteFilePath(name + QStringLiteral(".so"));
    if (paths.removeOne(likely))
        paths.prepend(likely);
    for (const QString &path : std::as_const(paths)) {
        LoadedProvider loaded = loadFile(path);
        if (loaded.provider && loaded.name == name)
            return loaded;
    }
    LoadedProvider none;
    none.problem = Tool::tr("there is no provider named '%1' in %2; "
                            "'kinlet-runner --list' shows those that there are")
                       .arg(name, pluginFolder());
    return none;
}
