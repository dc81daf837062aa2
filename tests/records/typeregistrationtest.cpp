// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/socialgenericdata.h"
#include "records/valuetypes.h"
#include "support/streambytes.h"

namespace {

int typeNamed(const char *name)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QMetaType::type(name);
#else
    return QMetaType::fromName(name).id();
#endif
}

QList<int> typeIds()
{
    return {typeNamed("SocialActivityAttachment"), typeNamed("Media"),
            typeNamed("SocialActionIconTexts"), typeNamed("SocialImportProgress")};
}

// Property "X" is a value of the given type, in the form that both Qt versions read.
SocialGenericData readValue(const char *typeName, const QByteArray &contents,
                            QDataStream::Status *status)
{
    const QByteArray name = QByteArray(typeName) + '\0';
    SocialGenericData record;
    ByteReader in(hex("ffffffff 00000001 00000002 0058 00000400 00") + written(quint32(name.size()))
                      + name + contents,
                  QDataStream::Qt_5_15);
    in >> record;
    *status = in.status();
    return record;
}

}

// Every function of this program counts on the order: the types are unknown until init() has run.
class TypeRegistrationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void knowsNoTypeBefore();
    void registersInOrder();
    void registersOnce();
    void streamsValues_data();
    void streamsValues();
};

void TypeRegistrationTest::knowsNoTypeBefore()
{
    QCOMPARE(typeIds(), QList<int>({0, 0, 0, 0}));
    QDataStream::Status status;
    const auto record = readValue("SocialImportProgress", QByteArray(13, '\0'), &status);
    QCOMPARE(status, QDataStream::ReadCorruptData);
    QVERIFY(record.properties().isEmpty());
}

void TypeRegistrationTest::registersInOrder()
{
    KinletInitializer::init();
    const QList<int> ids = typeIds();
    QVERIFY(!ids.contains(0));
    QVERIFY(ids.at(0) < ids.at(1));
    QVERIFY(ids.at(1) < ids.at(2));
    QVERIFY(ids.at(2) < ids.at(3));
    QCOMPARE(
        ids,
        QList<int>({qMetaTypeId<SocialActivityAttachment>(), qMetaTypeId<Media>(),
                    qMetaTypeId<SocialActionIconTexts>(), qMetaTypeId<SocialImportProgress>()}));
}

void TypeRegistrationTest::registersOnce()
{
    const QList<int> ids = typeIds();
    KinletInitializer::init();
    KinletInitializer::init();
    QCOMPARE(typeIds(), ids);
    struct Next { };
    const int next = qRegisterMetaType<Next>("Next");
    QCOMPARE(next, ids.last() + 1);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    // A second registration would undo what the program has put in the place of the operators.
    static int writes = 0;
    const auto write = [](QDataStream &out, const void *value) {
        ++writes;
        out << *static_cast<const Media *>(value);
    };
    const auto read = [](QDataStream &in, void *value) { in >> *static_cast<Media *>(value); };
    QMetaType::registerStreamOperators(typeNamed("Media"), write, read);
    KinletInitializer::init();
    written(QVariant::fromValue(Media()));
    QCOMPARE(writes, 1);
#endif
}

void TypeRegistrationTest::streamsValues_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("SocialActivityAttachment")
        << hex("00000002 0054 ffffffff ffffffff ffffffff 00000001"
               "00000001 00000002 0061 ffffffff ffffffff");
    QTest::newRow("Media") << hex("00000001 00000002 0061 ffffffff ffffffff");
    QTest::newRow("SocialActionIconTexts") << hex("00000001 00000002 0061 ffffffff ffffffff");
    QTest::newRow("SocialImportProgress") << hex("01 00000001 00000002 00000003");
}

void TypeRegistrationTest::streamsValues()
{
    QFETCH(QByteArray, contents);
    QDataStream::Status status;
    const auto record = readValue(QTest::currentDataTag(), contents, &status);
    QCOMPARE(status, QDataStream::Ok);
    const QVariant value = record.variantProperty(QStringLiteral("X"));
    QCOMPARE(value.typeName(), QTest::currentDataTag());
    QCOMPARE(value.userType(), typeNamed(QTest::currentDataTag()));
    const QByteArray bytes = written(record, QDataStream::Qt_5_15);
    QVERIFY(bytes.endsWith(contents));

    for (const int version :
         {int(QDataStream::Qt_4_8), int(QDataStream::Qt_5_15), DefaultVersion}) {
        SocialGenericData copy;
        ByteReader in(written(record, version), version);
        in >> copy;
        QCOMPARE(in.status(), QDataStream::Ok);
        QVERIFY(in.atEnd());
        QCOMPARE(written(copy, QDataStream::Qt_5_15), bytes);
    }
}

QTEST_GUILESS_MAIN(TypeRegistrationTest)

#include "typeregistrationtest.moc"
