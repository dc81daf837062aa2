// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Which copies each deletion timer deletes. The test strikes in the timers' place, so that it need
// not wait for them.

#include "manager/kinletmanager.h"
#include "provider/socialrequestworker.h"
#include "support/watchedrequest.h"

#include <QTest>

#include <memory>
#include <vector>

class WorkerQueueTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        provider = ScriptedProvider::add(QStringLiteral("A"), {QStringLiteral("a")});
        worker = std::make_unique<SocialRequestWorker>(nullptr);
    }
    void cleanup()
    {
        worker.reset();
        requests.clear();
        KinletManager::cleanupInstance();
        runDeferredDeletes();
    }

    void nothingIsQueued();
    void copiesAreDeletedFromTheEventLoop();
    void oldestFirst();
    void queuedAgainItGoesToTheEnd_data();
    void queuedAgainItGoesToTheEnd();
    void withoutItsCallerItIsQueuedTwice();

private:
    void strike() const
    {
        QVERIFY(QMetaObject::invokeMethod(worker.get(), "onDeferredDelete", Qt::DirectConnection));
        runDeferredDeletes();
    }
    // Performs a request; the result is the provider's copy, which is null once it is deleted.
    QPointer<SocialDataRequest> perform()
    {
        requests.push_back(std::make_unique<WatchedRequest>());
        requests.back()->setPerformOnAccountsFilter({QStringLiteral("a")});
        worker->performRequest(requests.back().get());
        return provider->last();
    }
    static void answer(SocialDataRequest *copy) { ScriptedProvider::answering({})(copy); }

    ScriptedProvider *provider = nullptr;
    std::unique_ptr<SocialRequestWorker> worker;
    std::vector<std::unique_ptr<WatchedRequest>> requests;
};

void WorkerQueueTest::nothingIsQueued()
{
    const auto open = perform();
    strike();
    QVERIFY(open);
    answer(open);
    QCOMPARE(requests[0]->status(), SocialDataRequest::Finished);
    QVERIFY(open);
    strike();
    QVERIFY(!open);
    strike();
}

void WorkerQueueTest::copiesAreDeletedFromTheEventLoop()
{
    const auto copy = perform();
    answer(copy);
    QVERIFY(QMetaObject::invokeMethod(worker.get(), "onDeferredDelete", Qt::DirectConnection));
    QVERIFY(copy);
    // An answer that comes between is ignored like any other late one.
    const auto reports = requests[0]->reports;
    answer(copy);
    QCOMPARE(requests[0]->reports, reports);
    runDeferredDeletes();
    QVERIFY(!copy);
}

void WorkerQueueTest::oldestFirst()
{
    const auto first = perform();
    const auto second = perform();
    const auto third = perform();
    const auto open = perform();
    answer(second);
    answer(third);
    answer(first);
    strike();
    QVERIFY(!second && third && first);
    strike();
    QVERIFY(!third && first);
    strike();
    QVERIFY(!first);
    strike();
    QVERIFY(open);
}

void WorkerQueueTest::queuedAgainItGoesToTheEnd_data()
{
    QTest::addColumn<int>("gone");
    QTest::addColumn<int>("before");
    QTest::newRow("first of all") << 0 << 0;
    QTest::newRow("behind others") << 0 << 2;
    QTest::newRow("after others have gone") << 3 << 0;
    QTest::newRow("behind others, after others have gone") << 3 << 2;
}

void WorkerQueueTest::queuedAgainItGoesToTheEnd()
{
    QFETCH(int, gone);
    QFETCH(int, before);
    for (int i = 0; i < gone; ++i) {
        answer(perform());
        strike();
    }
    for (int i = 0; i < before; ++i)
        answer(perform());

    auto *other = ScriptedProvider::add(QStringLiteral("B"));
    WatchedRequest request;
    worker->performRequest(&request);
    const QPointer<SocialDataRequest> copy = provider->last();
    const QPointer<SocialDataRequest> otherCopy = other->last();
    QPointer<SocialDataRequest> between;
    // While the first answer is being reported, the other completes the request. It is queued then,
    // and once more when the first report has returned.
    request.onReport = [&](SocialDataRequest::Status) {
        request.onReport = nullptr;
        answer(otherCopy);
        between = perform();
        answer(between);
    };
    answer(copy);
    const auto last = perform();
    answer(last);

    for (int i = 0; i < before; ++i) {
        QVERIFY(provider->received.at(gone + i));
        strike();
        QVERIFY(!provider->received.at(gone + i));
    }
    strike();
    QVERIFY(copy && otherCopy && between && last);
    strike();
    QVERIFY(copy && otherCopy && !between && last);
    strike();
    QVERIFY(!copy && !otherCopy && last);
    strike();
    QVERIFY(!last);
}

void WorkerQueueTest::withoutItsCallerItIsQueuedTwice()
{
    const auto copy = perform();
    requests.clear();
    strike();
    QVERIFY(copy);
    answer(copy);
    strike();
    QVERIFY(copy);
    strike();
    QVERIFY(!copy);
}

QTEST_GUILESS_MAIN(WorkerQueueTest)

#include "workerqueuetest.moc"
