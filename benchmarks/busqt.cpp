// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "benchmarkpersons.h"
#include "busexchange.h"
#include "busprocess.h"
#include "bussdbus.h"

#include <QCoreApplication>
#include <QDBusContext>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDataStream>
#include <QSet>

namespace {

const QString path = QStringLiteral(EXCHANGE_PATH);
const QString interfaceName = QStringLiteral(EXCHANGE_INTERFACE);

QString serviceName(const char *kind, int records)
{
    return QStringLiteral(EXCHANGE_SERVICE ".%1%2").arg(QLatin1String(kind)).arg(records);
}

QByteArray writtenByQt(const QList<QVariantMap> &maps)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << maps;
    return bytes;
}

}

/// Answers requests, with given bytes or with records that it writes for each.
class QtServer : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", EXCHANGE_INTERFACE)

public:
    QtServer(const QByteArray &answer, const QList<QVariantMap> &records)
        : m_answer(answer), m_records(records)
    {
    }

public Q_SLOTS:
    void performRequest(int type, const QString &id, const QByteArray &)
    {
        // The reply first, like the others: the other way round it costs a wake-up less.
        setDelayedReply(true);
        connection().send(message().createReply());
        QDBusMessage signal = QDBusMessage::createTargetedSignal(
            message().service(), path, interfaceName, QStringLiteral("requestFinished"));
        signal << type << id << (m_records.isEmpty() ? m_answer : writtenByQt(m_records))
               << QByteArray(4, '\0');
        connection().send(signal);
    }

private:
    const QByteArray m_answer;
    const QList<QVariantMap> m_records;
};

/// Asks, and reads the records of each answer if they are wanted.
class QtExchange : public QObject, public Exchange {
    Q_OBJECT

public:
    QtExchange(const char *kind, int records, bool readsRecords)
        : m_server(serviceName(kind, records), QCoreApplication::applicationFilePath(),
                   {QStringLiteral("--serve"), QLatin1String(kind), QString::number(records)})
        , m_remote(serviceName(kind, records), path, interfaceName)
        , m_request(ExchangedBytes(records).request)
        , m_records(readsRecords ? records : 0)
    {
        QDBusConnection::sessionBus().connect(
            m_remote.service(), path, interfaceName, QStringLiteral("requestFinished"), this,
            SLOT(requestFinished(int, QString, QByteArray, QByteArray)));
    }

    void perform(int requests) override
    {
        for (int i = 0; i < requests; ++i) {
            const QString id = QStringLiteral("%1").arg(++m_number, 38);
            m_waiting.insert(id);
            m_remote.asyncCall(QStringLiteral("performRequest"), 5, id, m_request);
        }
        m_loop.exec();
        m_answers.clear();
    }

private Q_SLOTS:
    void requestFinished(int type, const QString &id, const QByteArray &answer, const QByteArray &)
    {
        Q_UNUSED(type)
        if (!m_waiting.remove(id))
            qFatal("Nobody has asked");
        if (m_records > 0) {
            QList<QVariantMap> maps;
            QDataStream in(answer);
            in >> maps;
            if (maps.size() != m_records)
                qFatal("An answer is incomplete");
            m_answers.append(maps);
        }
        if (m_waiting.isEmpty())
            m_loop.quit();
    }

private:
    const BusProcess m_server;
    QDBusInterface m_remote;
    const QByteArray m_request;
    const int m_records;
    int m_number = 0;
    QSet<QString> m_waiting;
    QList<QList<QVariantMap>> m_answers;
    QEventLoop m_loop;
};

namespace {

int serve(const char *kind, int records, const QByteArray &answer, const QList<QVariantMap> &maps)
{
    QtServer server(answer, maps);
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(path, &server, QDBusConnection::ExportAllSlots);
    bus.registerService(serviceName(kind, records));
    return QCoreApplication::exec();
}

}

std::unique_ptr<Exchange> makeQtExchange(int records)
{
    return std::make_unique<QtExchange>("qt", records, false);
}

std::unique_ptr<Exchange> makeQtRecordsExchange(int records)
{
    return std::make_unique<QtExchange>("records", records, true);
}

int serveQt(int records)
{
    return serve("qt", records, ExchangedBytes(records).answer, {});
}

int serveQtRecords(int records)
{
    return serve("records", records, {}, personMaps(records));
}

#include "busqt.moc"
