// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// A journal that another program does not stop writing to. The clocks of this test run fast.

#include "journalsandbox.h"

#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"
#include "store.h"

#include <QElapsedTimer>
#include <QTest>

class JournalBusyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void givesUp();
};

void JournalBusyTest::givesUp()
{
    const JournalSandbox sandbox;
    SocialPostActivitiesRequest before(SocialActivity::Status, QStringLiteral("before"));
    QVERIFY(perform(before));
    Store store;
    SocialPostActivitiesRequest post(SocialActivity::Status, QStringLiteral("text"));
    SocialLikeActivityRequest like(before.results().constFirst().id());
    {
        const Transaction other(store.database(), Transaction::Soon);
        QElapsedTimer time;
        time.start();
        KinletManager::instance()->performRequest(&post, {});
        KinletManager::instance()->performRequest(&like, {});
        QTRY_VERIFY_WITH_TIMEOUT(post.isFinished() && like.isFinished(), 600000);
        QVERIFY(time.elapsed() >= 30000);
    }
    QCOMPARE(post.errors().size(), 1);
    QCOMPARE(post.errors().constFirst().type(), KinletError::PostFailed);
    QVERIFY(post.errors().constFirst().description().contains(QLatin1String("busy")));
    QCOMPARE(like.errors().size(), 1);
    QCOMPARE(like.errors().constFirst().type(), KinletError::LikeFailed);

    SocialPostActivitiesRequest after(SocialActivity::Status, QStringLiteral("after"));
    QVERIFY(perform(after));
    QCOMPARE(after.errors().size(), 0);
}

QTEST_GUILESS_MAIN(JournalBusyTest)

#include "journalbusytest.moc"
