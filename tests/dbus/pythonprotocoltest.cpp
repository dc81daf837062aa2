// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/runnerprocess.h"

#include "dbus/kinletrunnerinterface.h"
#include "dbus/payload.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QDBusPendingReply>
#include <QDataStream>
#include <QSignalSpy>

#include <memory>

namespace {

const QString id = QStringLiteral("example");
const QString requestId = QStringLiteral("{a request}");

struct Answer {
    int kind;
    QString requestId;
    QByteArray request;
    QByteArray error;
};

QList<KinletError> errorsFrom(const QByteArray &bytes)
{
    QList<KinletError> errors;
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_5_15);
    in >> errors;
    return errors;
}

SocialGetActivitiesRequest *activitiesWithIds(const QStringList &ids)
{
    auto *request = new SocialGetActivitiesRequest;
    request->setActivityIdsFilter(ids);
    return request;
}

SocialGetPersonsRequest *personsMatching(const QString &pattern)
{
    auto *request = new SocialGetPersonsRequest;
    request->setPropertyFilter(QStringLiteral("FirstName"), QRegExp(pattern));
    return request;
}

SocialDataRequest *ofAccount(SocialDataRequest *request, const QString &account)
{
    request->setPerformOnAccountsFilter({account});
    return request;
}

using RequestPointer = std::shared_ptr<SocialDataRequest>;

}

Q_DECLARE_METATYPE(RequestPointer)

/// The Python runner on the bus itself: its replies, its errors and its end.
class PythonProtocolTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void metaDataNamesTheRunner();
    void replyComesBeforeTheAnswer();
    void answerIsTheRequestWithResults();
    void errorsTellWhatWentWrong_data();
    void errorsTellWhatWentWrong();
    void undecodableRequestsAreRefused_data();
    void undecodableRequestsAreRefused();
    void terminationFreesTheName();
    void secondRunnerOfThatNameGivesUp();

private:
    bool answerTo(SocialDataRequest &request, Answer &answer);

    std::unique_ptr<RunnerProcess> runner;
    std::unique_ptr<KinletRunnerInterface> remote;
};

void PythonProtocolTest::init()
{
    runner = std::make_unique<RunnerProcess>();
    QVERIFY(runner->startAs(id, QStringLiteral(KINLET_PYTHON_RUNNER), {}));
    remote = std::make_unique<KinletRunnerInterface>(BusNames::service(id), BusNames::path(id),
                                                     QDBusConnection::sessionBus(), nullptr);
}

void PythonProtocolTest::cleanup()
{
    remote.reset();
    runner.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!isOnBus(id), LongMilliseconds);
}

bool PythonProtocolTest::answerTo(SocialDataRequest &request, Answer &answer)
{
    QSignalSpy finished(remote.get(), &KinletRunnerInterface::requestFinished);
    remote->performRequest(request.type(), requestId, Payload::write(request));
    if (!finished.wait(LongMilliseconds))
        return false;
    const QVariantList arguments = finished.takeFirst();
    answer = {arguments.at(0).toInt(), arguments.at(1).toString(), arguments.at(2).toByteArray(),
              arguments.at(3).toByteArray()};
    return true;
}

void PythonProtocolTest::metaDataNamesTheRunner()
{
    QDBusPendingReply<QVariantMap> reply = remote->metaData();
    reply.waitForFinished();
    QVERIFY2(!reply.isError(), qPrintable(reply.error().message()));
    QCOMPARE(reply.value().value(QStringLiteral("name")).toString(), id);
    QVERIFY(!reply.value().value(QStringLiteral("version")).toString().isEmpty());
}

// Seen by a monitor: QtDBus does not keep the order of replies and signals.
void PythonProtocolTest::replyComesBeforeTheAnswer()
{
    QProcess monitor;
    monitor.start(QStringLiteral("dbus-monitor"),
                  {QStringLiteral("--session"), QStringLiteral("--profile"),
                   QStringLiteral("sender='%1'").arg(BusNames::service(id))});
    QByteArray seen;
    const auto shows = [&](const char *text) {
        return QTest::qWaitFor(
            [&] {
                seen += monitor.readAllStandardOutput();
                return seen.contains(text);
            },
            LongMilliseconds);
    };
    // It gives its name back once it monitors.
    QVERIFY(shows("NameLost"));
    SocialGetActivitiesRequest request;
    Answer answer;
    QVERIFY(answerTo(request, answer));
    QVERIFY(shows("requestFinished"));
    const int reply = int(seen.indexOf("\nmr\t"));
    QVERIFY(reply >= 0);
    QVERIFY(reply < seen.indexOf("requestFinished"));
    monitor.kill();
    monitor.waitForFinished();
}

void PythonProtocolTest::answerIsTheRequestWithResults()
{
    SocialGetActivitiesRequest request;
    request.setLimit(1);
    request.setBefore(QDateTime(QDate(2026, 1, 5), QTime(9, 1), Qt::UTC));
    request.setParentActivityIdFilter(QString());
    request.setRequestProgress(SocialDataRequest::Started, {});
    Answer answer;
    QVERIFY(answerTo(request, answer));
    QCOMPARE(answer.kind, int(SocialDataRequest::GetActivities));
    QCOMPARE(answer.requestId, requestId);
    QVERIFY(errorsFrom(answer.error).isEmpty());
    SocialGetActivitiesRequest answered;
    QVERIFY(Payload::read(answer.request, answered));
    QCOMPARE(answered.status(), SocialDataRequest::Finished);
    QCOMPARE(answered.results().size(), 1);
    request.setResults(answered.results());
    request.setRequestProgress(SocialDataRequest::Finished, {});
    QCOMPARE(Payload::write(request), Payload::write(answered));
}

void PythonProtocolTest::errorsTellWhatWentWrong_data()
{
    QTest::addColumn<RequestPointer>("request");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("description");
    const auto row = [](const char *name, SocialDataRequest *request, KinletError::Type type,
                        const QString &description) {
        QTest::newRow(name) << RequestPointer(request) << int(type) << description;
    };
    const QString none = QStringLiteral("none");
    const QString noActivity = QStringLiteral("No such activity: none");
    row("account", ofAccount(new SocialGetActivitiesRequest, none), KinletError::InvalidRequest,
        QStringLiteral("No such account: none"));
    row("activity", activitiesWithIds({none}), KinletError::InvalidRequest, noActivity);
    row("liked activity", new SocialLikeActivityRequest(none), KinletError::InvalidRequest,
        noActivity);
    row("activity with likers", new SocialGetLikersRequest(none), KinletError::InvalidRequest,
        noActivity);
    row("commented activity",
        new SocialPostActivitiesRequest(SocialActivity::Comment, QStringLiteral("Hi"), none),
        KinletError::InvalidRequest, noActivity);
    row("empty text", new SocialPostActivitiesRequest(SocialActivity::Status, QStringLiteral("")),
        KinletError::InvalidRequest, QStringLiteral("The text is empty"));
    row("null text", new SocialPostActivitiesRequest(SocialActivity::Status),
        KinletError::InvalidRequest, QStringLiteral("The text is empty"));
    row("message", new SocialPostActivitiesRequest(SocialActivity::Message, QStringLiteral("Hi")),
        KinletError::PostFailed, QStringLiteral("Only statuses and comments can be posted"));
    row("pattern", personsMatching(QStringLiteral("*")), KinletError::InvalidRequest,
        QStringLiteral("Not a regular expression: nothing to repeat at position 0"));
}

void PythonProtocolTest::errorsTellWhatWentWrong()
{
    QFETCH(RequestPointer, request);
    QFETCH(int, type);
    QFETCH(QString, description);
    Answer answer;
    QVERIFY(answerTo(*request, answer));
    const QList<KinletError> errors = errorsFrom(answer.error);
    QCOMPARE(errors.size(), 1);
    QCOMPARE(int(errors.constFirst().type()), type);
    QCOMPARE(errors.constFirst().description(), description);
    QVERIFY(Payload::read(answer.request, *request));
    QCOMPARE(request->status(), SocialDataRequest::Finished);
    QVERIFY(request->results().isEmpty());
}

void PythonProtocolTest::undecodableRequestsAreRefused_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QByteArray>("bytes");
    SocialGetActivitiesRequest activities;
    const QByteArray bytes = Payload::write(activities);
    const QByteArray unknownKind = QByteArray::fromHex("00000002000000010000000000000000");
    QTest::newRow("no bytes") << 7 << QByteArray();
    QTest::newRow("cut short") << 7 << bytes.chopped(1);
    QTest::newRow("bytes after the end") << 7 << bytes + '\0';
    QTest::newRow("another kind") << 5 << bytes;
    QTest::newRow("unknown kind") << 2 << unknownKind;
    QTest::newRow("unknown kind in the call") << 2 << bytes;
}

void PythonProtocolTest::undecodableRequestsAreRefused()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, bytes);
    QSignalSpy finished(remote.get(), &KinletRunnerInterface::requestFinished);
    QDBusPendingReply<> reply = remote->performRequest(kind, QStringLiteral("{refused}"), bytes);
    reply.waitForFinished();
    QVERIFY(reply.isError());
    QCOMPARE(reply.error().name(), QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
    QVERIFY(!reply.error().message().isEmpty());

    // Signals arrive in their order: an answer to the refused one would come first.
    Answer answer;
    SocialGetActivitiesRequest request;
    QVERIFY(answerTo(request, answer));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(answer.requestId, requestId);
}

void PythonProtocolTest::terminationFreesTheName()
{
    runner->terminate();
    QVERIFY(runner->waitForFinished(LongMilliseconds));
    QCOMPARE(runner->exitStatus(), QProcess::NormalExit);
    QCOMPARE(runner->exitCode(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(!isOnBus(id), LongMilliseconds);
}

void PythonProtocolTest::secondRunnerOfThatNameGivesUp()
{
    QProcess second;
    second.start(QStringLiteral(KINLET_PYTHON_RUNNER), {id});
    QVERIFY(second.waitForFinished(LongMilliseconds));
    QCOMPARE(second.exitCode(), 1);
    const QByteArray message = second.readAllStandardError();
    QCOMPARE(message.count('\n'), 1);
    QVERIFY2(message.contains("com.orvane.kinlet.example"), message.constData());
    QVERIFY(isOnBus(id));
}

QTEST_GUILESS_MAIN(PythonProtocolTest)
#include "pythonprotocoltest.moc"
