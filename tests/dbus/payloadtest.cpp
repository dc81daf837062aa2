// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/streamed.h"

#include "records/typedrecords.h"
#include "records/valuetypes.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QTest>

#include <memory>

namespace {

using RequestPointer = std::shared_ptr<SocialDataRequest>;

QString latin(const char *text)
{
    return QString::fromLatin1(text);
}

QList<SocialGenericData> records()
{
    SocialActivity activity;
    activity.setProperty(SocialActivity::Id, latin("1"));
    activity.setProperty(SocialActivity::StartTime,
                         QDateTime(QDate(2026, 1, 5), QTime(9, 5), Qt::UTC));
    activity.setProperty(latin("List"),
                         QVariantList{1, latin("two"), QVariantMap{{latin("k"), 3}}});
    SocialActivityAttachment attachment;
    attachment.firstText = latin("Title");
    attachment.media.append(Media());
    activity.setProperty(SocialActivity::Attachment, QVariant::fromValue(attachment));
    SocialNetworkPerson person;
    person.setProperty(SocialNetworkPerson::EmailAddresses, QStringList{latin("a@example.org")});
    return {activity, person, SocialGenericData()};
}

SocialDataRequest *filledActivities()
{
    auto *request = new SocialGetActivitiesRequest;
    request->setPersonsFilter({latin("p")});
    request->setAfter(QDateTime(QDate(2026, 1, 5), QTime(9, 5), Qt::UTC));
    request->setBefore(QDateTime(QDate(2026, 1, 6), QTime(9, 5), Qt::OffsetFromUTC, 3600));
    request->setActivityIdsFilter({latin("1"), latin("2")});
    request->setParentActivityIdFilter(latin("3"));
    return request;
}

template <typename Request>
SocialDataRequest *withPattern()
{
    auto *request = new Request;
    request->setPropertyFilter(latin("FirstName"), QRegExp(latin("^(A|B).*")));
    return request;
}

QMap<QString, SocialDataRequest *> requests()
{
    const QMap<QString, SocialDataRequest *> all{
        {latin("generic"), new SocialDataRequest},
        {latin("services"), new GetAggregatedServicesRequest},
        {latin("accounts"), new SocialGetAccountsRequest},
        {latin("persons"), withPattern<SocialGetPersonsRequest>()},
        {latin("activities"), filledActivities()},
        {latin("post"),
         new SocialPostActivitiesRequest(SocialActivity::Comment, latin("Hi"), latin("1"))},
        {latin("like"), new SocialLikeActivityRequest(latin("1"), false)},
        {latin("likers"), withPattern<SocialGetLikersRequest>()},
    };
    for (SocialDataRequest *request : all) {
        request->setResults(records());
        request->setPerformOnAccountsFilter({latin("a1"), latin("a2")});
        request->setRequestProgress(SocialDataRequest::Finished, {});
    }
    return all;
}

RequestPointer sameKind(const RequestPointer &request)
{
    return RequestPointer(qobject_cast<SocialDataRequest *>(request->metaObject()->newInstance()));
}

}

Q_DECLARE_METATYPE(RequestPointer)

/// How payloads are written, and read in two stream versions.
class PayloadTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KinletInitializer::init(); }
    void requestsSurvive_data() { addRequests(); }
    void requestsSurvive();
    void olderStreamsAreUnderstood_data() { addRequests(); }
    void olderStreamsAreUnderstood();
    void truncationsGiveWhatTheReadersGive_data() { addRequests(); }
    void truncationsGiveWhatTheReadersGive();
    void truncatedRecordsGiveWhatTheReaderGives();
    void bytesAfterTheEndAreNotClean_data() { addRequests(); }
    void bytesAfterTheEndAreNotClean();
    void newerVersionIsTriedFirst();
    void undecodablePayloadLeavesTheFirstReading();
    void recordIsReplaced();
    void smallestElements();
    void smallestValues_data();
    void smallestValues();

private:
    static void addRequests();
};

void PayloadTest::addRequests()
{
    QTest::addColumn<RequestPointer>("request");
    const auto all = requests();
    for (auto it = all.cbegin(); it != all.cend(); ++it)
        QTest::newRow(qPrintable(it.key())) << RequestPointer(it.value());
}

void PayloadTest::requestsSurvive()
{
    QFETCH(RequestPointer, request);
    const QByteArray bytes = Payload::write(*request);
    QByteArray plain;
    QDataStream out(&plain, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    request->serialize(out);
    QCOMPARE(bytes, plain);
    const RequestPointer copy = sameKind(request);
    QVERIFY(Payload::read(bytes, *copy));
    QCOMPARE(Payload::write(*copy), bytes);
    QCOMPARE(copy->results().size(), 3);
}

void PayloadTest::olderStreamsAreUnderstood()
{
    QFETCH(RequestPointer, request);
    QByteArray old;
    QDataStream out(&old, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_4_8);
    request->serialize(out);
    const QByteArray bytes = Payload::write(*request);
    QVERIFY(old != bytes);
    const RequestPointer expected = sameKind(request);
    QVERIFY(readPlainly(old, QDataStream::Qt_4_8, *expected));
    const RequestPointer copy = sameKind(request);
    QVERIFY(Payload::read(old, *copy));
    QCOMPARE(Payload::write(*copy), Payload::write(*expected));
    QCOMPARE(copy->results().constFirst().variantProperty(SocialActivity::StartTime).toDateTime(),
             QDateTime(QDate(2026, 1, 5), QTime(9, 5), Qt::UTC));
}

void PayloadTest::truncationsGiveWhatTheReadersGive()
{
    QFETCH(RequestPointer, request);
    const QByteArray bytes = Payload::write(*request);
    for (int size = 0; size < bytes.size(); ++size) {
        const QByteArray cut = bytes.left(size);
        const RequestPointer copy = sameKind(request);
        const RequestPointer expected = sameKind(request);
        QCOMPARE(Payload::read(cut, *copy), readInTwoVersions(cut, *expected));
        QVERIFY2(Payload::write(*copy) == Payload::write(*expected),
                 qPrintable(QString::number(size)));
    }
}

void PayloadTest::truncatedRecordsGiveWhatTheReaderGives()
{
    const auto all = records();
    for (const SocialGenericData &record : all) {
        const QByteArray bytes = Payload::write(record);
        for (int size = 0; size <= bytes.size(); ++size) {
            const QByteArray cut = bytes.left(size);
            SocialGenericData copy;
            SocialGenericData expected;
            QCOMPARE(Payload::read(cut, copy), readInTwoVersions(cut, expected));
            QVERIFY2(Payload::write(copy) == Payload::write(expected),
                     qPrintable(QString::number(size)));
        }
    }
}

void PayloadTest::bytesAfterTheEndAreNotClean()
{
    QFETCH(RequestPointer, request);
    const QByteArray bytes = Payload::write(*request);
    const RequestPointer copy = sameKind(request);
    QVERIFY(!Payload::read(bytes + '\0', *copy));
    QCOMPARE(Payload::write(*copy), bytes);
}

// An invalid value is followed by a text in older streams: what is the key of the second property
// here belongs to the first value there, and everything after it moves.
void PayloadTest::newerVersionIsTriedFirst()
{
    const QByteArray value = QByteArray(7, 'x') + QByteArray::fromHex("000000010001");
    const QByteArray bytes = streamed(QString(), quint32(2), latin("a"), QVariant(), latin("b"))
        + streamed(QVariant(value));
    SocialGenericData older;
    QVERIFY(readPlainly(bytes, QDataStream::Qt_4_8, older));
    QVERIFY(!older.hasProperty(latin("b")));
    SocialGenericData record;
    QVERIFY(Payload::read(bytes, record));
    QCOMPARE(record.variantProperty(latin("b")), QVariant(value));
}

void PayloadTest::undecodablePayloadLeavesTheFirstReading()
{
    SocialGetActivitiesRequest request;
    request.setResults(records());
    request.setPerformOnAccountsFilter({latin("a1")});
    request.setAfter(QDateTime(QDate(2026, 1, 5), QTime(9, 5), Qt::UTC));
    request.setRequestProgress(SocialDataRequest::Progressing, {});
    const QByteArray bytes = Payload::write(request);
    SocialGetActivitiesRequest copy;
    copy.setRequestProgress(SocialDataRequest::Started,
                            {KinletError(KinletError::NetworkFailed, latin("before"))});
    QVERIFY(!Payload::read(bytes.chopped(1), copy));
    QCOMPARE(copy.status(), SocialDataRequest::Progressing);
    QCOMPARE(copy.results().size(), 3);
    QCOMPARE(copy.after(), request.after());
    QCOMPARE(copy.errors().size(), 1);
    QCOMPARE(copy.errors().constFirst().description(), latin("before"));
}

void PayloadTest::recordIsReplaced()
{
    SocialGenericData record(latin("Before"));
    record.setProperty(latin("k"), 1);
    QVERIFY(!Payload::read(QByteArray(), record));
    QCOMPARE(record.className(), QString());
    QVERIFY(record.properties().isEmpty());
}

// Counts of elements that could not be smaller are not too high.
void PayloadTest::smallestElements()
{
    SocialGetPersonsRequest request;
    request.setResults({SocialGenericData(), SocialGenericData(), SocialGenericData()});
    SocialGetPersonsRequest copy;
    QVERIFY(Payload::read(Payload::write(request), copy));
    QCOMPARE(copy.results().size(), 3);

    request.setPropertyFilter(QString(), QRegExp(QString()));
    QVERIFY(Payload::read(Payload::write(request), copy));
    QCOMPARE(copy.propertyFilter().size(), 1);

    GetAggregatedServicesRequest services;
    services.setPerformOnAccountsFilter({QString()});
    GetAggregatedServicesRequest servicesCopy;
    QVERIFY(Payload::read(Payload::write(services), servicesCopy));
    QCOMPARE(servicesCopy.performOnAccountsFilter().size(), 1);

    SocialGenericData record;
    QVERIFY(Payload::read(streamed(QString(), quint32(1), QString(), QVariant()), record));
    QCOMPARE(record.properties().size(), 1);
}

void PayloadTest::smallestValues_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("list") << QVariant(QVariantList{QVariant()});
    QTest::newRow("map") << QVariant(QVariantMap{{QString(), QVariant()}});
    QTest::newRow("hash") << QVariant(QVariantHash{{QString(), QVariant()}});
    QTest::newRow("texts") << QVariant(QStringList{QString()});
    QTest::newRow("byte arrays") << QVariant::fromValue(QByteArrayList{QByteArray()});
    SocialActivityAttachment attachment;
    attachment.media.append(Media());
    QTest::newRow("media") << QVariant::fromValue(attachment);
}

void PayloadTest::smallestValues()
{
    QFETCH(QVariant, value);
    SocialGenericData record;
    record.setProperty(latin("k"), value);
    const QByteArray bytes = Payload::write(record);
    SocialGenericData copy;
    QVERIFY(Payload::read(bytes, copy));
    QCOMPARE(Payload::write(copy), bytes);
}

QTEST_GUILESS_MAIN(PayloadTest)
#include "payloadtest.moc"
