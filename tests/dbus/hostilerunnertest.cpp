// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/proxiedrunner.h"
#include "records/valuetypes.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

namespace {

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

// Bytes of a value that no reader may trust, by name.
QList<QPair<const char *, QByteArray>> hostileValues()
{
    QList<QPair<const char *, QByteArray>> values{
        {"count of a list", hex("0000000900ffffffff")},
        {"count of a map", hex("00000008007fffffff")},
        {"count of bytes", hex("0000000c007fffffff")},
        {"unknown type", hex("00000bad00000000")},
        {"unknown name", hex("0000040000000000044e6f6f0000")},
    };
    const QByteArray level = hex("000000090000000001");
    values.append({"a million levels", level.repeated(1000000)});
    return values;
}

}

/// A runner that means harm: nothing that it sends hurts anything but its own answers.
class HostileRunnerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KinletInitializer::init(); }
    void answers_data();
    void answers();
    void everyTruncation();
    void randomAnswers_data();
    void randomAnswers();
    void pushedRecords_data();
    void pushedRecords();
    void forgedSignalsAreNotDelivered();
    void signalsOfOtherFormsAreNotDelivered();
};

void HostileRunnerTest::answers_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("noise") << QByteArray(1000, '\xa5');
    QTest::newRow("zeros") << QByteArray(1000, '\0');
    QTest::newRow("all bits") << QByteArray(1000, '\xff');
    QTest::newRow("count of results") << hex("0000000500000004ffffffff");
    QTest::newRow("count of accounts") << hex("000000050000000400000000ffffffff");
    QTest::newRow("count of patterns") << hex("00000005000000040000000000000000ffffffff");
    // One result with one property "a".
    const QByteArray head = hex("000000050000000400000001"
                                "ffffffff"
                                "00000001"
                                "00000002"
                                "0061");
    const auto values = hostileValues();
    for (const auto &[name, value] : values)
        QTest::newRow(name) << head + value;
    QTest::newRow("parentheses") << hex("000000050000000400000000000000000000000100000002"
                                        "0061"
                                        "00004e20")
            + hex("0028").repeated(10000) + hex("010000");
}

void HostileRunnerTest::answers()
{
    QFETCH(QByteArray, bytes);
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    SocialGetPersonsRequest other;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    QSignalSpy otherFinished(&other, SIGNAL(finished(SocialDataRequest *)));
    const QString id = served.perform(request);
    const QString otherId = served.perform(other);
    served.answer(id, bytes, bytes.left(1000));
    served.answer(otherId, personsAnswer(ids("p")));
    QVERIFY(otherFinished.wait(Patience));
    QCOMPARE(idsOf(other), ids("p"));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(int(request.status()), 4);
    QVERIFY(request.results().isEmpty());
    QVERIFY(request.errors().isEmpty());
}

void HostileRunnerTest::everyTruncation()
{
    ProxiedRunner served;
    const QByteArray whole = personsAnswer({QStringLiteral("a"), QStringLiteral("b")});
    for (int size = 0; size < whole.size(); ++size) {
        SocialGetPersonsRequest request;
        QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
        served.answer(served.perform(request), whole.left(size));
        QVERIFY(finished.count() == 1 || finished.wait(Patience));
        QCOMPARE(int(request.status()), 4);
        QVERIFY(request.errors().isEmpty());
        // The results stand before the account filter and the patterns, eight bytes at the end.
        QCOMPARE(int(request.results().size()), size < whole.size() - 8 ? 0 : 2);
    }
}

void HostileRunnerTest::randomAnswers_data()
{
    QTest::addColumn<bool>("fromAnAnswer");
    QTest::newRow("nothing but chance") << false;
    QTest::newRow("an answer with some bytes changed") << true;
}

void HostileRunnerTest::randomAnswers()
{
    QFETCH(bool, fromAnAnswer);
    ProxiedRunner served;
    const QByteArray answer = personsAnswer({QStringLiteral("a"), QStringLiteral("b")});
    QRandomGenerator random(4711);
    for (int round = 0; round < 300; ++round) {
        QByteArray bytes = fromAnAnswer ? answer : QByteArray(random.bounded(200), '\0');
        const int changes = fromAnAnswer ? random.bounded(1, 4) : int(bytes.size());
        for (int i = 0; i < changes; ++i)
            bytes[fromAnAnswer ? random.bounded(int(bytes.size())) : i] = char(random.bounded(256));
        SocialGetPersonsRequest request;
        QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
        served.answer(served.perform(request), bytes);
        QVERIFY2(finished.count() == 1 || finished.wait(Patience), bytes.toHex().constData());
        QCOMPARE(int(request.status()), 4);
        QVERIFY(request.errors().isEmpty());
        // What was read can be used.
        Payload::write(request);
    }
}

void HostileRunnerTest::pushedRecords_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray head = hex("ffffffff"
                                "00000001"
                                "00000002"
                                "0061");
    QTest::newRow("count of properties") << hex("ffffffffffffffff");
    const auto values = hostileValues();
    for (const auto &[name, value] : values)
        QTest::newRow(name) << head + value;
}

void HostileRunnerTest::pushedRecords()
{
    QFETCH(QByteArray, bytes);
    ProxiedRunner served;
    QSignalSpy updated(served.proxy.get(),
                       SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    const QByteArray whole = Payload::write(record(QStringLiteral("whole")));
    served.push("dataUpdate", {whole, bytes, whole});
    QVERIFY(updated.wait(Patience));
    const auto records = updated.at(0).at(0).value<QList<SocialGenericData>>();
    QCOMPARE(int(records.size()), 3);
    QCOMPARE(records.at(0).id(), QStringLiteral("whole"));
    QVERIFY(records.at(1).properties().isEmpty());
    QCOMPARE(records.at(2).id(), QStringLiteral("whole"));
}

void HostileRunnerTest::forgedSignalsAreNotDelivered()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    const QString id = served.perform(request);
    FakeRunner forger;
    forger.finish(served.id, id, personsAnswer(ids("forged")));
    // Nor are those of another object of the runner.
    served.runner.finish(QStringLiteral("other"), id, personsAnswer(ids("other object")));
    served.answer(id, personsAnswer(ids("true")));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(idsOf(request), ids("true"));
}

void HostileRunnerTest::signalsOfOtherFormsAreNotDelivered()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    QSignalSpy updated(served.proxy.get(),
                       SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    const QString id = served.perform(request);
    const auto send = [&](const char *member, const char *signature,
                          const QVariantList &arguments) {
        served.runner.send(served.id, QString::fromLatin1(member), QString::fromLatin1(signature),
                           arguments);
    };
    const QVariantList bytes{0, 0, 0, 0};
    send("requestFinished", "", {});
    send("requestFinished", "s", {id});
    send("requestFinished", "siayay", {id, 5, bytes, bytes});
    send("requestFinished", "isss", {5, id, QStringLiteral("a"), QStringLiteral("b")});
    send("requestFinished", "isay", {5, id, bytes});
    send("dataUpdate", "aayas", {QVariant(QVariantList{bytes}), QVariantList()});
    send("dataUpdate", "as", {QVariant(QVariantList())});
    served.answer(id, personsAnswer(ids("right")));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(idsOf(request), ids("right"));
    QCOMPARE(updated.count(), 0);
}

QTEST_GUILESS_MAIN(HostileRunnerTest)
#include "hostilerunnertest.moc"
