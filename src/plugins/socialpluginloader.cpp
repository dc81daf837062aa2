// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/socialpluginloader.h"

#include "logging.h"
#include "provider/kinletinterface.h"

#include <QDebug>
#include <QDir>
#include <QMap>
#include <QMetaMethod>
#include <QPluginLoader>
#include <QPointer>

#include <utility>

class SocialPluginLoaderPrivate {
public:
    QMap<QString, PersonCollectorInterface *> plugins;
    QStringList excludedPlugins;
    QList<QPluginLoader *> loaders;
    QString pluginPath;
    // Names that onError() is initialising again just now.
    QStringList recovering;
};

namespace {

const QString defaultPluginPath = QStringLiteral("/usr/lib/kinlet-1.0/plugins");

}

SocialPluginLoader::SocialPluginLoader(const QStringList &initList, const QStringList &excludeList,
                                       QObject *parent)
    : SocialPluginRepository(parent), d(new SocialPluginLoaderPrivate)
{
    // One directory, not a list: a colon is part of its name.
    d->pluginPath = QString::fromLocal8Bit(qgetenv("KINLET_PLUGIN_PATH"));
    if (d->pluginPath.isEmpty())
        d->pluginPath = defaultPluginPath;
    d->excludedPlugins = excludeList;
    loadPlugins(QString());
    if (initList.isEmpty())
        initPlugins();
    for (const QString &id : initList)
        initPlugin(id);
    loaded = true;
}

SocialPluginLoader::~SocialPluginLoader()
{
    unloadAllPlugins();
}

SocialPluginLoader *SocialPluginLoader::createClassLoader()
{
    // The one empty entry is deliberate: it keeps the constructor from initialising anything, so
    // that only full providers are initialised below.
    auto *loader = new SocialPluginLoader(QStringList(QString()), QStringList(), nullptr);
    const QStringList ids = loader->validPlugins();
    for (const QString &id : ids) {
        if (loader->kinletPlugin(id))
            loader->initPlugin(id);
    }
    return loader;
}

void SocialPluginLoader::loadPlugins(const QString &dir)
{
    const QDir directory(dir.isEmpty() ? d->pluginPath : dir, QStringLiteral("*.so"),
                         QDir::Name | QDir::IgnoreCase, QDir::Files | QDir::NoDotAndDotDot);
    const QFileInfoList entries = directory.entryInfoList();
    qCDebug(Log::plugins) << "The folder" << directory.path() << "has" << entries.size()
                          << "plug-in files";
    for (const QFileInfo &entry : entries)
        loadPluginImpl(directory.absoluteFilePath(entry.fileName()));
    Q_EMIT pluginsLoaded();
}

bool SocialPluginLoader::loadPlugin(const QString &path)
{
    const QString id = loadPluginImpl(path);
    if (id.isEmpty())
        return false;
    initPlugin(id);
    Q_EMIT pluginsLoaded();
    return true;
}

QString SocialPluginLoader::loadPluginImpl(const QString &path)
{
    auto loader = std::make_unique<QPluginLoader>(path);
    QObject *instance = loader->instance();
    if (!instance) {
        qCritical() << "Problem loading plugin: " << path << ": " << loader->errorString();
        qCWarning(Log::plugins) << path << "is refused: it does not load";
        loader->unload();
        return QString();
    }
    auto *plugin = dynamic_cast<PersonCollectorInterface *>(instance);
    if (!plugin) {
        qCritical() << "Unexpected class type from plugin: "
                    << "type=" << instance->metaObject()->className()
                    << ": Error=" << loader->errorString();
        qCWarning(Log::plugins) << path << "is refused: it holds a"
                                << instance->metaObject()->className();
        loader->unload();
        return QString();
    }
    const QString id = plugin->metaData().value(QStringLiteral("name")).toString();
    // Deliberately without unload(): an excluded plug-in stays in memory.
    if (d->excludedPlugins.contains(id)) {
        qCInfo(Log::plugins) << path << "is refused: the plug-in" << id << "is excluded";
        return QString();
    }
    qCInfo(Log::plugins) << path << "is loaded: the plug-in" << id;
    d->loaders.append(loader.release());
    // A later plug-in of the same id takes the place of an earlier one.
    if (d->plugins.contains(id))
        qCWarning(Log::plugins) << "There was another plug-in" << id << "before";
    d->plugins.insert(id, plugin);
    connect(plugin, SIGNAL(error(QString, QString, QString)), this,
            SLOT(onError(QString, QString, QString)));
    Q_EMIT pluginLoaded(id);
    return id;
}

void SocialPluginLoader::initPlugins()
{
    const QStringList ids = validPlugins();
    for (const QString &id : ids)
        initPlugin(id);
}

bool SocialPluginLoader::initPlugin(const QString &id)
{
    PersonCollectorInterface *const found = id.isEmpty() ? nullptr : plugin(id);
    if (!found || d->excludedPlugins.contains(id))
        return false;
    qCDebug(Log::plugins) << "The plug-in" << id << "is initialised";
    found->init();
    return true;
}

void SocialPluginLoader::unloadAllPlugins()
{
    const QList<QPluginLoader *> loaders = std::exchange(d->loaders, {});
    d->plugins.clear();
    qCDebug(Log::plugins) << loaders.size() << "plug-ins are unloaded";
    for (QPluginLoader *loader : loaders) {
        loader->unload();
        delete loader;
    }
}

QStringList SocialPluginLoader::validPlugins() const
{
    return d->plugins.keys();
}

void SocialPluginLoader::removePlugin(const QString &id)
{
    d->plugins.remove(id);
}

PersonCollectorInterface *SocialPluginLoader::plugin(const QString &id)
{
    return d->plugins.value(id);
}

KinletInterface *SocialPluginLoader::kinletPlugin(const QString &id)
{
    PersonCollectorInterface *const found = plugin(id);
    // By identifier, not by dynamic type: the plug-in has to declare the interface.
    return found
        ? static_cast<KinletInterface *>(found->qt_metacast("com.orvane.lumend.Kinlet/1.0"))
        : nullptr;
}

void SocialPluginLoader::onError(const QString &name, const QString &error, const QString &message)
{
    Q_UNUSED(error)
    Q_UNUSED(message)
    // A plug-in that fails inside init() must not be initialised from inside it without end.
    if (d->recovering.contains(name))
        return;
    // A copy: the name may die with the plug-in that sent it.
    const QString failed = name;
    const QPointer<SocialPluginLoader> self(this);
    d->recovering.append(failed);
    qCWarning(Log::plugins) << "The plug-in" << failed
                            << "reports an error and is initialised again";
    // Deliberately once for every plug-in held, and with an entry for a name that is not known.
    const QStringList held = validPlugins();
    for (int i = 0; i < held.size() && self; ++i) {
        if (PersonCollectorInterface *found = d->plugins[failed])
            found->init();
    }
    if (self)
        d->recovering.removeAll(failed);
}

void SocialPluginLoader::connectNotify(const QMetaMethod &signal)
{
    if (loaded && signal == QMetaMethod::fromSignal(&SocialPluginLoader::pluginsLoaded))
        Q_EMIT pluginsLoaded();
}
