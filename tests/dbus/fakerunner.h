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
/// Its clock is the real one, however fast that of the test is.
class FakeRunner {
public:
    /// Owns these bus names from the start.
    explicit FakeRunner(const QStringList &busNames = {});
    ~FakeRunner();

    /// Owns "com.orvane.kinlet." + id.
    static QString busName(const QString &id);

    void own(const QString &busName);
    /// Owns that name once those that own it now let it go.
    void queueFor(const QString &busName);
    void release(const QString &busName);
    /// Sends requestFinished for the object of that id.
    void finish(const QString &id, const QString &requestId, const QByteArray &request,
                const QByteArray &error = {}, int times = 1);
    /// Sends requestFinished in part: the process is killed while the message leaves, which
    /// therefore must be a large one.
    void dieAnswering(const QString &id, const QString &requestId, const QByteArray &request);
    /// Sends dataUpdate or personsUpdate that many times, the data repeated in each. Elements that
    /// are no byte arrays are sent as they are.
    void push(const QString &id, const QString &member, const QVariantList &data,
              const QStringList &properties, int times = 1, int messages = 1);
    /// Sends a signal of any form.
    void send(const QString &id, const QString &member, const QString &signature,
              const QVariantList &arguments);
    /// Calls get error replies from now on.
    void refuse();
    /// Waits for the next call to come; an empty one if none does.
    ReceivedCall nextCall();
    void kill();
    /// Stops the process, or lets it go on.
    void setStopped(bool stopped);

private:
    QJsonObject nextEvent(const QString &kind);
    void write(const QJsonObject &order);
    void order(const QJsonObject &order);

    QProcess m_process;
    QList<QJsonObject> m_events;
};
