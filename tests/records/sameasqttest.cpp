// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/valuetypes.h"

#include "readoutcome.h"

#include <QBuffer>
#include <QDate>
#include <QEasingCurve>
#include <QUrl>

#include <algorithm>

namespace {

// What was read once is gone, as in a socket.
class Pipe : public QIODevice {
public:
    explicit Pipe(const QByteArray &bytes) : m_bytes(bytes) { }
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_bytes.size() + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const QByteArray read = m_bytes.left(int(size));
        m_bytes.remove(0, read.size());
        std::copy(read.cbegin(), read.cend(), data);
        return read.size();
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
};

SocialGenericData recordOfEverything()
{
    SocialGenericData record(QStringLiteral("Everything"));
    const QVariantList list{1, QStringLiteral("two"), QVariantList{3.5, true}, QVariant()};
    record.setProperty(QStringLiteral("bytes"), QByteArray("raw"));
    record.setProperty(QStringLiteral("byteArrays"),
                       QVariant::fromValue(QByteArrayList{QByteArray("a"), QByteArray()}));
    record.setProperty(QStringLiteral("curve"), QEasingCurve(QEasingCurve::OutElastic));
    record.setProperty(QStringLiteral("date"), QDate(2026, 2, 3));
    record.setProperty(QStringLiteral("hash"),
                       QVariantHash{{QStringLiteral("k"), QStringList{QStringLiteral("v")}}});
    record.setProperty(QStringLiteral("list"), list);
    record.setProperty(QStringLiteral("map"),
                       QVariantMap{{QStringLiteral("k"), list}, {QStringLiteral("l"), 5}});
    record.setProperty(QStringLiteral("media"),
                       QVariant::fromValue(Media{1, QStringLiteral("a"), QString(), QString()}));
    record.setProperty(QStringLiteral("texts"), QStringList{QStringLiteral("a"), QString()});
    record.setProperty(QStringLiteral("url"), QUrl(QStringLiteral("http://example.org/")));
    const QVariant inner(7);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    record.setProperty(QStringLiteral("value"), QVariant(int(QMetaType::QVariant), &inner));
#else
    record.setProperty(QStringLiteral("value"),
                       QVariant(QMetaType(int(QMetaType::QVariant)), &inner));
    record.setProperty(QStringLiteral("pair"), QVariant::fromValue(QVariantPair(1, list)));
#endif
    return record;
}

}

// Has no stream operators.
struct Mute {
    int number = 0;
};
Q_DECLARE_METATYPE(Mute)

struct Unique {
    Unique() = default;
    Q_DISABLE_COPY(Unique)
};

/// What is read must be what Qt's own readers make of the same bytes.
class SameAsQtTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void readsWholeRecords_data();
    void readsWholeRecords();
    void readsCutRecords_data() { readsWholeRecords_data(); }
    void readsCutRecords();
    void readsFlippedBytes_data() { readsWholeRecords_data(); }
    void readsFlippedBytes();
    void readsEveryType_data() { readsWholeRecords_data(); }
    void readsEveryType();
    void survivesFlippedTopBits_data() { readsWholeRecords_data(); }
    void survivesFlippedTopBits();
    void readsNamedContainers_data();
    void readsNamedContainers();
    void readsUserTypes_data();
    void readsUserTypes();
    void readsAfterErrors();
    void readsInOtherSettings_data();
    void readsInOtherSettings();
};

void SameAsQtTest::initTestCase()
{
    KinletInitializer::init();
    qRegisterMetaType<Mute>("Mute");
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    // Only here it can be registered.
    qRegisterMetaType<Unique>("Unique");
#endif
    // Qt complains about each unknown type.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}

void SameAsQtTest::readsWholeRecords_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<QDataStream::ByteOrder>("order");
    for (const int version :
         {int(QDataStream::Qt_4_8), int(QDataStream::Qt_5_15), DefaultVersion}) {
        QTest::addRow("version %d, big-endian", version) << version << QDataStream::BigEndian;
        QTest::addRow("version %d, little-endian", version) << version << QDataStream::LittleEndian;
    }
}

void SameAsQtTest::readsWholeRecords()
{
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    const SocialGenericData record = recordOfEverything();
    const QByteArray bytes = written(record, version, order);
    const Outcome outcome = readByKinlet(bytes, version, order);
    QCOMPARE(outcome.status, QDataStream::Ok);
    QCOMPARE(outcome.position, qint64(bytes.size()));
    QVERIFY(outcome == readByQt(bytes, version, order));
    QCOMPARE(outcome.properties, written(record.properties()));
}

void SameAsQtTest::readsCutRecords()
{
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    const QByteArray bytes = written(recordOfEverything(), version, order);
    for (int length = 0; length < bytes.size(); ++length) {
        const QByteArray cut = bytes.left(length);
        const Outcome outcome = readByKinlet(cut, version, order);
        QVERIFY2(outcome == readByQt(cut, version, order), qPrintable(QString::number(length)));
        QVERIFY(outcome.status != QDataStream::Ok);
    }
}

// A low bit of what is not zero: Qt reserves memory for what a large count claims.
void SameAsQtTest::readsFlippedBytes()
{
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    const QByteArray bytes = written(recordOfEverything(), version, order);
    for (int i = 0; i < bytes.size(); ++i) {
        if (bytes.at(i) == 0)
            continue;
        QByteArray flipped = bytes;
        flipped[i] = char(flipped.at(i) ^ 2);
        QVERIFY2(readByKinlet(flipped, version, order) == readByQt(flipped, version, order),
                 qPrintable(QString::number(i)));
    }
}

void SameAsQtTest::readsEveryType()
{
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    const quint32 one = 1;
    const QByteArray zeros(64, '\0');
    const QByteArray oneNumber =
        written(one, version, order) + written(QVariant(7), version, order);
    for (quint32 type = 0; type < 256; ++type) {
        // Qt 5 reads times with a zone of any number, and cannot write them again.
        if (type == QMetaType::QDateTime)
            continue;
        for (const QByteArray &contents : {zeros, oneNumber + zeros, oneNumber}) {
            const QByteArray bytes = written(QString(), version, order)
                + written(one, version, order) + written(QStringLiteral("X"), version, order)
                + written(type, version, order) + '\0' + contents;
            QVERIFY2(readByKinlet(bytes, version, order) == readByQt(bytes, version, order),
                     qPrintable(QString::number(type)));
        }
    }
}

void SameAsQtTest::survivesFlippedTopBits()
{
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    const QByteArray bytes = written(recordOfEverything(), version, order);
    for (int i = 0; i < bytes.size(); ++i) {
        for (const int flip : {0x40, 0xff}) {
            QByteArray flipped = bytes;
            flipped[i] = char(flipped.at(i) ^ flip);
            const Outcome outcome = readByKinlet(flipped, version, order);
            QVERIFY(outcome.status == QDataStream::Ok
                    || outcome.properties == written(QVariantMap()));
        }
    }
}

void SameAsQtTest::readsNamedContainers_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<QByteArray>("value");
    const QByteArray list = hex("00000001 00000002 00 00000007");
    const QByteArray texts = hex("00000001 00000002 0061");
    const auto named = [](const char *typeId, const QByteArray &name, const QByteArray &contents) {
        return hex(typeId) + '\1' + written(quint32(name.size())) + name + contents;
    };
    const QByteArray zero(1, '\0');
    for (const int version :
         {int(QDataStream::Qt_4_8), int(QDataStream::Qt_5_15), DefaultVersion}) {
        for (const char *typeId : {"0000007f", "00000400", "00010000", "00000401"}) {
            const auto row = [&](const char *name, const QByteArray &value) {
                QTest::addRow("%s, type %s, version %d", name, typeId, version) << version << value;
            };
            row("list", named(typeId, "QVariantList" + zero, list));
            row("list, full name", named(typeId, "QList<QVariant>" + zero, list));
            row("list, blanks", named(typeId, "  QList< QVariant >  " + zero, list));
            row("list, more after the name", named(typeId, "QVariantList" + zero + "more", list));
            row("list, no zero byte", named(typeId, "QVariantList", list));
            row("list, misspelt", named(typeId, "QVariantLisp" + zero, list));
            row("texts", named(typeId, "QStringList" + zero, texts));
            row("value", named(typeId, "QVariant" + zero, hex("00000002 00 00000007")));
            row("text", named(typeId, "QString" + zero, hex("00000002 0061")));
            row("no name", named(typeId, QByteArray(), QByteArray()));
            row("name cut off", named(typeId, "QVariantList" + zero, QByteArray()).chopped(3));
        }
    }
}

void SameAsQtTest::readsNamedContainers()
{
    QFETCH(int, version);
    QFETCH(QByteArray, value);
    const QByteArray bytes = hex("ffffffff 00000001 00000002 0058") + value;
    QVERIFY(readByKinlet(bytes, version, QDataStream::BigEndian)
            == readByQt(bytes, version, QDataStream::BigEndian));
}

void SameAsQtTest::readsUserTypes_data()
{
    QTest::addColumn<QByteArray>("value");
    const QByteArray contents = hex("00000001 00000002 0061 ffffffff ffffffff");
    for (const char *type : {"0000007f", "00000400", "00010000", "00000401", "00010001"}) {
        for (const char *name : {"Media", "Mute", "Unique", "Nobody", "QString", ""}) {
            for (const char *flag : {"00", "01"}) {
                const QByteArray nameAndZero = QByteArray(name) + '\0';
                QTest::addRow("%s, type %s, flag %s", name, type, flag) << hex(type) + hex(flag)
                        + written(quint32(nameAndZero.size())) + nameAndZero + contents;
            }
        }
    }
}

void SameAsQtTest::readsUserTypes()
{
    QFETCH(QByteArray, value);
    const QByteArray bytes = hex("ffffffff 00000001 00000002 0058") + value;
    for (const int version :
         {int(QDataStream::Qt_4_8), int(QDataStream::Qt_5_15), DefaultVersion}) {
        for (int length = 0; length <= bytes.size(); ++length) {
            const QByteArray cut = bytes.left(length);
            QVERIFY2(readByKinlet(cut, version, QDataStream::BigEndian)
                         == readByQt(cut, version, QDataStream::BigEndian),
                     qPrintable(QString::number(length)));
        }
    }
}

// A property whose key is corrupt: Qt goes on with its value, and so the stream stands elsewhere.
void SameAsQtTest::readsAfterErrors()
{
    for (const char *value :
         {"00000009 00 00000001 00000002 00 00000007", "0000000b 00 00000001 00000002 0061"}) {
        const QByteArray bytes = hex("ffffffff 00000002 00000001") + hex(value) + hex("00000000");
        const Outcome outcome = readByKinlet(bytes, DefaultVersion, QDataStream::BigEndian);
        QCOMPARE(outcome.status, QDataStream::ReadCorruptData);
        QVERIFY(outcome == readByQt(bytes, DefaultVersion, QDataStream::BigEndian));
    }
}

using Set = void (*)(QDataStream &);
Q_DECLARE_METATYPE(Set)

void SameAsQtTest::readsInOtherSettings_data()
{
    QTest::addColumn<Set>("set");
    QTest::addColumn<bool>("isSequential");
    const Set none = [](QDataStream &) {};
    const Set singlePrecision = [](QDataStream &stream) {
        stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    };
    const Set transaction = [](QDataStream &stream) {
        if (stream.device()->isReadable())
            stream.startTransaction();
    };
    QTest::newRow("single precision") << singlePrecision << false;
    QTest::newRow("transaction") << transaction << false;
    QTest::newRow("sequential device") << none << true;
    QTest::newRow("transaction, sequential device") << transaction << true;
}

void SameAsQtTest::readsInOtherSettings()
{
    QFETCH(Set, set);
    QFETCH(bool, isSequential);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    set(out);
    out << recordOfEverything();
    for (int length = 0; length <= bytes.size(); ++length) {
        const QByteArray cut = bytes.left(length);
        const auto outcomeOf = [&](auto read) {
            QBuffer buffer;
            Pipe pipe(cut);
            buffer.setData(cut);
            QIODevice *device = isSequential ? static_cast<QIODevice *>(&pipe) : &buffer;
            device->open(QIODevice::ReadOnly);
            QDataStream in(device);
            set(in);
            QString className;
            QVariantMap properties;
            read(in, className, properties);
            return Outcome{in.status(), device->bytesAvailable(), className, written(properties)};
        };
        const Outcome outcome = outcomeOf([](QDataStream &in, QString &name, QVariantMap &values) {
            SocialGenericData record;
            in >> record;
            name = record.className();
            values = record.properties();
        });
        QVERIFY2(outcome == outcomeOf([](QDataStream &in, QString &name, QVariantMap &values) {
                     in >> name >> values;
                 }),
                 qPrintable(QString::number(length)));
        QCOMPARE(outcome.status == QDataStream::Ok, length == bytes.size());
    }
}

QTEST_GUILESS_MAIN(SameAsQtTest)

#include "sameasqttest.moc"
