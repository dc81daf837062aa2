// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// What is told of a request on its way. The clocks of this program run fast.

#include "manager/kinletmanager.h"
#include "provider/socialrequestworker.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"
#include "support/categorylog.h"
#include "support/scriptedprovider.h"

#include <QTest>

namespace {

constexpr int LongWait = 300000;
const QString name = QStringLiteral("A");
const QString secret = QStringLiteral("SECRET");

/// Without an invokable constructor.
class UncopyableRequest : public SocialDataRequest {
    Q_OBJECT
};

void perform(SocialDataRequest &request)
{
    KinletManager::instance()->performRequest(&request, {});
}

}

class WorkerLogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        KinletManager::cleanupInstance();
        runDeferredDeletes();
    }

    void nothingIsToldUnlessAskedFor();
    void dispatchAndAnswers();
    void copiesAreNamedOnlyForTheLog();
    void eachLevelHasItsRule();
    void noProvider();
    void unsupportedKind();
    void deletedMeanwhile();
    void notCopied();
    void notAnsweredInTime();
    void whatPeopleWriteIsLeftOut();
};

void WorkerLogTest::nothingIsToldUnlessAskedFor()
{
    ScriptedProvider::add(name)->onPerform = ScriptedProvider::answering({});
    const CategoryLog log("");
    SocialLikeActivityRequest request;
    perform(request);
    QVERIFY(request.isFinished());
    QCOMPARE(log.take(), QStringList());
}

void WorkerLogTest::dispatchAndAnswers()
{
    ScriptedProvider *provider = ScriptedProvider::add(name);
    const CategoryLog log;
    SocialLikeActivityRequest request;
    perform(request);
    QCOMPARE(log.take(),
             lines({"kinlet.requests.debug: SocialLikeActivityRequest(0x) has status 1 with 0 "
                    "results and 0 errors",
                    "kinlet.provider.debug: SocialLikeActivityRequest(0x) goes to \"A\" as "
                    "SocialLikeActivityRequest(0x)",
                    "kinlet.requests.debug: SocialLikeActivityRequest(0x) has status 1 with 0 "
                    "results and 0 errors"}));
    provider->answer({QStringLiteral("1"), QStringLiteral("2")}, SocialDataRequest::Finished,
                     {KinletError(KinletError::LikeFailed)});
    QCOMPARE(log.take(),
             lines({"kinlet.requests.debug: SocialLikeActivityRequest(0x, name = \"A\") has status "
                    "4 with 2 results and 1 errors",
                    "kinlet.requests.debug: SocialLikeActivityRequest(0x) has status 4 with 2 "
                    "results and 1 errors"}));
    provider->answer();
    QVERIFY(log.has("kinlet.provider.debug: SocialLikeActivityRequest(0x, name = \"A\") is "
                    "answered, but nobody waits for it"));
}

void WorkerLogTest::copiesAreNamedOnlyForTheLog()
{
    const ScriptedProvider *provider = ScriptedProvider::add(name);
    SocialLikeActivityRequest first;
    perform(first);
    QCOMPARE(provider->last()->objectName(), QString());
    const CategoryLog log("kinlet.requests.debug=true");
    SocialLikeActivityRequest second;
    perform(second);
    QCOMPARE(provider->last()->objectName(), name);
    QCOMPARE(second.objectName(), QString());
}

void WorkerLogTest::eachLevelHasItsRule()
{
    const CategoryLog log("kinlet.*.info=true");
    ScriptedProvider::add(name)->onPerform = ScriptedProvider::answering({});
    SocialLikeActivityRequest request;
    perform(request);
    QCOMPARE(log.take(), lines({"kinlet.manager.info: The provider \"A\" is added"}));
}

void WorkerLogTest::noProvider()
{
    const CategoryLog log("kinlet.requests=true");
    SocialLikeActivityRequest request;
    perform(request);
    QCOMPARE(
        log.take().last(),
        QStringLiteral("kinlet.requests.debug: SocialLikeActivityRequest(0x) has status 4 with "
                       "0 results and 0 errors"));
}

void WorkerLogTest::unsupportedKind()
{
    ScriptedProvider *provider = ScriptedProvider::add(name);
    provider->onPerform = [provider](SocialDataRequest *request) {
        provider->KinletInterface::performRequest(request);
    };
    const CategoryLog log;
    SocialLikeActivityRequest request;
    perform(request);
    QVERIFY(log.has("kinlet.provider.warning: SocialLikeActivityRequest(0x, name = \"A\") is of a "
                    "kind that its provider does not support"));
}

void WorkerLogTest::deletedMeanwhile()
{
    ScriptedProvider::add(name);
    const CategoryLog log;
    {
        SocialLikeActivityRequest request;
        perform(request);
        log.take();
    }
    QCOMPARE(log.take(),
             lines({"kinlet.provider.debug: A request is deleted while 1 providers "
                    "work for it"}));
}

void WorkerLogTest::notCopied()
{
    ScriptedProvider::add(name);
    const CategoryLog log;
    QTest::ignoreMessage(
        QtCriticalMsg,
        "static SocialDataRequest* SocialRequestWorker::requestCopy(SocialDataRequest*)");
    UncopyableRequest request;
    perform(request);
    QVERIFY(log.take().contains(
        QLatin1String("kinlet.provider.warning: UncopyableRequest(0x) cannot be copied: its class "
                      "makes no request")));
}

void WorkerLogTest::notAnsweredInTime()
{
    ScriptedProvider::add(name);
    const CategoryLog log("kinlet.*.warning=true");
    SocialLikeActivityRequest request;
    perform(request);
    log.take();
    QTRY_VERIFY_WITH_TIMEOUT(request.isFinished(), LongWait);
    QCOMPARE(log.take(),
             lines({"kinlet.provider.warning: SocialLikeActivityRequest(0x, name = \"A\") has not "
                    "been answered in 60 seconds and is cancelled"}));
}

void WorkerLogTest::whatPeopleWriteIsLeftOut()
{
    ScriptedProvider *provider = ScriptedProvider::add(name);
    provider->onPerform = [](SocialDataRequest *request) {
        SocialGenericData record;
        record.setProperty(SocialGenericData::Description, secret);
        request->setResults({record});
        request->setRequestProgress(SocialDataRequest::Finished,
                                    {KinletError(KinletError::PostFailed, secret)});
    };
    const CategoryLog log;
    SocialPostActivitiesRequest request(SocialActivity::Status, secret);
    perform(request);
    SocialGenericData pushed;
    pushed.setProperty(SocialGenericData::Description, secret);
    Q_EMIT provider->dataUpdate({pushed}, {SocialGenericData::Description});
    Q_EMIT provider->error(name, secret, secret);
    const QString all = log.take().join(QLatin1Char('\n'));
    QVERIFY(all.contains(QLatin1String("has news of 1 records")));
    QVERIFY2(!all.contains(secret), qPrintable(all));
}

QTEST_GUILESS_MAIN(WorkerLogTest)
#include "workerlogtest.moc"
