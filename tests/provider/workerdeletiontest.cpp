// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// When the copies that the providers worked on are deleted. The clocks of this program run fast.

#include "manager/kinletmanager.h"
#include "requests/socialgetpersonsrequest.h"
#include "support/watchedrequest.h"

#include <QDateTime>
#include <QTest>

// Knows how many of it there are. Its meta-object makes it twice, and then something else.
class CountedRequest : public SocialDataRequest {
    Q_OBJECT

public:
    Q_INVOKABLE CountedRequest() { ++alive; }
    ~CountedRequest() override { --alive; }

    static inline int alive = 0;
};

class TwiceCopyableRequest : public CountedRequest {
public:
    const QMetaObject *metaObject() const override
    {
        return alive <= 2 ? CountedRequest::metaObject() : &QObject::staticMetaObject;
    }
};

namespace {

constexpr auto Finished = SocialDataRequest::Finished;
constexpr int LongWait = 300000;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

qint64 now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

// Notes when an object is deleted.
class Deletion : public QObject {
public:
    explicit Deletion(QObject *object)
    {
        connect(object, &QObject::destroyed, this, [this] { at = now(); });
    }
    // A stall of the machine counts many times over, so the upper limit is generous.
    bool isAMinuteAfter(qint64 time) const { return at - time >= 60000 && at - time < 115000; }

    qint64 at = 0;
};

}

class WorkerDeletionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        KinletManager::cleanupInstance();
        runDeferredDeletes();
    }

    void aMinuteAfterTheLastAnswer_data();
    void aMinuteAfterTheLastAnswer();
    void withoutTheCaller_data();
    void withoutTheCaller();
    void neverAfterATimeoutWithTheCaller();
    void afterAnAnswerInsideCancelRequest();
    void whatIsQueuedTwiceGoesWithTheLaterTimer();
    void copiesThatWereNeverStarted();
};

void WorkerDeletionTest::aMinuteAfterTheLastAnswer_data()
{
    QTest::addColumn<bool>("atOnce");
    QTest::addColumn<bool>("callerDies");
    QTest::newRow("answered inside the call") << true << false;
    QTest::newRow("answered inside the call, caller deleted in finished") << true << true;
    QTest::newRow("answered later") << false << false;
    QTest::newRow("answered later, caller deleted in finished") << false << true;
}

void WorkerDeletionTest::aMinuteAfterTheLastAnswer()
{
    QFETCH(bool, atOnce);
    QFETCH(bool, callerDies);
    QPointer<ScriptedProvider> a = ScriptedProvider::add(text("A"));
    QPointer<ScriptedProvider> b = ScriptedProvider::add(text("B"));
    if (atOnce)
        a->onPerform = b->onPerform = ScriptedProvider::answering({text("r")});
    QPointer<SocialGetPersonsRequest> request = new SocialGetPersonsRequest;
    if (callerDies)
        connect(request, &SocialDataRequest::finished, this, [&] { delete request; });
    qint64 answered = now();
    KinletManager::instance()->performRequest(request, {});
    const Deletion first(a->last());
    const Deletion second(b->last());
    if (!atOnce) {
        a->answer();
        QTest::qWait(30000);
        answered = now();
        b->answer();
    }
    // The job keeps its providers, the manager does not.
    ScriptedProvider::remove(a->name);
    ScriptedProvider::remove(b->name);
    runDeferredDeletes();
    QVERIFY(a && b);

    QTRY_VERIFY_WITH_TIMEOUT(first.at && second.at, LongWait);
    QVERIFY(first.isAMinuteAfter(answered));
    QVERIFY(second.isAMinuteAfter(answered));
    QTRY_VERIFY_WITH_TIMEOUT(!a && !b, LongWait);
    // The application's request is never deleted.
    QCOMPARE(request.isNull(), callerDies);
    delete request;
}

void WorkerDeletionTest::withoutTheCaller_data()
{
    QTest::addColumn<bool>("answers");
    QTest::newRow("answered in time") << true;
    QTest::newRow("ended by the time-out") << false;
}

void WorkerDeletionTest::withoutTheCaller()
{
    QFETCH(bool, answers);
    auto *provider = ScriptedProvider::add(text("A"));
    auto *request = new SocialGetPersonsRequest;
    const qint64 start = now();
    KinletManager::instance()->performRequest(request, {});
    const Deletion copy(provider->last());
    delete request;
    qint64 ended = 0;
    provider->onCancel = [&](SocialDataRequest *) { ended = now(); };
    if (answers) {
        QTest::qWait(20000);
        ended = now();
        provider->answer();
    }
    QTRY_VERIFY_WITH_TIMEOUT(copy.at, LongWait);
    QVERIFY(copy.isAMinuteAfter(ended));
    QCOMPARE(provider->cancelled.count(), answers ? 0 : 1);
    QVERIFY(answers || ended - start >= 60000);
}

void WorkerDeletionTest::neverAfterATimeoutWithTheCaller()
{
    auto *provider = ScriptedProvider::add(text("A"));
    SocialGetPersonsRequest overdue;
    KinletManager::instance()->performRequest(&overdue, {});
    const Deletion kept(provider->last());
    QTRY_COMPARE_WITH_TIMEOUT(overdue.status(), Finished, LongWait);
    provider->answer();

    // What ends later and is deleted comes after the time at which the other would have gone.
    SocialGetPersonsRequest later;
    provider->onPerform = ScriptedProvider::answering({});
    KinletManager::instance()->performRequest(&later, {});
    const Deletion deleted(provider->last());
    QTRY_VERIFY_WITH_TIMEOUT(deleted.at, LongWait);
    QCOMPARE(kept.at, 0);
}

void WorkerDeletionTest::afterAnAnswerInsideCancelRequest()
{
    auto *provider = ScriptedProvider::add(text("A"));
    qint64 answered = 0;
    provider->onCancel = [&](SocialDataRequest *copy) {
        answered = now();
        ScriptedProvider::answering({text("r")})(copy);
    };
    SocialGetPersonsRequest request;
    KinletManager::instance()->performRequest(&request, {});
    const Deletion copy(provider->last());
    QTRY_VERIFY_WITH_TIMEOUT(copy.at, LongWait);
    QVERIFY(copy.isAMinuteAfter(answered));
    QVERIFY(request.errors().isEmpty());
}

void WorkerDeletionTest::whatIsQueuedTwiceGoesWithTheLaterTimer()
{
    auto *a = ScriptedProvider::add(text("A"));
    auto *b = ScriptedProvider::add(text("B"));
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    const Deletion first(a->last());
    const Deletion second(b->last());
    qint64 queuedAgain = 0;
    // While the first answer is being reported, the other completes the request. It is queued then,
    // and once more when the first report has returned.
    request.onReport = [&](SocialDataRequest::Status) {
        request.onReport = nullptr;
        b->answer();
        QTest::qWait(20000);
        queuedAgain = now();
    };
    a->answer();
    QTRY_VERIFY_WITH_TIMEOUT(first.at && second.at, LongWait);
    QVERIFY(first.isAMinuteAfter(queuedAgain));
    QVERIFY(second.isAMinuteAfter(queuedAgain));
}

void WorkerDeletionTest::copiesThatWereNeverStarted()
{
    QList<ScriptedProvider *> providers;
    for (const auto *name : {"A", "B", "C"})
        providers.append(ScriptedProvider::add(text(name)));
    TwiceCopyableRequest request;
    QTest::ignoreMessage(
        QtCriticalMsg,
        "static SocialDataRequest* SocialRequestWorker::requestCopy(SocialDataRequest*)");
    const qint64 failed = now();
    KinletManager::instance()->performRequest(&request, {});
    QCOMPARE(typesOf(request.errors()), QList<int>({KinletError::NotPerformed}));
    QCOMPARE(CountedRequest::alive, 3);
    QTRY_COMPARE_WITH_TIMEOUT(CountedRequest::alive, 1, LongWait);
    QVERIFY(now() - failed >= 60000);
    for (const ScriptedProvider *provider : std::as_const(providers))
        QVERIFY(provider->received.isEmpty());
}

QTEST_GUILESS_MAIN(WorkerDeletionTest)

#include "workerdeletiontest.moc"
