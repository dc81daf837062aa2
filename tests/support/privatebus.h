// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/**
 * A session bus for one test, which starts what was added to it and nothing else.
 *
 * To be started before anything in the process asks for the session bus: Qt connects to it once.
 */
class PrivateBus {
public:
    PrivateBus();
    /// Ends the bus, and with it the processes that it started.
    ~PrivateBus();

    /// Lets the bus start that command for that name. Before start().
    bool addService(const QString &name, const QStringList &command);
    /// True once the bus takes connections. Its address is then in the environment of this process
    /// and of its children.
    bool start();
    /// Ends the bus as a crash would; everybody on it loses the connection.
    void kill();

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
};
