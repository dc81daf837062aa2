// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Whom the worker asks, and with what.

#include "manager/kinletmanager.h"
#include "provider/socialrequestworker.h"
#include "requests/socialgetpersonsrequest.h"
#include "support/watchedrequest.h"

#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

namespace {

const QString a1 = QStringLiteral("a1");
const QString a2 = QStringLiteral("a2");
const QString b1 = QStringLiteral("b1");

}

class WorkerDispatchTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        KinletManager::cleanupInstance();
        runDeferredDeletes();
    }

    void metaObjectOfTheWorker();
    void withoutProviderTheRequestEndsAtOnce_data();
    void withoutProviderTheRequestEndsAtOnce();
    void accountsOfARemovedProviderAreLeftOut();
    void aProviderWithoutNameOwnsNoAccounts();
    void anEmptyFilterAsksEverybody();
    void aFilterIsNarrowedToEachProvider();
    void startedBeforeProvidersAreAsked();
    void providersAreChosenOnceStarted();
    void theManagerIsMadeWhenNeeded();
    void cancelRequestDoesNothing();
};

void WorkerDispatchTest::metaObjectOfTheWorker()
{
    const QMetaObject &meta = SocialRequestWorker::staticMetaObject;
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        QCOMPARE(method.access(), QMetaMethod::Private);
        methods.append(QString::fromLatin1(method.methodSignature()));
    }
    QCOMPARE(methods,
             QStringList({QStringLiteral("requestFinished(SocialDataRequest*)"),
                          QStringLiteral("timeoutElapsed()"),
                          QStringLiteral("onRequestDisposed(QObject*)"),
                          QStringLiteral("onDeferredDelete()")}));
    QCOMPARE(meta.method(meta.methodOffset()).parameterNames(), QList<QByteArray>({"request"}));
    QObject parent;
    QPointer<SocialRequestWorker> worker = new SocialRequestWorker(&parent);
    QCOMPARE(worker->parent(), &parent);
}

void WorkerDispatchTest::withoutProviderTheRequestEndsAtOnce_data()
{
    QTest::addColumn<bool>("anyProvider");
    QTest::addColumn<QStringList>("filter");
    QTest::newRow("none there") << false << QStringList();
    QTest::newRow("none there, accounts named") << false << QStringList({a1, b1});
    QTest::newRow("accounts that nobody has")
        << true << QStringList({QStringLiteral("A1"), QStringLiteral("a1 "), QString()});
}

void WorkerDispatchTest::withoutProviderTheRequestEndsAtOnce()
{
    QFETCH(bool, anyProvider);
    QFETCH(QStringList, filter);
    ScriptedProvider *provider =
        anyProvider ? ScriptedProvider::add(QStringLiteral("A"), {a1}) : nullptr;
    SocialRequestWorker worker(nullptr);
    WatchedRequest request;
    request.setPerformOnAccountsFilter(filter);
    request.setResults(recordsWithIds({QStringLiteral("old")}));
    QSignalSpy finished(&request, &SocialDataRequest::finished);

    QVERIFY(worker.performRequest(&request));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).value<SocialDataRequest *>(), &request);
    const QList<WatchedRequest::Report> expected{
        {SocialDataRequest::Started, {QStringLiteral("old")}, {}},
        {SocialDataRequest::Finished, {}, {}}};
    QCOMPARE(request.reports, expected);
    QVERIFY(!provider || provider->received.isEmpty());
}

void WorkerDispatchTest::accountsOfARemovedProviderAreLeftOut()
{
    auto *provider = new ScriptedProvider(QStringLiteral("A"), {a1});
    const QSharedPointer<KinletInterface> handle(provider, &QObject::deleteLater);
    provider->answersRegistry = false;
    QVERIFY(KinletManager::instance()->addProvider(handle));
    ScriptedProvider::remove(provider->name);
    // The answer comes late: the registry knows the account, but there is no provider.
    const auto asked = provider->received;
    for (SocialDataRequest *request : asked)
        provider->KinletInterface::performRequest(request);
    QCOMPARE(KinletManager::instance()->providerNameFromAccountId(a1), provider->name);

    SocialRequestWorker worker(nullptr);
    WatchedRequest request;
    request.setPerformOnAccountsFilter({a1});
    QVERIFY(worker.performRequest(&request));
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QVERIFY(request.errors().isEmpty());
    QCOMPARE(provider->received.count(), 2);
}

void WorkerDispatchTest::aProviderWithoutNameOwnsNoAccounts()
{
    auto *nameless = ScriptedProvider::add(QString(), {a1});
    SocialRequestWorker worker(nullptr);
    WatchedRequest request;
    request.setPerformOnAccountsFilter({a1, QStringLiteral("unknown")});
    QVERIFY(worker.performRequest(&request));
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QVERIFY(nameless->received.isEmpty());
    // Without a filter it is one of all.
    request.setPerformOnAccountsFilter({});
    QVERIFY(worker.performRequest(&request));
    QCOMPARE(nameless->received.count(), 1);
}

void WorkerDispatchTest::anEmptyFilterAsksEverybody()
{
    QStringList asked;
    QList<SocialDataRequest *> copies;
    for (const auto &name : {"A", "B", "C", "D"}) {
        auto *provider = ScriptedProvider::add(QString::fromLatin1(name), {a1});
        provider->onPerform = [&, provider](SocialDataRequest *copy) {
            asked.append(provider->name);
            copies.append(copy);
        };
    }
    SocialRequestWorker worker(nullptr);
    WatchedRequest request;
    QVERIFY(worker.performRequest(&request));

    QCOMPARE(asked, QStringList(KinletManager::instance()->allProviderNames()));
    for (SocialDataRequest *copy : std::as_const(copies)) {
        QVERIFY(copy != &request);
        QCOMPARE(copies.count(copy), 1);
        QCOMPARE(copy->parent(), nullptr);
        QCOMPARE(copy->status(), SocialDataRequest::Started);
        QVERIFY(copy->performOnAccountsFilter().isEmpty());
    }
}

void WorkerDispatchTest::aFilterIsNarrowedToEachProvider()
{
    auto *a = ScriptedProvider::add(QStringLiteral("A"), {a1, a2, QStringLiteral("a3")});
    auto *b = ScriptedProvider::add(QStringLiteral("B"), {b1});
    auto *c = ScriptedProvider::add(QStringLiteral("C"), {QStringLiteral("c1")});
    SocialRequestWorker worker(nullptr);
    WatchedRequest request;
    const QStringList filter{a1, b1, QStringLiteral("unknown"), a2, a1};
    request.setPerformOnAccountsFilter(filter);
    QVERIFY(worker.performRequest(&request));

    QCOMPARE(a->received.count(), 1);
    QCOMPARE(b->received.count(), 1);
    QCOMPARE(c->received.count(), 0);
    // The one named last comes first, and one named twice stays so.
    QCOMPARE(a->last()->performOnAccountsFilter(), QStringList({a1, a2, a1}));
    QCOMPARE(b->last()->performOnAccountsFilter(), QStringList(b1));
    QCOMPARE(request.performOnAccountsFilter(), filter);

    request.setPerformOnAccountsFilter({a1, QStringLiteral("a3"), a2});
    QVERIFY(worker.performRequest(&request));
    QCOMPARE(a->received.count(), 2);
    QCOMPARE(b->received.count(), 1);
    QCOMPARE(a->last()->performOnAccountsFilter(), QStringList({a2, QStringLiteral("a3"), a1}));
}

void WorkerDispatchTest::startedBeforeProvidersAreAsked()
{
    auto *provider = ScriptedProvider::add(QStringLiteral("A"));
    SocialRequestWorker worker(nullptr);
    WatchedRequest request;
    // A first performance leaves an error behind, which starting again clears.
    request.SocialDataRequest::setRequestProgress(SocialDataRequest::Finished,
                                                  {KinletError(KinletError::PostFailed)});
    int reportsWhenAsked = 0;
    provider->onPerform = [&](SocialDataRequest *) {
        reportsWhenAsked = int(request.reports.count());
        QCOMPARE(request.status(), SocialDataRequest::Started);
        QVERIFY(request.errors().isEmpty());
    };
    QVERIFY(worker.performRequest(&request));
    QCOMPARE(reportsWhenAsked, 1);
}

void WorkerDispatchTest::providersAreChosenOnceStarted()
{
    auto *a = ScriptedProvider::add(QStringLiteral("A"), {a1});
    ScriptedProvider *b = nullptr;
    SocialRequestWorker worker(nullptr);
    WatchedRequest request;
    request.setPerformOnAccountsFilter({a1});
    request.onReport = [&](SocialDataRequest::Status) {
        request.onReport = nullptr;
        b = ScriptedProvider::add(QStringLiteral("B"), {b1});
        request.setPerformOnAccountsFilter({b1});
    };
    QVERIFY(worker.performRequest(&request));
    QVERIFY(a->received.isEmpty());
    QCOMPARE(b->received.count(), 1);
    QCOMPARE(b->last()->performOnAccountsFilter(), QStringList(b1));
}

void WorkerDispatchTest::theManagerIsMadeWhenNeeded()
{
    SocialRequestWorker worker(nullptr);
    KinletManager::cleanupInstance();
    const int before = int(QCoreApplication::instance()->findChildren<KinletManager *>().count());
    SocialGetPersonsRequest request;
    QVERIFY(worker.performRequest(&request));
    QCOMPARE(QCoreApplication::instance()->findChildren<KinletManager *>().count(), before + 1);
}

void WorkerDispatchTest::cancelRequestDoesNothing()
{
    auto *provider = ScriptedProvider::add(QStringLiteral("A"));
    SocialRequestWorker worker(nullptr);
    WatchedRequest request;
    QVERIFY(!worker.cancelRequest(&request));
    worker.performRequest(&request);
    const auto reports = request.reports;
    QVERIFY(!worker.cancelRequest(&request));
    QVERIFY(provider->cancelled.isEmpty());
    QCOMPARE(request.reports, reports);
    provider->answer({QStringLiteral("r")});
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QCOMPARE(idsOf(request.results()), QStringList(QStringLiteral("r")));
    QVERIFY(!worker.cancelRequest(&request));
}

QTEST_GUILESS_MAIN(WorkerDispatchTest)

#include "workerdispatchtest.moc"
