// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requestfields.h"

#include "dbus/kinletinterfaceproxy.h"
#include "dbus/kinletrunnerinterface.h"
#include "dbus/payload.h"
#include "dbus/payloadguard.h"
#include "requestkinds.h"

#include <QDBusConnection>
#include <QIODevice>
#include <QLoggingCategory>
#include <QRegExp>

/*
 * What a runner sends, as the proxy reads it: one byte for the kind of the request that waits for
 * the answer or for pushed records, then the answer, or a byte array for each record.
 */

namespace {

constexpr int Kinds[] = {
    SocialDataRequest::GenericRequest, SocialDataRequest::GetAggregatedServices,
    SocialDataRequest::GetAccounts,    SocialDataRequest::GetPersons,
    SocialDataRequest::GetActivities,  SocialDataRequest::PostActivities,
    SocialDataRequest::LikeActivity,   SocialDataRequest::GetLikers};
constexpr int KindCount = sizeof(Kinds) / sizeof(Kinds[0]);

// As the two stream versions of the bus have it, of bytes that are safe.
Reading readByQt(const QByteArray &bytes, int kind)
{
    Reading first;
    for (const int choice : {0, 1}) {
        const StreamForm form(static_cast<uint8_t>(choice));
        Allowance allowance;
        const QByteArray safe = bytes.left(safeRequestBytes(bytes, form.version, kind, allowance));
        const Reading reading = readByQt(safe, kind, form);
        if (reading.isClean(bytes))
            return reading;
        if (choice == 0)
            first = reading;
    }
    return first;
}

// Without a bus: what it is to receive is emitted by hand.
KinletRunnerInterface *makeRunner()
{
    return new KinletRunnerInterface(QStringLiteral("com.orvane.kinlet.fuzzed"),
                                     QStringLiteral("/fuzzed"),
                                     QDBusConnection(QStringLiteral("none")), nullptr);
}

// The id that the last request was sent with, which is told to nobody but the runner and the log.
QString sentId;

void keepId(QtMsgType, const QMessageLogContext &, const QString &message)
{
    constexpr int idLength = 38;
    if (message.contains(QLatin1String(" goes to ")))
        sentId = message.mid(message.indexOf(QLatin1Char('{')), idLength);
}

// What a request holds before its answer comes; none of it may be left but the errors.
Request waitingRequest(int kind)
{
    Request waiting(makeRequest(kind));
    SocialGenericData old(QStringLiteral("Old"));
    old.setProperty(SocialGenericData::Id, 1);
    waiting->setResults({old});
    waiting->setPerformOnAccountsFilter({QStringLiteral("old")});
    waiting->setRequestProgress(SocialDataRequest::Started,
                                {KinletError(KinletError::NetworkFailed)});
    return waiting;
}

// The request as the answer should leave it.
Request expectedRequest(const QByteArray &bytes, int kind)
{
    Request expected = waitingRequest(kind);
    const bool isClean = Payload::read(bytes, *expected);
    checkRequest(*expected, kind, bytes.size());
    if (isCompared(bytes, isClean ? QDataStream::Ok : QDataStream::ReadPastEnd)) {
        const Reading byQt = readByQt(bytes, kind);
        check(isClean == byQt.isClean(bytes), "clean exactly if Qt's own readers end so");
        check(fieldsOf(*expected) == byQt.fields, "what Qt's own readers store");
    }
    expected->setRequestProgress(SocialDataRequest::Finished, expected->errors());
    return expected;
}

void answer(const QByteArray &bytes, int kind)
{
    const Request expected = expectedRequest(bytes, kind);
    const Request waiting = waitingRequest(kind);
    int finished = 0;
    QObject::connect(waiting.get(), &SocialDataRequest::finished, waiting.get(),
                     [&finished] { ++finished; });
    KinletRunnerInterface *const runner = makeRunner();
    KinletInterfaceProxy proxy(runner, QStringLiteral("fuzzed"));
    proxy.performRequest(waiting.get());
    check(finished == 0, "not finished without an answer");

    Q_EMIT runner->requestFinished(kind, sentId, bytes, {});
    check(finished == 1, "finished by its answer");
    check(fieldsOf(*waiting) == fieldsOf(*expected), "what the answer holds");
    check(waiting->errors().size() == 1, "the errors that it had");
    Q_EMIT runner->requestFinished(kind, sentId, bytes, {});
    check(finished == 1, "finished once");
}

class PushedRecords {
public:
    PushedRecords() : m_runner(makeRunner()), m_proxy(m_runner, QStringLiteral("fuzzed"))
    {
        QObject::connect(&m_proxy, &KinletInterface::dataUpdate,
                         [this](const QList<SocialGenericData> &records) {
                             ++m_updates;
                             m_records = int(records.size());
                             m_values = countValues(records);
                         });
        QObject::connect(&m_proxy, &KinletInterface::personsUpdate,
                         [this](const QList<SocialNetworkPerson> &persons) {
                             ++m_updates;
                             m_records = int(persons.size());
                         });
    }

    void push(const QByteArray &bytes)
    {
        QVariantList message;
        QDataStream in(bytes);
        while (!in.atEnd()) {
            quint32 size = 0;
            in >> size;
            message.append(in.device()->read(qMin<qint64>(size, in.device()->bytesAvailable())));
        }
        m_updates = 0;
        Q_EMIT m_runner->dataUpdate(message, {});
        check(m_updates == 1 && m_records == message.size(), "one record for each byte array");
        check(m_values <= bytes.size(), "no more values than bytes");
        Q_EMIT m_runner->personsUpdate(message, {});
        check(m_updates == 2 && m_records == message.size(), "one person for each byte array");
    }

private:
    KinletRunnerInterface *m_runner;
    KinletInterfaceProxy m_proxy;
    int m_updates = 0;
    int m_records = 0;
    qint64 m_values = 0;
};

}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Qt 6 reads patterns in properties only after that.
    static const int patternType = qRegisterMetaType<QRegExp>("QRegExp");
    Q_UNUSED(patternType)
    static PushedRecords pushed;
    if (sentId.isNull()) {
        QLoggingCategory::setFilterRules(QStringLiteral("kinlet.dbus.debug=true"));
        qInstallMessageHandler(keepId);
    }
    if (size == 0)
        return 0;
    const QByteArray bytes = inputBytes(data + 1, size - 1);
    const int choice = data[0] % (KindCount + 1);
    if (choice < KindCount)
        answer(bytes, Kinds[choice]);
    else
        pushed.push(bytes);
    return 0;
}
