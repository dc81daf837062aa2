// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/valuetypes.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"
#include "support/hostilebytes.h"
#include "support/requesthelpers.h"

#include <QSharedPointer>
#include <QSignalSpy>

namespace {

using Request = QSharedPointer<SocialDataRequest>;
using MakeRequest = Request (*)();

// What Qt's readers make of the base of a request.
struct BaseFields {
    explicit BaseFields(QDataStream &in) { in >> kind >> status >> results >> accounts; }

    qint32 kind = 0;
    qint32 status = 0;
    QList<SocialGenericData> results;
    QStringList accounts;
};

struct ActivitiesFields {
    explicit ActivitiesFields(QDataStream &in) : base(in)
    {
        in >> persons >> limit >> after >> before >> ids >> parent >> filter >> timeline >> refresh;
    }

    BaseFields base;
    QStringList persons;
    qint32 limit = 0;
    QDateTime after;
    QDateTime before;
    QStringList ids;
    QString parent;
    quint8 filter = 0;
    quint8 timeline = 0;
    bool refresh = false;
};

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

Request activities()
{
    auto *request = new SocialGetActivitiesRequest;
    request->setPersonsFilter({QStringLiteral("p")});
    request->setLimit(0x01020304);
    request->setAfter(QDateTime::fromSecsSinceEpoch(1, Qt::UTC));
    request->setBefore(QDateTime::fromSecsSinceEpoch(2, Qt::UTC));
    request->setActivityIdsFilter({QStringLiteral("i"), QStringLiteral("j")});
    request->setParentActivityIdFilter(QStringLiteral("q"));
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

void checkBase(const SocialDataRequest &request, const BaseFields &fields)
{
    QCOMPARE(int(request.status()), fields.status);
    QCOMPARE(written(request.results()), written(fields.results));
    QCOMPARE(request.performOnAccountsFilter(), fields.accounts);
}

// Reads the bytes into a used request, and compares with what Qt's own readers make of them.
void checkActivities(const QByteArray &bytes, int version)
{
    const Request used = activities();
    auto *request = static_cast<SocialGetActivitiesRequest *>(used.data());
    ByteReader in(bytes, version);
    request->unserialize(in);
    ByteReader qt(bytes, version);
    const ActivitiesFields fields(qt);
    QCOMPARE(in.status(), qt.status());
    QCOMPARE(in.device()->pos(), qt.device()->pos());
    checkBase(*request, fields.base);
    QCOMPARE(request->personsFilter(), fields.persons);
    QCOMPARE(request->limit(), fields.limit);
    QCOMPARE(request->after(), fields.after);
    QCOMPARE(request->before(), fields.before);
    QCOMPARE(request->activityIdsFilter(), fields.ids);
    QCOMPARE(request->parentActivityIdFilter(), fields.parent);
    QCOMPARE(int(request->activityFilter()), int(fields.filter));
    QCOMPARE(int(request->timelineType()), int(fields.timeline));
    QCOMPARE(request->forceRefresh(), fields.refresh);
}

}

Q_DECLARE_METATYPE(MakeRequest)

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
    void readCutActivitiesAsQtDoes_data();
    void readCutActivitiesAsQtDoes();
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

void HostileRequestsTest::readCutActivitiesAsQtDoes_data()
{
    QTest::addColumn<int>("version");
    QTest::newRow("Qt_4_8") << int(QDataStream::Qt_4_8);
    QTest::newRow("Qt_5_15") << int(QDataStream::Qt_5_15);
    QTest::newRow("default") << DefaultVersion;
}

void HostileRequestsTest::readCutActivitiesAsQtDoes()
{
    QFETCH(int, version);
    const QByteArray bytes = serialized(*activities(), version);
    for (int length = 0; length <= bytes.size(); ++length)
        checkActivities(bytes.left(length), version);
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
