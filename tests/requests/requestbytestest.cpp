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

namespace {

using Request = QSharedPointer<SocialDataRequest>;

constexpr int Qt48 = QDataStream::Qt_4_8;
constexpr int Qt515 = QDataStream::Qt_5_15;

// Status 2, one result "T" whose property "A" is 7, accounts "a" and null. The kind comes before.
constexpr char base[] = "00000002 00000001"
                        "00000002 0054 00000001 00000002 0041 00000002 00 00000007"
                        "00000002 00000002 0061 ffffffff";
constexpr char baseSwapped[] = "02000000 01000000"
                               "02000000 5400 01000000 02000000 4100 02000000 00 07000000"
                               "02000000 02000000 6100 ffffffff";
constexpr char emptyBase[] = "00000000 00000000 00000000";
constexpr char emptyBaseSwapped[] = "00000000 00000000 00000000";

Request withBase(SocialDataRequest *request)
{
    SocialGenericData record(QStringLiteral("T"));
    record.setProperty(QStringLiteral("A"), 7);
    request->setResults({record});
    request->setPerformOnAccountsFilter({QStringLiteral("a"), QString()});
    request->setRequestProgress(SocialDataRequest::Progressing, {});
    return Request(request);
}

Request accounts()
{
    auto *request = new SocialGetAccountsRequest;
    request->setServiceFilter({QStringLiteral("not written")});
    return withBase(request);
}

Request persons()
{
    auto *request = new SocialGetPersonsRequest;
    QRegExp pattern(QStringLiteral("^a"), Qt::CaseInsensitive, QRegExp::Wildcard);
    pattern.setMinimal(true);
    request->setPropertyFilter(QStringLiteral("F"), pattern);
    return withBase(request);
}

Request activities()
{
    auto *request = new SocialGetActivitiesRequest;
    request->setPersonsFilter({QStringLiteral("p")});
    request->setLimit(-1);
    request->setAfter(QDateTime::fromSecsSinceEpoch(1, Qt::UTC));
    request->setBefore(QDateTime::fromSecsSinceEpoch(2, Qt::UTC));
    request->setActivityIdsFilter({QStringLiteral("i"), QStringLiteral("j")});
    request->setParentActivityIdFilter(QStringLiteral("q"));
    request->setActivityFilter(SocialActivity::Comment);
    request->setTimelineType(KinletTimeline::Private);
    request->setForceRefresh(true);
    return withBase(request);
}

void addRow(const char *name, const Request &request, int version, const QByteArray &bigEndian,
            const QByteArray &littleEndian)
{
    QTest::addRow("%s, version %d, big-endian", name, version)
        << request << version << QDataStream::BigEndian << bigEndian;
    QTest::addRow("%s, version %d, little-endian", name, version)
        << request << version << QDataStream::LittleEndian << littleEndian;
}

}

Q_DECLARE_METATYPE(Request)

class RequestBytesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void writes_data();
    void writes();
    void reads_data() { writes_data(); }
    void reads();
    void readsPersons();
    void readsLikers();
    void readsActivities();
    void readsAccountsWithoutServices();
    void readsPosts();
    void readsLikes();
    void writesLowBytesOfNumbers();
    void readsBytesUnsigned();
};

void RequestBytesTest::writes_data()
{
    QTest::addColumn<Request>("request");
    addByteColumns();
    for (const int version : {Qt48, Qt515, DefaultVersion}) {
        const auto row = [version](const char *name, const Request &request, const char *kind,
                                   const char *rest, const char *kindSwapped,
                                   const char *restSwapped) {
            const bool isEmpty = request->results().isEmpty();
            addRow(name, request, version, hex(kind) + hex(isEmpty ? emptyBase : base) + hex(rest),
                   hex(kindSwapped) + hex(isEmpty ? emptyBaseSwapped : baseSwapped)
                       + hex(restSwapped));
        };
        row("plain", Request::create(), "00000000", "", "00000000", "");
        row("services", withBase(new GetAggregatedServicesRequest), "00000001", "", "01000000", "");
        row("accounts", accounts(), "00000003", "", "03000000", "");
        row("persons", persons(), "00000005", "00000001 00000002 0046 00000004 005e 0061 00 01 01",
            "05000000", "01000000 02000000 4600 04000000 5e00 6100 00 01 01");
        row("default persons", Request(new SocialGetPersonsRequest), "00000005", "00000000",
            "05000000", "00000000");
        row("likers", withBase(new SocialGetLikersRequest(QStringLiteral("a1"))), "0000000b",
            "00000000 00000004 0061 0031", "0b000000", "00000000 04000000 6100 3100");
        row("default likers", Request(new SocialGetLikersRequest), "0000000b", "00000000 ffffffff",
            "0b000000", "00000000 ffffffff");
        row("post",
            withBase(new SocialPostActivitiesRequest(SocialActivity::Comment, QStringLiteral("t"),
                                                     QStringLiteral("p"))),
            "00000009", "02 00000002 0074 00000002 0070", "09000000",
            "02 02000000 7400 02000000 7000");
        row("default post", Request(new SocialPostActivitiesRequest), "00000009",
            "01 ffffffff ffffffff", "09000000", "01 ffffffff ffffffff");
        row("like", withBase(new SocialLikeActivityRequest(QStringLiteral("a1"))), "0000000a",
            "00000004 0061 0031 01", "0a000000", "04000000 6100 3100 01");
        row("unlike", withBase(new SocialLikeActivityRequest(QStringLiteral("a1"), false)),
            "0000000a", "00000004 0061 0031 00", "0a000000", "04000000 6100 3100 00");
        row("default like", Request(new SocialLikeActivityRequest), "0000000a", "ffffffff 01",
            "0a000000", "ffffffff 01");

        // Qt 4 gave dates 32 bits and another byte for UTC and for local time.
        const bool isOld = version == Qt48;
        row("activities", activities(), "00000007",
            isOld ? "00000001 00000002 0070 ffffffff 00253d8c 000003e8 02 00253d8c 000007d0 02"
                    "00000002 00000002 0069 00000002 006a 00000002 0071 02 05 01"
                  : "00000001 00000002 0070 ffffffff"
                    "0000000000253d8c 000003e8 01 0000000000253d8c 000007d0 01"
                    "00000002 00000002 0069 00000002 006a 00000002 0071 02 05 01",
            "07000000",
            isOld ? "01000000 02000000 7000 ffffffff 8c3d2500 e8030000 02 8c3d2500 d0070000 02"
                    "02000000 02000000 6900 02000000 6a00 02000000 7100 02 05 01"
                  : "01000000 02000000 7000 ffffffff"
                    "8c3d250000000000 e8030000 01 8c3d250000000000 d0070000 01"
                    "02000000 02000000 6900 02000000 6a00 02000000 7100 02 05 01");
        row("default activities", Request(new SocialGetActivitiesRequest), "00000007",
            isOld ? "00000000 0000000a 00000000 ffffffff ff 00000000 ffffffff ff"
                    "00000000 ffffffff 04 00 00"
                  : "00000000 0000000a 8000000000000000 ffffffff 00 8000000000000000 ffffffff 00"
                    "00000000 ffffffff 04 00 00",
            "07000000",
            isOld ? "00000000 0a000000 00000000 ffffffff ff 00000000 ffffffff ff"
                    "00000000 ffffffff 04 00 00"
                  : "00000000 0a000000 0000000000000080 ffffffff 00 0000000000000080 ffffffff 00"
                    "00000000 ffffffff 04 00 00");
    }
}

void RequestBytesTest::writes()
{
    QFETCH(Request, request);
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QByteArray, bytes);
    QCOMPARE(serialized(*request, version, order).toHex(), bytes.toHex());
}

void RequestBytesTest::reads()
{
    QFETCH(Request, request);
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QByteArray, bytes);
    const QScopedPointer<QObject> object(request->metaObject()->newInstance());
    auto *copy = qobject_cast<SocialDataRequest *>(object.data());
    QVERIFY(copy);
    ByteReader in(bytes, version, order);
    copy->unserialize(in);
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(in.atEnd());
    QCOMPARE(serialized(*copy, version, order).toHex(), bytes.toHex());
    QCOMPARE(copy->status(), request->status());
    QCOMPARE(copy->performOnAccountsFilter(), request->performOnAccountsFilter());
    QCOMPARE(copy->results().size(), request->results().size());
}

void RequestBytesTest::readsPersons()
{
    SocialGetPersonsRequest request;
    request.setPropertyFilter(QStringLiteral("old"), QRegExp());
    QCOMPARE(unserialize(request,
                         hex("00000005") + hex(emptyBase)
                             + hex("00000002 00000002 0046 00000004 005e 0061 00 01 01"
                                   "00000002 0047 00000002 0062 01 00 00")),
             QDataStream::Ok);
    const QHash<QString, QRegExp> filter = request.propertyFilter();
    QCOMPARE(filter.size(), 2);
    const QRegExp first = filter.value(QStringLiteral("F"));
    QCOMPARE(first.pattern(), QStringLiteral("^a"));
    QCOMPARE(first.caseSensitivity(), Qt::CaseInsensitive);
    QCOMPARE(first.patternSyntax(), QRegExp::Wildcard);
    QVERIFY(first.isMinimal());
    const QRegExp second = filter.value(QStringLiteral("G"));
    QCOMPARE(second, QRegExp(QStringLiteral("b")));
}

void RequestBytesTest::readsLikers()
{
    SocialGetLikersRequest request(QStringLiteral("old"));
    QCOMPARE(unserialize(request,
                         hex("0000000b") + hex(emptyBase)
                             + hex("00000001 00000002 0046 00000002 0062 01 00 00"
                                   "00000004 0061 0031")),
             QDataStream::Ok);
    QCOMPARE(request.activityId(), QStringLiteral("a1"));
    QCOMPARE(request.propertyFilter().keys(), QStringList({QStringLiteral("F")}));
}

void RequestBytesTest::readsActivities()
{
    SocialGetActivitiesRequest request;
    request.setPersonsFilter({QStringLiteral("old"), QStringLiteral("old")});
    request.setActivityIdsFilter({QStringLiteral("old")});
    QCOMPARE(unserialize(request,
                         hex("00000007") + hex(emptyBase)
                             + hex("00000001 00000002 0070 ffffffff"
                                   "0000000000253d8c 000003e8 01 0000000000253d8c 000007d0 01"
                                   "00000002 00000002 0069 00000002 006a 00000002 0071 02 05 01"),
                         Qt515),
             QDataStream::Ok);
    QCOMPARE(request.personsFilter(), QStringList({QStringLiteral("p")}));
    QCOMPARE(request.limit(), -1);
    QCOMPARE(request.after(), QDateTime::fromSecsSinceEpoch(1, Qt::UTC));
    QCOMPARE(request.before(), QDateTime::fromSecsSinceEpoch(2, Qt::UTC));
    QCOMPARE(request.after().timeSpec(), Qt::UTC);
    QCOMPARE(request.activityIdsFilter(), QStringList({QStringLiteral("i"), QStringLiteral("j")}));
    QCOMPARE(request.parentActivityIdFilter(), QStringLiteral("q"));
    QCOMPARE(request.activityFilter(), SocialActivity::Comment);
    QCOMPARE(request.timelineType(), KinletTimeline::Private);
    QVERIFY(request.forceRefresh());
}

void RequestBytesTest::readsAccountsWithoutServices()
{
    SocialGetAccountsRequest original;
    original.setServiceFilter({QStringLiteral("s")});
    SocialGetAccountsRequest copy;
    QCOMPARE(unserialize(copy, serialized(original)), QDataStream::Ok);
    QVERIFY(copy.serviceFilter().isEmpty());

    copy.setServiceFilter({QStringLiteral("own")});
    QCOMPARE(unserialize(copy, serialized(original)), QDataStream::Ok);
    QCOMPARE(copy.serviceFilter(), QStringList({QStringLiteral("own")}));
}

void RequestBytesTest::readsPosts()
{
    SocialPostActivitiesRequest request;
    QCOMPARE(unserialize(request,
                         hex("00000009") + hex(emptyBase) + hex("02 00000002 0074 00000002 0070")),
             QDataStream::Ok);
    QCOMPARE(request.requestType(), SocialActivity::Comment);
    QCOMPARE(request.statusText(), QStringLiteral("t"));
    QCOMPARE(request.postId(), QStringLiteral("p"));
}

void RequestBytesTest::readsLikes()
{
    SocialLikeActivityRequest request;
    QCOMPARE(unserialize(request, hex("0000000a") + hex(emptyBase) + hex("00000004 0061 0031 00")),
             QDataStream::Ok);
    QCOMPARE(request.activityId(), QStringLiteral("a1"));
    QVERIFY(!request.like());
    QCOMPARE(unserialize(request, hex("0000000a") + hex(emptyBase) + hex("ffffffff 01")),
             QDataStream::Ok);
    QVERIFY(request.activityId().isNull());
    QVERIFY(request.like());
}

void RequestBytesTest::writesLowBytesOfNumbers()
{
    SocialGetActivitiesRequest request;
    request.setActivityFilter(SocialActivity::Type(-1));
    request.setTimelineType(KinletTimeline::TimelineType(0x1fe));
    QCOMPARE(serialized(request).right(3), hex("ff fe 00"));
    SocialPostActivitiesRequest post{SocialActivity::Type(-1)};
    QCOMPARE(serialized(post).mid(16, 1), hex("ff"));
}

void RequestBytesTest::readsBytesUnsigned()
{
    SocialGetActivitiesRequest request;
    QByteArray bytes = serialized(request);
    bytes.replace(bytes.size() - 3, 3, hex("ff fe 02"));
    QCOMPARE(unserialize(request, bytes), QDataStream::Ok);
    QCOMPARE(int(request.activityFilter()), 255);
    QCOMPARE(int(request.timelineType()), 254);
    QVERIFY(request.forceRefresh());

    SocialPostActivitiesRequest post;
    QCOMPARE(unserialize(post, hex("00000009") + hex(emptyBase) + hex("ff ffffffff ffffffff")),
             QDataStream::Ok);
    QCOMPARE(int(post.requestType()), 255);
}

QTEST_GUILESS_MAIN(RequestBytesTest)

#include "requestbytestest.moc"
