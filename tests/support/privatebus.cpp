// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/privatebus.h"

#include <QDir>
#include <QFile>

namespace {

const char configuration[] = R"(<!DOCTYPE busconfig PUBLIC
    "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
    "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%1/services</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
  <limit name="max_incoming_bytes">1000000000</limit>
  <limit name="max_outgoing_bytes">1000000000</limit>
  <limit name="max_message_size">1000000000</limit>
</busconfig>
)";

constexpr int StartMilliseconds = 20000;

bool writeFile(const QString &path, const QString &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0;
}

}

PrivateBus::PrivateBus()
{
    QDir(m_folder.path()).mkdir(QStringLiteral("services"));
    m_daemon.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

PrivateBus::~PrivateBus()
{
    if (m_daemon.state() == QProcess::NotRunning)
        return;
    m_daemon.terminate();
    m_daemon.waitForFinished();
}

bool PrivateBus::addService(const QString &name, const QStringList &command)
{
    return writeFile(m_folder.filePath(QStringLiteral("services/%1.service").arg(name)),
                     QStringLiteral("[D-BUS Service]\nName=%1\nExec=%2\n")
                         .arg(name, command.join(QLatin1Char(' '))));
}

bool PrivateBus::start()
{
    const QString file = m_folder.filePath(QStringLiteral("session.conf"));
    if (!writeFile(file, QString::fromUtf8(configuration).arg(m_folder.path())))
        return false;
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                    QStringLiteral("--config-file=") + file});
    if (!m_daemon.waitForReadyRead(StartMilliseconds))
        return false;
    return qputenv("DBUS_SESSION_BUS_ADDRESS", m_daemon.readLine().trimmed());
}

void PrivateBus::kill()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
}
