// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// The caller's results after each of many answers.

#include "manager/kinletmanager.h"
#include "support/watchedrequest.h"

#include <QTest>

#include <random>
#include <utility>

class WorkerResultsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        KinletManager::cleanupInstance();
        runDeferredDeletes();
    }

    void followEveryAnswer_data();
    void followEveryAnswer();
    void replaceWhatTheCallerPutThere();
    void leaveWhatTheCallerKept();
    void areNotMixedWithTheProvidersOwn();
};

void WorkerResultsTest::followEveryAnswer_data()
{
    QTest::addColumn<int>("count");
    for (const int count : {1, 2, 3, 8})
        QTest::addRow("%d providers", count) << count;
}

// Providers that end without being finished may answer as often as they like: with more records,
// with fewer, with none, with the same.
void WorkerResultsTest::followEveryAnswer()
{
    QFETCH(int, count);
    const auto providers = addProviders(count);
    std::mt19937 random(7);
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    QList<QStringList> answers;
    for (int i = 0; i < count; ++i)
        answers.append(QStringList());
    for (int round = 0; round < 300; ++round) {
        const int which = int(random() % unsigned(count));
        if (round % 5 != 0) {
            answers[which].clear();
            for (unsigned i = random() % 4; i > 0; --i)
                answers[which].append(QStringLiteral("%1 in %2").arg(i).arg(round));
            providers[which]->answer(answers[which], SocialDataRequest::Stopped);
        } else {
            // Only the report is new.
            providers[which]->last()->setRequestProgress(SocialDataRequest::Stopped, {});
        }
        QStringList all;
        for (const QStringList &answer : std::as_const(answers))
            all += answer;
        QCOMPARE(idsOf(request.results()), all);
        QCOMPARE(request.reports.last().ids, all);
    }
}

void WorkerResultsTest::replaceWhatTheCallerPutThere()
{
    const auto providers = addProviders(3);
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    providers[0]->answer({QStringLiteral("a")});
    request.setResults(recordsWithIds({QStringLiteral("mine"), QStringLiteral("too")}));
    providers[1]->answer({QStringLiteral("b")});
    QCOMPARE(idsOf(request.results()), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    request.setResults({});
    providers[2]->answer();
    QCOMPARE(idsOf(request.results()), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

void WorkerResultsTest::leaveWhatTheCallerKept()
{
    const auto providers = addProviders(2);
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    providers[0]->answer({QStringLiteral("a")}, SocialDataRequest::Stopped);
    const QList<SocialGenericData> kept = request.results();
    providers[0]->answer({QStringLiteral("a2")});
    providers[1]->answer({QStringLiteral("b")});
    QCOMPARE(idsOf(kept), QStringList(QStringLiteral("a")));
    QCOMPARE(idsOf(request.results()), QStringList({QStringLiteral("a2"), QStringLiteral("b")}));
}

void WorkerResultsTest::areNotMixedWithTheProvidersOwn()
{
    const auto providers = addProviders(2);
    WatchedRequest request;
    KinletManager::instance()->performRequest(&request, {});
    const QList<SocialGenericData> own = recordsWithIds({QStringLiteral("a")});
    SocialDataRequest *const first = providers[0]->last();
    first->setResults(own);
    first->setRequestProgress(SocialDataRequest::Stopped, {});
    providers[1]->answer({QStringLiteral("b")});
    // The next answer begins with the one before.
    first->setResults(first->results() + recordsWithIds({QStringLiteral("a2")}));
    first->setRequestProgress(SocialDataRequest::Finished, {});
    QCOMPARE(idsOf(own), QStringList(QStringLiteral("a")));
    QCOMPARE(idsOf(request.results()),
             QStringList({QStringLiteral("a"), QStringLiteral("a2"), QStringLiteral("b")}));
}

QTEST_GUILESS_MAIN(WorkerResultsTest)

#include "workerresultstest.moc"
