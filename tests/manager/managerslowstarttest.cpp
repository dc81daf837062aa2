// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// The clocks of this program run fast.

#include "managerinternals.h"
#include "support/pluginfolder.h"
#include "support/watchedrequest.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

/// Start-up that takes longer than any request of an application may.
class ManagerSlowStartTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { KinletManager::cleanupInstance(); }

    void startupHasNoTimeLimit();
};

void ManagerSlowStartTest::startupHasNoTimeLimit()
{
    const PluginFolder folder;
    folder.providers({QStringLiteral("a-held")});
    KinletManager *manager = KinletManager::instance();
    const QSignalSpy initialized(manager, SIGNAL(initialized()));
    auto *late = new ScriptedProvider(QStringLiteral("late"));
    late->answersRegistry = false;
    QVERIFY(ScriptedProvider::add(late));
    const QPointer<SocialDataRequest> asked = late->last();

    // Each is overdue after a minute. Two, since less precise timers may take a little longer.
    for (int i = 0; i < 2; ++i) {
        WatchedRequest request;
        manager->performRequest(&request, {});
        QTRY_COMPARE_WITH_TIMEOUT(request.status(), SocialDataRequest::Finished, 300000);
        QCOMPARE(typesOf(request.errors()), QList<int>({KinletError::ProviderTimeout}));
    }

    QVERIFY(!manager->isInitialized());
    QCOMPARE(initialized.count(), 0);
    QVERIFY(manager->hasProvider(QStringLiteral("a-held")));
    QCOMPARE(internalsOf(manager)->initRequests.size(), 4);
    QVERIFY(asked);
    QCOMPARE(asked->status(), SocialDataRequest::Inactive);
    QVERIFY(!late->cancelled.contains(asked));
}

QTEST_GUILESS_MAIN(ManagerSlowStartTest)
#include "managerslowstarttest.moc"
