// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/valuetypes.h"

#include "readoutcome.h"

#include <QBuffer>
#include <QDateTime>
#include <QTimeZone>

#include <limits>
#include <memory>

namespace {

// A device that is open and yields those bytes.
using MakeDevice = QBuffer *(*)(const QByteArray &);

// Reads other bytes than it holds.
class Masked : public QBuffer {
protected:
    qint64 readData(char *data, qint64 size) override
    {
        const qint64 read = QBuffer::readData(data, size);
        for (qint64 i = 0; i < read; ++i)
            data[i] = char(data[i] ^ 0x55);
        return read;
    }
};

QByteArray masked(QByteArray bytes)
{
    for (char &byte : bytes)
        byte = char(byte ^ 0x55);
    return bytes;
}

QBuffer *opened(QBuffer *device, const QByteArray &bytes, QIODevice::OpenMode mode)
{
    device->setData(bytes);
    device->open(mode);
    return device;
}

}
Q_DECLARE_METATYPE(MakeDevice)

/// Texts, numbers and times, which most properties are, must be read as Qt reads them, however odd
/// their bytes are.
class PlainValuesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void readsValues_data();
    void readsValues();
    void readsTimes_data();
    void readsTimes();
    void readsBytes_data();
    void readsBytes();
    void readsKeys_data();
    void readsKeys();
    void readsRepeatedKeys();
    void readsFromOtherDevices_data();
    void readsFromOtherDevices();
    void endsNestingOfMapsAt500Levels();
};

void PlainValuesTest::initTestCase()
{
    KinletInitializer::init();
    // Qt complains about each unknown type.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}

namespace {

void compareWithQt(const QByteArray &bytes, int version,
                   QDataStream::ByteOrder order = QDataStream::BigEndian)
{
    for (int length = 0; length <= bytes.size(); ++length) {
        const QByteArray cut = bytes.left(length);
        QVERIFY2(readByKinlet(cut, version, order) == readByQt(cut, version, order),
                 qPrintable(QString::number(length)));
    }
}

// A record with that property between two others.
QByteArray recordWith(const QByteArray &value)
{
    const QByteArray number = hex("00000002 00 00000007");
    return hex("ffffffff 00000003 00000002 0061") + number + hex("00000002 0062") + value
        + hex("00000002 0063") + number;
}

SocialGenericData recordWith(const QVariant &value)
{
    SocialGenericData record(QStringLiteral("Thing"));
    record.setProperty(QStringLiteral("a"), 7);
    record.setProperty(QStringLiteral("b"), value);
    record.setProperty(QStringLiteral("c"), 7);
    return record;
}

constexpr int versions[] = {QDataStream::Qt_4_8, QDataStream::Qt_5_0, QDataStream::Qt_5_15,
                            DefaultVersion};

}

void PlainValuesTest::readsValues_data()
{
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *name, const QVariant &value) { QTest::newRow(name) << value; };
    row("text", QStringLiteral("Zürich \U0001F600"));
    row("empty text", QStringLiteral(""));
    row("null text", QString());
    row("true", true);
    row("false", false);
    row("int", -7);
    row("smallest int", std::numeric_limits<int>::min());
    row("uint", 4'000'000'000U);
    row("long", -(qlonglong(1) << 40));
    row("ulong", ~qulonglong(0));
    row("double", -3.5);
    row("infinity", std::numeric_limits<double>::infinity());
    row("float", 1.5F);
    row("character", QChar(u'x'));
    row("date", QDate(2026, 2, 3));
    row("time of day", QTime(23, 59, 59, 999));
    row("media", QVariant::fromValue(Media{1, QStringLiteral("a"), QString(), QString()}));
    const QDate date(2026, 2, 3);
    const QTime time(4, 5, 6, 7);
    row("UTC", QDateTime(date, time, Qt::UTC));
    row("local time", QDateTime(date, time, Qt::LocalTime));
    row("offset", QDateTime(date, time, Qt::OffsetFromUTC, 3600));
    row("zone", QDateTime(date, time, QTimeZone("UTC")));
    row("no time", QDateTime());
    row("long ago", QDateTime(QDate(-4713, 1, 1), time, Qt::UTC));
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    for (const int type : {int(QMetaType::Int), int(QMetaType::QString), int(QMetaType::QDateTime)})
        QTest::addRow("null value of type %d", type) << QVariant(type, nullptr);
#else
    for (const int type : {int(QMetaType::Int), int(QMetaType::QString), int(QMetaType::QDateTime)})
        QTest::addRow("null value of type %d", type) << QVariant(QMetaType(type));
#endif
}

void PlainValuesTest::readsValues()
{
    QFETCH(QVariant, value);
    for (const int version : versions) {
        for (const auto order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
            const SocialGenericData record = recordWith(value);
            const QByteArray bytes = written(record, version, order);
            compareWithQt(bytes, version, order);
            const Outcome outcome = readByKinlet(bytes, version, order);
            QCOMPARE(outcome.status, QDataStream::Ok);
            QCOMPARE(outcome.position, qint64(bytes.size()));
        }
    }
}

void PlainValuesTest::readsTimes_data()
{
    QTest::addColumn<QByteArray>("value");
    // Day, milliseconds, and how the time is meant.
    const char *const days[] = {"0000000000258b00", "8000000000000000", "7fffffffffffffff",
                                "ffffffffffffffff", "000000b69eeb91ab", "fffffff4d7aab8b8"};
    for (const char *day : days) {
        for (const char *milliseconds : {"00000000", "05265bff", "05265c00", "ffffffff"}) {
            for (const char *spec : {"00", "01", "02", "03"})
                QTest::addRow("%s %s %s", day, milliseconds, spec) << hex("00000010 00") + hex(day)
                        + hex(milliseconds) + hex(spec) + hex(spec[1] == '2' ? "00000e10" : "")
                        + (spec[1] == '3' ? written(QStringLiteral("UTC")) : QByteArray());
        }
    }
}

void PlainValuesTest::readsTimes()
{
    QFETCH(QByteArray, value);
    for (const int version : {int(QDataStream::Qt_5_0), int(QDataStream::Qt_5_15), DefaultVersion})
        compareWithQt(recordWith(value), version);
}

void PlainValuesTest::readsBytes_data()
{
    QTest::addColumn<QByteArray>("value");
    const auto row = [](const char *name, const char *value) { QTest::newRow(name) << hex(value); };
    row("true of another number", "00000001 00 02");
    row("flag of another number", "00000002 80 00000007");
    row("null text with a flag", "0000000a 01 ffffffff");
    row("null text without a flag", "0000000a 00 ffffffff");
    row("null flag before a text", "0000000a 01 00000002 0061");
    row("text of half a character", "0000000a 00 00000003 006100");
    row("text of one byte", "0000000a 00 00000001 00");
    row("text longer than the stream", "0000000a 00 00000040 0061");
    row("text of lone surrogates", "0000000a 00 00000006 d800 dc00 d800");
    row("not a number", "00000006 00 7ff8000000000001");
    row("null flag before a number", "00000006 01 4000000000000000");
    row("no type", "00000000 00");
    row("unknown type", "000003ff 00 00000000");
}

void PlainValuesTest::readsBytes()
{
    QFETCH(QByteArray, value);
    for (const int version : versions) {
        compareWithQt(recordWith(value), version);
        // In a map inside a value too.
        const QByteArray map = hex("00000008 00 00000001 00000002 0078");
        compareWithQt(recordWith(QByteArray(map + value)), version);
    }
}

void PlainValuesTest::readsKeys_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::newRow("empty") << hex("00000000");
    QTest::newRow("null") << hex("ffffffff");
    QTest::newRow("of half a character") << hex("00000003 006100");
    QTest::newRow("longer than the stream") << hex("00000100 0061");
    QTest::newRow("of a length that looks negative") << hex("fffffffe 0061");
}

void PlainValuesTest::readsKeys()
{
    QFETCH(QByteArray, key);
    const QByteArray number = hex("00000002 00 00000007");
    for (const int version : versions)
        compareWithQt(hex("ffffffff 00000002") + key + number + hex("00000002 0061") + number,
                      version);
}

// In every order; which of them stays is Qt's choice.
void PlainValuesTest::readsRepeatedKeys()
{
    const QByteArray a = hex("00000002 0061");
    const QByteArray b = hex("00000002 0062");
    const auto number = [](const char *digits) { return hex("00000002 00") + hex(digits); };
    const QByteArray first = number("00000001");
    const QByteArray second = number("00000002");
    const QByteArray third = number("00000003");
    const QByteArray start = hex("ffffffff 00000003");
    for (const int version : versions) {
        compareWithQt(start + a + first + a + second + a + third, version);
        compareWithQt(start + a + first + b + second + a + third, version);
        compareWithQt(start + b + first + a + second + b + third, version);
        compareWithQt(start + b + first + b + second + a + third, version);
    }
}

void PlainValuesTest::readsFromOtherDevices_data()
{
    QTest::addColumn<MakeDevice>("makeDevice");
    const auto row = [](const char *name, MakeDevice make) { QTest::newRow(name) << make; };
    row("buffer",
        [](const QByteArray &bytes) { return opened(new QBuffer, bytes, QIODevice::ReadOnly); });
    row("writable buffer",
        [](const QByteArray &bytes) { return opened(new QBuffer, bytes, QIODevice::ReadWrite); });
    row("text mode", [](const QByteArray &bytes) {
        return opened(new QBuffer, bytes, QIODevice::ReadOnly | QIODevice::Text);
    });
    row("class derived from a buffer", [](const QByteArray &bytes) {
        return opened(new Masked, masked(bytes), QIODevice::ReadOnly);
    });
}

void PlainValuesTest::readsFromOtherDevices()
{
    QFETCH(MakeDevice, makeDevice);
    // Text mode drops the first of the two characters.
    const QByteArray record = written(recordWith(QVariant(QStringLiteral("line\r\n"))));
    const QByteArray before = hex("01020304");
    for (int length = 0; length <= record.size(); ++length) {
        const QByteArray cut = before + record.left(length);
        const auto outcomeOf = [&](auto read) {
            const std::unique_ptr<QBuffer> device(makeDevice(cut));
            device->skip(before.size());
            QDataStream in(device.get());
            Outcome outcome;
            read(in, outcome);
            outcome.status = in.status();
            outcome.position = device->pos();
            return outcome;
        };
        const Outcome byKinlet = outcomeOf([](QDataStream &in, Outcome &outcome) {
            SocialGenericData read;
            in >> read;
            outcome.className = read.className();
            outcome.properties = written(read.properties());
        });
        const Outcome byQt = outcomeOf([](QDataStream &in, Outcome &outcome) {
            QVariantMap properties;
            in >> outcome.className >> properties;
            outcome.properties = written(properties);
        });
        QVERIFY2(byKinlet == byQt, qPrintable(QString::number(length)));
    }
}

void PlainValuesTest::endsNestingOfMapsAt500Levels()
{
    const QByteArray start = hex("ffffffff 00000001 ffffffff");
    const QByteArray map = hex("00000008 00 00000001 ffffffff");
    const QByteArray number = hex("00000002 00 00000007");
    const QByteArray deepest = start + map.repeated(499) + number;
    QCOMPARE(readByKinlet(deepest, DefaultVersion, QDataStream::BigEndian).status, QDataStream::Ok);
    const QByteArray tooDeep = start + map.repeated(500) + number;
    QCOMPARE(readByKinlet(tooDeep, DefaultVersion, QDataStream::BigEndian).status,
             QDataStream::ReadCorruptData);
}

QTEST_GUILESS_MAIN(PlainValuesTest)

#include "plainvaluestest.moc"
