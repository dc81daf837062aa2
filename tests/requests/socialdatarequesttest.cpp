// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialdatarequest_p.h"
#include "requests/socialgetpersonsrequest.h"
#include "support/requesthelpers.h"
#include "support/virtualslots.h"

#include <QSignalSpy>

#include <type_traits>

static_assert(std::is_same_v<std::underlying_type_t<SocialDataRequest::Status>, qint32>);
// Two requests never share their data.
static_assert(!std::is_copy_constructible_v<SocialDataRequestPrivate>);
static_assert(!std::is_copy_assignable_v<SocialDataRequestPrivate>);

namespace {

class CountedPrivate : public SocialDataRequestPrivate {
public:
    explicit CountedPrivate(int *counter) : deletions(counter) { }
    ~CountedPrivate() override { ++*deletions; }
    int type() const override { return 42; }

    int *deletions;
};

class CountedRequest : public SocialDataRequest {
public:
    explicit CountedRequest(int *deletions) : SocialDataRequest(new CountedPrivate(deletions)) { }
};

KinletError error(KinletError::Type type)
{
    return KinletError(type, QStringLiteral("words"));
}

SocialGenericData record(const QString &id)
{
    SocialGenericData data(QStringLiteral("Thing"));
    data.setProperty(SocialGenericData::Id, id);
    return data;
}

}

Q_DECLARE_METATYPE(SocialDataRequest::Status)

class SocialDataRequestTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void numbersItsKindsAndStatuses();
    void describesItself();
    void keepsTheOrderOfItsVirtualCalls();
    void startsInactive();
    void isOfKindZero();
    void asksItsDataForTheKind();
    void deletesItsDataOnce_data();
    void deletesItsDataOnce();
    void toleratesNoData();
    void tellsActiveFromFinished_data();
    void tellsActiveFromFinished();
    void emitsFinishedAtEveryEnd();
    void emitsWithinTheReport();
    void replacesErrors();
    void leavesResultsToTheirSetter();
    void replacesResultsAndFilter();
    void canBeDeletedByItsReceivers();
};

void SocialDataRequestTest::numbersItsKindsAndStatuses()
{
    QCOMPARE(int(SocialDataRequest::GenericRequest), 0);
    QCOMPARE(int(SocialDataRequest::GetAggregatedServices), 1);
    QCOMPARE(int(SocialDataRequest::GetAccounts), 3);
    QCOMPARE(int(SocialDataRequest::GetPersons), 5);
    QCOMPARE(int(SocialDataRequest::GetActivities), 7);
    QCOMPARE(int(SocialDataRequest::PostActivities), 9);
    QCOMPARE(int(SocialDataRequest::LikeActivity), 10);
    QCOMPARE(int(SocialDataRequest::GetLikers), 11);
    QCOMPARE(int(SocialDataRequest::Inactive), 0);
    QCOMPARE(int(SocialDataRequest::Started), 1);
    QCOMPARE(int(SocialDataRequest::Progressing), 2);
    QCOMPARE(int(SocialDataRequest::Stopped), 3);
    QCOMPARE(int(SocialDataRequest::Finished), 4);
}

void SocialDataRequestTest::describesItself()
{
    const QMetaObject &metaObject = SocialDataRequest::staticMetaObject;
    QCOMPARE(constructors(metaObject), QStringList({QStringLiteral("SocialDataRequest()")}));
    QCOMPARE(ownMethods(metaObject), QStringList({QStringLiteral("finished(SocialDataRequest*)")}));
    const QMetaMethod finished = metaObject.method(metaObject.methodOffset());
    QCOMPARE(finished.methodType(), QMetaMethod::Signal);
    QCOMPARE(finished.parameterNames(), QList<QByteArray>({QByteArray("self")}));
}

void SocialDataRequestTest::keepsTheOrderOfItsVirtualCalls()
{
    const int lastOfObject = slotOf(&OpenObject::disconnectNotify);
    QCOMPARE(slotOf(&SocialDataRequest::setRequestProgress), lastOfObject + 1);
    QCOMPARE(slotOf(&SocialDataRequest::serialize), lastOfObject + 2);
    QCOMPARE(slotOf(&SocialDataRequest::unserialize), lastOfObject + 3);
    QCOMPARE(slotOf(&Extended<SocialDataRequest>::next), lastOfObject + 4);

    QCOMPARE(slotOf(&SocialDataRequestPrivate::type), 2);
    QCOMPARE(slotOf(&Extended<SocialDataRequestPrivate>::next), 3);
}

void SocialDataRequestTest::startsInactive()
{
    const SocialDataRequest request;
    QCOMPARE(request.status(), SocialDataRequest::Inactive);
    QVERIFY(!request.isActive());
    QVERIFY(!request.isFinished());
    QVERIFY(request.results().isEmpty());
    QVERIFY(request.errors().isEmpty());
    QVERIFY(request.performOnAccountsFilter().isEmpty());
    QVERIFY(!request.parent());
}

void SocialDataRequestTest::isOfKindZero()
{
    const QScopedPointer<QObject> object(SocialDataRequest::staticMetaObject.newInstance());
    auto *request = qobject_cast<SocialDataRequest *>(object.data());
    QVERIFY(request);
    QCOMPARE(request->type(), 0);
    QVERIFY(!request->parent());
    QCOMPARE(serialized(*request), hex("00000000 00000000 00000000 00000000"));
}

void SocialDataRequestTest::asksItsDataForTheKind()
{
    int deletions = 0;
    CountedRequest request(&deletions);
    QCOMPARE(request.type(), 42);
    QCOMPARE(serialized(request).left(4), hex("0000002a"));
}

void SocialDataRequestTest::deletesItsDataOnce_data()
{
    QTest::addColumn<bool>("throughTheBase");
    QTest::newRow("as itself") << false;
    QTest::newRow("through the base class") << true;
}

void SocialDataRequestTest::deletesItsDataOnce()
{
    QFETCH(bool, throughTheBase);
    int deletions = 0;
    auto *request = new CountedRequest(&deletions);
    QCOMPARE(deletions, 0);
    if (throughTheBase)
        delete static_cast<QObject *>(request);
    else
        delete request;
    QCOMPARE(deletions, 1);

    deletions = 0;
    delete new SocialGetPersonsRequest(new CountedPrivate(&deletions));
    QCOMPARE(deletions, 1);
}

void SocialDataRequestTest::toleratesNoData()
{
    auto *request = new SocialDataRequest(nullptr);
    QSignalSpy destroyed(request, SIGNAL(destroyed(QObject *)));
    delete request;
    QCOMPARE(destroyed.count(), 1);
}

void SocialDataRequestTest::tellsActiveFromFinished_data()
{
    QTest::addColumn<SocialDataRequest::Status>("status");
    QTest::addColumn<bool>("active");
    QTest::addColumn<bool>("finished");
    QTest::newRow("Inactive") << SocialDataRequest::Inactive << false << false;
    QTest::newRow("Started") << SocialDataRequest::Started << true << false;
    QTest::newRow("Progressing") << SocialDataRequest::Progressing << true << false;
    QTest::newRow("Stopped") << SocialDataRequest::Stopped << false << true;
    QTest::newRow("Finished") << SocialDataRequest::Finished << false << true;
    QTest::newRow("below all") << SocialDataRequest::Status(-1) << false << false;
    QTest::newRow("above all") << SocialDataRequest::Status(5) << false << false;
}

void SocialDataRequestTest::tellsActiveFromFinished()
{
    QFETCH(SocialDataRequest::Status, status);
    QFETCH(bool, active);
    QFETCH(bool, finished);
    SocialDataRequest request;
    QSignalSpy spy(&request, SIGNAL(finished(SocialDataRequest *)));
    request.setRequestProgress(status, {});
    QCOMPARE(request.status(), status);
    QCOMPARE(request.isActive(), active);
    QCOMPARE(request.isFinished(), finished);
    QCOMPARE(spy.count(), finished ? 1 : 0);
}

void SocialDataRequestTest::emitsFinishedAtEveryEnd()
{
    SocialDataRequest request;
    QSignalSpy spy(&request, SIGNAL(finished(SocialDataRequest *)));
    request.setRequestProgress(SocialDataRequest::Progressing, {});
    QCOMPARE(spy.count(), 0);
    request.setRequestProgress(SocialDataRequest::Finished, {});
    QCOMPARE(spy.count(), 1);
    request.setRequestProgress(SocialDataRequest::Finished, {});
    QCOMPARE(spy.count(), 2);
    request.setRequestProgress(SocialDataRequest::Stopped, {});
    QCOMPARE(spy.count(), 3);
    request.setRequestProgress(SocialDataRequest::Started, {});
    QCOMPARE(spy.count(), 3);
    QCOMPARE(request.status(), SocialDataRequest::Started);
    for (const QVariantList &arguments : spy)
        QCOMPARE(arguments.first().value<SocialDataRequest *>(), &request);
}

void SocialDataRequestTest::emitsWithinTheReport()
{
    SocialDataRequest request;
    QStringList log;
    connect(&request, &SocialDataRequest::finished, this, [&](SocialDataRequest *self) {
        log << QStringLiteral("finished with %1 error, status %2")
                   .arg(self->errors().size())
                   .arg(self->status());
    });
    request.setRequestProgress(SocialDataRequest::Finished, {error(KinletError::PostFailed)});
    log << QStringLiteral("reported");
    QCOMPARE(log,
             QStringList(
                 {QStringLiteral("finished with 1 error, status 4"), QStringLiteral("reported")}));
}

void SocialDataRequestTest::replacesErrors()
{
    SocialDataRequest request;
    request.setRequestProgress(
        SocialDataRequest::Progressing,
        {error(KinletError::NetworkFailed), error(KinletError::InvalidRequest)});
    QCOMPARE(request.errors().size(), 2);
    QCOMPARE(request.errors().first().type(), KinletError::NetworkFailed);
    QCOMPARE(request.errors().first().description(), QStringLiteral("words"));
    request.setRequestProgress(SocialDataRequest::Started, {error(KinletError::PostFailed)});
    QCOMPARE(request.errors().size(), 1);
    QCOMPARE(request.errors().first().type(), KinletError::PostFailed);
    request.setRequestProgress(SocialDataRequest::Finished, {});
    QVERIFY(request.errors().isEmpty());
}

void SocialDataRequestTest::leavesResultsToTheirSetter()
{
    SocialDataRequest request;
    request.setResults({record(QStringLiteral("1"))});
    request.setRequestProgress(SocialDataRequest::Finished, {error(KinletError::PostFailed)});
    QCOMPARE(request.results().size(), 1);
    request.setResults({});
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QCOMPARE(request.errors().size(), 1);
}

void SocialDataRequestTest::replacesResultsAndFilter()
{
    SocialDataRequest request;
    request.setResults({record(QStringLiteral("1")), record(QStringLiteral("2"))});
    request.setResults({record(QStringLiteral("3"))});
    QCOMPARE(request.results().size(), 1);
    QCOMPARE(request.results().first().id(), QStringLiteral("3"));
    QCOMPARE(request.results().first().className(), QStringLiteral("Thing"));

    request.setPerformOnAccountsFilter({QStringLiteral("a"), QStringLiteral("b")});
    request.setPerformOnAccountsFilter({QStringLiteral("c")});
    QCOMPARE(request.performOnAccountsFilter(), QStringList({QStringLiteral("c")}));
}

void SocialDataRequestTest::canBeDeletedByItsReceivers()
{
    auto *request = new GetAggregatedServicesRequest;
    QPointer<SocialDataRequest> watch(request);
    connect(request, &SocialDataRequest::finished, this,
            [](SocialDataRequest *self) { delete self; });
    request->setRequestProgress(SocialDataRequest::Finished, {});
    QVERIFY(watch.isNull());
}

QTEST_GUILESS_MAIN(SocialDataRequestTest)

#include "socialdatarequesttest.moc"
