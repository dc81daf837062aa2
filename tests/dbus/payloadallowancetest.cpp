// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/payloadguard.h"
#include "dbus/streamed.h"

#include "records/valuetypes.h"
#include "requests/socialgetpersonsrequest.h"

#include <QDate>
#include <QRegExp>
#include <QTest>

#include <new>

namespace {

// A list with that many values, each with these bytes.
QByteArray listOf(int count, const QByteArray &value)
{
    return valueOfType(QMetaType::QVariantList) + streamed(quint32(count)) + value.repeated(count);
}

QByteArray recordWithPatterns(int count, const QString &pattern = QStringLiteral("a"))
{
    return recordWithValue(listOf(
        count, valueOfType(27) + streamed(pattern, quint8(1), quint8(QRegExp::RegExp), quint8(0))));
}

bool canBeRead(const QByteArray &bytes, Allowance &allowance)
{
    SocialGenericData record;
    return Payload::read(bytes, record, allowance);
}

// A value that takes more memory than there is.
struct Endless { };

QDataStream &operator<<(QDataStream &out, const Endless &)
{
    return out << qint32(0);
}

QDataStream &operator>>(QDataStream &in, Endless &)
{
    qint32 number = 0;
    in >> number;
    // The guard reads it from nothing to see whether it can.
    if (in.status() == QDataStream::Ok)
        throw std::bad_alloc();
    return in;
}

class EndlessRequest : public SocialGetPersonsRequest {
public:
    void unserialize(QDataStream &stream) override
    {
        SocialGetPersonsRequest::unserialize(stream);
        throw std::bad_alloc();
    }
};

}

Q_DECLARE_METATYPE(Endless)

/// What payloads may take of the memory.
class PayloadAllowanceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void patternsAreShared();
    void costOfPatternsIsShared();
    void attemptInTheOtherVersionDoesNotCount();
    void hashesAreShared();
    void hashesOfARequest();
    void failedAllocationDropsTheRecord();
    void failedAllocationDropsTheResults();
};

void PayloadAllowanceTest::initTestCase()
{
    KinletInitializer::init();
    qRegisterMetaType<QRegExp>("QRegExp");
    qRegisterMetaType<Endless>("Endless");
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    qRegisterMetaTypeStreamOperators<Endless>("Endless");
#endif
}

void PayloadAllowanceTest::patternsAreShared()
{
    Allowance allowance;
    QVERIFY(canBeRead(recordWithPatterns(600), allowance));
    QVERIFY(canBeRead(recordWithPatterns(400), allowance));
    QVERIFY(!canBeRead(recordWithPatterns(1), allowance));
    QVERIFY(canBeRead(recordWithValue(streamed(QVariant(7))), allowance));
    Allowance another;
    QVERIFY(canBeRead(recordWithPatterns(1000), another));
}

void PayloadAllowanceTest::costOfPatternsIsShared()
{
    const QString dear = QStringLiteral("a?").repeated(500);
    Allowance allowance;
    QVERIFY(canBeRead(recordWithPatterns(3, dear), allowance));
    QVERIFY(canBeRead(recordWithPatterns(1, dear), allowance));
    QVERIFY(!canBeRead(recordWithPatterns(1, dear), allowance));
}

void PayloadAllowanceTest::attemptInTheOtherVersionDoesNotCount()
{
    const QDate date(2026, 1, 5);
    const auto older = [&](int patterns) {
        const QByteArray value =
            valueOfType(QMetaType::QDate) + streamed(quint32(date.toJulianDay()));
        QByteArray list = recordWithPatterns(patterns);
        list.replace(streamed(quint32(patterns)) + valueOfType(27),
                     streamed(quint32(patterns + 1)) + valueOfType(27));
        return list + value;
    };
    Allowance allowance;
    SocialGenericData record;
    QVERIFY(Payload::read(older(600), record, allowance));
    QCOMPARE(record.variantProperty(QStringLiteral("k")).toList().last(), QVariant(date));
    QVERIFY(canBeRead(older(400), allowance));
    QVERIFY(!canBeRead(older(1), allowance));
}

// Not read but only examined: Qt 6 takes kilobytes for each.
void PayloadAllowanceTest::hashesAreShared()
{
    const auto isSafe = [](int count, Allowance &allowance) {
        const QByteArray hash = valueOfType(QMetaType::QVariantHash) + streamed(quint32(0));
        const QByteArray bytes = recordWithValue(listOf(count, hash));
        return safeRecordBytes(bytes, QDataStream::Qt_5_15, allowance) == bytes.size();
    };
    Allowance allowance;
    QVERIFY(isSafe(60000, allowance));
    QVERIFY(isSafe(40000, allowance));
    QVERIFY(!isSafe(1, allowance));
    Allowance another;
    QVERIFY(!isSafe(100001, another));
}

void PayloadAllowanceTest::hashesOfARequest()
{
    const QByteArray hash = valueOfType(QMetaType::QVariantHash) + streamed(quint32(0));
    for (const int count : {1000, 1001}) {
        const QByteArray bytes = streamed(qint32(5), qint32(4), quint32(100))
            + recordWithValue(listOf(1000, hash)).repeated(99)
            + recordWithValue(listOf(count, hash)) + streamed(quint32(0), quint32(0));
        Allowance allowance;
        const int safe = safeRequestBytes(bytes, QDataStream::Qt_5_15, 5, allowance);
        QCOMPARE(safe == bytes.size(), count == 1000);
    }
}

void PayloadAllowanceTest::failedAllocationDropsTheRecord()
{
    SocialGenericData record(QStringLiteral("Before"));
    QVERIFY(!Payload::read(recordWithValue(valueOfType("Endless") + streamed(qint32(0))), record));
    QCOMPARE(record.className(), QString());
    QVERIFY(record.properties().isEmpty());
}

void PayloadAllowanceTest::failedAllocationDropsTheResults()
{
    SocialGetPersonsRequest answer;
    answer.setResults({SocialGenericData(QStringLiteral("Result"))});
    EndlessRequest request;
    QVERIFY(!Payload::read(Payload::write(answer), request));
    QVERIFY(request.results().isEmpty());
}

QTEST_GUILESS_MAIN(PayloadAllowanceTest)
#include "payloadallowancetest.moc"
