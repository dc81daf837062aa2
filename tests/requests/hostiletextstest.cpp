// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/socialgenericdata.h"
#include "records/valuetypes.h"
#include "requests/kinleterror.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"
#include "support/hostilebytes.h"
#include "support/streambytes.h"

#include <functional>
#include <memory>

using Read = std::function<void(QDataStream &)>;
Q_DECLARE_METATYPE(Read)

namespace {

template <typename T>
void readValue(QDataStream &in)
{
    T value;
    in >> value;
}

template <typename T>
void readRequest(QDataStream &in)
{
    T().unserialize(in);
}

}

/// Texts of a few bytes that claim to have gigabytes take no more memory than they have.
class HostileTextsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void takeNoMemory_data();
    void takeNoMemory();
};

void HostileTextsTest::initTestCase()
{
    KinletInitializer::init();
    // For the first time things take more.
    readValue<SocialGenericData>(*std::make_unique<ByteReader>(QByteArray(100, '\0')));
    limitMemory(1024 * 1024);
}

// What stands before the text.
void HostileTextsTest::takeNoMemory_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<Read>("read");
    const QByteArray noRequest = hex("00000000 00000000 00000000 00000000");
    const QByteArray property = hex("ffffffff 00000001 00000002 0058");
    const QByteArray date = QByteArray(8, '\0') + hex("ffffffff 00");
    const auto row = [](const char *name, const QByteArray &before, const Read &read) {
        QTest::newRow(name) << before << read;
    };
    const Read record = readValue<SocialGenericData>;
    row("class name", {}, record);
    row("name of a property", hex("ffffffff 00000001"), record);
    row("text", property + hex("0000000a 00"), record);
    row("byte array", property + hex("0000000c 00"), record);
    row("URL", property + hex("00000011 00"), record);
    row("text in a list", property + hex("0000000b 00 00000001"), record);
    row("byte array in a list", property + hex("00000031 00 00000001"), record);
    // Later streams have none.
    const Read oldRecord = [](QDataStream &in) {
        in.setVersion(QDataStream::Qt_4_8);
        readValue<SocialGenericData>(in);
    };
    row("text of no value", property + hex("00000000 00"), oldRecord);
    row("text of an unknown type", property + hex("01000000 00"), oldRecord);
    row("media", hex("00000001 ffffffff ffffffff"), readValue<Media>);
    row("icon texts", hex("00000001 ffffffff ffffffff"), readValue<SocialActionIconTexts>);
    row("attachment", hex("ffffffff ffffffff ffffffff"), readValue<SocialActivityAttachment>);
    row("error", {}, readValue<KinletError>);
    row("account of a request", noRequest.left(12) + hex("00000001"),
        readRequest<SocialDataRequest>);
    row("parent", noRequest + hex("00000000 0000000a") + date + date + hex("00000000"),
        readRequest<SocialGetActivitiesRequest>);
    row("liked", noRequest + hex("00000000"), readRequest<SocialGetLikersRequest>);
    row("like", noRequest, readRequest<SocialLikeActivityRequest>);
    row("status", noRequest + hex("01"), readRequest<SocialPostActivitiesRequest>);
    row("commented", noRequest + hex("01 ffffffff"), readRequest<SocialPostActivitiesRequest>);
}

void HostileTextsTest::takeNoMemory()
{
    QFETCH(QByteArray, before);
    QFETCH(Read, read);
    for (const char *size : {"00000100", "00400000", "7ffffffe", "80000000", "fffffffc"}) {
        ByteReader in(before + hex(size) + hex("0061 0062"));
        read(in);
        QCOMPARE(in.status(), QDataStream::ReadPastEnd);
        QVERIFY(in.atEnd());
    }
}

QTEST_GUILESS_MAIN(HostileTextsTest)
#include "hostiletextstest.moc"
