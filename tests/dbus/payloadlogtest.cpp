// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/streamed.h"
#include "requests/socialgetpersonsrequest.h"
#include "support/categorylog.h"

#include <QTest>

namespace {

QString badFrom(int byte, qint64 safe, const QByteArray &bytes)
{
    return QStringLiteral(
               "kinlet.dbus.warning: A payload of %1 bytes is bad from byte %2 on; %3 of "
               "them are safe")
        .arg(bytes.size())
        .arg(byte)
        .arg(safe);
}

}

/// What is told of payloads that are not read to their end.
class PayloadLogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void goodOnesAreNotMentioned();
    void whereOneBreaksOff();
    void whereOneBecomesUnsafe();
    void nothingIsToldUnlessAskedFor();
};

void PayloadLogTest::goodOnesAreNotMentioned()
{
    const CategoryLog log;
    SocialGenericData record(QStringLiteral("Record"));
    record.setProperty(SocialGenericData::Id, QStringLiteral("1"));
    QVERIFY(Payload::read(written(record, QDataStream::Qt_5_15), record));
    QVERIFY(Payload::read(written(record, QDataStream::Qt_4_8), record));
    SocialGetPersonsRequest request;
    QVERIFY(Payload::read(Payload::write(request), request));
    QCOMPARE(log.take(), QStringList());
}

void PayloadLogTest::whereOneBreaksOff()
{
    const CategoryLog log;
    SocialGetPersonsRequest request;
    const QByteArray bytes = Payload::write(request).chopped(2);
    QVERIFY(!Payload::read(bytes, request));
    QCOMPARE(log.take(), QStringList(badFrom(int(bytes.size()), bytes.size(), bytes)));

    const QByteArray longer = Payload::write(request) + "..";
    QVERIFY(!Payload::read(longer, request));
    QCOMPARE(log.take(), QStringList(badFrom(int(longer.size()) - 2, longer.size(), longer)));
}

void PayloadLogTest::whereOneBecomesUnsafe()
{
    const QByteArray first =
        streamed(qint32(5), qint32(4), quint32(2), QStringLiteral("SECRET"), quint32(0));
    const QByteArray bytes = first + recordWithValue(valueOfType(500)) + streamed(quint32(0));
    const int end = int(first.size() + recordWithValue(QByteArray()).size());
    const CategoryLog log;
    SocialGetPersonsRequest request;
    QVERIFY(!Payload::read(bytes, request));
    QCOMPARE(log.take(), QStringList(badFrom(end, end, bytes)));
}

void PayloadLogTest::nothingIsToldUnlessAskedFor()
{
    const CategoryLog log("");
    SocialGetPersonsRequest request;
    QVERIFY(!Payload::read(QByteArray(3, 'x'), request));
    QCOMPARE(log.take(), QStringList());
}

QTEST_GUILESS_MAIN(PayloadLogTest)
#include "payloadlogtest.moc"
