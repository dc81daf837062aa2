// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/fakerunner.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtDebug>

#include <csignal>

namespace {

// Enough even where the clock of the test runs fast.
constexpr int Patience = 600000;

}

FakeRunner::FakeRunner(const QStringList &busNames)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("LD_PRELOAD"));
    m_process.setProcessEnvironment(environment);
    m_process.start(QStringLiteral(KINLET_FAKE_RUNNER), busNames);
    if (nextEvent(QStringLiteral("ready")).isEmpty())
        qFatal("The fake runner does not start");
}

FakeRunner::~FakeRunner()
{
    m_process.closeWriteChannel();
    setStopped(false);
    if (!m_process.waitForFinished(Patience))
        kill();
}

QString FakeRunner::busName(const QString &id)
{
    return QStringLiteral("com.orvane.kinlet.") + id;
}

void FakeRunner::own(const QString &busName)
{
    order({{QStringLiteral("do"), QStringLiteral("own")}, {QStringLiteral("name"), busName}});
}

void FakeRunner::queueFor(const QString &busName)
{
    order({{QStringLiteral("do"), QStringLiteral("own")},
           {QStringLiteral("name"), busName},
           {QStringLiteral("queue"), true}});
}

void FakeRunner::release(const QString &busName)
{
    order({{QStringLiteral("do"), QStringLiteral("release")}, {QStringLiteral("name"), busName}});
}

void FakeRunner::finish(const QString &id, const QString &requestId, const QByteArray &request,
                        const QByteArray &error, int times)
{
    order({{QStringLiteral("do"), QStringLiteral("finish")},
           {QStringLiteral("path"), QLatin1Char('/') + id},
           {QStringLiteral("id"), requestId},
           {QStringLiteral("request"), QString::fromLatin1(request.toHex())},
           {QStringLiteral("error"), QString::fromLatin1(error.toHex())},
           {QStringLiteral("times"), times}});
}

void FakeRunner::dieAnswering(const QString &id, const QString &requestId,
                              const QByteArray &request)
{
    write({{QStringLiteral("do"), QStringLiteral("finish")},
           {QStringLiteral("path"), QLatin1Char('/') + id},
           {QStringLiteral("id"), requestId},
           {QStringLiteral("request"), QString::fromLatin1(request.toHex())},
           {QStringLiteral("die"), true}});
    if (!m_process.waitForFinished(Patience))
        qFatal("The fake runner does not die");
}

void FakeRunner::push(const QString &id, const QString &member, const QVariantList &data,
                      const QStringList &properties, int times, int messages)
{
    QJsonArray elements;
    for (const QVariant &element : data) {
        if (element.userType() == QMetaType::QByteArray)
            elements.append(QString::fromLatin1(element.toByteArray().toHex()));
        else
            elements.append(QJsonValue::fromVariant(element));
    }
    order({{QStringLiteral("do"), QStringLiteral("push")},
           {QStringLiteral("path"), QLatin1Char('/') + id},
           {QStringLiteral("member"), member},
           {QStringLiteral("data"), elements},
           {QStringLiteral("properties"), QJsonArray::fromStringList(properties)},
           {QStringLiteral("times"), times},
           {QStringLiteral("messages"), messages}});
}

void FakeRunner::send(const QString &id, const QString &member, const QString &signature,
                      const QVariantList &arguments)
{
    order({{QStringLiteral("do"), QStringLiteral("send")},
           {QStringLiteral("path"), QLatin1Char('/') + id},
           {QStringLiteral("member"), member},
           {QStringLiteral("signature"), signature},
           {QStringLiteral("arguments"), QJsonArray::fromVariantList(arguments)}});
}

void FakeRunner::refuse()
{
    order({{QStringLiteral("do"), QStringLiteral("refuse")}});
}

ReceivedCall FakeRunner::nextCall()
{
    const QJsonObject event = nextEvent(QStringLiteral("call"));
    return {event.value(QStringLiteral("call")).toString(),
            event.value(QStringLiteral("path")).toString(),
            event.value(QStringLiteral("signature")).toString(),
            event.value(QStringLiteral("arguments")).toArray().toVariantList()};
}

void FakeRunner::kill()
{
    m_process.kill();
    m_process.waitForFinished(Patience);
}

void FakeRunner::setStopped(bool stopped)
{
    if (m_process.state() == QProcess::Running)
        ::kill(pid_t(m_process.processId()), stopped ? SIGSTOP : SIGCONT);
}

// The oldest event of that kind that has not been taken yet.
QJsonObject FakeRunner::nextEvent(const QString &kind)
{
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < Patience) {
        for (int i = 0; i < m_events.size(); ++i) {
            if (m_events.at(i).contains(kind))
                return m_events.takeAt(i);
        }
        if (!m_process.canReadLine() && !m_process.waitForReadyRead(Patience))
            break;
        while (m_process.canReadLine())
            m_events.append(QJsonDocument::fromJson(m_process.readLine()).object());
    }
    return {};
}

void FakeRunner::write(const QJsonObject &order)
{
    m_process.write(QJsonDocument(order).toJson(QJsonDocument::Compact) + '\n');
}

void FakeRunner::order(const QJsonObject &order)
{
    write(order);
    if (nextEvent(QStringLiteral("done")).isEmpty())
        qFatal("The fake runner does not obey");
}
