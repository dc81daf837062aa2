// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// The time-out at the pace of the world. A program of its own, so that others run beside it.

#include "manager/kinletmanager.h"
#include "requests/socialgetpersonsrequest.h"
#include "support/scriptedprovider.h"

#include <QDateTime>
#include <QTest>

class RealMinuteTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theTimeoutAndTheDeletion();
};

void RealMinuteTest::theTimeoutAndTheDeletion()
{
    auto *silent = ScriptedProvider::add(QStringLiteral("silent"), {QStringLiteral("s")});
    auto *quick = ScriptedProvider::add(QStringLiteral("quick"), {QStringLiteral("q")});
    quick->onPerform = ScriptedProvider::answering({QStringLiteral("r")});
    QDateTime ended;
    const QDateTime start = QDateTime::currentDateTime();
    // Several, from all parts of a second.
    QList<SocialGetPersonsRequest *> requests;
    int timedOut = 0;
    for (int i = 0; i < 8; ++i) {
        auto *request = new SocialGetPersonsRequest;
        request->setParent(this);
        requests.append(request);
        connect(request, &SocialDataRequest::finished, this, [&] {
            ++timedOut;
            if (ended.isNull())
                ended = QDateTime::currentDateTime();
        });
        KinletManager::instance()->performRequest(request, {});
        QTest::qWait(125);
    }
    SocialGetPersonsRequest answered;
    KinletManager::instance()->performRequest(&answered, quick->accountList);
    QCOMPARE(answered.status(), SocialDataRequest::Finished);
    QVERIFY(quick->last());

    QTRY_COMPARE_WITH_TIMEOUT(timedOut, 8, 90000);
    QVERIFY(start.msecsTo(ended) >= 60000);
    for (const SocialGetPersonsRequest *request : std::as_const(requests)) {
        QCOMPARE(typesOf(request->errors()), QList<int>({KinletError::ProviderTimeout}));
        QCOMPARE(idsOf(request->results()), QStringList(QStringLiteral("r")));
    }
    QCOMPARE(silent->cancelled.count(), 8);
    QTRY_VERIFY_WITH_TIMEOUT(!quick->last(), 90000);
    QVERIFY(start.msecsTo(QDateTime::currentDateTime()) >= 60000);
    QVERIFY(silent->last());
    KinletManager::cleanupInstance();
    runDeferredDeletes();
}

QTEST_GUILESS_MAIN(RealMinuteTest)

#include "realminutetest.moc"
