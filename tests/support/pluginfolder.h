// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/**
 * A folder for copies of the test plug-ins, which KINLET_PLUGIN_PATH names while it lives.
 *
 * A copy is called as its file is: see tests/plugins/files.
 */
class PluginFolder {
public:
    PluginFolder() { qputenv("KINLET_PLUGIN_PATH", QFile::encodeName(path())); }
    ~PluginFolder() { qputenv("KINLET_PLUGIN_PATH", before); }
    PluginFolder(const PluginFolder &) = delete;
    PluginFolder &operator=(const PluginFolder &) = delete;

    QString path() const { return dir.path(); }
    QString filePath(const QString &name) const { return dir.filePath(name); }

    /// A copy of the test plug-in \a plugin, for example "testprovider", as the file \a name; its
    /// path.
    QString copy(const char *plugin, const QString &name) const
    {
        const QString source =
            QStringLiteral(KINLET_TEST_PLUGINS "/%1.so").arg(QLatin1String(plugin));
        const QFileInfo target(filePath(name));
        QDir().mkpath(target.path());
        if (!QFile::copy(source, target.filePath()))
            qFatal("Cannot copy %s", qPrintable(source));
        return target.filePath();
    }
    QString provider(const QString &name) const { return copy("testprovider", name); }
    void providers(const QStringList &names) const
    {
        for (const QString &name : names)
            provider(name + QLatin1String(".so"));
    }
    /// A file that is no library.
    QString text(const QString &name) const
    {
        QFile file(filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write("Not a library.\n") < 0)
            qFatal("Cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }

private:
    const QTemporaryDir dir;
    const QByteArray before = qgetenv("KINLET_PLUGIN_PATH");
};
