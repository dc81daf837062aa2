// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest_p.h"
#include "requests/timelinerequestfactory.h"
#include "support/requesthelpers.h"

namespace {

// The results that typed views are made of: a person, an activity and a plain record.
QList<SocialGenericData> mixedResults()
{
    QList<SocialGenericData> results{SocialNetworkPerson(), SocialActivity(), SocialGenericData()};
    int id = 0;
    for (SocialGenericData &record : results)
        record.setProperty(SocialGenericData::Id, ++id);
    return results;
}

// The private data of a persons request made by a subclass.
class SubclassPrivate : public SocialGetPersonsRequestPrivate {
public:
    SubclassPrivate() { isAlive = true; }
    ~SubclassPrivate() override { isAlive = false; }
    int type() const override { return 77; }

    static inline bool isAlive = false;
};

template <typename Typed>
void checkTypedView(const QList<Typed> &typed, const QList<SocialGenericData> &results)
{
    QCOMPARE(typed.size(), results.size());
    for (int i = 0; i < typed.size(); ++i) {
        QCOMPARE(typed.at(i).className(), Typed::ClassName);
        QCOMPARE(typed.at(i).properties(), results.at(i).properties());
    }
}

template <typename Typed>
QList<Typed> twoOf()
{
    Typed first;
    first.setProperty(SocialGenericData::Id, QStringLiteral("2"));
    Typed second;
    second.setProperty(SocialGenericData::Id, QStringLiteral("1"));
    return {first, second};
}

template <typename Typed>
void checkStoredView(const SocialDataRequest &request)
{
    QCOMPARE(request.results().size(), 2);
    QCOMPARE(request.results().at(0).className(), Typed::ClassName);
    QCOMPARE(request.results().at(0).id(), QStringLiteral("2"));
    QCOMPARE(request.results().at(1).className(), Typed::ClassName);
    QCOMPARE(request.results().at(1).id(), QStringLiteral("1"));
}

}

class QueryRequestsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void viewResultsAsPersons();
    void viewResultsAsActivities();
    void viewResultsAsAccounts();
    void viewResultsAsServices();
    void personsCanBeConstructedByName();
    void activitiesCanBeConstructedByName();
    void accountsCanBeConstructedByName();
    void servicesCanBeConstructedByName();
    void likersCanBeConstructedByName();
    void personsOwnPrivateData();
    void personsTakePatterns();
    void patternsSurviveStreams();
    void likersKnowTheirActivity();
    void likersArePersons();
    void accountsTakeServices();
    void activitiesStartWithDefaults();
    void activitiesTakeFilters();
    void factoryMakesHomepages();
    void factoryMakesProfiles();
};

void QueryRequestsTest::viewResultsAsPersons()
{
    SocialGetPersonsRequest request;
    QVERIFY(request.persons().isEmpty());
    request.setResults(mixedResults());
    checkTypedView(request.persons(), request.results());
    QCOMPARE(written(request.results()), written(mixedResults()));
    request.setPersons(twoOf<SocialNetworkPerson>());
    checkStoredView<SocialNetworkPerson>(request);
}

void QueryRequestsTest::viewResultsAsActivities()
{
    SocialGetActivitiesRequest request;
    QVERIFY(request.activities().isEmpty());
    request.setResults(mixedResults());
    checkTypedView(request.activities(), request.results());
    QCOMPARE(written(request.results()), written(mixedResults()));
    request.setActivities(twoOf<SocialActivity>());
    checkStoredView<SocialActivity>(request);
}

void QueryRequestsTest::viewResultsAsAccounts()
{
    SocialGetAccountsRequest request;
    QVERIFY(request.accounts().isEmpty());
    request.setResults(mixedResults());
    checkTypedView(request.accounts(), request.results());
    QCOMPARE(written(request.results()), written(mixedResults()));
    request.setAccounts(twoOf<SocialServiceAccount>());
    checkStoredView<SocialServiceAccount>(request);
}

void QueryRequestsTest::viewResultsAsServices()
{
    GetAggregatedServicesRequest request;
    QVERIFY(request.availableServices().isEmpty());
    request.setResults(mixedResults());
    checkTypedView(request.availableServices(), request.results());
    QCOMPARE(written(request.results()), written(mixedResults()));
    request.setAvailableServices(twoOf<SocialService>());
    checkStoredView<SocialService>(request);
}

void QueryRequestsTest::personsCanBeConstructedByName()
{
    const QMetaObject &metaObject = SocialGetPersonsRequest::staticMetaObject;
    QCOMPARE(constructors(metaObject),
             QStringList({QStringLiteral("SocialGetPersonsRequest()"),
                          QStringLiteral("SocialGetPersonsRequest(SocialDataRequestPrivate*)")}));
    QCOMPARE(argumentNames(metaObject, "SocialGetPersonsRequest(SocialDataRequestPrivate*)"),
             QByteArray("otherd"));
    QVERIFY(ownMethods(metaObject).isEmpty());
    QCOMPARE(metaObject.superClass(), &SocialDataRequest::staticMetaObject);
    const QScopedPointer<QObject> object(metaObject.newInstance());
    const auto *request = qobject_cast<SocialGetPersonsRequest *>(object.data());
    QVERIFY(request && !request->parent());
    QCOMPARE(request->type(), 5);
    QVERIFY(request->propertyFilter().isEmpty());
    QVERIFY(request->persons().isEmpty());
}

void QueryRequestsTest::activitiesCanBeConstructedByName()
{
    const QMetaObject &metaObject = SocialGetActivitiesRequest::staticMetaObject;
    QCOMPARE(constructors(metaObject),
             QStringList({QStringLiteral("SocialGetActivitiesRequest()")}));
    QVERIFY(ownMethods(metaObject).isEmpty());
    const QScopedPointer<QObject> object(metaObject.newInstance());
    const auto *request = qobject_cast<SocialGetActivitiesRequest *>(object.data());
    QVERIFY(request && !request->parent());
    QCOMPARE(request->type(), 7);
    QCOMPARE(request->limit(), 10);
    QVERIFY(request->activities().isEmpty());
}

void QueryRequestsTest::accountsCanBeConstructedByName()
{
    const QMetaObject &metaObject = SocialGetAccountsRequest::staticMetaObject;
    QCOMPARE(constructors(metaObject), QStringList({QStringLiteral("SocialGetAccountsRequest()")}));
    QVERIFY(ownMethods(metaObject).isEmpty());
    const QScopedPointer<QObject> object(metaObject.newInstance());
    const auto *request = qobject_cast<SocialGetAccountsRequest *>(object.data());
    QVERIFY(request && !request->parent());
    QCOMPARE(request->type(), 3);
    QVERIFY(request->serviceFilter().isEmpty());
    QVERIFY(request->accounts().isEmpty());
}

void QueryRequestsTest::servicesCanBeConstructedByName()
{
    const QMetaObject &metaObject = GetAggregatedServicesRequest::staticMetaObject;
    QCOMPARE(constructors(metaObject),
             QStringList({QStringLiteral("GetAggregatedServicesRequest()")}));
    QVERIFY(ownMethods(metaObject).isEmpty());
    const QScopedPointer<QObject> object(metaObject.newInstance());
    const auto *request = qobject_cast<GetAggregatedServicesRequest *>(object.data());
    QVERIFY(request && !request->parent());
    QCOMPARE(request->type(), 1);
    QVERIFY(request->availableServices().isEmpty());
}

void QueryRequestsTest::likersCanBeConstructedByName()
{
    const QMetaObject &metaObject = SocialGetLikersRequest::staticMetaObject;
    QCOMPARE(constructors(metaObject),
             QStringList({QStringLiteral("SocialGetLikersRequest(QString)"),
                          QStringLiteral("SocialGetLikersRequest()")}));
    QCOMPARE(argumentNames(metaObject, "SocialGetLikersRequest(QString)"),
             QByteArray("activityId"));
    QVERIFY(ownMethods(metaObject).isEmpty());
    QCOMPARE(metaObject.superClass(), &SocialGetPersonsRequest::staticMetaObject);
    const QScopedPointer<QObject> empty(metaObject.newInstance());
    const auto *emptyRequest = qobject_cast<SocialGetLikersRequest *>(empty.data());
    QVERIFY(emptyRequest && !emptyRequest->parent());
    QCOMPARE(emptyRequest->type(), 11);
    QVERIFY(emptyRequest->activityId().isNull());
    const QScopedPointer<QObject> asked(
        metaObject.newInstance(Q_ARG(QString, QStringLiteral("a1"))));
    QCOMPARE(qobject_cast<SocialGetLikersRequest *>(asked.data())->activityId(),
             QStringLiteral("a1"));
}

void QueryRequestsTest::personsOwnPrivateData()
{
    QVERIFY(!SubclassPrivate::isAlive);
    QObject *object = SocialGetPersonsRequest::staticMetaObject.newInstance(
        Q_ARG(SocialDataRequestPrivate *, new SubclassPrivate));
    QVERIFY(SubclassPrivate::isAlive);
    auto *request = qobject_cast<SocialGetPersonsRequest *>(object);
    QVERIFY(request && !request->parent());
    QCOMPARE(request->type(), 77);
    request->setPropertyFilter(QStringLiteral("FirstName"), QRegExp());
    QCOMPARE(request->propertyFilter().size(), 1);
    delete object;
    QVERIFY(!SubclassPrivate::isAlive);
}

void QueryRequestsTest::personsTakePatterns()
{
    SocialGetPersonsRequest request;
    request.setPropertyFilter(QStringLiteral("FirstName"), QRegExp(QStringLiteral("^A")));
    request.setPropertyFilter(QStringLiteral("FirstName"), QRegExp(QStringLiteral("^B")));
    QCOMPARE(request.propertyFilter().size(), 1);
    QCOMPARE(request.propertyFilter().value(QStringLiteral("FirstName")).pattern(),
             QStringLiteral("^B"));
    request.setPropertyFilter(QStringLiteral("LastName"), QRegExp());
    QCOMPARE(request.propertyFilter().size(), 2);
}

void QueryRequestsTest::patternsSurviveStreams()
{
    SocialGetPersonsRequest request;
    request.setPropertyFilter(QStringLiteral("FirstName"), QRegExp(QStringLiteral("^A")));
    request.setPropertyFilter(
        QStringLiteral("LastName"),
        QRegExp(QStringLiteral("b*"), Qt::CaseInsensitive, QRegExp::Wildcard));
    SocialGetPersonsRequest copy;
    QCOMPARE(unserialize(copy, serialized(request)), QDataStream::Ok);
    QCOMPARE(copy.propertyFilter(), request.propertyFilter());
}

void QueryRequestsTest::likersKnowTheirActivity()
{
    QVERIFY(SocialGetLikersRequest().activityId().isNull());
    QCOMPARE(SocialGetLikersRequest(QStringLiteral("a1")).activityId(), QStringLiteral("a1"));
    QCOMPARE(SocialGetLikersRequest(QStringLiteral("a1")).type(), 11);
}

void QueryRequestsTest::likersArePersons()
{
    SocialGetLikersRequest request(QStringLiteral("a1"));
    request.setPropertyFilter(QStringLiteral("FirstName"), QRegExp(QStringLiteral("^A")));
    request.setPersons(twoOf<SocialNetworkPerson>());
    QCOMPARE(request.persons().size(), 2);
    QCOMPARE(request.propertyFilter().size(), 1);
    QCOMPARE(request.activityId(), QStringLiteral("a1"));
}

void QueryRequestsTest::accountsTakeServices()
{
    SocialGetAccountsRequest request;
    QVERIFY(request.serviceFilter().isEmpty());
    request.setServiceFilter({QStringLiteral("a"), QStringLiteral("b")});
    request.setServiceFilter({QStringLiteral("c")});
    QCOMPARE(request.serviceFilter(), QStringList({QStringLiteral("c")}));
}

void QueryRequestsTest::activitiesStartWithDefaults()
{
    const SocialGetActivitiesRequest request;
    QCOMPARE(request.limit(), 10);
    QCOMPARE(int(request.activityFilter()), 4);
    QCOMPARE(int(request.timelineType()), 0);
    QVERIFY(request.before().isNull());
    QVERIFY(request.after().isNull());
    QVERIFY(request.personsFilter().isEmpty());
    QVERIFY(request.activityIdsFilter().isEmpty());
    QVERIFY(request.parentActivityIdFilter().isNull());
    QVERIFY(!request.forceRefresh());
}

void QueryRequestsTest::activitiesTakeFilters()
{
    const QDateTime early = QDateTime::fromSecsSinceEpoch(1, Qt::UTC);
    const QDateTime late = QDateTime::fromSecsSinceEpoch(2, Qt::UTC);
    SocialGetActivitiesRequest request;
    request.setLimit(-1);
    request.setActivityFilter(SocialActivity::Comment);
    request.setTimelineType(KinletTimeline::Favorites);
    request.setBefore(late);
    request.setAfter(early);
    request.setPersonsFilter({QStringLiteral("p1")});
    request.setPersonsFilter({QStringLiteral("p2")});
    request.setActivityIdsFilter({QStringLiteral("a1")});
    request.setActivityIdsFilter({QStringLiteral("a2")});
    request.setParentActivityIdFilter(QStringLiteral("parent"));
    request.setForceRefresh(true);
    QCOMPARE(request.limit(), -1);
    QCOMPARE(request.activityFilter(), SocialActivity::Comment);
    QCOMPARE(request.timelineType(), KinletTimeline::Favorites);
    QCOMPARE(request.before(), late);
    QCOMPARE(request.after(), early);
    QCOMPARE(request.personsFilter(), QStringList({QStringLiteral("p2")}));
    QCOMPARE(request.activityIdsFilter(), QStringList({QStringLiteral("a2")}));
    QCOMPARE(request.parentActivityIdFilter(), QStringLiteral("parent"));
    QVERIFY(request.forceRefresh());
}

void QueryRequestsTest::factoryMakesHomepages()
{
    const QScopedPointer<SocialGetActivitiesRequest> request(
        TimelineRequestFactory::createHomepageTimelineRequest());
    SocialGetActivitiesRequest expected;
    expected.setTimelineType(KinletTimeline::TimelineType(1));
    expected.setActivityFilter(SocialActivity::Type(1));
    QVERIFY(!request->parent());
    QCOMPARE(request->metaObject(), expected.metaObject());
    QCOMPARE(serialized(*request).toHex(), serialized(expected).toHex());
}

void QueryRequestsTest::factoryMakesProfiles()
{
    const QStringList persons{QStringLiteral("p1"), QStringLiteral("p2")};
    const QScopedPointer<SocialGetActivitiesRequest> request(
        TimelineRequestFactory::createProfileTimelineRequest(persons));
    SocialGetActivitiesRequest expected;
    expected.setTimelineType(KinletTimeline::TimelineType(2));
    expected.setActivityFilter(SocialActivity::Type(1));
    expected.setPersonsFilter(persons);
    expected.setForceRefresh(true);
    QVERIFY(!request->parent());
    QCOMPARE(request->metaObject(), expected.metaObject());
    QCOMPARE(serialized(*request).toHex(), serialized(expected).toHex());
}

QTEST_GUILESS_MAIN(QueryRequestsTest)

#include "queryrequeststest.moc"
