// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/socialgenericdata.h"
#include "records/valuetypes.h"
#include "support/hostilebytes.h"
#include "support/streambytes.h"

class HostileRecordsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void survivesHostileCounts_data();
    void survivesHostileCounts();
    void survivesHostileMediaCounts();
    void survivesCountsOnEveryLevel();
    void survivesDeepNesting_data();
    void survivesDeepNesting();
    void endsNestingAt500Levels();
    void goesOnAfterTooDeepNesting();
    void survivesLongBitArrays();
};

void HostileRecordsTest::initTestCase()
{
    KinletInitializer::init();
    limitMemory();
    // Qt complains about each unknown type.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}

namespace {

// A record with one property "X".
QByteArray recordOf(const QByteArray &value)
{
    return hex("ffffffff 00000001 00000002 0058") + value;
}

QDataStream::Status readStatus(const QByteArray &bytes, SocialGenericData *record,
                               int version = DefaultVersion)
{
    ByteReader in(bytes, version);
    in >> *record;
    return in.status();
}

QByteArray namedType(const char *typeId, const char *name)
{
    const QByteArray nameAndZero = QByteArray(name) + '\0';
    return hex(typeId) + '\0' + written(quint32(nameAndZero.size())) + nameAndZero;
}

}

// "before" and "after" stand around the count; "after" holds one whole element.
void HostileRecordsTest::survivesHostileCounts_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const QByteArray value = hex("00000002 00 00000001");
    const QByteArray pair = hex("00000002 0061") + value;
    const QByteArray text = hex("00000002 0061");
    const QByteArray noRecord = recordOf(QByteArray());
    for (const int version :
         {int(QDataStream::Qt_4_8), int(QDataStream::Qt_5_15), DefaultVersion}) {
        const auto row = [version](const char *name, const QByteArray &before,
                                   const QByteArray &after) {
            QTest::addRow("%s, version %d", name, version) << version << before << after;
        };
        row("properties", hex("ffffffff"), pair);
        row("list", noRecord + hex("00000009 00"), value);
        row("map", noRecord + hex("00000008 00"), pair);
        row("hash", noRecord + hex("0000001c 00"), pair);
        row("texts", noRecord + hex("0000000b 00"), text);
        row("byte arrays", noRecord + hex("00000031 00"), text);
        row("text", noRecord + hex("0000000a 00"), text);
        row("byte array", noRecord + hex("0000000c 00"), text);
        const QByteArray curve =
            hex("0000001d 00 00 0000000000000000 01") + QByteArray(3 * 8, '\0');
        const QByteArray fivePointNumbers(5 * 8, '\0');
        if (version > QDataStream::Qt_5_12) {
            row("first points of a curve", noRecord + curve, fivePointNumbers);
            row("last points of a curve", noRecord + curve + hex("00000000"), fivePointNumbers);
        }
        row("list in a list", noRecord + hex("00000009 00 00000001 00000009 00"), value);
        row("list in a map", noRecord + hex("00000008 00 00000001 00000002 0061 00000009 00"),
            value);
        row("list in a hash", noRecord + hex("0000001c 00 00000001 00000002 0061 00000009 00"),
            value);
        row("texts in a list", noRecord + hex("00000009 00 00000001 0000000b 00"), text);
        row("list in a value in a value", noRecord + hex("00000029 00 00000009 00"), value);
        const char *const typeId = version == QDataStream::Qt_4_8 ? "0000007f"
            : version <= QDataStream::Qt_5_15                     ? "00000400"
                                                                  : "00010000";
        row("list by name", noRecord + namedType(typeId, "QVariantList"), value);
        row("list by full name", noRecord + namedType(typeId, "QList<QVariant>"), value);
        row("texts by name", noRecord + namedType(typeId, "QStringList"), text);
        row("name of a type", noRecord + hex(typeId) + '\0', text);
        row("media of an attachment",
            noRecord + namedType(typeId, "SocialActivityAttachment")
                + hex("ffffffff ffffffff ffffffff ffffffff"),
            hex("00000001 ffffffff ffffffff ffffffff"));
    }
    QTest::addRow("byte arrays, Qt 4 number")
        << int(QDataStream::Qt_4_8) << noRecord + hex("00000092 00") << text;
}

void HostileRecordsTest::survivesHostileCounts()
{
    QFETCH(int, version);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    for (const QByteArray &count : hostileCounts()) {
        SocialGenericData record(QStringLiteral("Old"));
        record.setProperty(QStringLiteral("Left"), 1);
        const auto status = readStatus(before + count + after, &record, version);
        // A length of 0xffffffff is that of a null text, byte array or name.
        if (status == QDataStream::Ok)
            QVERIFY(count == hex("ffffffff") && record.properties().size() == 1);
        else
            QVERIFY(record.properties().isEmpty());
        QVERIFY(record.className().isNull());
    }
}

void HostileRecordsTest::survivesHostileMediaCounts()
{
    for (const QByteArray &count : hostileCounts()) {
        SocialActivityAttachment attachment;
        attachment.media.append(Media());
        ByteReader in(hex("00000002 0061 ffffffff ffffffff ffffffff") + count
                      + hex("00000001 ffffffff ffffffff ffffffff"));
        in >> attachment;
        QCOMPARE(in.status(), QDataStream::ReadPastEnd);
        QCOMPARE(attachment.firstText, QStringLiteral("a"));
        QVERIFY(attachment.media.isEmpty());
    }
}

// What one level may take is small, but levels add up.
void HostileRecordsTest::survivesCountsOnEveryLevel()
{
    constexpr int size = 4 * 1024 * 1024;
    QByteArray bytes = recordOf(QByteArray());
    for (int level = 0; level < 400; ++level)
        bytes += hex("00000009 00 00ffffff");
    bytes += QByteArray(size, '\0');
    SocialGenericData record;
    QVERIFY(readStatus(bytes, &record) != QDataStream::Ok);
    QVERIFY(record.properties().isEmpty());
}

void HostileRecordsTest::survivesDeepNesting_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<QByteArray>("level");
    for (const int version :
         {int(QDataStream::Qt_4_8), int(QDataStream::Qt_5_15), DefaultVersion}) {
        const auto row = [version](const char *name, const QByteArray &level) {
            QTest::addRow("%s, version %d", name, version) << version << level;
        };
        row("lists", hex("00000009 00 00000001"));
        row("maps", hex("00000008 00 00000001 ffffffff"));
        row("hashes", hex("0000001c 00 00000001 ffffffff"));
        row("values in values", hex("00000029 00"));
        row("values in values, Qt 4 number", hex("0000008a 00"));
        row("pairs", hex("0000003a 00"));
        row("pairs, Qt 4 number", hex("0000009b 00"));
        row("second halves of pairs", hex("0000003a 00 00000002 00 00000001"));
        row("lists in maps", hex("00000009 00 00000001 00000008 00 00000001 ffffffff"));
        row("lists by name, Qt 4", namedType("0000007f", "QVariantList") + hex("00000001"));
        row("lists by name, Qt 5", namedType("00000400", "QVariantList") + hex("00000001"));
        row("lists by name, Qt 6", namedType("00010000", "QVariantList") + hex("00000001"));
        row("maps by full name",
            namedType("00000400", "QMap<QString,QVariant>") + hex("00000001 ffffffff"));
        row("values by name", namedType("00000400", "QVariant"));
        row("records by name, Qt 5",
            namedType("00000400", "SocialGenericData") + hex("ffffffff 00000001 ffffffff"));
        row("records by name, Qt 6",
            namedType("00010000", "SocialGenericData") + hex("ffffffff 00000001 ffffffff"));
    }
}

void HostileRecordsTest::survivesDeepNesting()
{
    QFETCH(int, version);
    QFETCH(QByteArray, level);
    qRegisterMetaType<SocialGenericData>("SocialGenericData");
    const QByteArray bytes = recordOf(level.repeated(50'000));
    SocialGenericData record;
    const auto status = readStatus(bytes, &record, version);
    // Numbers that this version does not know end the value at once and put the stream out of step.
    if (status == QDataStream::Ok)
        QVERIFY(!record.variantProperty(QStringLiteral("X")).isValid());
    else
        QVERIFY(record.properties().isEmpty());
}

void HostileRecordsTest::endsNestingAt500Levels()
{
    const QByteArray list = hex("00000009 00 00000001");
    const QByteArray number = hex("00000002 00 00000007");
    SocialGenericData record;
    const QByteArray deepest = recordOf(list.repeated(499) + number);
    QCOMPARE(readStatus(deepest, &record), QDataStream::Ok);
    QCOMPARE(written(record), deepest);
    QCOMPARE(readStatus(recordOf(list.repeated(500) + number), &record),
             QDataStream::ReadCorruptData);
    QVERIFY(record.properties().isEmpty());
}

void HostileRecordsTest::goesOnAfterTooDeepNesting()
{
    const QByteArray list = hex("00000009 00 00000001");
    SocialGenericData record;
    for (int i = 0; i < 3; ++i)
        readStatus(recordOf(list.repeated(50'000)), &record);
    const QByteArray deepest = recordOf(list.repeated(499) + hex("00000002 00 00000007"));
    QCOMPARE(readStatus(deepest, &record), QDataStream::Ok);
    QCOMPARE(written(record), deepest);
}

void HostileRecordsTest::survivesLongBitArrays()
{
    SocialGenericData record;
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    // Only here lengths have 64 bits.
    for (const char *length :
         {"ffffffffffffffff", "8000000000000000", "ffffffff00000000", "7fffffffffffffff"}) {
        const QByteArray bytes =
            recordOf(hex("0000000d 00") + hex(length) + QByteArray(16, '\x01'));
        QVERIFY(readStatus(bytes, &record) != QDataStream::Ok);
        QVERIFY(record.properties().isEmpty());
    }
#endif
    QBitArray bits(11);
    bits.setBit(10);
    record.setProperty(QStringLiteral("X"), bits);
    SocialGenericData copy;
    QCOMPARE(readStatus(written(record), &copy), QDataStream::Ok);
    QCOMPARE(copy.variantProperty(QStringLiteral("X")).toBitArray(), bits);
}

QTEST_GUILESS_MAIN(HostileRecordsTest)

#include "hostilerecordstest.moc"
