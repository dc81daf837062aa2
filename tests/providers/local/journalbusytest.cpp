// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// A journal that another program does not stop writing to. The clocks of this test run fast.

#include "journalsandbox.h"

#include "requests/socialgetactivitiesrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"
#include "store.h"

#include <QElapsedTimer>
#include <QTest>

#include <algorithm>

class JournalBusyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void givesUp();
    void damagedMeanwhile();
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

// A post that has been waiting is not written to a journal that has turned out damaged by then.
void JournalBusyTest::damagedMeanwhile()
{
    const JournalSandbox sandbox;
    const QByteArray text(500, 'x');
    {
        Store store;
        Transaction transaction(store.database(), Transaction::Soon);
        for (int i = 0; i < 6000; ++i)
            store.addActivity(SocialActivity::Status, QString::fromLatin1(text), QString());
        transaction.commit();
    }
    KinletManager::instance();
    SocialPostActivitiesRequest post(SocialActivity::Status, QStringLiteral("text"));
    SocialGetActivitiesRequest all;
    all.setLimit(0);
    QByteArray damaged;
    {
        Store store;
        const Transaction other(store.database(), Transaction::Soon);
        KinletManager::instance()->performRequest(&post, {});
        QVERIFY(!post.isFinished());
        // Pages with the older texts, where nothing new would be written.
        damaged = JournalSandbox::read(sandbox.databasePath());
        for (auto page = 0; page < damaged.size() / 2; page += 4096) {
            if (damaged.mid(page, 4096).contains(text))
                std::fill(damaged.begin() + page, damaged.begin() + page + 4096, '\x55');
        }
        JournalSandbox::write(sandbox.databasePath(), damaged);
        QVERIFY(perform(all));
        QCOMPARE(all.errors().size(), 1);
    }
    QTRY_VERIFY_WITH_TIMEOUT(post.isFinished(), 600000);
    QCOMPARE(post.errors().size(), 1);
    QCOMPARE(post.errors().constFirst().type(), KinletError::PostFailed);
    KinletManager::cleanupInstance();
    QCOMPARE(JournalSandbox::read(sandbox.databasePath()), damaged);
}

QTEST_GUILESS_MAIN(JournalBusyTest)

#include "journalbusytest.moc"
