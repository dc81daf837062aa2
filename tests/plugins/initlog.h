// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QCoreApplication>
#include <QStringList>
#include <QVariant>

const QStringList initNothing{QString()};
const QString alpha = QStringLiteral("alpha");
const QString beta = QStringLiteral("beta");
const QString omega = QStringLiteral("omega");

/// The plug-ins that were initialised since the last call, in order.
inline QStringList takeInitLog()
{
    const QStringList log = qApp->property("initLog").toStringList();
    qApp->setProperty("initLog", {});
    return log;
}
