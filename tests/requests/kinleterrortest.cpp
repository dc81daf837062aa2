// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/kinleterror.h"
#include "support/streambytes.h"
#include "support/virtualslots.h"

#include <type_traits>

static_assert(std::has_virtual_destructor_v<KinletError>);
static_assert(std::is_same_v<std::underlying_type_t<KinletError::Type>, qint32>);
// The table's pointer and the private record's.
static_assert(sizeof(KinletError) == 2 * sizeof(void *));

class KinletErrorTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void numbersItsTypes();
    void hasNoVirtualCallsButItsDestructor();
    void keepsTypeAndDescription();
    void canBeSpelledAsTypeAndDescription();
    void startsUnknown();
    void copiesDeeply();
    void writes_data();
    void writes();
    void reads_data() { writes_data(); }
    void reads();
    void readsCutStreams();
    void readsForeignTypes();
};

void KinletErrorTest::numbersItsTypes()
{
    QCOMPARE(int(KinletError::UnknownError), 0);
    QCOMPARE(int(KinletError::UnsupportedRequest), 1);
    QCOMPARE(int(KinletError::PostFailed), 2);
    QCOMPARE(int(KinletError::AuthenticationFailed), 3);
    QCOMPARE(int(KinletError::NetworkFailed), 4);
    QCOMPARE(int(KinletError::InvalidRequest), 5);
    QCOMPARE(int(KinletError::ProviderTimeout), 6);
    QCOMPARE(int(KinletError::NotPerformed), 7);
    QCOMPARE(int(KinletError::LikeFailed), 8);
}

void KinletErrorTest::hasNoVirtualCallsButItsDestructor()
{
    QCOMPARE(slotOf(&Extended<KinletError>::next), 2);
}

void KinletErrorTest::keepsTypeAndDescription()
{
    const KinletError error(KinletError::NetworkFailed, QStringLiteral("no route"));
    QCOMPARE(error.type(), KinletError::NetworkFailed);
    QCOMPARE(error.description(), QStringLiteral("no route"));
}

void KinletErrorTest::canBeSpelledAsTypeAndDescription()
{
    const QList<KinletError> errors{{KinletError::PostFailed, QStringLiteral("full")}};
    QCOMPARE(errors.size(), 1);
    QCOMPARE(errors.first().type(), KinletError::PostFailed);
    QCOMPARE(errors.first().description(), QStringLiteral("full"));
}

void KinletErrorTest::startsUnknown()
{
    const KinletError error;
    QCOMPARE(error.type(), KinletError::UnknownError);
    QVERIFY(error.description().isNull());
}

void KinletErrorTest::copiesDeeply()
{
    auto original = std::make_unique<KinletError>(KinletError::PostFailed, QStringLiteral("full"));
    const KinletError copy(*original);
    KinletError assigned;
    assigned = *original;
    ByteReader in(hex("00000002 0061 00000008"));
    in >> *original;
    QCOMPARE(original->type(), KinletError::LikeFailed);
    for (const KinletError *error : {&copy, &std::as_const(assigned)}) {
        QCOMPARE(error->type(), KinletError::PostFailed);
        QCOMPARE(error->description(), QStringLiteral("full"));
    }
    const KinletError &same = assigned;
    assigned = same;
    original.reset();
    QCOMPARE(copy.description(), QStringLiteral("full"));
    QCOMPARE(assigned.description(), QStringLiteral("full"));
}

void KinletErrorTest::writes_data()
{
    QTest::addColumn<KinletError>("error");
    addByteColumns();
    addByteRows("description first",
                KinletError(KinletError::ProviderTimeout, QStringLiteral("no")),
                "00000004 006e 006f 00000006", "04000000 6e00 6f00 06000000");
    addByteRows("empty description", KinletError(KinletError::LikeFailed, QStringLiteral("")),
                "00000000 00000008", "00000000 08000000");
    addByteRows("null description", KinletError(KinletError::PostFailed), "ffffffff 00000002",
                "ffffffff 02000000");
    addByteRows("type of a provider's own", KinletError(KinletError::Type(-2)), "ffffffff fffffffe",
                "ffffffff feffffff");
}

void KinletErrorTest::writes()
{
    QFETCH(KinletError, error);
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QByteArray, bytes);
    QCOMPARE(written(error, version, order).toHex(), bytes.toHex());
}

void KinletErrorTest::reads()
{
    QFETCH(KinletError, error);
    QFETCH(int, version);
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QByteArray, bytes);
    KinletError read(KinletError::NotPerformed, QStringLiteral("old"));
    ByteReader in(bytes, version, order);
    in >> read;
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(in.atEnd());
    QCOMPARE(read.type(), error.type());
    QCOMPARE(read.description(), error.description());
}

void KinletErrorTest::readsCutStreams()
{
    const QByteArray bytes = hex("00000002 0061 00000008");
    for (int length = 0; length < bytes.size(); ++length) {
        KinletError error(KinletError::NotPerformed, QStringLiteral("old"));
        ByteReader in(bytes.left(length));
        in >> error;
        QCOMPARE(in.status(), QDataStream::ReadPastEnd);
        QCOMPARE(error.description(), length < 6 ? QString() : QStringLiteral("a"));
        QCOMPARE(error.type(), KinletError::UnknownError);
    }
}

void KinletErrorTest::readsForeignTypes()
{
    KinletError error;
    ByteReader in(hex("ffffffff 7fffffff"));
    in >> error;
    QCOMPARE(int(error.type()), 0x7fffffff);
}

QTEST_GUILESS_MAIN(KinletErrorTest)

#include "kinleterrortest.moc"
