// SPDX-FileCopyrightText: @YEAR@ The @NAME@ developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "provider.h"

#include <QSignalSpy>
#include <QTest>

/// FILL IN: a test for everything that the network's answers are made into.
class ProviderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isNamed();
    void activitiesOfOneAccount();
    void unknownActivityHasNoLikers();
    void cancelledRequestIsNotAnswered();
};

void ProviderTest::isNamed()
{
    Provider provider;
    QCOMPARE(provider.metaData().value(QStringLiteral("name")).toString(),
             QStringLiteral("@NAME@"));
}

void ProviderTest::activitiesOfOneAccount()
{
    Provider provider;
    const QString account = provider.accounts().constFirst().id();
    SocialGetActivitiesRequest request;
    request.setPerformOnAccountsFilter({account});
    QSignalSpy finished(&request, &SocialDataRequest::finished);
    provider.performRequest(&request);
    QTRY_COMPARE(finished.count(), 1);
    QVERIFY(request.errors().isEmpty());
    QVERIFY(!request.activities().isEmpty());
    const QList<SocialActivity> activities = request.activities();
    for (const SocialActivity &activity : activities)
        QCOMPARE(activity.parentAccount(), account);
}

void ProviderTest::unknownActivityHasNoLikers()
{
    Provider provider;
    SocialGetLikersRequest request(QStringLiteral("unknown"));
    QSignalSpy finished(&request, &SocialDataRequest::finished);
    provider.performRequest(&request);
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(request.errors().size(), 1);
    QCOMPARE(request.errors().constFirst().type(), KinletError::InvalidRequest);
}

void ProviderTest::cancelledRequestIsNotAnswered()
{
    Provider provider;
    SocialGetActivitiesRequest cancelled;
    SocialGetActivitiesRequest later;
    QSignalSpy finished(&later, &SocialDataRequest::finished);
    provider.performRequest(&cancelled);
    provider.cancelRequest(&cancelled);
    provider.performRequest(&later);
    QTRY_COMPARE(finished.count(), 1);
    QVERIFY(!cancelled.isFinished());
}

QTEST_GUILESS_MAIN(ProviderTest)
#include "providertest.moc"
