// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/proxiedrunner.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QRegularExpression>
#include <QSharedPointer>
#include <QSignalSpy>
#include <QTest>

namespace {

QString text(const char *latin)
{
    return QString::fromLatin1(latin);
}

}

/// What a proxy sends to its runner.
class ProxyRequestsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyKindOnTheBus_data();
    void everyKindOnTheBus();
    void statusGoesAlongAndStays_data();
    void statusGoesAlongAndStays();
    void idsAreFresh();
    void sameRequestTwice();
    void nothingIsSentForACancellation();
    void replyIsNotWaitedFor();
    void refusalIsNotNoticed();
    void callsThroughTheMetaObject();
};

void ProxyRequestsTest::everyKindOnTheBus_data()
{
    QTest::addColumn<QSharedPointer<SocialDataRequest>>("request");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("bytes");

    // Status, no results, the account filter with "a": what follows the kind.
    const QString base = text("00000000"
                              "00000000"
                              "00000001"
                              "000000020061");
    const auto add = [&](const char *name, SocialDataRequest *request, int type,
                         const QString &rest) {
        QTest::newRow(name) << QSharedPointer<SocialDataRequest>(request) << type
                            << QString::number(type, 16).rightJustified(8, QLatin1Char('0')) + base
                + rest;
    };
    add("generic", new SocialDataRequest, 0, QString());
    add("services", new GetAggregatedServicesRequest, 1, QString());
    add("accounts", new SocialGetAccountsRequest, 3, QString());
    add("persons", new SocialGetPersonsRequest, 5, text("00000000"));
    add("activities", new SocialGetActivitiesRequest, 7,
        text("00000000"
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
    add("post", new SocialPostActivitiesRequest(SocialActivity::Comment, text("t"), text("p")), 9,
        text("02"
             "000000020074"
             "000000020070"));
    add("like", new SocialLikeActivityRequest(text("i"), false), 10,
        text("000000020069"
             "00"));
    add("likers", new SocialGetLikersRequest(text("i")), 11,
        text("00000000"
             "000000020069"));
}

void ProxyRequestsTest::everyKindOnTheBus()
{
    QFETCH(QSharedPointer<SocialDataRequest>, request);
    QFETCH(int, type);
    QFETCH(QString, bytes);

    ProxiedRunner served;
    request->setPerformOnAccountsFilter({text("a")});
    served.proxy->performRequest(request.data());
    const ReceivedCall call = served.runner.nextCall();
    QCOMPARE(call.member, text("performRequest"));
    QCOMPARE(call.path, text("/fake"));
    QCOMPARE(call.signature, text("isay"));
    QCOMPARE(call.arguments.value(0).toInt(), type);
    const QRegularExpression uuid(
        text("\\A\\{[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}\\}\\z"));
    QVERIFY2(uuid.match(call.requestId()).hasMatch(), qPrintable(call.requestId()));
    QCOMPARE(call.arguments.value(2).toString(), bytes);

    const QByteArray answer = answered(*request, {text("r1"), text("r2")});
    request->setResults({});
    QSignalSpy finished(request.data(), SIGNAL(finished(SocialDataRequest *)));
    served.answer(call.requestId(), answer);
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(*request), QStringList({text("r1"), text("r2")}));
    QCOMPARE(request->performOnAccountsFilter(), QStringList(text("a")));
}

void ProxyRequestsTest::statusGoesAlongAndStays_data()
{
    QTest::addColumn<int>("status");
    for (int status : {0, 1, 2})
        QTest::addRow("%d", status) << status;
}

void ProxyRequestsTest::statusGoesAlongAndStays()
{
    QFETCH(int, status);
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    request.setRequestProgress(SocialDataRequest::Status(status), {});
    served.proxy->performRequest(&request);
    QCOMPARE(int(request.status()), status);
    const auto bytes =
        QByteArray::fromHex(served.runner.nextCall().arguments.value(2).toByteArray());
    QCOMPARE(int(bytes.at(7)), status);
}

void ProxyRequestsTest::idsAreFresh()
{
    ProxiedRunner served;
    SocialGetPersonsRequest one;
    SocialGetPersonsRequest two;
    QVERIFY(served.perform(one) != served.perform(two));
}

void ProxyRequestsTest::sameRequestTwice()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    const QString first = served.perform(request);
    const QString second = served.perform(request);
    QVERIFY(first != second);
    served.answer(second, personsAnswer(ids("2")));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), ids("2"));
    served.answer(first, personsAnswer(ids("1")));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), ids("1"));
}

void ProxyRequestsTest::nothingIsSentForACancellation()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    const QString id = served.perform(request);
    served.proxy->cancelRequest(&request);
    // The next call that the runner gets is the next request.
    SocialGetPersonsRequest next;
    served.proxy->performRequest(&next);
    const ReceivedCall call = served.runner.nextCall();
    QCOMPARE(call.member, text("performRequest"));
    QVERIFY(call.requestId() != id);
    QCOMPARE(finished.count(), 0);
    served.answer(id, personsAnswer(ids("late")));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), ids("late"));
}

void ProxyRequestsTest::replyIsNotWaitedFor()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    served.runner.setStopped(true);
    QElapsedTimer took;
    took.start();
    served.proxy->performRequest(&request);
    // A call without a reply is given up after 25 seconds.
    QVERIFY2(took.elapsed() < 20000, qPrintable(QString::number(took.elapsed())));
    served.runner.setStopped(false);
    served.answer(served.runner.nextCall().requestId(), personsAnswer(ids("at last")));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), ids("at last"));
}

// The runner's word is its answer: an error reply to the call changes nothing.
void ProxyRequestsTest::refusalIsNotNoticed()
{
    ProxiedRunner served;
    served.runner.refuse();
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    const QString id = served.perform(request);
    // Errors come in order: by the time of this one, the first has come.
    QDBusPendingReply<QVariantMap> reply = clientOf(served.id)->metaData();
    reply.waitForFinished();
    QVERIFY(reply.isError());
    QCoreApplication::processEvents();
    QCOMPARE(finished.count(), 0);
    QCOMPARE(int(request.status()), 0);
    served.answer(id, personsAnswer(ids("nevertheless")));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), ids("nevertheless"));
    QVERIFY(request.errors().isEmpty());
}

void ProxyRequestsTest::callsThroughTheMetaObject()
{
    ProxiedRunner served;
    QVERIFY(QMetaObject::invokeMethod(served.proxy->findChild<KinletRunnerInterface *>(),
                                      "performRequest", Q_ARG(int, 5), Q_ARG(QString, text("id")),
                                      Q_ARG(QByteArray, QByteArray("\x01\x02"))));
    QCOMPARE(served.runner.nextCall().arguments, QVariantList({5, text("id"), text("0102")}));
}

QTEST_GUILESS_MAIN(ProxyRequestsTest)
#include "proxyrequeststest.moc"
