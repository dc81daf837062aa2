// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/KinletInterface>

#include <QString>
#include <QStringList>

#include <memory>

/// The folder that plug-ins are looked for in: KINLET_PLUGIN_PATH or the installed one.
QString pluginFolder();

/// Paths of the plug-in files of that folder, by name.
QStringList pluginFiles();

/// A provider that has been loaded, or the reason why not. It goes with this, before the
/// application: left to Qt it would be deleted after that.
struct LoadedProvider {
    std::unique_ptr<KinletInterface> provider;
    /// The "name" of its meta-data.
    QString name;
    /// One line for people; empty when there is a provider.
    QString problem;
};

/// Loads one file.
LoadedProvider loadFile(const QString &path);

/// Loads the provider of that name from the plug-in folder, NAME.so before other files.
LoadedProvider loadByName(const QString &name);
