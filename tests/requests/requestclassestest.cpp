// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"
#include "support/requesthelpers.h"

#include <QSharedPointer>
#include <QSignalSpy>

#include <type_traits>

namespace {

using ReportFunction = void (SocialDataRequest::*)(SocialDataRequest::Status,
                                                   const QList<KinletError> &);

// A class adds no data of its own to the one pointer, and no reporting of its own.
template <typename Request>
const QMetaObject *classOf()
{
    static_assert(sizeof(Request) == sizeof(QObject) + sizeof(void *));
    static_assert(std::is_same_v<decltype(&Request::setRequestProgress), ReportFunction>);
    return &Request::staticMetaObject;
}

QSharedPointer<SocialDataRequest> make(const QMetaObject *metaObject)
{
    return QSharedPointer<SocialDataRequest>(
        qobject_cast<SocialDataRequest *>(metaObject->newInstance()));
}

SocialGenericData record(const QString &id)
{
    SocialGenericData data(QStringLiteral("T"));
    data.setProperty(SocialGenericData::Id, id);
    return data;
}

class CountingRequest : public SocialDataRequest {
public:
    void setRequestProgress(Status status, const QList<KinletError> &errors) override
    {
        ++reports;
        SocialDataRequest::setRequestProgress(status, errors);
    }

    int reports = 0;
};

}

Q_DECLARE_METATYPE(const QMetaObject *)

/// What all request classes have in common.
class RequestClassesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void haveTheirBaseAndKind_data();
    void haveTheirBaseAndKind();
    void copyAllButTheErrors_data() { haveTheirBaseAndKind_data(); }
    void copyAllButTheErrors();
    void writeTheBaseInOrder();
    void readTheBase();
    void ignoreTheKindTheyRead();
    void storeTheStatusQuietly_data();
    void storeTheStatusQuietly();
    void carryNoErrors();
};

void RequestClassesTest::haveTheirBaseAndKind_data()
{
    QTest::addColumn<const QMetaObject *>("metaObject");
    QTest::addColumn<const QMetaObject *>("base");
    QTest::addColumn<int>("kind");
    const auto *plain = classOf<SocialDataRequest>();
    const auto *persons = classOf<SocialGetPersonsRequest>();
    QTest::newRow("plain") << plain << &QObject::staticMetaObject << 0;
    QTest::newRow("services") << classOf<GetAggregatedServicesRequest>() << plain << 1;
    QTest::newRow("accounts") << classOf<SocialGetAccountsRequest>() << plain << 3;
    QTest::newRow("persons") << persons << plain << 5;
    QTest::newRow("activities") << classOf<SocialGetActivitiesRequest>() << plain << 7;
    QTest::newRow("post") << classOf<SocialPostActivitiesRequest>() << plain << 9;
    QTest::newRow("like") << classOf<SocialLikeActivityRequest>() << plain << 10;
    QTest::newRow("likers") << classOf<SocialGetLikersRequest>() << persons << 11;
}

void RequestClassesTest::haveTheirBaseAndKind()
{
    QFETCH(const QMetaObject *, metaObject);
    QFETCH(const QMetaObject *, base);
    QFETCH(int, kind);
    QCOMPARE(metaObject->superClass(), base);
    const auto request = make(metaObject);
    QCOMPARE(request->type(), kind);
    QCOMPARE(request->status(), SocialDataRequest::Inactive);
    QCOMPARE(serialized(*request).left(4), written(qint32(kind)));
}

void RequestClassesTest::copyAllButTheErrors()
{
    QFETCH(const QMetaObject *, metaObject);
    const QStringList accounts{QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("b")};
    const auto original = make(metaObject);
    original->setResults({record(QStringLiteral("2")), record(QStringLiteral("1"))});
    original->setPerformOnAccountsFilter(accounts);
    original->setRequestProgress(SocialDataRequest::Finished,
                                 {KinletError(KinletError::PostFailed)});

    const auto copy = make(metaObject);
    QSignalSpy finished(copy.data(), SIGNAL(finished(SocialDataRequest *)));
    QCOMPARE(unserialize(*copy, serialized(*original)), QDataStream::Ok);
    QCOMPARE(copy->status(), SocialDataRequest::Finished);
    QCOMPARE(copy->results().size(), 2);
    QCOMPARE(copy->results().at(0).id(), QStringLiteral("2"));
    QCOMPARE(copy->results().at(1).id(), QStringLiteral("1"));
    QCOMPARE(copy->performOnAccountsFilter(), accounts);
    QVERIFY(copy->errors().isEmpty());
    QCOMPARE(finished.count(), 0);
}

void RequestClassesTest::writeTheBaseInOrder()
{
    SocialDataRequest request;
    request.setResults({SocialGenericData(QStringLiteral("B")), SocialGenericData()});
    request.setPerformOnAccountsFilter({QStringLiteral("b"), QStringLiteral("a")});
    request.setRequestProgress(SocialDataRequest::Stopped, {});
    QCOMPARE(serialized(request).toHex(),
             hex("00000000 00000003"
                 "00000002 00000002 0042 00000000 ffffffff 00000000"
                 "00000002 00000002 0062 00000002 0061")
                 .toHex());
}

void RequestClassesTest::readTheBase()
{
    SocialDataRequest request;
    request.setResults({SocialGenericData(), SocialGenericData()});
    request.setPerformOnAccountsFilter({QStringLiteral("old")});
    QCOMPARE(unserialize(request,
                         hex("00000000 00000002"
                             "00000001 00000002 0054 00000001 00000002 0041 00000002 00 00000007"
                             "00000002 00000002 0061 ffffffff")),
             QDataStream::Ok);
    QCOMPARE(request.status(), SocialDataRequest::Progressing);
    QCOMPARE(request.results().size(), 1);
    QCOMPARE(request.results().first().className(), QStringLiteral("T"));
    QCOMPARE(request.results().first().variantProperty(QStringLiteral("A")), QVariant(7));
    QCOMPARE(request.performOnAccountsFilter(), QStringList({QStringLiteral("a"), QString()}));
}

void RequestClassesTest::ignoreTheKindTheyRead()
{
    GetAggregatedServicesRequest request;
    QCOMPARE(unserialize(request, hex("0000000b 00000002 00000001 ffffffff 00000000 00000000")),
             QDataStream::Ok);
    QCOMPARE(request.type(), 1);
    QCOMPARE(request.results().size(), 1);
}

void RequestClassesTest::storeTheStatusQuietly_data()
{
    QTest::addColumn<int>("status");
    for (const int status : {0, 1, 2, 3, 4, 7, -1})
        QTest::addRow("%d", status) << status;
}

void RequestClassesTest::storeTheStatusQuietly()
{
    QFETCH(int, status);
    CountingRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    request.setRequestProgress(SocialDataRequest::Started,
                               {KinletError(KinletError::NetworkFailed)});
    QCOMPARE(
        unserialize(request, hex("00000000") + written(qint32(status)) + hex("00000000 00000000")),
        QDataStream::Ok);
    QCOMPARE(int(request.status()), status);
    QCOMPARE(request.reports, 1);
    QCOMPARE(finished.count(), 0);
    QCOMPARE(request.errors().size(), 1);
    QCOMPARE(request.errors().first().type(), KinletError::NetworkFailed);
    request.setRequestProgress(SocialDataRequest::Finished, {});
    QCOMPARE(finished.count(), 1);
}

void RequestClassesTest::carryNoErrors()
{
    SocialDataRequest original;
    original.setRequestProgress(SocialDataRequest::Finished,
                                {KinletError(KinletError::PostFailed)});
    QCOMPARE(serialized(original), hex("00000000 00000004 00000000 00000000"));
    SocialDataRequest copy;
    QCOMPARE(unserialize(copy, serialized(original)), QDataStream::Ok);
    QCOMPARE(copy.status(), SocialDataRequest::Finished);
    QVERIFY(copy.errors().isEmpty());
}

QTEST_GUILESS_MAIN(RequestClassesTest)

#include "requestclassestest.moc"
