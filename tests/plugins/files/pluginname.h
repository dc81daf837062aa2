// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QVariantMap>

#include <dlfcn.h>

// A copy of a plug-in file is called as the copy is: alpha.so and 2=alpha.so are "alpha", none=.so
// has no name.

static const char pluginAnchor = 0;

inline QString pluginName()
{
    Dl_info info;
    dladdr(&pluginAnchor, &info);
    const QString file = QFileInfo(QFile::decodeName(info.dli_fname)).completeBaseName();
    return file.section(u'=', -1);
}

inline QVariantMap pluginMetaData(const QString &name)
{
    QVariantMap data{{QStringLiteral("colour"), QStringLiteral("blue")}};
    if (!name.isEmpty())
        data.insert(QStringLiteral("name"), name);
    return data;
}

/// The application's property "initLog" names the plug-ins in the order of their init() calls.
inline void logInit(const QString &name)
{
    const QStringList log = qApp->property("initLog").toStringList();
    qApp->setProperty("initLog", log + QStringList(name));
}
