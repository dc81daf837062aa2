// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/socialgenericdata.h"
#include "records/valuetypes.h"
#include "support/streambytes.h"

#include <QDateTime>

namespace {

// Class name "T"; "B" is the text "hi", "a" the number 1, "A" true.
constexpr char threeProperties[] = "00000002 0054 00000003"
                                   "00000002 0061 00000002 00 00000001"
                                   "00000002 0042 0000000a 00 00000004 0068 0069"
                                   "00000002 0041 00000001 00 01";
constexpr char threePropertiesSwapped[] = "02000000 5400 03000000"
                                          "02000000 6100 02000000 00 01000000"
                                          "02000000 4200 0a000000 00 04000000 6800 6900"
                                          "02000000 4100 01000000 00 01";

SocialGenericData recordOfThree()
{
    SocialGenericData record(QStringLiteral("T"));
    record.setProperty(QStringLiteral("A"), true);
    record.setProperty(QStringLiteral("B"), QStringLiteral("hi"));
    record.setProperty(QStringLiteral("a"), 1);
    return record;
}

SocialGenericData oldRecord()
{
    SocialGenericData record(QStringLiteral("Old"));
    record.setProperty(QStringLiteral("Left"), 1);
    return record;
}

}

class GenericDataStreamTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KinletInitializer::init(); }
    void writes_data();
    void writes();
    void writesTimes_data();
    void writesTimes();
    void writesOwnTypes_data();
    void writesOwnTypes();
    void readsWhatItWrote_data() { writes_data(); }
    void readsWhatItWrote();
    void understandsQtsMapForm();
    void readsKeysInAnyOrder();
    void replacesEverything();
    void leavesCopiesAlone();
    void readsAnEmptyStream();
    void readsCutStreams();
    void storesInvalidValues();
    void treatsRepeatedKeysAsQtDoes();
    void putsEarlierErrorsAside();
    void keepsNullContainers_data();
    void keepsNullContainers();
};

void GenericDataStreamTest::writes_data()
{
    QTest::addColumn<SocialGenericData>("record");
    addByteColumns();
    addByteRows("null class name, no properties", SocialGenericData(), "ffffffff 00000000",
                "ffffffff 00000000");
    addByteRows("empty class name", SocialGenericData(QStringLiteral("")), "00000000 00000000",
                "00000000 00000000");
    addByteRows("class name only", SocialGenericData(QStringLiteral("A\u20ac")),
                "00000004 0041 20ac 00000000", "04000000 4100 ac20 00000000");
    addByteRows("three properties, last key first", recordOfThree(), threeProperties,
                threePropertiesSwapped);

    SocialGenericData fixedKeys;
    fixedKeys.setProperty(SocialGenericData::Id, QStringLiteral("1"));
    fixedKeys.setParentAccount(QString());
    addByteRows("fixed keys", fixedKeys,
                "ffffffff 00000002 0000001a 0050 0061 0072 0065 006e 0074 0041 0063 0063 006f"
                "0075 006e 0074 0000000a 00 ffffffff 00000004 0049 0064 0000000a 00 00000002 0031",
                "ffffffff 02000000 1a000000 5000 6100 7200 6500 6e00 7400 4100 6300 6300 6f00"
                "7500 6e00 7400 0a000000 00 ffffffff 04000000 4900 6400 0a000000 00 02000000 3100");

    SocialGenericData lists;
    lists.setProperty(QStringLiteral("L"), QVariantList{1, true});
    lists.setProperty(QStringLiteral("S"), QStringList{QStringLiteral("x"), QString()});
    addByteRows("lists", lists,
                "ffffffff 00000002"
                "00000002 0053 0000000b 00 00000002 00000002 0078 ffffffff"
                "00000002 004c 00000009 00 00000002 00000002 00 00000001 00000001 00 01",
                "ffffffff 02000000"
                "02000000 5300 0b000000 00 02000000 02000000 7800 ffffffff"
                "02000000 4c00 09000000 00 02000000 02000000 00 01000000 01000000 00 01");
}

void GenericDataStreamTest::writes()
{
    QFETCH(SocialGenericData, record);
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QByteArray, bytes);
    QCOMPARE(written(record, version, order).toHex(), bytes.toHex());
}

// 1970-01-01T00:00:01Z is the julian day 2440588 = 0x253d8c.
void GenericDataStreamTest::writesTimes_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("Qt_4_8") << int(QDataStream::Qt_4_8)
                            << hex("ffffffff 00000001 00000002 0054 00000010 00"
                                   "00253d8c 000003e8 02");
    const QByteArray today = hex("ffffffff 00000001 00000002 0054 00000010 00"
                                 "0000000000253d8c 000003e8 01");
    QTest::newRow("Qt_5_15") << int(QDataStream::Qt_5_15) << today;
    QTest::newRow("default") << DefaultVersion << today;
}

void GenericDataStreamTest::writesTimes()
{
    QFETCH(int, version);
    QFETCH(QByteArray, bytes);
    const QDateTime time = QDateTime::fromSecsSinceEpoch(1, Qt::UTC);
    SocialGenericData record;
    record.setProperty(QStringLiteral("T"), time);
    QCOMPARE(written(record, version).toHex(), bytes.toHex());

    SocialGenericData copy;
    ByteReader in(bytes, version);
    in >> copy;
    QCOMPARE(copy.variantProperty(QStringLiteral("T")).toDateTime(), time);
}

void GenericDataStreamTest::writesOwnTypes_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<QByteArray>("typeId");
    QTest::newRow("Qt_4_8") << int(QDataStream::Qt_4_8) << hex("0000007f");
    QTest::newRow("Qt_5_15") << int(QDataStream::Qt_5_15) << hex("00000400");
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QTest::newRow("default") << DefaultVersion << hex("00000400");
#else
    QTest::newRow("default") << DefaultVersion << hex("00010000");
#endif
}

void GenericDataStreamTest::writesOwnTypes()
{
    QFETCH(int, version);
    QFETCH(QByteArray, typeId);
    // "I", then the name "SocialImportProgress" with its zero byte
    const QByteArray bytes = hex("ffffffff 00000001 00000002 0049") + typeId
        + hex("00 00000015 536f6369616c 496d706f7274 50726f6772657373 00"
              "01 00000001 00000002 00000003");
    SocialImportProgress progress;
    progress.running = true;
    progress.contactsAdded = 1;
    progress.contactsRemoved = 2;
    progress.contactsMerged = 3;
    SocialGenericData record;
    record.setProperty(QStringLiteral("I"), QVariant::fromValue(progress));
    QCOMPARE(written(record, version).toHex(), bytes.toHex());

    SocialGenericData copy;
    ByteReader in(bytes, version);
    in >> copy;
    QCOMPARE(in.status(), QDataStream::Ok);
    const QVariant value = copy.variantProperty(QStringLiteral("I"));
    QCOMPARE(value.userType(), qMetaTypeId<SocialImportProgress>());
    const auto read = value.value<SocialImportProgress>();
    QCOMPARE(read.running, true);
    QCOMPARE(read.contactsAdded, 1);
    QCOMPARE(read.contactsRemoved, 2);
    QCOMPARE(read.contactsMerged, 3);
}

void GenericDataStreamTest::readsWhatItWrote()
{
    QFETCH(SocialGenericData, record);
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QByteArray, bytes);
    SocialGenericData read = oldRecord();
    ByteReader in(bytes, version, order);
    in >> read;
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(in.atEnd());
    QCOMPARE(read.className(), record.className());
    QCOMPARE(read.className().isNull(), record.className().isNull());
    QCOMPARE(read.properties(), record.properties());
}

void GenericDataStreamTest::understandsQtsMapForm()
{
    const SocialGenericData record = recordOfThree();
    QString className;
    QVariantMap properties;
    ByteReader in(written(record));
    in >> className >> properties;
    QCOMPARE(className, record.className());
    QCOMPARE(properties, record.properties());

    SocialGenericData read;
    ByteReader qtForm(written(className) + written(properties));
    qtForm >> read;
    QCOMPARE(read.className(), record.className());
    QCOMPARE(read.properties(), record.properties());
}

void GenericDataStreamTest::readsKeysInAnyOrder()
{
    SocialGenericData record;
    ByteReader in(hex("ffffffff 00000003"
                      "00000002 0042 00000002 00 00000002"
                      "00000002 0043 00000002 00 00000003"
                      "00000002 0041 00000002 00 00000001"));
    in >> record;
    QCOMPARE(in.status(), QDataStream::Ok);
    QCOMPARE(record.properties(),
             QVariantMap(
                 {{QStringLiteral("A"), 1}, {QStringLiteral("B"), 2}, {QStringLiteral("C"), 3}}));
}

void GenericDataStreamTest::replacesEverything()
{
    SocialGenericData record = oldRecord();
    ByteReader in(hex("ffffffff 00000000"));
    in >> record;
    QVERIFY(record.className().isNull());
    QVERIFY(record.properties().isEmpty());
}

void GenericDataStreamTest::leavesCopiesAlone()
{
    SocialGenericData record = oldRecord();
    const SocialGenericData copy = record;
    ByteReader in(hex(threeProperties));
    in >> record;
    QCOMPARE(record.className(), QStringLiteral("T"));
    QCOMPARE(copy.className(), QStringLiteral("Old"));
    QCOMPARE(copy.properties(), oldRecord().properties());
}

void GenericDataStreamTest::readsAnEmptyStream()
{
    SocialGenericData record = oldRecord();
    ByteReader in{QByteArray()};
    in >> record;
    QVERIFY(record.className().isEmpty());
    QVERIFY(record.properties().isEmpty());
    QCOMPARE(in.status(), QDataStream::ReadPastEnd);
}

void GenericDataStreamTest::readsCutStreams()
{
    const QByteArray bytes = hex(threeProperties);
    const int classNameSize = 6;
    for (int length = 0; length < bytes.size(); ++length) {
        SocialGenericData record = oldRecord();
        ByteReader in(bytes.left(length));
        in >> record;
        QCOMPARE(in.status(), QDataStream::ReadPastEnd);
        QCOMPARE(record.className(), length < classNameSize ? QString() : QStringLiteral("T"));
        QVERIFY2(record.properties().isEmpty(), qPrintable(QString::number(length)));
    }
}

void GenericDataStreamTest::storesInvalidValues()
{
    SocialGenericData record;
    ByteReader in(hex("ffffffff 00000001 00000002 0058 00000000 01"));
    in >> record;
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(record.hasProperty(QStringLiteral("X")));
    QVERIFY(!record.variantProperty(QStringLiteral("X")).isValid());
    QVERIFY(record.property(QStringLiteral("X")).isNull());
    QVERIFY(record.removeProperty(QStringLiteral("X")));
}

void GenericDataStreamTest::treatsRepeatedKeysAsQtDoes()
{
    const QByteArray bytes = hex("ffffffff 00000002"
                                 "00000002 0058 00000002 00 00000001"
                                 "00000002 0058 00000002 00 00000002");
    SocialGenericData record;
    ByteReader in(bytes);
    in >> record;
    QCOMPARE(in.status(), QDataStream::Ok);
    QCOMPARE(record.variantProperty(QStringLiteral("X")), QVariant(2));
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCOMPARE(record.properties().size(), 2);
    QCOMPARE(written(record), bytes);
#else
    QCOMPARE(record.properties().size(), 1);
#endif
}

void GenericDataStreamTest::putsEarlierErrorsAside()
{
    SocialGenericData record;
    ByteReader in(hex(threeProperties));
    in.setStatus(QDataStream::ReadCorruptData);
    in >> record;
    QCOMPARE(record.className(), QStringLiteral("T"));
    QCOMPARE(record.properties(), recordOfThree().properties());
    QCOMPARE(in.status(), QDataStream::ReadCorruptData);
}

void GenericDataStreamTest::keepsNullContainers_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("list") << hex("00000009 01 00000000");
    QTest::newRow("map") << hex("00000008 01 00000000");
    QTest::newRow("hash") << hex("0000001c 01 00000000");
    QTest::newRow("texts") << hex("0000000b 01 00000000");
    QTest::newRow("byte arrays") << hex("00000031 01 00000000");
    QTest::newRow("list with an element") << hex("00000009 01 00000001 00000002 00 00000001");
    QTest::newRow("map with an element")
        << hex("00000008 01 00000001 00000002 0061 00000002 00 00000001");
    QTest::newRow("hash with an element")
        << hex("0000001c 01 00000001 00000002 0061 00000002 00 00000001");
    QTest::newRow("texts with an element") << hex("0000000b 01 00000001 00000002 0061");
    QTest::newRow("byte arrays with an element") << hex("00000031 01 00000001 00000001 61");
    QTest::newRow("value in a value") << hex("00000029 01 00000002 00 00000001");
    QTest::newRow("nested") << hex("00000009 00 00000001 00000009 01 00000000");
}

void GenericDataStreamTest::keepsNullContainers()
{
    QFETCH(QByteArray, value);
    const QByteArray bytes = hex("ffffffff 00000001 00000002 0058") + value;
    SocialGenericData record;
    ByteReader in(bytes);
    in >> record;
    QCOMPARE(in.status(), QDataStream::Ok);
    QCOMPARE(written(record).toHex(), bytes.toHex());
}

QTEST_GUILESS_MAIN(GenericDataStreamTest)

#include "genericdatastreamtest.moc"
