// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"
#include "support/requesthelpers.h"

#include <QSignalSpy>

namespace {

// Sees what goes through the virtual call.
template <typename Request>
class Watched : public Request {
public:
    void setRequestProgress(SocialDataRequest::Status status,
                            const QList<KinletError> &errors) override
    {
        reports.append(status);
        Request::setRequestProgress(status, errors);
    }

    QList<int> reports;
};

void checkFailure(const SocialDataRequest &request, int type)
{
    QCOMPARE(int(request.status()), 4);
    QCOMPARE(request.errors().size(), 1);
    QCOMPARE(int(request.errors().first().type()), type);
    QVERIFY(request.errors().first().description().isEmpty());
}

}

class ActionRequestsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void postDescribesItself();
    void postCanBeConstructedByName();
    void postHasDefaults();
    void postKeepsItsArguments();
    void postReportsSuccess();
    void postReportsFailure();
    void likeDescribesItself();
    void likeCanBeConstructedByName();
    void likeHasDefaults();
    void likeKeepsItsArguments();
    void likeReportsSuccess();
    void likeReportsFailure();
    void resultSlotsCanBeCalledByName();
};

void ActionRequestsTest::postDescribesItself()
{
    const QMetaObject &metaObject = SocialPostActivitiesRequest::staticMetaObject;
    const char *const full = "SocialPostActivitiesRequest(SocialActivity::Type,QString,QString)";
    QCOMPARE(
        constructors(metaObject),
        QStringList({QString::fromLatin1(full),
                     QStringLiteral("SocialPostActivitiesRequest(SocialActivity::Type,QString)"),
                     QStringLiteral("SocialPostActivitiesRequest(SocialActivity::Type)"),
                     QStringLiteral("SocialPostActivitiesRequest()")}));
    QCOMPARE(argumentNames(metaObject, full), QByteArray("requestType,statusText,postId"));
    QCOMPARE(ownMethods(metaObject), QStringList({QStringLiteral("postResult(bool)")}));
    const QMetaMethod slot = metaObject.method(metaObject.methodOffset());
    QCOMPARE(slot.methodType(), QMetaMethod::Slot);
    QCOMPARE(slot.access(), QMetaMethod::Public);
    QCOMPARE(slot.parameterNames(), QList<QByteArray>({QByteArray("result")}));
}

void ActionRequestsTest::postCanBeConstructedByName()
{
    const QMetaObject &metaObject = SocialPostActivitiesRequest::staticMetaObject;
    const QScopedPointer<QObject> object(metaObject.newInstance());
    auto *request = qobject_cast<SocialPostActivitiesRequest *>(object.data());
    QVERIFY(request && !request->parent());
    QCOMPARE(request->type(), 9);
    QCOMPARE(request->requestType(), SocialActivity::Status);

    const QScopedPointer<QObject> comment(
        metaObject.newInstance(Q_ARG(SocialActivity::Type, SocialActivity::Comment),
                               Q_ARG(QString, QStringLiteral("text"))));
    request = qobject_cast<SocialPostActivitiesRequest *>(comment.data());
    QVERIFY(request);
    QCOMPARE(request->requestType(), SocialActivity::Comment);
    QCOMPARE(request->statusText(), QStringLiteral("text"));
    QVERIFY(request->postId().isNull());

    const QScopedPointer<QObject> answer(metaObject.newInstance(
        Q_ARG(SocialActivity::Type, SocialActivity::Comment),
        Q_ARG(QString, QStringLiteral("text")), Q_ARG(QString, QStringLiteral("p1"))));
    request = qobject_cast<SocialPostActivitiesRequest *>(answer.data());
    QVERIFY(request);
    QCOMPARE(request->statusText(), QStringLiteral("text"));
    QCOMPARE(request->postId(), QStringLiteral("p1"));

    const QScopedPointer<QObject> message(
        metaObject.newInstance(Q_ARG(SocialActivity::Type, SocialActivity::Message)));
    request = qobject_cast<SocialPostActivitiesRequest *>(message.data());
    QVERIFY(request);
    QCOMPARE(request->requestType(), SocialActivity::Message);
    QVERIFY(request->statusText().isNull());
}

void ActionRequestsTest::postHasDefaults()
{
    const SocialPostActivitiesRequest request;
    QCOMPARE(int(request.requestType()), 1);
    QVERIFY(request.statusText().isNull());
    QVERIFY(request.postId().isNull());
}

void ActionRequestsTest::postKeepsItsArguments()
{
    const SocialPostActivitiesRequest request(SocialActivity::Comment, QStringLiteral("text"),
                                              QStringLiteral("p1"));
    QCOMPARE(request.requestType(), SocialActivity::Comment);
    QCOMPARE(request.statusText(), QStringLiteral("text"));
    QCOMPARE(request.postId(), QStringLiteral("p1"));
}

void ActionRequestsTest::postReportsSuccess()
{
    Watched<SocialPostActivitiesRequest> request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    request.postResult(false);
    request.postResult(true);
    QCOMPARE(int(request.status()), 4);
    QVERIFY(request.errors().isEmpty());
    QCOMPARE(finished.count(), 2);
    QCOMPARE(request.reports, QList<int>({4, 4}));
}

void ActionRequestsTest::postReportsFailure()
{
    SocialPostActivitiesRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    request.setResults({SocialGenericData()});
    request.postResult(false);
    checkFailure(request, 2);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.first().first().value<SocialDataRequest *>(), &request);
    request.postResult(false);
    checkFailure(request, 2);
    QCOMPARE(finished.count(), 2);
    QCOMPARE(request.results().size(), 1);
}

void ActionRequestsTest::likeDescribesItself()
{
    const QMetaObject &metaObject = SocialLikeActivityRequest::staticMetaObject;
    QCOMPARE(constructors(metaObject),
             QStringList({QStringLiteral("SocialLikeActivityRequest(QString,bool)"),
                          QStringLiteral("SocialLikeActivityRequest(QString)"),
                          QStringLiteral("SocialLikeActivityRequest()")}));
    QCOMPARE(argumentNames(metaObject, "SocialLikeActivityRequest(QString,bool)"),
             QByteArray("activityId,like"));
    QCOMPARE(ownMethods(metaObject), QStringList({QStringLiteral("likeResult(bool)")}));
    const QMetaMethod slot = metaObject.method(metaObject.methodOffset());
    QCOMPARE(slot.methodType(), QMetaMethod::Slot);
    QCOMPARE(slot.access(), QMetaMethod::Public);
    QCOMPARE(slot.parameterNames(), QList<QByteArray>({QByteArray("success")}));
}

void ActionRequestsTest::likeCanBeConstructedByName()
{
    const QMetaObject &metaObject = SocialLikeActivityRequest::staticMetaObject;
    const QScopedPointer<QObject> object(metaObject.newInstance());
    auto *request = qobject_cast<SocialLikeActivityRequest *>(object.data());
    QVERIFY(request && !request->parent());
    QCOMPARE(request->type(), 10);
    QVERIFY(request->like());

    const QScopedPointer<QObject> unlike(
        metaObject.newInstance(Q_ARG(QString, QStringLiteral("a1")), Q_ARG(bool, false)));
    request = qobject_cast<SocialLikeActivityRequest *>(unlike.data());
    QVERIFY(request);
    QCOMPARE(request->activityId(), QStringLiteral("a1"));
    QVERIFY(!request->like());

    const QScopedPointer<QObject> like(
        metaObject.newInstance(Q_ARG(QString, QStringLiteral("a2"))));
    request = qobject_cast<SocialLikeActivityRequest *>(like.data());
    QVERIFY(request);
    QCOMPARE(request->activityId(), QStringLiteral("a2"));
    QVERIFY(request->like());
}

void ActionRequestsTest::likeHasDefaults()
{
    const SocialLikeActivityRequest request;
    QVERIFY(request.activityId().isNull());
    QVERIFY(request.like());
}

void ActionRequestsTest::likeKeepsItsArguments()
{
    const SocialLikeActivityRequest like(QStringLiteral("a1"));
    QCOMPARE(like.activityId(), QStringLiteral("a1"));
    QVERIFY(like.like());
    const SocialLikeActivityRequest unlike(QStringLiteral("a1"), false);
    QVERIFY(!unlike.like());
}

void ActionRequestsTest::likeReportsSuccess()
{
    Watched<SocialLikeActivityRequest> request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    request.likeResult(false);
    request.likeResult(true);
    QCOMPARE(int(request.status()), 4);
    QVERIFY(request.errors().isEmpty());
    QCOMPARE(finished.count(), 2);
    QCOMPARE(request.reports, QList<int>({4, 4}));
}

void ActionRequestsTest::likeReportsFailure()
{
    SocialLikeActivityRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    request.setResults({SocialGenericData()});
    request.likeResult(false);
    checkFailure(request, 8);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.first().first().value<SocialDataRequest *>(), &request);
    request.likeResult(false);
    checkFailure(request, 8);
    QCOMPARE(finished.count(), 2);
    QCOMPARE(request.results().size(), 1);
}

void ActionRequestsTest::resultSlotsCanBeCalledByName()
{
    SocialPostActivitiesRequest post;
    QVERIFY(QMetaObject::invokeMethod(&post, "postResult", Q_ARG(bool, false)));
    checkFailure(post, 2);
    SocialLikeActivityRequest like;
    QVERIFY(QMetaObject::invokeMethod(&like, "likeResult", Q_ARG(bool, false)));
    checkFailure(like, 8);
}

QTEST_GUILESS_MAIN(ActionRequestsTest)

#include "actionrequeststest.moc"
