// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QJsonObject>
#include <QList>
#include <QProcess>
#include <QStringList>

/// A call that a runner has got, as it stood on the bus.
struct ReceivedCall {
    QString member;
    QString path;
    QString signature;
    /// Byte arrays are in hexadecimal digits.
    QVariantList arguments;

    QString requestId() const { return arguments.value(1).toString(); }
};

/// A runner in another process that does what it is told (fakerunner.py). It ends with this object.
class FakeRunner {
public:
    /// Owns these bus names from the start.
    explicit FakeRunner(const QStringList &busNames = {});
    ~FakeRunner();

    /// Owns "com.orvane.kinlet." + id.
    static QString busName(const QString &id);

    void own(const QString &busName);
    void release(const QString &busName);
    /// Sends requestFinished for the object of that id.
    void finish(const QString &id, const QString &requestId, const QByteArray &request,
                const QByteArray &error = {}, int times = 1);
    /// Sends dataUpdate or personsUpdate, the data repeated that many times. Elements that are no
    /// byte arrays are sent as they are.
    void push(const QString &id, const QString &member, const QVariantList &data,
              const QStringList &properties, int times = 1);
    /// Waits for the next call to come; an empty one if none does.
    ReceivedCall nextCall();
    void kill();
    /// Stops the process, or lets it go on.
    void setStopped(bool stopped);

private:
    QJsonObject nextEvent(const QString &kind);
    void order(const QJsonObject &order);

    QProcess m_process;
    QList<QJsonObject> m_events;
};
