// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/socialgenericdata.h"
#include "records/typedrecords.h"
#include "support/streambytes.h"

namespace {

SocialGenericData oldRecord()
{
    SocialGenericData record(QStringLiteral("Old"));
    record.setProperty(QStringLiteral("Left"), 1);
    return record;
}

}

class RecordsInStreamsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void followOneAnother();
    void areWrittenAlikeWhateverTheirClass();
    void bringTheirClassName();
    void readOnAfterACorruptClassName();
    void keepTheClassNameBeforeCorruptProperties();
    void areEmptyWithoutADevice();
};

// Nothing stands between two records, and nothing before or behind one.
void RecordsInStreamsTest::followOneAnother()
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    QCOMPARE(&(out << oldRecord() << SocialGenericData()), &out);
    out << oldRecord() << quint8(7);
    QCOMPARE(bytes.toHex(),
             (written(oldRecord()) + written(SocialGenericData()) + written(oldRecord()) + '\7')
                 .toHex());

    SocialGenericData first;
    SocialGenericData second = oldRecord();
    SocialGenericData third;
    quint8 end = 0;
    ByteReader in(bytes);
    in >> first >> second >> third >> end;
    QCOMPARE(in.status(), QDataStream::Ok);
    QCOMPARE(first.properties(), oldRecord().properties());
    QVERIFY(second.className().isNull());
    QVERIFY(second.properties().isEmpty());
    QCOMPARE(third.className(), QStringLiteral("Old"));
    QCOMPARE(end, quint8(7));
}

void RecordsInStreamsTest::areWrittenAlikeWhateverTheirClass()
{
    SocialActivity activity;
    activity.setProperty(SocialActivity::LikeCount, 3);
    const SocialGenericData generic = activity;
    QCOMPARE(written(activity).toHex(), written(generic).toHex());
}

// Also for a typed record: the reader replaces the class name like everything else.
void RecordsInStreamsTest::bringTheirClassName()
{
    SocialActivity activity;
    activity.setProperty(SocialActivity::LikeCount, 3);
    const SocialActivity copy = activity;
    ByteReader in(written(oldRecord()));
    in >> activity;
    QCOMPARE(activity.className(), QStringLiteral("Old"));
    QCOMPARE(activity.properties(), oldRecord().properties());
    QCOMPARE(copy.className(), QStringLiteral("SocialActivity"));
}

// Texts have an even number of bytes. Properties are read as if the stream were sound.
void RecordsInStreamsTest::readOnAfterACorruptClassName()
{
    SocialGenericData record = oldRecord();
    ByteReader in(hex("00000003 00000001 00000002 0058 00000002 00 00000007"));
    in >> record;
    QCOMPARE(in.status(), QDataStream::ReadCorruptData);
    QVERIFY(record.className().isEmpty());
    QCOMPARE(record.properties(), QVariantMap({{QStringLiteral("X"), 7}}));
}

void RecordsInStreamsTest::keepTheClassNameBeforeCorruptProperties()
{
    SocialGenericData record = oldRecord();
    ByteReader in(hex("00000002 0054 00000002"
                      "00000002 0058 00000002 00 00000007"
                      "00000003 00000002 00 00000007"));
    in >> record;
    QCOMPARE(in.status(), QDataStream::ReadCorruptData);
    QCOMPARE(record.className(), QStringLiteral("T"));
    QVERIFY(record.properties().isEmpty());
}

void RecordsInStreamsTest::areEmptyWithoutADevice()
{
    SocialGenericData record = oldRecord();
    QDataStream in;
    in >> record;
    QVERIFY(record.className().isEmpty());
    QVERIFY(record.properties().isEmpty());
}

QTEST_GUILESS_MAIN(RecordsInStreamsTest)

#include "recordsinstreamstest.moc"
