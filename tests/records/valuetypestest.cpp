// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/valuetypes.h"
#include "support/streambytes.h"

#include <QMetaEnum>

#include <type_traits>

template <typename T>
constexpr bool isPlainValue =
    std::is_aggregate_v<T> &&std::is_copy_constructible_v<T> &&std::is_copy_assignable_v<T>;
static_assert(isPlainValue<Media>);
static_assert(isPlainValue<SocialActionIconTexts>);
static_assert(isPlainValue<SocialActivityAttachment>);
static_assert(isPlainValue<SocialImportProgress>);
static_assert(!std::is_convertible_v<Media, SocialActionIconTexts>);

class ValueTypesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startEmpty();
    void writeMedia_data();
    void writeMedia();
    void writeIconTexts_data() { writeMedia_data(); }
    void writeIconTexts();
    void writeAttachments_data();
    void writeAttachments();
    void writeImportProgress_data();
    void writeImportProgress();
    void readCutTexts();
    void readCutAttachments();
    void readMediaAfterAnEarlierError();
    void readCutImportProgress();
    void readAnyByteAsTrue();
    void registerOnlyTheTimelineType();
    void numberTheTimelines();
    void numberKindsActionsAndCapabilities();
};

void ValueTypesTest::startEmpty()
{
    const Media media;
    QCOMPARE(media.kind, 0);
    QVERIFY(media.firstText.isNull() && media.secondText.isNull() && media.thirdText.isNull());
    const SocialActionIconTexts texts;
    QCOMPARE(texts.kind, 0);
    const SocialActivityAttachment attachment;
    QVERIFY(attachment.fourthText.isNull());
    QVERIFY(attachment.media.isEmpty());
    const SocialImportProgress progress;
    QVERIFY(!progress.running);
    QCOMPARE(progress.contactsAdded, 0);
    QCOMPARE(progress.contactsRemoved, 0);
    QCOMPARE(progress.contactsMerged, 0);
}

void ValueTypesTest::writeMedia_data()
{
    QTest::addColumn<int>("kind");
    addByteColumns();
    addByteRows("positive kind", 0x01020304, "01020304 00000002 0061 00000000 ffffffff",
                "04030201 02000000 6100 00000000 ffffffff");
    addByteRows("negative kind", -2, "fffffffe 00000002 0061 00000000 ffffffff",
                "feffffff 02000000 6100 00000000 ffffffff");
}

template <typename T>
void checkTexts(int kind, int version, QDataStream::ByteOrder order, const QByteArray &bytes)
{
    T value;
    value.kind = kind;
    value.firstText = QStringLiteral("a");
    value.secondText = QStringLiteral("");
    QCOMPARE(written(value, version, order).toHex(), bytes.toHex());

    T copy;
    copy.thirdText = QStringLiteral("old");
    ByteReader in(bytes, version, order);
    in >> copy;
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(in.atEnd());
    QCOMPARE(copy.kind, kind);
    QCOMPARE(copy.firstText, QStringLiteral("a"));
    QVERIFY(copy.secondText.isEmpty() && !copy.secondText.isNull());
    QVERIFY(copy.thirdText.isNull());
}

void ValueTypesTest::writeMedia()
{
    QFETCH(int, kind);
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QByteArray, bytes);
    checkTexts<Media>(kind, version, order, bytes);
}

void ValueTypesTest::writeIconTexts()
{
    QFETCH(int, kind);
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QByteArray, bytes);
    checkTexts<SocialActionIconTexts>(kind, version, order, bytes);
}

void ValueTypesTest::writeAttachments_data()
{
    QTest::addColumn<int>("mediaCount");
    addByteColumns();
    addByteRows("no media", 0, "00000002 0054 ffffffff 00000000 00000002 0075 00000000",
                "02000000 5400 ffffffff 00000000 02000000 7500 00000000");
    addByteRows("two media", 2,
                "00000002 0054 ffffffff 00000000 00000002 0075 00000002"
                "00000001 00000002 0061 ffffffff ffffffff"
                "00000002 00000002 0061 ffffffff ffffffff",
                "02000000 5400 ffffffff 00000000 02000000 7500 02000000"
                "01000000 02000000 6100 ffffffff ffffffff"
                "02000000 02000000 6100 ffffffff ffffffff");
}

void ValueTypesTest::writeAttachments()
{
    QFETCH(int, mediaCount);
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QByteArray, bytes);
    SocialActivityAttachment attachment;
    attachment.firstText = QStringLiteral("T");
    attachment.thirdText = QStringLiteral("");
    attachment.fourthText = QStringLiteral("u");
    for (int kind = 1; kind <= mediaCount; ++kind)
        attachment.media.append(Media{kind, QStringLiteral("a"), QString(), QString()});
    QCOMPARE(written(attachment, version, order).toHex(), bytes.toHex());

    SocialActivityAttachment copy;
    copy.media.append(Media());
    ByteReader in(bytes, version, order);
    in >> copy;
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(in.atEnd());
    QCOMPARE(copy.firstText, QStringLiteral("T"));
    QVERIFY(copy.secondText.isNull());
    QVERIFY(copy.thirdText.isEmpty());
    QCOMPARE(copy.fourthText, QStringLiteral("u"));
    QCOMPARE(copy.media.size(), mediaCount);
    for (int i = 0; i < mediaCount; ++i) {
        QCOMPARE(copy.media.at(i).kind, i + 1);
        QCOMPARE(copy.media.at(i).firstText, QStringLiteral("a"));
    }
}

void ValueTypesTest::writeImportProgress_data()
{
    QTest::addColumn<bool>("running");
    addByteColumns();
    addByteRows("running", true, "01 00000001 ffffffff 01020304", "01 01000000 ffffffff 04030201");
    addByteRows("ended", false, "00 00000001 ffffffff 01020304", "00 01000000 ffffffff 04030201");
}

void ValueTypesTest::writeImportProgress()
{
    QFETCH(bool, running);
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QByteArray, bytes);
    const SocialImportProgress progress{running, 1, -1, 0x01020304};
    QCOMPARE(written(progress, version, order).toHex(), bytes.toHex());

    SocialImportProgress copy{!running, 7, 7, 7};
    ByteReader in(bytes, version, order);
    in >> copy;
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(in.atEnd());
    QCOMPARE(copy.running, running);
    QCOMPARE(copy.contactsAdded, 1);
    QCOMPARE(copy.contactsRemoved, -1);
    QCOMPARE(copy.contactsMerged, 0x01020304);
}

template <typename T>
void checkCutTexts()
{
    const QByteArray bytes = hex("00000007 00000002 0061 00000002 0062 00000002 0063");
    for (int length = 0; length < bytes.size(); ++length) {
        const QString old = QStringLiteral("old");
        T value{9, old, old, old};
        ByteReader in(bytes.left(length));
        in >> value;
        QCOMPARE(in.status(), QDataStream::ReadPastEnd);
        QCOMPARE(value.kind, length < 4 ? 0 : 7);
        QCOMPARE(value.firstText, length < 10 ? QString() : QStringLiteral("a"));
        QCOMPARE(value.secondText, length < 16 ? QString() : QStringLiteral("b"));
        QVERIFY(value.thirdText.isEmpty());
    }
}

void ValueTypesTest::readCutTexts()
{
    checkCutTexts<Media>();
    checkCutTexts<SocialActionIconTexts>();
}

void ValueTypesTest::readCutAttachments()
{
    const QByteArray bytes = hex("00000002 0061 ffffffff ffffffff 00000002 0064 00000002"
                                 "00000001 ffffffff ffffffff ffffffff"
                                 "00000002 ffffffff ffffffff ffffffff");
    for (int length = 0; length < bytes.size(); ++length) {
        SocialActivityAttachment attachment;
        attachment.media.append(Media());
        ByteReader in(bytes.left(length));
        in >> attachment;
        QCOMPARE(in.status(), QDataStream::ReadPastEnd);
        QCOMPARE(attachment.firstText, length < 6 ? QString() : QStringLiteral("a"));
        QCOMPARE(attachment.fourthText, length < 20 ? QString() : QStringLiteral("d"));
        QVERIFY2(attachment.media.isEmpty(), qPrintable(QString::number(length)));
    }
}

// The title has a length that no text has: Qt puts such an error aside while it reads a list.
void ValueTypesTest::readMediaAfterAnEarlierError()
{
    const QByteArray media = hex("00000001 00000007 00000002 0061 ffffffff ffffffff");
    ByteReader in(hex("00000001 ffffffff ffffffff ffffffff") + media);
    SocialActivityAttachment attachment;
    in >> attachment;
    QCOMPARE(in.status(), QDataStream::ReadCorruptData);
    QVERIFY(in.atEnd());
    QCOMPARE(written(attachment.media), media);

    ByteReader qtIn(media);
    qtIn.setStatus(QDataStream::ReadCorruptData);
    QList<Media> readByQt;
    qtIn >> readByQt;
    QCOMPARE(qtIn.status(), QDataStream::ReadCorruptData);
    QCOMPARE(written(readByQt), media);
}

void ValueTypesTest::readCutImportProgress()
{
    const QByteArray bytes = hex("01 00000001 00000002 00000003");
    for (int length = 0; length < bytes.size(); ++length) {
        SocialImportProgress progress{true, 7, 7, 7};
        ByteReader in(bytes.left(length));
        in >> progress;
        QCOMPARE(in.status(), QDataStream::ReadPastEnd);
        QCOMPARE(progress.running, length > 0);
        QCOMPARE(progress.contactsAdded, length < 5 ? 0 : 1);
        QCOMPARE(progress.contactsRemoved, length < 9 ? 0 : 2);
        QCOMPARE(progress.contactsMerged, 0);
    }
}

void ValueTypesTest::readAnyByteAsTrue()
{
    SocialImportProgress progress;
    ByteReader in(hex("80 00000000 00000000 00000000"));
    in >> progress;
    QVERIFY(progress.running);
    QCOMPARE(written(progress), hex("01 00000000 00000000 00000000"));
}

void ValueTypesTest::registerOnlyTheTimelineType()
{
    const QMetaObject &timeline = KinletTimeline::staticMetaObject;
    const QMetaObject &action = KinletAction::staticMetaObject;
    const QMetaObject &postCap = KinletPostCap::staticMetaObject;
    QCOMPARE(timeline.className(), "KinletTimeline");
    QCOMPARE(action.className(), "KinletAction");
    QCOMPARE(postCap.className(), "KinletPostCap");
    QCOMPARE(timeline.enumeratorCount() - timeline.enumeratorOffset(), 1);
    QCOMPARE(action.enumeratorCount() - action.enumeratorOffset(), 0);
    QCOMPARE(postCap.enumeratorCount() - postCap.enumeratorOffset(), 0);
    for (const QMetaObject *holder : {&timeline, &action, &postCap}) {
        QCOMPARE(holder->superClass(), &QObject::staticMetaObject);
        QCOMPARE(holder->methodCount(), holder->methodOffset());
        QCOMPARE(holder->propertyCount(), holder->propertyOffset());
    }
}

void ValueTypesTest::numberTheTimelines()
{
    const QMetaEnum timelines = KinletTimeline::staticMetaObject.enumerator(0);
    QCOMPARE(timelines.name(), "TimelineType");
    const char *const names[] = {"Any",       "Homepage", "Profile", "Personal",
                                 "Favorites", "Private",  "Custom"};
    QCOMPARE(timelines.keyCount(), 7);
    for (int value = 0; value < timelines.keyCount(); ++value) {
        QCOMPARE(timelines.key(value), names[value]);
        QCOMPARE(timelines.value(value), value);
    }
    QCOMPARE(int(KinletTimeline::Any), 0);
    QCOMPARE(int(KinletTimeline::Custom), 6);
}

// They are in streams and stores.
void ValueTypesTest::numberKindsActionsAndCapabilities()
{
    QCOMPARE(
        QList<int>({Media::UnknownKind, Media::Image, Media::Video, Media::Audio, Media::Link}),
        QList<int>({0, 1, 2, 3, 4}));
    QCOMPARE(QList<int>({KinletAction::NoAction, KinletAction::Like, KinletAction::Comment,
                         KinletAction::Post, KinletAction::Share, KinletAction::SendMessage}),
             QList<int>({0, 1, 2, 4, 8, 16}));
    QCOMPARE(QList<int>({KinletPostCap::NoCapability, KinletPostCap::Text, KinletPostCap::Image,
                         KinletPostCap::Video, KinletPostCap::Link, KinletPostCap::Location}),
             QList<int>({0, 1, 2, 4, 8, 16}));
}

QTEST_GUILESS_MAIN(ValueTypesTest)

#include "valuetypestest.moc"
