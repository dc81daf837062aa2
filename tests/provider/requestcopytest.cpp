// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// The copies that the worker makes for the providers.

#include "manager/kinletmanager.h"
#include "provider/socialrequestworker.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"
#include "support/watchedrequest.h"

#include <QDataStream>
#include <QSignalSpy>
#include <QTest>

using RequestMaker = std::function<SocialDataRequest *()>;
Q_DECLARE_METATYPE(RequestMaker)

// Cannot be made from its meta-object.
class UncopyableRequest : public SocialGetPersonsRequest {
    Q_OBJECT

public:
    explicit UncopyableRequest(int) { }
};

// Its meta-object can be asked for a copy once, and then no more.
class OnceCopyableRequest : public SocialGetPersonsRequest {
public:
    const QMetaObject *metaObject() const override
    {
        return asked++ == 0 ? SocialGetPersonsRequest::metaObject()
                            : &UncopyableRequest::staticMetaObject;
    }

private:
    mutable int asked = 0;
};

// Something that can be made, but is no request.
class Stranger : public QObject {
    Q_OBJECT

public:
    Q_INVOKABLE Stranger() { ++made; }
    ~Stranger() override { ++deleted; }

    static inline int made = 0;
    static inline int deleted = 0;
};

class StrangeRequest : public SocialGetPersonsRequest {
public:
    const QMetaObject *metaObject() const override { return &Stranger::staticMetaObject; }
};

namespace {

constexpr auto copyFailure =
    "static SocialDataRequest* SocialRequestWorker::requestCopy(SocialDataRequest*)";

QByteArray bytesOf(SocialDataRequest *request)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    request->serialize(stream);
    return bytes;
}

}

class RequestCopyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        KinletManager::cleanupInstance();
        runDeferredDeletes();
    }

    void aCopyHasClassAndContent_data();
    void aCopyHasClassAndContent();
    void aCopyLeavesOutWhatTheStreamDoes();
    void aSubclassWithoutMetaObjectIsCopiedAsItsBase();
    void whatCannotBeCopiedIsNotPerformed_data();
    void whatCannotBeCopiedIsNotPerformed();
    void aCopyFailureStartsNoProvider();
    void withoutProviderNothingIsCopied();
};

void RequestCopyTest::aCopyHasClassAndContent_data()
{
    QTest::addColumn<RequestMaker>("make");
    const auto row = [](const char *name, RequestMaker make) {
        QTest::newRow(name) << std::move(make);
    };
    row("generic", [] { return new SocialDataRequest; });
    row("services", [] { return new GetAggregatedServicesRequest; });
    row("accounts", [] { return new SocialGetAccountsRequest; });
    row("persons", [] {
        auto *request = new SocialGetPersonsRequest;
        request->setPropertyFilter(SocialNetworkPerson::FirstName, QRegExp(QStringLiteral("^A")));
        return request;
    });
    row("activities", [] {
        auto *request = new SocialGetActivitiesRequest;
        request->setLimit(7);
        request->setPersonsFilter({QStringLiteral("me")});
        request->setForceRefresh(true);
        return request;
    });
    row("post", [] {
        return new SocialPostActivitiesRequest(SocialActivity::Comment, QStringLiteral("text"),
                                               QStringLiteral("post"));
    });
    row("like", [] { return new SocialLikeActivityRequest(QStringLiteral("act"), false); });
    row("likers", [] { return new SocialGetLikersRequest(QStringLiteral("act")); });
}

void RequestCopyTest::aCopyHasClassAndContent()
{
    QFETCH(RequestMaker, make);
    const QScopedPointer<SocialDataRequest> request(make());
    request->setPerformOnAccountsFilter({QStringLiteral("a1"), QStringLiteral("b1")});
    request->setResults(recordsWithIds({QStringLiteral("old")}));
    request->setRequestProgress(SocialDataRequest::Stopped, {KinletError(KinletError::LikeFailed)});

    const QScopedPointer<SocialDataRequest> copy(SocialRequestWorker::requestCopy(request.data()));
    QVERIFY(copy);
    QVERIFY(copy != request);
    QCOMPARE(copy->parent(), nullptr);
    QCOMPARE(copy->metaObject(), request->metaObject());
    QCOMPARE(copy->type(), request->type());
    QCOMPARE(copy->status(), SocialDataRequest::Stopped);
    QCOMPARE(bytesOf(copy.data()), bytesOf(request.data()));
    // Old results go along, errors do not.
    QCOMPARE(idsOf(copy->results()), QStringList(QStringLiteral("old")));
    QVERIFY(copy->errors().isEmpty());
}

void RequestCopyTest::aCopyLeavesOutWhatTheStreamDoes()
{
    SocialGetAccountsRequest request;
    request.setServiceFilter({QStringLiteral("s")});
    const QScopedPointer<SocialDataRequest> copy(SocialRequestWorker::requestCopy(&request));
    const auto *accounts = qobject_cast<SocialGetAccountsRequest *>(copy.data());
    QVERIFY(accounts);
    QVERIFY(accounts->serviceFilter().isEmpty());
}

void RequestCopyTest::aSubclassWithoutMetaObjectIsCopiedAsItsBase()
{
    WatchedRequest request;
    request.setLimit(3);
    const QScopedPointer<SocialDataRequest> copy(SocialRequestWorker::requestCopy(&request));
    QVERIFY(!dynamic_cast<WatchedRequest *>(copy.data()));
    const auto *activities = dynamic_cast<SocialGetActivitiesRequest *>(copy.data());
    QVERIFY(activities);
    QCOMPARE(activities->limit(), 3);
}

void RequestCopyTest::whatCannotBeCopiedIsNotPerformed_data()
{
    QTest::addColumn<RequestMaker>("make");
    QTest::newRow("no constructor without arguments")
        << RequestMaker([] { return new UncopyableRequest(1); });
    QTest::newRow("not a request") << RequestMaker([] { return new StrangeRequest; });
}

void RequestCopyTest::whatCannotBeCopiedIsNotPerformed()
{
    QFETCH(RequestMaker, make);
    const QScopedPointer<SocialDataRequest> request(make());
    auto *provider = ScriptedProvider::add(QStringLiteral("A"));
    SocialRequestWorker worker(nullptr);
    request->setResults(recordsWithIds({QStringLiteral("kept")}));
    QSignalSpy finished(request.data(), &SocialDataRequest::finished);

    QTest::ignoreMessage(QtCriticalMsg, copyFailure);
    QCOMPARE(SocialRequestWorker::requestCopy(request.data()), nullptr);
    QTest::ignoreMessage(QtCriticalMsg, copyFailure);
    QVERIFY(!worker.performRequest(request.data()));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(request->status(), SocialDataRequest::Finished);
    QCOMPARE(idsOf(request->results()), QStringList(QStringLiteral("kept")));
    QCOMPARE(typesOf(request->errors()), QList<int>({KinletError::NotPerformed}));
    QVERIFY(request->errors().first().description().isEmpty());
    QVERIFY(provider->received.isEmpty());
    QCOMPARE(Stranger::deleted, Stranger::made);
}

void RequestCopyTest::aCopyFailureStartsNoProvider()
{
    const QList<ScriptedProvider *> providers{ScriptedProvider::add(QStringLiteral("A")),
                                              ScriptedProvider::add(QStringLiteral("B"))};
    SocialRequestWorker worker(nullptr);
    OnceCopyableRequest request;
    QSignalSpy finished(&request, &SocialDataRequest::finished);
    QTest::ignoreMessage(QtCriticalMsg, copyFailure);
    QVERIFY(!worker.performRequest(&request));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(typesOf(request.errors()), QList<int>({KinletError::NotPerformed}));
    for (const ScriptedProvider *provider : providers)
        QVERIFY(provider->received.isEmpty());
}

void RequestCopyTest::withoutProviderNothingIsCopied()
{
    SocialRequestWorker worker(nullptr);
    UncopyableRequest request(1);
    QVERIFY(worker.performRequest(&request));
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QVERIFY(request.errors().isEmpty());
}

QTEST_GUILESS_MAIN(RequestCopyTest)

#include "requestcopytest.moc"
