// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/fakerunner.h"
#include "dbus/kinletinterfaceproxy.h"
#include "dbus/kinletrunnerinterface.h"
#include "dbus/payload.h"
#include "records/valuetypes.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QMetaMethod>
#include <QPointer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

namespace {

const QString runnerId = QStringLiteral("fake");
constexpr int Patience = 60000;

SocialGenericData record(const QString &id)
{
    SocialGenericData record(SocialActivity::ClassName);
    record.setProperty(SocialGenericData::Id, id);
    return record;
}

// What a runner answers: the request with these results and that status.
QByteArray answer(SocialDataRequest &request, const QStringList &ids,
                  SocialDataRequest::Status status = SocialDataRequest::Finished)
{
    QList<SocialGenericData> results;
    for (const QString &id : ids)
        results.append(record(id));
    request.setResults(results);
    request.setRequestProgress(status, {});
    return Payload::write(request);
}

QByteArray personsAnswer(const QStringList &ids,
                         SocialDataRequest::Status status = SocialDataRequest::Finished)
{
    SocialGetPersonsRequest request;
    return answer(request, ids, status);
}

QStringList idsOf(const SocialDataRequest &request)
{
    QStringList ids;
    const QList<SocialGenericData> results = request.results();
    for (const SocialGenericData &result : results)
        ids.append(result.id());
    return ids;
}

QStringList argumentNames(const QMetaObject &metaObject, const char *signature)
{
    QStringList names;
    const int index = metaObject.indexOfMethod(signature);
    if (index < 0)
        return {QStringLiteral("no such method")};
    const QList<QByteArray> parameters = metaObject.method(index).parameterNames();
    for (const QByteArray &name : parameters)
        names.append(QString::fromLatin1(name));
    return names;
}

}

class ProxyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void membersOfTheInterface();
    void membersOfTheProxy();
    void metaDataIsTheName();
    void metaDataOfTheRunner();
    void everyKindOnTheBus_data();
    void everyKindOnTheBus();
    void idsAreFresh();
    void callsThroughTheMetaObject();
    void answerFinishes();
    void statusIsAlwaysFinished_data();
    void statusIsAlwaysFinished();
    void errorsStayAsTheyWere();
    void errorsOfTheRunnerAreDropped();
    void unknownIdChangesNothing();
    void secondAnswerChangesNothing();
    void answersInAnyOrder();
    void sameRequestTwice();
    void requestDeletedBeforeItsAnswer();
    void requestDeletedInsideFinished();
    void cancelledRequestIsStillAnswered();
    void proxyDeletedBeforeTheAnswer();
    void hostileAnswersFinish_data();
    void hostileAnswersFinish();
    void everyTruncationFinishes();
    void olderStreamIsUnderstood();
    void dataUpdate();
    void personsUpdate();
    void emptyPush();
    void elementsWithoutBytes();
    void forgedSignalsAreNotDelivered();
    void manyPushedRecords();
    void largeAnswer();
    void runnerKilled_data();
    void runnerKilled();
    void stoppedRunnerHoldsNobodyUp();

private:
    KinletInterfaceProxy *makeProxy();

    std::unique_ptr<FakeRunner> m_runner;
    std::unique_ptr<KinletInterfaceProxy> m_proxy;
};

void ProxyTest::initTestCase()
{
    KinletInitializer::init();
}

void ProxyTest::cleanup()
{
    m_proxy.reset();
    m_runner.reset();
}

KinletInterfaceProxy *ProxyTest::makeProxy()
{
    m_runner = std::make_unique<FakeRunner>(QStringList(FakeRunner::busName(runnerId)));
    m_proxy = std::make_unique<KinletInterfaceProxy>(
        new KinletRunnerInterface(FakeRunner::busName(runnerId), QLatin1Char('/') + runnerId,
                                  QDBusConnection::sessionBus(), nullptr),
        runnerId);
    return m_proxy.get();
}

void ProxyTest::membersOfTheInterface()
{
    const QMetaObject &metaObject = KinletRunnerInterface::staticMetaObject;
    QCOMPARE(QByteArray(metaObject.superClass()->className()),
             QByteArray("QDBusAbstractInterface"));
    QCOMPARE(argumentNames(metaObject, "performRequest(int,QString,QByteArray)"),
             QStringList({QStringLiteral("requestType"), QStringLiteral("requestId"),
                          QStringLiteral("request")}));
    QCOMPARE(argumentNames(metaObject, "metaData()"), QStringList());
    const QStringList pushed{QStringLiteral("data"), QStringLiteral("updatedProperties")};
    QCOMPARE(argumentNames(metaObject, "dataUpdate(QVariantList,QStringList)"), pushed);
    QCOMPARE(argumentNames(metaObject, "personsUpdate(QVariantList,QStringList)"), pushed);
    QCOMPARE(argumentNames(metaObject, "requestFinished(int,QString,QByteArray,QByteArray)"),
             QStringList({QStringLiteral("requestType"), QStringLiteral("requestId"),
                          QStringLiteral("request"), QStringLiteral("error")}));
    const KinletRunnerInterface runner(QStringLiteral("com.orvane.kinlet.x"), QStringLiteral("/x"),
                                       QDBusConnection::sessionBus(), nullptr);
    QCOMPARE(runner.interface(), QStringLiteral("com.orvane.kinlet.runner"));
    QCOMPARE(runner.service(), QStringLiteral("com.orvane.kinlet.x"));
    QCOMPARE(runner.path(), QStringLiteral("/x"));
}

void ProxyTest::membersOfTheProxy()
{
    const QMetaObject &metaObject = KinletInterfaceProxy::staticMetaObject;
    QCOMPARE(QByteArray(metaObject.superClass()->className()), QByteArray("KinletInterface"));
    const QStringList pushed{QStringLiteral("data"), QStringLiteral("updatedProperties")};
    QCOMPARE(argumentNames(metaObject, "onDbusDataUpdate(QVariantList,QStringList)"), pushed);
    QCOMPARE(argumentNames(metaObject, "onDbusPersonsUpdate(QVariantList,QStringList)"), pushed);
    QVERIFY(metaObject.indexOfSlot("requestFinished(int,QString,QByteArray,QByteArray)") >= 0);
    KinletInterfaceProxy *proxy = makeProxy();
    QVERIFY(!proxy->parent());
    QVERIFY(proxy->findChild<KinletRunnerInterface *>());
    QVERIFY(proxy->services().isEmpty());
    QVERIFY(proxy->accounts().isEmpty());
    const QPointer<QObject> runner(proxy->findChild<KinletRunnerInterface *>());
    m_proxy.reset();
    QVERIFY(!runner);
}

void ProxyTest::metaDataIsTheName()
{
    KinletInterfaceProxy *proxy = makeProxy();
    proxy->init();
    QCOMPARE(proxy->metaData(), QVariantMap({{QStringLiteral("name"), runnerId}}));
}

void ProxyTest::metaDataOfTheRunner()
{
    makeProxy();
    KinletRunnerInterface runner(FakeRunner::busName(runnerId), QLatin1Char('/') + runnerId,
                                 QDBusConnection::sessionBus(), nullptr);
    QDBusPendingReply<QVariantMap> reply = runner.metaData();
    reply.waitForFinished();
    QVERIFY(!reply.isError());
    QCOMPARE(reply.value().value(QStringLiteral("version")).toString(), QStringLiteral("7"));
    const ReceivedCall call = m_runner->nextCall();
    QCOMPARE(call.member, QStringLiteral("metaData"));
    QCOMPARE(call.signature, QString());
}

void ProxyTest::everyKindOnTheBus_data()
{
    QTest::addColumn<QSharedPointer<SocialDataRequest>>("request");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("bytes");

    // Status, no results, the account filter with "a": what follows the kind.
    const QString base = QStringLiteral("00000000"
                                        "00000000"
                                        "00000001"
                                        "000000020061");
    const auto add = [&](const char *name, SocialDataRequest *request, int type,
                         const QString &rest) {
        QTest::newRow(name) << QSharedPointer<SocialDataRequest>(request) << type
                            << QString::number(type, 16).rightJustified(8, QLatin1Char('0')) + base
                + rest;
    };
    add("services", new GetAggregatedServicesRequest, 1, QString());
    add("accounts", new SocialGetAccountsRequest, 3, QString());
    add("persons", new SocialGetPersonsRequest, 5, QStringLiteral("00000000"));
    add("activities", new SocialGetActivitiesRequest, 7,
        QStringLiteral("00000000"
                       "0000000a"
                       "8000000000000000"
                       "ffffffff"
                       "00"
                       "8000000000000000"
                       "ffffffff"
                       "00"
                       "00000000"
                       "ffffffff"
                       "04"
                       "00"
                       "00"));
    add("post",
        new SocialPostActivitiesRequest(SocialActivity::Comment, QStringLiteral("t"),
                                        QStringLiteral("p")),
        9,
        QStringLiteral("02"
                       "000000020074"
                       "000000020070"));
    add("like", new SocialLikeActivityRequest(QStringLiteral("i"), false), 10,
        QStringLiteral("000000020069"
                       "00"));
    add("likers", new SocialGetLikersRequest(QStringLiteral("i")), 11,
        QStringLiteral("00000000"
                       "000000020069"));
}

void ProxyTest::everyKindOnTheBus()
{
    QFETCH(QSharedPointer<SocialDataRequest>, request);
    QFETCH(int, type);
    QFETCH(QString, bytes);

    request->setPerformOnAccountsFilter({QStringLiteral("a")});
    makeProxy()->performRequest(request.data());
    QCOMPARE(int(request->status()), 0);
    const ReceivedCall call = m_runner->nextCall();
    QCOMPARE(call.member, QStringLiteral("performRequest"));
    QCOMPARE(call.path, QStringLiteral("/fake"));
    QCOMPARE(call.signature, QStringLiteral("isay"));
    QCOMPARE(call.arguments.value(0).toInt(), type);
    const QRegularExpression uuid(
        QStringLiteral("\\A\\{[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}\\}\\z"));
    QVERIFY2(uuid.match(call.requestId()).hasMatch(), qPrintable(call.requestId()));
    QCOMPARE(call.arguments.value(2).toString(), bytes);

    QSignalSpy finished(request.data(), SIGNAL(finished(SocialDataRequest *)));
    m_runner->finish(runnerId, call.requestId(),
                     answer(*request, {QStringLiteral("r1"), QStringLiteral("r2")}));
    finished.clear();
    request->setResults({});
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(*request), QStringList({QStringLiteral("r1"), QStringLiteral("r2")}));
    QCOMPARE(request->performOnAccountsFilter(), QStringList(QStringLiteral("a")));
}

void ProxyTest::idsAreFresh()
{
    KinletInterfaceProxy *proxy = makeProxy();
    SocialGetPersonsRequest one;
    SocialGetPersonsRequest two;
    proxy->performRequest(&one);
    proxy->performRequest(&two);
    QVERIFY(m_runner->nextCall().requestId() != m_runner->nextCall().requestId());
}

void ProxyTest::callsThroughTheMetaObject()
{
    makeProxy();
    auto *runner = m_proxy->findChild<KinletRunnerInterface *>();
    QVERIFY(QMetaObject::invokeMethod(runner, "performRequest", Q_ARG(int, 5),
                                      Q_ARG(QString, QStringLiteral("id")),
                                      Q_ARG(QByteArray, QByteArray("\x01\x02"))));
    const ReceivedCall call = m_runner->nextCall();
    QCOMPARE(call.arguments, QVariantList({5, QStringLiteral("id"), QStringLiteral("0102")}));
}

void ProxyTest::answerFinishes()
{
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    makeProxy()->performRequest(&request);
    m_runner->finish(runnerId, m_runner->nextCall().requestId(),
                     personsAnswer({QStringLiteral("p")}));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).value<SocialDataRequest *>(), &request);
    QCOMPARE(idsOf(request), QStringList(QStringLiteral("p")));
    QCOMPARE(int(request.status()), 4);
    QVERIFY(request.errors().isEmpty());
}

void ProxyTest::statusIsAlwaysFinished_data()
{
    QTest::addColumn<int>("status");
    for (int status : {0, 1, 2, 3, 4, 77})
        QTest::addRow("%d", status) << status;
}

void ProxyTest::statusIsAlwaysFinished()
{
    QFETCH(int, status);

    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    makeProxy()->performRequest(&request);
    m_runner->finish(runnerId, m_runner->nextCall().requestId(),
                     personsAnswer({QStringLiteral("p")}, SocialDataRequest::Status(status)));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(int(request.status()), 4);
}

void ProxyTest::errorsStayAsTheyWere()
{
    SocialGetPersonsRequest request;
    request.setRequestProgress(SocialDataRequest::Started,
                               {KinletError(KinletError::LikeFailed, QStringLiteral("before"))});
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    makeProxy()->performRequest(&request);
    m_runner->finish(runnerId, m_runner->nextCall().requestId(), personsAnswer({}));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(request.errors().size(), 1);
    QCOMPARE(request.errors().at(0).description(), QStringLiteral("before"));
}

void ProxyTest::errorsOfTheRunnerAreDropped()
{
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    makeProxy()->performRequest(&request);
    const QList<KinletError> errors{KinletError(KinletError::PostFailed, QStringLiteral("no"))};
    m_runner->finish(runnerId, m_runner->nextCall().requestId(), personsAnswer({}),
                     Payload::write(errors));
    QVERIFY(finished.wait(Patience));
    QVERIFY(request.errors().isEmpty());
}

void ProxyTest::unknownIdChangesNothing()
{
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    makeProxy()->performRequest(&request);
    const QString id = m_runner->nextCall().requestId();
    m_runner->finish(runnerId, QStringLiteral("unknown"), personsAnswer({QStringLiteral("wrong")}));
    m_runner->finish(runnerId, QString(), personsAnswer({QStringLiteral("wrong")}));
    m_runner->finish(runnerId, id, personsAnswer({QStringLiteral("right")}));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(idsOf(request), QStringList(QStringLiteral("right")));
}

void ProxyTest::secondAnswerChangesNothing()
{
    KinletInterfaceProxy *proxy = makeProxy();
    SocialGetPersonsRequest request;
    SocialGetPersonsRequest later;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    QSignalSpy laterFinished(&later, SIGNAL(finished(SocialDataRequest *)));
    proxy->performRequest(&request);
    proxy->performRequest(&later);
    const QString id = m_runner->nextCall().requestId();
    m_runner->finish(runnerId, id, personsAnswer({QStringLiteral("first")}));
    m_runner->finish(runnerId, id, personsAnswer({QStringLiteral("second")}), {}, 3);
    m_runner->finish(runnerId, m_runner->nextCall().requestId(), personsAnswer({}));
    QVERIFY(laterFinished.wait(Patience));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(idsOf(request), QStringList(QStringLiteral("first")));
}

void ProxyTest::answersInAnyOrder()
{
    KinletInterfaceProxy *proxy = makeProxy();
    SocialGetPersonsRequest one;
    SocialGetPersonsRequest two;
    QSignalSpy finished(&one, SIGNAL(finished(SocialDataRequest *)));
    proxy->performRequest(&one);
    proxy->performRequest(&two);
    const QString first = m_runner->nextCall().requestId();
    const QString second = m_runner->nextCall().requestId();
    m_runner->finish(runnerId, second, personsAnswer({QStringLiteral("2")}));
    m_runner->finish(runnerId, first, personsAnswer({QStringLiteral("1")}));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(one), QStringList(QStringLiteral("1")));
    QCOMPARE(idsOf(two), QStringList(QStringLiteral("2")));
}

void ProxyTest::sameRequestTwice()
{
    KinletInterfaceProxy *proxy = makeProxy();
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    proxy->performRequest(&request);
    proxy->performRequest(&request);
    const QString first = m_runner->nextCall().requestId();
    const QString second = m_runner->nextCall().requestId();
    QVERIFY(first != second);
    m_runner->finish(runnerId, first, personsAnswer({QStringLiteral("1")}));
    m_runner->finish(runnerId, second, personsAnswer({QStringLiteral("2")}));
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 2, Patience);
    QCOMPARE(idsOf(request), QStringList(QStringLiteral("2")));
}

void ProxyTest::requestDeletedBeforeItsAnswer()
{
    KinletInterfaceProxy *proxy = makeProxy();
    auto request = std::make_unique<SocialGetPersonsRequest>();
    SocialGetPersonsRequest later;
    QSignalSpy finished(&later, SIGNAL(finished(SocialDataRequest *)));
    proxy->performRequest(request.get());
    proxy->performRequest(&later);
    const QString id = m_runner->nextCall().requestId();
    request.reset();
    m_runner->finish(runnerId, id, personsAnswer({QStringLiteral("late")}), {}, 2);
    m_runner->finish(runnerId, m_runner->nextCall().requestId(), personsAnswer({}));
    QVERIFY(finished.wait(Patience));
}

void ProxyTest::requestDeletedInsideFinished()
{
    KinletInterfaceProxy *proxy = makeProxy();
    const QPointer<SocialGetPersonsRequest> request(new SocialGetPersonsRequest);
    connect(request.data(), &SocialDataRequest::finished, this,
            [](SocialDataRequest *self) { delete self; });
    proxy->performRequest(request);
    m_runner->finish(runnerId, m_runner->nextCall().requestId(), personsAnswer({}));
    QTRY_VERIFY_WITH_TIMEOUT(!request, Patience);
}

void ProxyTest::cancelledRequestIsStillAnswered()
{
    KinletInterfaceProxy *proxy = makeProxy();
    SocialGetPersonsRequest request;
    SocialGetPersonsRequest later;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    proxy->performRequest(&request);
    proxy->cancelRequest(&request);
    QCOMPARE(finished.count(), 0);
    proxy->performRequest(&later);
    const QString id = m_runner->nextCall().requestId();
    // Nothing was sent for the cancellation: the next call is the next request.
    QCOMPARE(m_runner->nextCall().member, QStringLiteral("performRequest"));
    m_runner->finish(runnerId, id, personsAnswer({QStringLiteral("late")}));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), QStringList(QStringLiteral("late")));
}

void ProxyTest::proxyDeletedBeforeTheAnswer()
{
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    makeProxy()->performRequest(&request);
    const QString id = m_runner->nextCall().requestId();
    m_proxy.reset();
    m_runner->finish(runnerId, id, personsAnswer({}));
    KinletRunnerInterface later(FakeRunner::busName(runnerId), QLatin1Char('/') + runnerId,
                                QDBusConnection::sessionBus(), nullptr);
    later.metaData().waitForFinished();
    QCoreApplication::processEvents();
    QCOMPARE(finished.count(), 0);
    QCOMPARE(int(request.status()), 0);
}

void ProxyTest::hostileAnswersFinish_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("noise") << QByteArray(1000, '\xa5');
    QTest::newRow("zeros") << QByteArray(1000, '\0');
    QTest::newRow("all bits") << QByteArray(1000, '\xff');
    QTest::newRow("count of results") << QByteArray::fromHex("0000000500000004ffffffff");
    QTest::newRow("count of accounts") << QByteArray::fromHex("000000050000000400000000ffffffff");
    QTest::newRow("count of patterns")
        << QByteArray::fromHex("00000005000000040000000000000000ffffffff");
    const QByteArray oneResult = QByteArray::fromHex("000000050000000400000001"
                                                     "ffffffff"
                                                     "00000001"
                                                     "00000002"
                                                     "0061");
    QTest::newRow("count of a value") << oneResult + QByteArray::fromHex("0000000900ffffffff");
    QByteArray deep = oneResult;
    for (int i = 0; i < 1000000; ++i)
        deep += QByteArray::fromHex("000000090000000001");
    QTest::newRow("a million levels") << deep;
    QTest::newRow("unknown type") << oneResult + QByteArray::fromHex("00000bad00000000");
    QTest::newRow("unknown name") << oneResult
            + QByteArray::fromHex("0000040000000000044e6f6f0000");
    QTest::newRow("parentheses") << QByteArray::fromHex(
                                        "000000050000000400000000000000000000000100000002"
                                        "0061")
            + QByteArray::fromHex("00004e20") + QByteArray::fromHex("0028").repeated(10000)
            + QByteArray::fromHex("010000");
}

void ProxyTest::hostileAnswersFinish()
{
    QFETCH(QByteArray, bytes);

    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    makeProxy()->performRequest(&request);
    m_runner->finish(runnerId, m_runner->nextCall().requestId(), bytes);
    QVERIFY(finished.wait(Patience));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(int(request.status()), 4);
    QVERIFY(request.results().isEmpty());
    QVERIFY(request.errors().isEmpty());
}

void ProxyTest::everyTruncationFinishes()
{
    KinletInterfaceProxy *proxy = makeProxy();
    const QByteArray whole = personsAnswer({QStringLiteral("a"), QStringLiteral("b")});
    for (int size = 0; size < whole.size(); ++size) {
        SocialGetPersonsRequest request;
        QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
        proxy->performRequest(&request);
        m_runner->finish(runnerId, m_runner->nextCall().requestId(), whole.left(size));
        QVERIFY(finished.count() == 1 || finished.wait(Patience));
        QCOMPARE(int(request.status()), 4);
        QVERIFY(request.errors().isEmpty());
        // The results stand before the account filter and the patterns, eight bytes at the end.
        QCOMPARE(int(request.results().size()), size < whole.size() - 8 ? 0 : 2);
    }
}

void ProxyTest::olderStreamIsUnderstood()
{
    SocialGetActivitiesRequest answered;
    const QDateTime time(QDate(2026, 2, 3), QTime(4, 5, 6), Qt::UTC);
    answered.setBefore(time);
    SocialGenericData result = record(QStringLiteral("old"));
    result.setProperty(SocialActivity::StartTime, time);
    answered.setResults({result});
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_4_8);
    answered.serialize(out);

    SocialGetActivitiesRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    makeProxy()->performRequest(&request);
    m_runner->finish(runnerId, m_runner->nextCall().requestId(), bytes);
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), QStringList(QStringLiteral("old")));
    QCOMPARE(request.results().at(0).variantProperty(SocialActivity::StartTime).toDateTime(), time);
    QCOMPARE(request.before(), time);
}

void ProxyTest::dataUpdate()
{
    QSignalSpy updated(makeProxy(), SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    SocialGenericData rich = record(QStringLiteral("1"));
    rich.setProperty(SocialActivity::Attachment,
                     QVariant::fromValue(SocialActivityAttachment{
                         QStringLiteral("title"), {}, {}, {}, {Media{Media::Image, {}, {}, {}}}}));
    m_runner->push(runnerId, QStringLiteral("dataUpdate"),
                   {Payload::write(rich), Payload::write(record(QStringLiteral("2")))},
                   {QStringLiteral("A"), QStringLiteral("B")});
    QVERIFY(updated.wait(Patience));
    const auto records = updated.at(0).at(0).value<QList<SocialGenericData>>();
    QCOMPARE(int(records.size()), 2);
    QCOMPARE(records.at(0).className(), SocialActivity::ClassName);
    QCOMPARE(records.at(0)
                 .variantProperty(SocialActivity::Attachment)
                 .value<SocialActivityAttachment>()
                 .media.size(),
             1);
    QCOMPARE(records.at(1).id(), QStringLiteral("2"));
    QCOMPARE(updated.at(0).at(1).value<QList<QString>>(),
             QList<QString>({QStringLiteral("A"), QStringLiteral("B")}));
}

void ProxyTest::personsUpdate()
{
    QSignalSpy updated(makeProxy(),
                       SIGNAL(personsUpdate(QList<SocialNetworkPerson>, QList<QString>)));
    SocialNetworkPerson person;
    person.setProperty(SocialGenericData::Id, QStringLiteral("p"));
    m_runner->push(runnerId, QStringLiteral("personsUpdate"),
                   {Payload::write(person), Payload::write(record(QStringLiteral("a")))},
                   {QStringLiteral("Status")});
    QVERIFY(updated.wait(Patience));
    const auto persons = updated.at(0).at(0).value<QList<SocialNetworkPerson>>();
    QCOMPARE(int(persons.size()), 2);
    QCOMPARE(persons.at(0).id(), QStringLiteral("p"));
    QCOMPARE(persons.at(0).className(), SocialNetworkPerson::ClassName);
    // The stream's class name stands, whatever the list is of.
    QCOMPARE(persons.at(1).className(), SocialActivity::ClassName);
}

void ProxyTest::emptyPush()
{
    QSignalSpy updated(makeProxy(), SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    m_runner->push(runnerId, QStringLiteral("dataUpdate"), {}, {});
    QVERIFY(updated.wait(Patience));
    QVERIFY(updated.at(0).at(0).value<QList<SocialGenericData>>().isEmpty());
    QVERIFY(updated.at(0).at(1).value<QList<QString>>().isEmpty());
}

void ProxyTest::elementsWithoutBytes()
{
    QSignalSpy updated(makeProxy(), SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    m_runner->push(runnerId, QStringLiteral("dataUpdate"),
                   {42, QByteArray("\x01"), Payload::write(record(QStringLiteral("whole"))), true},
                   {});
    QVERIFY(updated.wait(Patience));
    const auto records = updated.at(0).at(0).value<QList<SocialGenericData>>();
    QCOMPARE(int(records.size()), 4);
    for (int empty : {0, 1, 3}) {
        QVERIFY(records.at(empty).className().isEmpty());
        QVERIFY(records.at(empty).properties().isEmpty());
    }
    QCOMPARE(records.at(2).id(), QStringLiteral("whole"));
}

void ProxyTest::forgedSignalsAreNotDelivered()
{
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    makeProxy()->performRequest(&request);
    const QString id = m_runner->nextCall().requestId();
    FakeRunner forger;
    forger.finish(runnerId, id, personsAnswer({QStringLiteral("forged")}));
    m_runner->finish(runnerId, id, personsAnswer({QStringLiteral("true")}));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), QStringList(QStringLiteral("true")));
}

void ProxyTest::manyPushedRecords()
{
    QSignalSpy updated(makeProxy(), SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    m_runner->push(runnerId, QStringLiteral("dataUpdate"),
                   {Payload::write(record(QStringLiteral("many")))}, {}, 100000);
    QVERIFY(updated.wait(Patience));
    const auto records = updated.at(0).at(0).value<QList<SocialGenericData>>();
    QCOMPARE(int(records.size()), 100000);
    QCOMPARE(records.last().id(), QStringLiteral("many"));
}

void ProxyTest::largeAnswer()
{
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    makeProxy()->performRequest(&request);
    QStringList ids;
    for (int i = 0; i < 50000; ++i)
        ids.append(QString::number(i));
    m_runner->finish(runnerId, m_runner->nextCall().requestId(), personsAnswer(ids));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), ids);
}

void ProxyTest::runnerKilled_data()
{
    QTest::addColumn<bool>("afterTheCall");
    QTest::newRow("before the call") << false;
    QTest::newRow("after the call") << true;
}

void ProxyTest::runnerKilled()
{
    QFETCH(bool, afterTheCall);

    KinletInterfaceProxy *proxy = makeProxy();
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    if (!afterTheCall)
        m_runner->kill();
    proxy->performRequest(&request);
    if (afterTheCall) {
        m_runner->nextCall();
        m_runner->kill();
    }
    // A runner of the same name answers the next request; the lost one stays open.
    FakeRunner successor({FakeRunner::busName(runnerId)});
    SocialGetPersonsRequest next;
    QSignalSpy nextFinished(&next, SIGNAL(finished(SocialDataRequest *)));
    proxy->performRequest(&next);
    successor.finish(runnerId, successor.nextCall().requestId(),
                     personsAnswer({QStringLiteral("next")}));
    QVERIFY(nextFinished.wait(Patience));
    QCOMPARE(idsOf(next), QStringList(QStringLiteral("next")));
    QCOMPARE(finished.count(), 0);
    QCOMPARE(int(request.status()), 0);
}

void ProxyTest::stoppedRunnerHoldsNobodyUp()
{
    KinletInterfaceProxy *proxy = makeProxy();
    FakeRunner other({FakeRunner::busName(QStringLiteral("other"))});
    KinletInterfaceProxy otherProxy(
        new KinletRunnerInterface(FakeRunner::busName(QStringLiteral("other")),
                                  QStringLiteral("/other"), QDBusConnection::sessionBus(), nullptr),
        QStringLiteral("other"));
    m_runner->setStopped(true);
    SocialGetPersonsRequest stuck;
    SocialGetPersonsRequest served;
    QSignalSpy stuckFinished(&stuck, SIGNAL(finished(SocialDataRequest *)));
    QSignalSpy servedFinished(&served, SIGNAL(finished(SocialDataRequest *)));
    proxy->performRequest(&stuck);
    otherProxy.performRequest(&served);
    other.finish(QStringLiteral("other"), other.nextCall().requestId(), personsAnswer({}));
    QVERIFY(servedFinished.wait(Patience));
    QCOMPARE(stuckFinished.count(), 0);
    m_runner->setStopped(false);
    m_runner->finish(runnerId, m_runner->nextCall().requestId(),
                     personsAnswer({QStringLiteral("at last")}));
    QVERIFY(stuckFinished.wait(Patience));
    QCOMPARE(idsOf(stuck), QStringList(QStringLiteral("at last")));
}

QTEST_GUILESS_MAIN(ProxyTest)
#include "proxytest.moc"
