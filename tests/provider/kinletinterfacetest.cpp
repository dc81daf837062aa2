// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "provider/kinletinterface.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"
#include "support/scriptedprovider.h"

#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include <cstddef>
#include <cstring>

using RequestMaker = std::function<SocialDataRequest *()>;
Q_DECLARE_METATYPE(RequestMaker)

namespace {

// Overrides nothing that it need not.
class DefaultProvider : public KinletInterface {
    Q_OBJECT

public:
    using KinletInterface::KinletInterface;
    void init() override { }
    QVariantMap metaData() override { return {}; }
};

// As the root object of a provider plug-in.
class DeclaredProvider : public DefaultProvider {
    Q_OBJECT
    Q_INTERFACES(KinletInterface)
};

constexpr auto interfaceId = "com.orvane.lumend.Kinlet/1.0";

// The place of a virtual function in its class's table.
template <typename Function>
std::ptrdiff_t place(Function function)
{
    std::ptrdiff_t offset = 0;
    std::memcpy(&offset, &function, sizeof offset);
    return offset;
}

QStringList signalsOf(const QMetaObject &meta)
{
    QStringList list;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() != QMetaMethod::Signal)
            continue;
        QStringList arguments;
        for (int j = 0; j < method.parameterCount(); ++j)
            arguments.append(QString::fromLatin1(method.parameterTypes().at(j) + ' '
                                                 + method.parameterNames().at(j)));
        list.append(QString::fromLatin1(method.name()) + u'(' + arguments.join(QStringLiteral(", "))
                    + u')');
    }
    return list;
}

}

class KinletInterfaceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void servicesAreAnsweredInsideTheCall();
    void accountsAreAnsweredInsideTheCall();
    void noServicesAreAnAnswerWithoutError();
    void otherRequestsAreUnsupported_data();
    void otherRequestsAreUnsupported();
    void cancelDoesNothingByDefault();
    void castByIdentifier();
    void classNamesAndBases();
    void layoutThatPlugInsAreBuiltFor();
    void signalsAndTheirArguments();
    void parentObject();
};

void KinletInterfaceTest::servicesAreAnsweredInsideTheCall()
{
    ScriptedProvider provider(QStringLiteral("p"));
    provider.serviceList.clear();
    for (const auto &id : {"s2", "s1", "s3"}) {
        SocialService service;
        service.setProperty(SocialGenericData::Id, QString::fromLatin1(id));
        provider.serviceList.append(service);
    }
    GetAggregatedServicesRequest request;
    // Replaced by the answer.
    request.setResults(recordsWithIds({QStringLiteral("old")}));
    QStringList whenFinished;
    connect(&request, &SocialDataRequest::finished, &request,
            [&] { whenFinished.append(idsOf(request.results())); });
    provider.performRequest(&request);

    const QStringList expected{QStringLiteral("s2"), QStringLiteral("s1"), QStringLiteral("s3")};
    QCOMPARE(whenFinished, expected);
    QCOMPARE(idsOf(request.results()), expected);
    QCOMPARE(request.results().first().className(), QStringLiteral("SocialService"));
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QVERIFY(request.errors().isEmpty());
}

void KinletInterfaceTest::accountsAreAnsweredInsideTheCall()
{
    ScriptedProvider provider(QStringLiteral("p"), {QStringLiteral("b"), QStringLiteral("a")});
    SocialGetAccountsRequest request;
    QSignalSpy finished(&request, &SocialDataRequest::finished);
    provider.performRequest(&request);

    QCOMPARE(finished.count(), 1);
    QCOMPARE(idsOf(request.results()), QStringList({QStringLiteral("b"), QStringLiteral("a")}));
    QCOMPARE(request.results().first().className(), QStringLiteral("SocialServiceAccount"));
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QVERIFY(request.errors().isEmpty());
}

void KinletInterfaceTest::noServicesAreAnAnswerWithoutError()
{
    DefaultProvider provider;
    QVERIFY(provider.services().isEmpty());
    QVERIFY(provider.accounts().isEmpty());
    GetAggregatedServicesRequest services;
    SocialGetAccountsRequest accounts;
    for (SocialDataRequest *request : {static_cast<SocialDataRequest *>(&services),
                                       static_cast<SocialDataRequest *>(&accounts)}) {
        // An empty answer is one too: it replaces what was there.
        request->setResults(recordsWithIds({QStringLiteral("old")}));
        QSignalSpy finished(request, &SocialDataRequest::finished);
        provider.performRequest(request);
        QCOMPARE(finished.count(), 1);
        QCOMPARE(request->status(), SocialDataRequest::Finished);
        QVERIFY(request->results().isEmpty());
        QVERIFY(request->errors().isEmpty());
    }
}

void KinletInterfaceTest::otherRequestsAreUnsupported_data()
{
    QTest::addColumn<RequestMaker>("make");
    const auto row = [](const char *name, RequestMaker make) {
        QTest::newRow(name) << std::move(make);
    };
    row("generic", [] { return new SocialDataRequest; });
    row("persons", [] { return new SocialGetPersonsRequest; });
    row("activities", [] { return new SocialGetActivitiesRequest; });
    row("post", [] { return new SocialPostActivitiesRequest; });
    row("like", [] { return new SocialLikeActivityRequest; });
    row("likers", [] { return new SocialGetLikersRequest; });
}

void KinletInterfaceTest::otherRequestsAreUnsupported()
{
    QFETCH(RequestMaker, make);
    const QScopedPointer<SocialDataRequest> request(make());
    // Results are not touched, neither set nor cleared.
    request->setResults(recordsWithIds({QStringLiteral("kept")}));
    QSignalSpy finished(request.data(), &SocialDataRequest::finished);
    DefaultProvider provider;
    provider.performRequest(request.data());

    QCOMPARE(finished.count(), 1);
    QCOMPARE(request->status(), SocialDataRequest::Finished);
    QCOMPARE(idsOf(request->results()), QStringList(QStringLiteral("kept")));
    QCOMPARE(typesOf(request->errors()), QList<int>({KinletError::UnsupportedRequest}));
    QVERIFY(request->errors().first().description().isEmpty());
}

void KinletInterfaceTest::cancelDoesNothingByDefault()
{
    DefaultProvider provider;
    SocialGetPersonsRequest request;
    request.setRequestProgress(SocialDataRequest::Started, {});
    QSignalSpy finished(&request, &SocialDataRequest::finished);
    provider.cancelRequest(&request);
    QCOMPARE(request.status(), SocialDataRequest::Started);
    QCOMPARE(finished.count(), 0);
    provider.performRequest(&request);
    QCOMPARE(finished.count(), 1);
}

void KinletInterfaceTest::castByIdentifier()
{
    QCOMPARE(qobject_interface_iid<KinletInterface *>(), interfaceId);
    DeclaredProvider declared;
    DefaultProvider undeclared;
    QObject other;
    QCOMPARE(static_cast<KinletInterface *>(declared.qt_metacast(interfaceId)),
             static_cast<KinletInterface *>(&declared));
    QCOMPARE(undeclared.qt_metacast(interfaceId), nullptr);
    QCOMPARE(other.qt_metacast(interfaceId), nullptr);
}

void KinletInterfaceTest::classNamesAndBases()
{
    DefaultProvider provider;
    QObject *const object = &provider;
    QCOMPARE(object->qt_metacast("KinletInterface"), static_cast<KinletInterface *>(&provider));
    QCOMPARE(object->qt_metacast("PersonCollectorInterface"),
             static_cast<PersonCollectorInterface *>(&provider));
    QCOMPARE(object->qt_metacast("QObject"), object);
    QCOMPARE(provider.KinletInterface::qt_metacast(interfaceId), nullptr);
    QCOMPARE(KinletInterface::staticMetaObject.superClass(),
             &PersonCollectorInterface::staticMetaObject);
    QCOMPARE(PersonCollectorInterface::staticMetaObject.superClass(), &QObject::staticMetaObject);
}

void KinletInterfaceTest::layoutThatPlugInsAreBuiltFor()
{
    const std::ptrdiff_t first = place(&PersonCollectorInterface::init);
    const std::ptrdiff_t step = sizeof(void *);
    QCOMPARE(place(&PersonCollectorInterface::metaData), first + step);
    QCOMPARE(place(&KinletInterface::performRequest), first + 2 * step);
    QCOMPARE(place(&KinletInterface::cancelRequest), first + 3 * step);
    QCOMPARE(place(&KinletInterface::services), first + 4 * step);
    QCOMPARE(place(&KinletInterface::accounts), first + 5 * step);
    QCOMPARE(sizeof(KinletInterface), sizeof(QObject));
}

void KinletInterfaceTest::signalsAndTheirArguments()
{
    QCOMPARE(signalsOf(PersonCollectorInterface::staticMetaObject),
             QStringList(QStringLiteral("error(QString name, QString error, QString message)")));
    QStringList found = signalsOf(KinletInterface::staticMetaObject);
    // Qt 6 names the type by its other name.
    found.replaceInStrings(QStringLiteral("QStringList "), QStringLiteral("QList<QString> "));
    QCOMPARE(found,
             QStringList({QStringLiteral("personsUpdate(QList<SocialNetworkPerson> data, "
                                         "QList<QString> updatedProperties)"),
                          QStringLiteral("activityUpdate(QList<SocialActivity> data, "
                                         "QList<QString> updatedProperties, "
                                         "KinletTimeline::TimelineType timelineType)"),
                          QStringLiteral("dataUpdate(QList<SocialGenericData> data, "
                                         "QList<QString> updatedProperties)"),
                          QStringLiteral("personsRemoved(QList<SocialNetworkPerson> data)")}));
}

void KinletInterfaceTest::parentObject()
{
    QObject parent;
    QCOMPARE(DefaultProvider().parent(), nullptr);
    QPointer<QObject> child = new DefaultProvider(&parent);
    QCOMPARE(child->parent(), &parent);
}

QTEST_GUILESS_MAIN(KinletInterfaceTest)

#include "kinletinterfacetest.moc"
