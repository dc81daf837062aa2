// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/payloadguard.h"
#include "dbus/streamed.h"

#include "records/typedrecords.h"
#include "records/valuetypes.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetpersonsrequest.h"

#include <QDateTime>
#include <QRegExp>
#include <QTest>

namespace {

QString latin(const char *text)
{
    return QString::fromLatin1(text);
}

// A type that an application has registered with its operators.
struct Registered {
    qint32 number = 0;
    QString text;
};

QDataStream &operator<<(QDataStream &out, const Registered &value)
{
    return out << value.number << value.text;
}

QDataStream &operator>>(QDataStream &in, Registered &value)
{
    return in >> value.number >> value.text;
}

// A type that cannot be streamed.
struct Unstreamable {
    int number = 0;
};

// Values inside each other: lists, maps or values, the innermost an int.
QByteArray nested(int levels, quint32 type)
{
    QByteArray head = valueOfType(type);
    if (type == QMetaType::QVariantList)
        head += streamed(quint32(1));
    else if (type != QMetaType::QVariant)
        head += streamed(quint32(1), QString());
    return head.repeated(levels - 1) + streamed(QVariant(7));
}

QByteArray dateAndTime(quint8 spec, const QByteArray &rest = QByteArray())
{
    return streamed(QDate(2026, 1, 5), QTime(9, 5), spec) + rest;
}

}

Q_DECLARE_METATYPE(Registered)
Q_DECLARE_METATYPE(Unstreamable)

/// Payloads that nobody honest writes.
class PayloadGuardTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void counts_data();
    void counts();
    void countsOfRequests_data();
    void countsOfRequests();
    void nesting_data();
    void nesting();
    void aMillionLevels_data();
    void aMillionLevels();
    void types_data();
    void types();
    void timeSpecs_data();
    void timeSpecs();
    void timeSpecsOfRequests();
    void errorsDoNotHideWhatFollows_data();
    void errorsDoNotHideWhatFollows();
    void payloadEndsWhereItIsUnsafe();
};

void PayloadGuardTest::initTestCase()
{
    KinletInitializer::init();
    qRegisterMetaType<Registered>("Registered");
    qRegisterMetaType<Unstreamable>("Unstreamable");
    qRegisterMetaType<QList<int>>("QList<int>");
    qRegisterMetaType<QList<Media>>("QList<Media>");
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    qRegisterMetaTypeStreamOperators<Registered>("Registered");
    qRegisterMetaTypeStreamOperators<QList<int>>("QList<int>");
    qRegisterMetaTypeStreamOperators<QList<Media>>("QList<Media>");
#endif
}

void PayloadGuardTest::counts_data()
{
    QTest::addColumn<QByteArray>("record");
    const auto value = [](const QByteArray &head) {
        return recordWithValue(head + QByteArray::fromHex("7fffffff") + streamed(qint32(0)));
    };
    QTest::newRow("properties") << streamed(QString(), quint32(0x7fffffff));
    QTest::newRow("properties, one too many")
        << streamed(QString(), quint32(2), latin("k"), QVariant(7)) + QByteArray(8, '\0');
    QTest::newRow("list") << value(valueOfType(QMetaType::QVariantList));
    QTest::newRow("map") << value(valueOfType(QMetaType::QVariantMap));
    QTest::newRow("hash") << value(valueOfType(QMetaType::QVariantHash));
    QTest::newRow("texts") << value(valueOfType(QMetaType::QStringList));
    QTest::newRow("byte arrays") << value(valueOfType(QMetaType::QByteArrayList));
    QTest::newRow("text") << value(valueOfType(QMetaType::QString));
    QTest::newRow("bytes") << value(valueOfType(QMetaType::QByteArray));
    QTest::newRow("URL") << value(valueOfType(QMetaType::QUrl));
    QTest::newRow("type name") << value(valueOfType(1024));
    QTest::newRow("media of an attachment")
        << value(valueOfType("SocialActivityAttachment") + QByteArray(16, '\xff'));
    QTest::newRow("list of media") << value(valueOfType("QList<Media>"));
    QTest::newRow("properties of a record in a record")
        << value(valueOfType("SocialGenericData") + streamed(QString()));
}

void PayloadGuardTest::counts()
{
    QFETCH(QByteArray, record);
    for (const char *count : {"7fffffff", "80000000", "fffffffe", "ffffffff", "40000000"}) {
        QByteArray bytes = record;
        bytes.replace(QByteArray::fromHex("7fffffff"), QByteArray::fromHex(count));
        SocialGenericData read(latin("Before"));
        Payload::read(bytes, read);
        for (const QVariant &value : read.properties())
            QVERIFY(value.toList().isEmpty() && value.toMap().isEmpty());
        QCOMPARE(read.className(), QString());
    }
}

void PayloadGuardTest::countsOfRequests_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray head = streamed(qint32(7), qint32(4));
    const QByteArray hostile = QByteArray::fromHex("fffffff0");
    const QByteArray none = streamed(quint32(0));
    const QByteArray times = streamed(QDateTime(), QDateTime());
    QTest::newRow("results") << head + hostile;
    QTest::newRow("accounts") << head + none + hostile;
    QTest::newRow("persons") << head + none + none + hostile;
    QTest::newRow("activity ids") << head + none + none + none + streamed(qint32(5)) + times
            + hostile;
}

void PayloadGuardTest::countsOfRequests()
{
    QFETCH(QByteArray, bytes);
    SocialGetActivitiesRequest request;
    QVERIFY(!Payload::read(bytes + QByteArray(64, '\0'), request));
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QVERIFY(request.results().isEmpty());
    QVERIFY(request.performOnAccountsFilter().isEmpty());
    QVERIFY(request.personsFilter().isEmpty());
    QVERIFY(request.activityIdsFilter().isEmpty());
    QCOMPARE(request.timelineType(), KinletTimeline::Any);
}

void PayloadGuardTest::nesting_data()
{
    QTest::addColumn<quint32>("type");
    QTest::newRow("lists") << quint32(QMetaType::QVariantList);
    QTest::newRow("maps") << quint32(QMetaType::QVariantMap);
    QTest::newRow("hashes") << quint32(QMetaType::QVariantHash);
    QTest::newRow("values") << quint32(QMetaType::QVariant);
}

void PayloadGuardTest::nesting()
{
    QFETCH(quint32, type);
    SocialGenericData record;
    const QByteArray deep = recordWithValue(nested(64, type));
    QVERIFY(Payload::read(deep, record));
    SocialGenericData expected;
    QVERIFY(readPlainly(deep, QDataStream::Qt_5_15, expected));
    QCOMPARE(Payload::write(record), Payload::write(expected));
    QVERIFY(!Payload::read(recordWithValue(nested(65, type)), record));
    QVERIFY(record.properties().isEmpty());
}

void PayloadGuardTest::aMillionLevels_data()
{
    nesting_data();
}

void PayloadGuardTest::aMillionLevels()
{
    QFETCH(quint32, type);
    SocialGenericData record;
    QVERIFY(!Payload::read(recordWithValue(nested(1000000, type)), record));
    QVERIFY(record.properties().isEmpty());
    SocialGetPersonsRequest request;
    const QByteArray results = streamed(qint32(5), qint32(4), quint32(1));
    QVERIFY(!Payload::read(results + recordWithValue(nested(1000000, type)), request));
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QVERIFY(request.results().isEmpty());
}

void PayloadGuardTest::types_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("safe");
    const auto row = [](const char *name, const QByteArray &value, bool safe) {
        QTest::newRow(name) << value << safe;
    };
    const QByteArray zeros(64, '\0');
    for (const quint32 type : {31u, 39u, 43u, 51u, 57u, 64u, 70u, 87u, 122u, 127u, 128u, 500u,
                               1023u, 1025u, 65536u, 65537u, 0x7fffffffu, 0x80000000u, 0xffffffffu})
        row(qPrintable(QStringLiteral("number %1").arg(type)), valueOfType(type) + zeros, false);
    row("point", valueOfType(25) + streamed(qint32(1), qint32(1)), false);
    row("locale", valueOfType(18) + streamed(latin("de_DE")), false);
    row("bits", valueOfType(13) + QByteArray::fromHex("ffffffff"), false);
    row("registered", valueOfType("Registered") + streamed(qint32(7), latin("a")), true);
    row("registered, its name without a zero byte",
        streamed(quint32(1024), qint8(0), quint32(10)) + "Registered"
            + streamed(qint32(7), latin("a")),
        true);
    row("registered without operators", valueOfType("Unstreamable"), false);
    row("not registered", valueOfType("Unheard") + zeros, false);
    row("no name", valueOfType(""), false);
    row("null name", valueOfType(1024) + QByteArray::fromHex("ffffffff"), false);
    row("list of a registered type", valueOfType("QList<int>") + streamed(quint32(0)), false);
    row("list of media", valueOfType("QList<Media>") + streamed(quint32(1), Media()), true);
    row("basic type by its name", valueOfType("QString") + streamed(latin("a")), true);
    row("Media", valueOfType("Media") + streamed(Media()), true);
    row("SocialActionIconTexts",
        valueOfType("SocialActionIconTexts") + streamed(SocialActionIconTexts()), true);
    row("SocialImportProgress",
        valueOfType("SocialImportProgress") + streamed(SocialImportProgress()), true);
    row("SocialActivityAttachment",
        valueOfType("SocialActivityAttachment") + streamed(SocialActivityAttachment()), true);
}

void PayloadGuardTest::types()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, safe);
    const QByteArray bytes = recordWithValue(value);
    SocialGenericData record;
    QCOMPARE(Payload::read(bytes, record), safe);
    QCOMPARE(record.properties().size(), safe ? 1 : 0);
    if (!safe)
        return;
    SocialGenericData expected;
    QVERIFY(readPlainly(bytes, QDataStream::Qt_5_15, expected));
    QCOMPARE(Payload::write(record), Payload::write(expected));
}

void PayloadGuardTest::timeSpecs_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("safe");
    QTest::newRow("local") << dateAndTime(0) << true;
    QTest::newRow("UTC") << dateAndTime(1) << true;
    QTest::newRow("offset") << dateAndTime(2, streamed(qint32(3600))) << true;
    QTest::newRow("absurd offset") << dateAndTime(2, QByteArray::fromHex("7fffffff")) << true;
    QTest::newRow("zone") << dateAndTime(3, streamed(latin("Europe/Berlin"))) << true;
    QTest::newRow("zone that is not there") << dateAndTime(3, streamed(latin("No/Where"))) << true;
    QTest::newRow("empty zone") << dateAndTime(3, streamed(latin(""))) << true;
    QTest::newRow("zone with a path")
        << dateAndTime(3, streamed(latin("../../../etc/passwd"))) << false;
    QTest::newRow("zone that is an offset")
        << dateAndTime(3,
                       streamed(latin("OffsetFromUtc"), latin("UTC+01:00"), qint32(3600),
                                latin("a"), latin("b"), qint32(0), latin("c")))
        << true;
    QTest::newRow("zone that is an offset with a path")
        << dateAndTime(3,
                       streamed(latin("OffsetFromUtc"), latin("../x"), qint32(3600), latin("a"),
                                latin("b"), qint32(0), latin("c")))
        << false;
    for (const int spec : {4, 5, 127, 128, 200, 255})
        QTest::newRow(qPrintable(QString::number(spec))) << dateAndTime(quint8(spec)) << false;
}

void PayloadGuardTest::timeSpecs()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, safe);
    const QByteArray bytes = recordWithValue(valueOfType(QMetaType::QDateTime) + value);
    SocialGenericData record;
    QCOMPARE(Payload::read(bytes, record), safe);
    QCOMPARE(record.properties().size(), safe ? 1 : 0);
    // Whatever was stored can be used.
    QCOMPARE(record.variantProperty(latin("k")).toDateTime().toUTC().timeSpec(), Qt::UTC);
}

void PayloadGuardTest::timeSpecsOfRequests()
{
    SocialGetActivitiesRequest request;
    request.setAfter(QDateTime(QDate(2026, 1, 5), QTime(9, 5), Qt::UTC));
    request.setBefore(QDateTime(QDate(2026, 1, 6), QTime(9, 5), Qt::UTC));
    const QByteArray bytes = Payload::write(request);
    const QByteArray before = streamed(request.before());
    const int at = bytes.indexOf(before) + before.size() - 1;
    for (int spec = 0; spec < 256; ++spec) {
        QByteArray changed = bytes;
        changed[at] = char(spec);
        SocialGetActivitiesRequest read;
        QCOMPARE(Payload::read(changed, read), spec == Qt::LocalTime || spec == Qt::UTC);
        QCOMPARE(read.after(), request.after());
        QCOMPARE(read.before().toUTC().timeSpec(), Qt::UTC);
    }
}

void PayloadGuardTest::errorsDoNotHideWhatFollows_data()
{
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("key of odd size") << streamed(quint32(3));
    QTest::newRow("class name of odd size") << QByteArray();
}

// Qt goes on after the error, and so would meet what the value holds.
void PayloadGuardTest::errorsDoNotHideWhatFollows()
{
    QFETCH(QByteArray, error);
    const QByteArray head = error.isEmpty() ? streamed(quint32(1), quint32(1), latin("k"))
                                            : streamed(QString(), quint32(1)) + error;
    const QByteArray harmless = head + streamed(QVariant(7));
    for (const int version : {int(QDataStream::Qt_5_15), int(QDataStream::Qt_4_8)}) {
        Allowance allowance;
        QCOMPARE(safeRecordBytes(harmless, version, allowance), int(harmless.size()));
        for (const QByteArray &value :
             {valueOfType(27) + streamed(latin("((a{999}){999}){9}"), qint32(0)), valueOfType(500),
              nested(100000, QMetaType::QVariantList)}) {
            const QByteArray bytes = head + value;
            const int safe = safeRecordBytes(bytes, version, allowance);
            QVERIFY2(safe >= head.size() && safe < bytes.size(), qPrintable(QString::number(safe)));
        }
        SocialGenericData record;
        QVERIFY(!Payload::read(
            head + valueOfType(27) + streamed(latin("((a{999}){999}){9}"), qint32(0)), record));
    }
}

void PayloadGuardTest::payloadEndsWhereItIsUnsafe()
{
    const QByteArray first = streamed(qint32(5), qint32(4), quint32(2), latin("First"), quint32(0));
    const QByteArray bytes = first + recordWithValue(valueOfType(500)) + streamed(quint32(0));
    SocialGetPersonsRequest request;
    QVERIFY(!Payload::read(bytes, request));
    SocialGetPersonsRequest expected;
    const int end = int(first.size() + recordWithValue(QByteArray()).size());
    QVERIFY(!readPlainly(bytes.left(end), QDataStream::Qt_5_15, expected));
    QCOMPARE(Payload::write(request), Payload::write(expected));
    QCOMPARE(request.status(), SocialDataRequest::Finished);
}

QTEST_GUILESS_MAIN(PayloadGuardTest)
#include "payloadguardtest.moc"
