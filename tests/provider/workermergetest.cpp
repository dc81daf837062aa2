// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// How the worker joins the providers' answers.

#include "manager/kinletmanager.h"
#include "provider/socialrequestworker.h"
#include "requests/socialgetpersonsrequest.h"
#include "support/watchedrequest.h"

#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <new>

namespace {

using Report = WatchedRequest::Report;
constexpr auto Started = SocialDataRequest::Started;
constexpr auto Progressing = SocialDataRequest::Progressing;
constexpr auto Stopped = SocialDataRequest::Stopped;
constexpr auto Finished = SocialDataRequest::Finished;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

}

class WorkerMergeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        KinletManager::cleanupInstance();
        runDeferredDeletes();
    }

    void synchronousAnswers();
    void answersInAnyOrder_data();
    void answersInAnyOrder();
    void lowestStatus_data();
    void lowestStatus();
    void progressIsPassedOnWithTheNextAnswer();
    void stoppedKeepsTheRequestOpen();
    void aSecondAnswerReplacesTheFirst();
    void answersAfterTheEndAreIgnored();
    void anotherProvidersCallMayAnswer();
    void oldResultsAreHandedToTheProviders();
    void oneRequestTwiceAtOnce();
    void aRequestAtTheAddressOfADeadOne();
    void aRequestStartedFromFinished();
};

void WorkerMergeTest::synchronousAnswers()
{
    const auto providers = addProviders(2);
    providers[0]->onPerform = ScriptedProvider::answering({text("1")});
    providers[1]->onPerform = ScriptedProvider::answering({text("2")});
    WatchedRequest request;
    QSignalSpy finished(&request, &SocialDataRequest::finished);
    KinletManager::instance()->performRequest(&request, {});
    const QList<Report> expected{
        {Started, {}, {}}, {Started, {text("1")}, {}}, {Finished, {text("1"), text("2")}, {}}};
    QCOMPARE(request.reports, expected);
    QCOMPARE(finished.count(), 1);
}

void WorkerMergeTest::answersInAnyOrder_data()
{
    QTest::addColumn<QList<int>>("order");
    QList<int> order{0, 1, 2};
    do {
        QTest::addRow("%d, %d, %d", order[0], order[1], order[2]) << order;
    } while (std::next_permutation(order.begin(), order.end()));
}

void WorkerMergeTest::answersInAnyOrder()
{
    QFETCH(QList<int>, order);
    const auto providers = addProviders(3);
    WatchedRequest request;
    QSignalSpy finished(&request, &SocialDataRequest::finished);
    KinletManager::instance()->performRequest(&request, {});
    // The second is the merge that ends the asking.
    QList<Report> expected{{Started, {}, {}}, {Started, {}, {}}};
    QCOMPARE(request.reports, expected);

    const QList<KinletError::Type> types{KinletError::PostFailed, KinletError::NetworkFailed,
                                         KinletError::LikeFailed};
    QSet<int> answered;
    for (const int which : std::as_const(order)) {
        QCOMPARE(finished.count(), 0);
        const QString id = QString::number(which);
        providers[which]->answer({id + u'a', id + u'b'}, Finished, {KinletError(types[which], id)});
        answered.insert(which);
        QStringList ids;
        QList<int> errors;
        for (int i = 0; i < 3; ++i) {
            if (answered.contains(i)) {
                ids << QString::number(i) + u'a' << QString::number(i) + u'b';
                errors << types[i];
            }
        }
        expected.append({answered.count() == 3 ? Finished : Started, ids, errors});
        QCOMPARE(request.reports, expected);
    }
    QCOMPARE(finished.count(), 1);
    QCOMPARE(request.errors().at(1).description(), text("1"));
}

void WorkerMergeTest::lowestStatus_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::addColumn<int>("merged");
    const char *names[] = {"negative", "inactive", "started", "progressing",
                           "stopped",  "finished", "unknown"};
    for (int first = -1; first <= 5; ++first) {
        for (int second = 3; second <= 4; ++second)
            QTest::addRow("%s and %s", names[first + 1], names[second + 1])
                << first << second << std::min({first, second, 4});
    }
}

void WorkerMergeTest::lowestStatus()
{
    QFETCH(int, first);
    QFETCH(int, second);
    QFETCH(int, merged);
    for (const bool reversed : {false, true}) {
        auto providers = addProviders(2);
        if (reversed)
            std::reverse(providers.begin(), providers.end());
        WatchedRequest request;
        KinletManager::instance()->performRequest(&request, {});
        providers[0]->last()->setRequestProgress(SocialDataRequest::Status(first), {});
        providers[1]->last()->setRequestProgress(SocialDataRequest::Status(second), {});
        QCOMPARE(int(request.status()), merged);
        QCOMPARE(int(request.reports.last().status), merged);
        KinletManager::cleanupInstance();
    }
}

void WorkerMergeTest::progressIsPassedOnWithTheNextAnswer()
{
    const auto providers = addProviders(2);
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    const auto before = request.reports.count();
    providers[0]->answer({text("part")}, Progressing, {KinletError(KinletError::NetworkFailed)});
    QCOMPARE(request.reports.count(), before);
    providers[1]->answer({text("2")});
    const Report both{Progressing, {text("part"), text("2")}, {KinletError::NetworkFailed}};
    QCOMPARE(request.reports.last(), both);
    QVERIFY(request.isActive());
    providers[0]->answer({text("part"), text("rest")});
    const Report end{Finished, {text("part"), text("rest"), text("2")}, {}};
    QCOMPARE(request.reports.last(), end);
}

void WorkerMergeTest::stoppedKeepsTheRequestOpen()
{
    const auto providers = addProviders(2);
    WatchedRequest request;
    QSignalSpy finished(&request, &SocialDataRequest::finished);
    KinletManager::instance()->performRequest(&request, {});
    providers[0]->answer({text("1")}, Stopped);
    QCOMPARE(request.status(), Started);
    QCOMPARE(finished.count(), 0);
    providers[1]->answer({text("2")});
    QCOMPARE(request.status(), Stopped);
    QCOMPARE(finished.count(), 1);
    // The job is still open: a better answer counts.
    providers[0]->answer({text("1"), text("3")});
    const Report end{Finished, {text("1"), text("3"), text("2")}, {}};
    QCOMPARE(request.reports.last(), end);
    QCOMPARE(finished.count(), 2);
}

void WorkerMergeTest::aSecondAnswerReplacesTheFirst()
{
    const auto providers = addProviders(2);
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    providers[0]->answer({text("old")}, Finished, {KinletError(KinletError::PostFailed)});
    providers[0]->answer({text("new")});
    const Report replaced{Started, {text("new")}, {}};
    QCOMPARE(request.reports.last(), replaced);
    providers[1]->answer({text("2")});
    const Report end{Finished, {text("new"), text("2")}, {}};
    QCOMPARE(request.reports.last(), end);
}

void WorkerMergeTest::answersAfterTheEndAreIgnored()
{
    const auto providers = addProviders(2);
    // Twice within the call, and again later.
    providers[0]->onPerform = [](SocialDataRequest *copy) {
        ScriptedProvider::answering({text("1")})(copy);
        ScriptedProvider::answering({text("1")})(copy);
    };
    WatchedRequest request;
    QSignalSpy finished(&request, &SocialDataRequest::finished);
    KinletManager::instance()->performRequest(&request, {});
    providers[1]->answer({text("2")});
    QCOMPARE(finished.count(), 1);
    const auto reports = request.reports;
    providers[1]->answer({text("late")});
    providers[0]->answer({text("late")}, Stopped);
    QCOMPARE(request.reports, reports);
    QCOMPARE(idsOf(request.results()), QStringList({text("1"), text("2")}));
}

void WorkerMergeTest::anotherProvidersCallMayAnswer()
{
    const auto providers = addProviders(3);
    providers[1]->onPerform = [&](SocialDataRequest *) { providers[0]->answer({text("1")}); };
    providers[2]->onPerform = [&](SocialDataRequest *copy) {
        providers[1]->answer({text("2")});
        ScriptedProvider::answering({text("3")})(copy);
    };
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    const Report end{Finished, {text("1"), text("2"), text("3")}, {}};
    QCOMPARE(request.reports.last(), end);
    QCOMPARE(request.reports.count(), 4);
}

void WorkerMergeTest::oldResultsAreHandedToTheProviders()
{
    const auto providers = addProviders(2);
    WatchedRequest request;
    request.setResults(recordsWithIds({text("old")}));
    KinletManager::instance()->performRequest(&request, {});
    QCOMPARE(idsOf(providers[0]->last()->results()), QStringList(text("old")));
    // Until a provider replaces them they count as its own.
    QCOMPARE(request.reports.last().ids, QStringList({text("old"), text("old")}));
    providers[1]->answer({text("2")});
    QCOMPARE(request.reports.last().ids, QStringList({text("old"), text("2")}));
}

void WorkerMergeTest::oneRequestTwiceAtOnce()
{
    const auto providers = addProviders(1);
    WatchedRequest request;
    QSignalSpy finished(&request, &SocialDataRequest::finished);
    for (int i = 0; i < 3; ++i)
        KinletManager::instance()->performRequest(&request, {});
    const auto copies = providers[0]->received;
    QCOMPARE(copies.count(), 3);
    // Each performance ends on its own, in any order, without touching the others.
    for (const int i : {1, 0, 2}) {
        ScriptedProvider::answering({QString::number(i)})(copies[i]);
        QCOMPARE(idsOf(request.results()), QStringList(QString::number(i)));
    }
    QCOMPARE(finished.count(), 3);

    KinletManager::instance()->performRequest(&request, {});
    KinletManager::instance()->performRequest(&request, {});
    providers[0]->answer({text("last")});
    QCOMPARE(finished.count(), 4);
    // When it dies, the performance that is still open knows.
    auto *dying = new SocialGetPersonsRequest;
    KinletManager::instance()->performRequest(dying, {});
    KinletManager::instance()->performRequest(dying, {});
    providers[0]->answer({text("one of two")});
    delete dying;
    const auto all = providers[0]->received;
    for (SocialDataRequest *copy : all)
        ScriptedProvider::answering({text("late")})(copy);
    QCOMPARE(finished.count(), 5);
}

void WorkerMergeTest::aRequestAtTheAddressOfADeadOne()
{
    const auto providers = addProviders(1);
    alignas(SocialGetPersonsRequest) unsigned char storage[sizeof(SocialGetPersonsRequest)];
    auto *first = new (storage) SocialGetPersonsRequest;
    KinletManager::instance()->performRequest(first, {});
    KinletManager::instance()->performRequest(first, {});
    const auto firstCopies = providers[0]->received;
    QCOMPARE(firstCopies.count(), 2);
    first->~SocialGetPersonsRequest();

    auto *second = new (storage) SocialGetPersonsRequest;
    const auto gone = qScopeGuard([&] { second->~SocialGetPersonsRequest(); });
    QSignalSpy finished(second, &SocialDataRequest::finished);
    KinletManager::instance()->performRequest(second, {});
    for (SocialDataRequest *copy : firstCopies)
        ScriptedProvider::answering({text("for the dead")})(copy);
    QCOMPARE(finished.count(), 0);
    QVERIFY(second->results().isEmpty());
    providers[0]->answer({text("for the living")});
    QCOMPARE(finished.count(), 1);
    QCOMPARE(idsOf(second->results()), QStringList(text("for the living")));
}

void WorkerMergeTest::aRequestStartedFromFinished()
{
    const auto providers = addProviders(2);
    WatchedRequest first;
    WatchedRequest second;
    connect(&first, &SocialDataRequest::finished, &second,
            [&] { KinletManager::instance()->performRequest(&second, {}); });
    KinletManager::instance()->performRequest(&first, {});
    providers[0]->answer({text("1")});
    providers[1]->answer({text("2")});
    QCOMPARE(providers[0]->received.count(), 2);
    QCOMPARE(idsOf(first.results()), QStringList({text("1"), text("2")}));
    providers[1]->answer({text("4")});
    providers[0]->answer({text("3")});
    QCOMPARE(idsOf(second.results()), QStringList({text("3"), text("4")}));
    QCOMPARE(second.status(), Finished);
    QCOMPARE(idsOf(first.results()), QStringList({text("1"), text("2")}));
}

QTEST_GUILESS_MAIN(WorkerMergeTest)

#include "workermergetest.moc"
