// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QtDebug>

/// The bus that a test has to itself.
namespace TestBus {

/// What the bus itself answers.
inline QVariant ask(const char *method, const QVariantList &arguments = {})
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
        QStringLiteral("org.freedesktop.DBus"), QString::fromLatin1(method));
    call.setArguments(arguments);
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
    if (reply.type() != QDBusMessage::ReplyMessage)
        qFatal("The bus refuses %s: %s", method, qPrintable(reply.errorMessage()));
    return reply.arguments().value(0);
}

/// Signals that the bus has sent before this returns have been delivered.
inline void deliverAll()
{
    ask("GetId");
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

/// Lets the bus start that service.
inline void makeActivatable(const QString &busName, const QByteArray &command)
{
    QFile file(qEnvironmentVariable("KINLET_TEST_SERVICES") + QLatin1Char('/') + busName
               + QStringLiteral(".service"));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("Cannot write %s", qPrintable(file.fileName()));
    file.write("[D-BUS Service]\nName=" + busName.toUtf8() + "\nExec=" + command + '\n');
    file.close();
    ask("ReloadConfig");
}

/// The bus can start nothing any more.
inline void removeActivatable()
{
    QDir services(qEnvironmentVariable("KINLET_TEST_SERVICES"));
    const QStringList files = services.entryList(QDir::Files);
    for (const QString &file : files)
        services.remove(file);
    ask("ReloadConfig");
}

}
