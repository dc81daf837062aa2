// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/valuetypes.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"
#include "support/hostilebytes.h"
#include "support/requesthelpers.h"

#include <QSharedPointer>
#include <QSignalSpy>

#include <tuple>

namespace {

using Request = QSharedPointer<SocialDataRequest>;
using MakeRequest = Request (*)();
using ReadByQt = QByteArray (*)(qint32 kind, QDataStream &in);

// Reads a request's base and its own fields with Qt's own readers, and writes what they made of it.
template <typename... OwnFields>
QByteArray readByQt(qint32 kind, QDataStream &in)
{
    std::tuple<qint32, qint32, QList<SocialGenericData>, QStringList, OwnFields...> fields;
    std::apply([&in](auto &...field) { (in >> ... >> field); }, fields);
    std::get<0>(fields) = kind;
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(in.version());
    std::apply([&out](const auto &...field) { (out << ... << field); }, fields);
    return bytes;
}

template <typename T>
Request fill(T *request)
{
    SocialGenericData record(QStringLiteral("T"));
    record.setProperty(QStringLiteral("A"), QVariantList{7, QStringList{QStringLiteral("x")}});
    request->setResults({record, SocialGenericData()});
    request->setPerformOnAccountsFilter({QStringLiteral("a"), QString()});
    request->setRequestProgress(SocialDataRequest::Stopped, {});
    return Request(request);
}

template <typename T>
Request filled()
{
    return fill(new T);
}

Request activities()
{
    auto *request = new SocialGetActivitiesRequest;
    request->setPersonsFilter({QStringLiteral("p")});
    request->setLimit(0x01020304);
    request->setAfter(QDateTime::fromSecsSinceEpoch(1, Qt::UTC));
    request->setBefore(QDateTime::fromSecsSinceEpoch(2, Qt::UTC));
    request->setActivityIdsFilter({QStringLiteral("i"), QStringLiteral("j")});
    request->setParentActivityIdFilter(QStringLiteral("q"));
    request->setTimelineType(KinletTimeline::Private);
    request->setForceRefresh(true);
    return fill(request);
}

Request persons()
{
    auto *request = new SocialGetPersonsRequest;
    request->setPropertyFilter(QStringLiteral("F"), QRegExp(QStringLiteral("^a")));
    return fill(request);
}

Request likers()
{
    auto *request = new SocialGetLikersRequest(QStringLiteral("a1"));
    request->setPropertyFilter(QStringLiteral("F"), QRegExp(QStringLiteral("^a")));
    return fill(request);
}

Request post()
{
    return fill(new SocialPostActivitiesRequest(SocialActivity::Comment, QStringLiteral("text"),
                                                QStringLiteral("p1")));
}

Request like()
{
    return fill(new SocialLikeActivityRequest(QStringLiteral("a1")));
}

Request freshCopy(const Request &request)
{
    return Request(qobject_cast<SocialDataRequest *>(request->metaObject()->newInstance()));
}

}

Q_DECLARE_METATYPE(MakeRequest)
Q_DECLARE_METATYPE(ReadByQt)

class HostileRequestsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void readNothing_data();
    void readNothing();
    void surviveCuts_data() { readNothing_data(); }
    void surviveCuts();
    void surviveFlips_data() { readNothing_data(); }
    void surviveFlips();
    void readCutsAsQtDoes_data();
    void readCutsAsQtDoes();
    void survivesHostileCounts_data();
    void survivesHostileCounts();
    void putEarlierErrorsAside();
    void treatRepeatedPatternsAsQtDoes();
};

void HostileRequestsTest::initTestCase()
{
    KinletInitializer::init();
    limitMemory();
    // Qt complains about each unknown type.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}

void HostileRequestsTest::readNothing_data()
{
    QTest::addColumn<MakeRequest>("make");
    QTest::newRow("plain") << MakeRequest(filled<SocialDataRequest>);
    QTest::newRow("services") << MakeRequest(filled<GetAggregatedServicesRequest>);
    QTest::newRow("accounts") << MakeRequest(filled<SocialGetAccountsRequest>);
    QTest::newRow("activities") << MakeRequest(activities);
    QTest::newRow("persons") << MakeRequest(persons);
    QTest::newRow("likers") << MakeRequest(likers);
    QTest::newRow("post") << MakeRequest(post);
    QTest::newRow("like") << MakeRequest(like);
}

void HostileRequestsTest::readNothing()
{
    QFETCH(MakeRequest, make);
    const Request request = make();
    QCOMPARE(unserialize(*request, QByteArray()), QDataStream::ReadPastEnd);
    QCOMPARE(request->status(), SocialDataRequest::Inactive);
    QVERIFY(request->results().isEmpty());
    QVERIFY(request->performOnAccountsFilter().isEmpty());
    const QByteArray kind = written(qint32(request->type()));
    QVERIFY(serialized(*request).startsWith(kind + hex("00000000 00000000 00000000")));
}

void HostileRequestsTest::surviveCuts()
{
    QFETCH(MakeRequest, make);
    const Request request = make();
    const QByteArray bytes = serialized(*request);
    for (int length = 0; length < bytes.size(); ++length) {
        const Request copy = freshCopy(request);
        QSignalSpy finished(copy.data(), SIGNAL(finished(SocialDataRequest *)));
        QCOMPARE(unserialize(*copy, bytes.left(length)), QDataStream::ReadPastEnd);
        QCOMPARE(int(copy->status()), length < 8 ? 0 : 3);
        QCOMPARE(copy->type(), request->type());
        QCOMPARE(finished.count(), 0);
    }
    const Request copy = freshCopy(request);
    QCOMPARE(unserialize(*copy, bytes), QDataStream::Ok);
    QCOMPARE(serialized(*copy), bytes);
}

void HostileRequestsTest::surviveFlips()
{
    QFETCH(MakeRequest, make);
    const Request request = make();
    const QByteArray bytes = serialized(*request);
    for (int i = 0; i < bytes.size(); ++i) {
        for (const int flip : {0x01, 0x02, 0x10, 0x40, 0x80, 0xff}) {
            QByteArray flipped = bytes;
            flipped[i] = char(flipped.at(i) ^ flip);
            const Request copy = freshCopy(request);
            const auto status = unserialize(*copy, flipped);
            QVERIFY(copy->results().size() <= bytes.size());
            // The status is one of the fields that no other one can spoil.
            if (i < 4 || i > 7)
                QCOMPARE(int(copy->status()), 3);
            else
                QVERIFY(status == QDataStream::Ok && copy->status() != 3);
        }
    }
}

void HostileRequestsTest::readCutsAsQtDoes_data()
{
    QTest::addColumn<MakeRequest>("make");
    QTest::addColumn<ReadByQt>("readByQt");
    QTest::addColumn<int>("version");
    const auto rows = [](const char *name, MakeRequest make, ReadByQt readByQt) {
        for (const int version :
             {int(QDataStream::Qt_4_8), int(QDataStream::Qt_5_15), DefaultVersion})
            QTest::addRow("%s, version %d", name, version) << make << readByQt << version;
    };
    using Patterns = QHash<QString, QRegExp>;
    rows("activities", activities,
         readByQt<QStringList, qint32, QDateTime, QDateTime, QStringList, QString, quint8, quint8,
                  bool>);
    rows("persons", persons, readByQt<Patterns>);
    rows("likers", likers, readByQt<Patterns, QString>);
    rows("post", post, readByQt<quint8, QString, QString>);
    rows("like", like, readByQt<QString, bool>);
}

// The request that reads has been used: nothing of what it held may remain.
void HostileRequestsTest::readCutsAsQtDoes()
{
    QFETCH(MakeRequest, make);
    QFETCH(ReadByQt, readByQt);
    QFETCH(int, version);
    const QByteArray bytes = serialized(*make(), version);
    for (int length = 0; length <= bytes.size(); ++length) {
        const Request request = make();
        ByteReader in(bytes.left(length), version);
        request->unserialize(in);
        ByteReader qt(bytes.left(length), version);
        const QByteArray expected = readByQt(request->type(), qt);
        QCOMPARE(serialized(*request, version).toHex(), expected.toHex());
        QCOMPARE(in.status(), qt.status());
        QCOMPARE(in.device()->pos(), qt.device()->pos());
    }
}

void HostileRequestsTest::survivesHostileCounts_data()
{
    QTest::addColumn<MakeRequest>("make");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const QByteArray noResults = hex("00000000 00000003 00000000");
    const QByteArray text = hex("00000002 0061");
    const QByteArray record = hex("ffffffff 00000000");
    const QByteArray times = hex("8000000000000000 ffffffff 00 8000000000000000 ffffffff 00");
    QTest::newRow("results") << MakeRequest(post) << hex("00000000 00000003") << record;
    QTest::newRow("properties of a result")
        << MakeRequest(post) << hex("00000000 00000003 00000001 ffffffff")
        << hex("00000002 0061 00000002 00 00000007");
    QTest::newRow("accounts") << MakeRequest(post) << noResults << text;
    QTest::newRow("patterns") << MakeRequest(persons) << noResults + hex("00000000")
                              << text + hex("ffffffff 00 00 00");
    QTest::newRow("patterns of likers")
        << MakeRequest(likers) << noResults + hex("00000000") << text + hex("ffffffff 00 00 00");
    QTest::newRow("persons") << MakeRequest(activities) << noResults + hex("00000000") << text;
    QTest::newRow("activity ids") << MakeRequest(activities)
                                  << noResults + hex("00000000 00000000 0000000a") + times << text;
}

void HostileRequestsTest::survivesHostileCounts()
{
    QFETCH(MakeRequest, make);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    for (const QByteArray &count : hostileCounts()) {
        const Request request = make();
        QVERIFY(unserialize(*request, before + count + after, QDataStream::Qt_5_15)
                != QDataStream::Ok);
        QCOMPARE(int(request->status()), 3);
        QVERIFY(request->results().isEmpty());
        QVERIFY(request->performOnAccountsFilter().isEmpty());
        const auto *personsRequest = qobject_cast<SocialGetPersonsRequest *>(request.data());
        QVERIFY(!personsRequest || personsRequest->propertyFilter().isEmpty());
        const auto *timeline = qobject_cast<SocialGetActivitiesRequest *>(request.data());
        QVERIFY(!timeline || timeline->personsFilter().isEmpty());
        QVERIFY(!timeline || timeline->activityIdsFilter().isEmpty());
    }
}

// A result that cannot be read empties the results, and the rest is read from where they ended.
void HostileRequestsTest::putEarlierErrorsAside()
{
    const Request request = activities();
    const QByteArray bytes = serialized(*request);
    const Request copy = freshCopy(request);
    ByteReader in(bytes);
    in.setStatus(QDataStream::ReadCorruptData);
    copy->unserialize(in);
    QCOMPARE(in.status(), QDataStream::ReadCorruptData);
    QCOMPARE(serialized(*copy), bytes);

    SocialDataRequest plain;
    QCOMPARE(unserialize(plain,
                         hex("00000000 00000003 00000001 00000001 00000000"
                             "00000001 00000002 0061")),
             QDataStream::ReadCorruptData);
    QVERIFY(plain.results().isEmpty());
    QCOMPARE(plain.performOnAccountsFilter(), QStringList({QStringLiteral("a")}));
}

void HostileRequestsTest::treatRepeatedPatternsAsQtDoes()
{
    SocialGetPersonsRequest request;
    QCOMPARE(unserialize(request,
                         hex("00000005 00000000 00000000 00000000 00000002"
                             "00000002 0046 00000002 0061 01 00 00"
                             "00000002 0046 00000002 0062 01 00 00")),
             QDataStream::Ok);
    QCOMPARE(request.propertyFilter().value(QStringLiteral("F")).pattern(), QStringLiteral("b"));
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCOMPARE(request.propertyFilter().size(), 2);
#else
    QCOMPARE(request.propertyFilter().size(), 1);
#endif
}

QTEST_GUILESS_MAIN(HostileRequestsTest)

#include "hostilerequeststest.moc"
