// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Which timers the worker starts. A program of its own: single-shot timers outlive their receiver.

#include "manager/kinletmanager.h"
#include "requests/socialgetpersonsrequest.h"
#include "support/runningtimers.h"
#include "support/scriptedprovider.h"

#include <QTest>

class WorkerTimersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void oneTimerForEachOpenRequestAndEachDeletion();
};

void WorkerTimersTest::oneTimerForEachOpenRequestAndEachDeletion()
{
    KinletManager *manager = KinletManager::instance();
    auto *a = ScriptedProvider::add(QStringLiteral("A"));
    auto *b = ScriptedProvider::add(QStringLiteral("B"));
    QCOMPARE(runningTimers(), QList<int>());

    SocialGetPersonsRequest open;
    manager->performRequest(&open, {});
    QCOMPARE(runningTimers(), QList<int>({60001}));
    a->answer();
    QCOMPARE(runningTimers(), QList<int>({60001}));
    b->answer();
    QCOMPARE(runningTimers(), QList<int>({60000, 60001}));
    b->answer();
    QCOMPARE(runningTimers(), QList<int>({60000, 60001}));

    // What is complete after the asking gets no time-out.
    a->onPerform = b->onPerform = ScriptedProvider::answering({});
    SocialGetPersonsRequest complete;
    manager->performRequest(&complete, {});
    QCOMPARE(runningTimers(), QList<int>({60000, 60000, 60001}));
    ScriptedProvider::remove(a->name);
    ScriptedProvider::remove(b->name);
    SocialGetPersonsRequest askedOfNobody;
    manager->performRequest(&askedOfNobody, {});
    QCOMPARE(runningTimers(), QList<int>({60000, 60000, 60000, 60001}));

    // Without its caller a job is queued when it is complete, and once more for the answer.
    auto *c = ScriptedProvider::add(QStringLiteral("C"));
    auto *dying = new SocialGetPersonsRequest;
    manager->performRequest(dying, {});
    delete dying;
    QCOMPARE(runningTimers(), QList<int>({60000, 60000, 60000, 60001, 60001}));
    c->answer();
    QCOMPARE(runningTimers(), QList<int>({60000, 60000, 60000, 60000, 60000, 60001, 60001}));
    KinletManager::cleanupInstance();
    runDeferredDeletes();
}

QTEST_GUILESS_MAIN(WorkerTimersTest)

#include "workertimerstest.moc"
