// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/proxiedrunner.h"
#include "dbus/streamed.h"
#include "records/valuetypes.h"

#include <QRegExp>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

namespace {

const char *const dataSignal = SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>));
const char *const personsSignal = SIGNAL(personsUpdate(QList<SocialNetworkPerson>, QList<QString>));

QList<SocialGenericData> records(const QSignalSpy &spy, int emission = 0)
{
    return spy.at(emission).at(0).value<QList<SocialGenericData>>();
}

// A record with one property, a list of that many patterns.
QByteArray recordWithPatterns(int count)
{
    QByteArray bytes = recordWithValue(valueOfType(QMetaType::QVariantList));
    bytes += streamed(quint32(count));
    for (int i = 0; i < count; ++i)
        bytes += valueOfType(27)
            + streamed(QString::number(i), quint8(1), quint8(QRegExp::RegExp), quint8(0));
    return bytes;
}

}

/// Records that a runner pushes without being asked.
class ProxyPushTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void dataUpdate();
    void personsUpdate();
    void emptyPush();
    void elementsWithoutBytes();
    void textsGiveTheirBytes();
    void personOfNothing();
    void olderStreams();
    void manyRecordsInOneMessage();
    void manyMessagesAtOnce();
    void patternsAreCountedOverAMessage();
    void proxyDeletedInsideAnUpdate();
};

void ProxyPushTest::initTestCase()
{
    KinletInitializer::init();
    qRegisterMetaType<QRegExp>("QRegExp");
}

void ProxyPushTest::dataUpdate()
{
    ProxiedRunner served;
    QSignalSpy updated(served.proxy.get(), dataSignal);
    QSignalSpy persons(served.proxy.get(), personsSignal);
    QThread *thread = nullptr;
    connect(
        served.proxy.get(), &KinletInterface::dataUpdate, this,
        [&] { thread = QThread::currentThread(); }, Qt::DirectConnection);
    SocialGenericData rich = record(QStringLiteral("1"));
    rich.setProperty(SocialActivity::Attachment,
                     QVariant::fromValue(SocialActivityAttachment{
                         QStringLiteral("title"), {}, {}, {}, {Media{Media::Image, {}, {}, {}}}}));
    served.push("dataUpdate", {Payload::write(rich), Payload::write(record(QStringLiteral("2")))},
                {QStringLiteral("B"), QStringLiteral("A"), QStringLiteral("B")});
    QVERIFY(updated.wait(Patience));
    QCOMPARE(int(records(updated).size()), 2);
    QCOMPARE(records(updated).at(0).className(), SocialActivity::ClassName);
    QCOMPARE(records(updated)
                 .at(0)
                 .variantProperty(SocialActivity::Attachment)
                 .value<SocialActivityAttachment>()
                 .media.size(),
             1);
    QCOMPARE(records(updated).at(1).id(), QStringLiteral("2"));
    QCOMPARE(updated.at(0).at(1).value<QList<QString>>(),
             QList<QString>({QStringLiteral("B"), QStringLiteral("A"), QStringLiteral("B")}));
    QCOMPARE(persons.count(), 0);
    QCOMPARE(thread, QThread::currentThread());
}

void ProxyPushTest::personsUpdate()
{
    ProxiedRunner served;
    QSignalSpy updated(served.proxy.get(), personsSignal);
    QSignalSpy data(served.proxy.get(), dataSignal);
    SocialNetworkPerson person;
    person.setProperty(SocialGenericData::Id, QStringLiteral("p"));
    served.push("personsUpdate",
                {Payload::write(person), Payload::write(record(QStringLiteral("a")))},
                {QStringLiteral("Status")});
    QVERIFY(updated.wait(Patience));
    const auto persons = updated.at(0).at(0).value<QList<SocialNetworkPerson>>();
    QCOMPARE(int(persons.size()), 2);
    QCOMPARE(persons.at(0).id(), QStringLiteral("p"));
    QCOMPARE(persons.at(0).className(), SocialNetworkPerson::ClassName);
    // The stream's class name stands, whatever the list is of.
    QCOMPARE(persons.at(1).className(), SocialActivity::ClassName);
    QCOMPARE(updated.at(0).at(1).value<QList<QString>>(), QList<QString>(ids("Status")));
    QCOMPARE(data.count(), 0);
}

void ProxyPushTest::emptyPush()
{
    ProxiedRunner served;
    QSignalSpy updated(served.proxy.get(), dataSignal);
    QSignalSpy persons(served.proxy.get(), personsSignal);
    served.push("personsUpdate", {});
    served.push("dataUpdate", {});
    QVERIFY(updated.wait(Patience));
    QVERIFY(records(updated).isEmpty());
    QVERIFY(updated.at(0).at(1).value<QList<QString>>().isEmpty());
    QCOMPARE(persons.count(), 1);
    QVERIFY(persons.at(0).at(0).value<QList<SocialNetworkPerson>>().isEmpty());
}

void ProxyPushTest::elementsWithoutBytes()
{
    ProxiedRunner served;
    QSignalSpy updated(served.proxy.get(), dataSignal);
    served.push("dataUpdate",
                {42, QByteArray("\x01"), Payload::write(record(QStringLiteral("whole"))), true,
                 QVariantList{1, 2}});
    QVERIFY(updated.wait(Patience));
    QCOMPARE(int(records(updated).size()), 5);
    for (int empty : {0, 1, 3, 4}) {
        QVERIFY(records(updated).at(empty).className().isEmpty());
        QVERIFY(records(updated).at(empty).properties().isEmpty());
    }
    QCOMPARE(records(updated).at(2).id(), QStringLiteral("whole"));
}

// The bus carries no text with the zeros that a record has; the slot can be reached by its name.
void ProxyPushTest::textsGiveTheirBytes()
{
    KinletInterfaceProxy proxy(clientOf(QStringLiteral("x")).release(), QStringLiteral("x"));
    QSignalSpy updated(&proxy, dataSignal);
    const QByteArray bytes = Payload::write(record(QStringLiteral("1")));
    // Without its size Qt 5 would end it at the first zero.
    const QString text = QString::fromUtf8(bytes.constData(), int(bytes.size()));
    QVERIFY(QMetaObject::invokeMethod(&proxy, "onDbusDataUpdate",
                                      Q_ARG(QVariantList, QVariantList{text}),
                                      Q_ARG(QStringList, QStringList())));
    QCOMPARE(updated.count(), 1);
    QCOMPARE(records(updated).at(0).id(), QStringLiteral("1"));
}

// The record starts as a person, but what is read replaces the class name.
void ProxyPushTest::personOfNothing()
{
    ProxiedRunner served;
    QSignalSpy updated(served.proxy.get(), personsSignal);
    served.push("personsUpdate", {QByteArray(), 1});
    QVERIFY(updated.wait(Patience));
    const auto persons = updated.at(0).at(0).value<QList<SocialNetworkPerson>>();
    QCOMPARE(int(persons.size()), 2);
    QCOMPARE(persons.at(0).className(), QString());
    QCOMPARE(persons.at(1).className(), QString());
}

void ProxyPushTest::olderStreams()
{
    ProxiedRunner served;
    QSignalSpy updated(served.proxy.get(), dataSignal);
    SocialGenericData dated = record(QStringLiteral("1"));
    dated.setProperty(QStringLiteral("k"), QDate(2026, 1, 5));
    served.push("dataUpdate", {written(dated, QDataStream::Qt_4_8), Payload::write(dated)});
    QVERIFY(updated.wait(Patience));
    for (int i : {0, 1})
        QCOMPARE(records(updated).at(i).variantProperty(QStringLiteral("k")),
                 QVariant(QDate(2026, 1, 5)));
}

void ProxyPushTest::manyRecordsInOneMessage()
{
    ProxiedRunner served;
    QSignalSpy updated(served.proxy.get(), dataSignal);
    served.push("dataUpdate", {Payload::write(record(QStringLiteral("many")))}, {}, 100000);
    QVERIFY(updated.wait(Patience));
    QCOMPARE(int(records(updated).size()), 100000);
    for (const SocialGenericData &one : records(updated))
        QCOMPARE(one.id(), QStringLiteral("many"));
}

void ProxyPushTest::manyMessagesAtOnce()
{
    ProxiedRunner served;
    QSignalSpy updated(served.proxy.get(), dataSignal);
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    const QString id = served.perform(request);
    for (int i = 0; i < 1000; ++i)
        served.push("dataUpdate", {Payload::write(record(QString::number(i)))}, {}, 100);
    served.answer(id, personsAnswer(ids("p")));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), ids("p"));
    QCOMPARE(updated.count(), 1000);
    for (int i = 0; i < 1000; ++i) {
        QCOMPARE(int(records(updated, i).size()), 100);
        QCOMPARE(records(updated, i).last().id(), QString::number(i));
    }
}

void ProxyPushTest::patternsAreCountedOverAMessage()
{
    ProxiedRunner served;
    QSignalSpy updated(served.proxy.get(), dataSignal);
    const QVariantList data{recordWithPatterns(600), recordWithPatterns(600),
                            recordWithPatterns(300),
                            Payload::write(record(QStringLiteral("plain")))};
    for (int message : {0, 1}) {
        served.push("dataUpdate", data);
        QVERIFY(updated.wait(Patience));
        const auto list = [&](int i) {
            return records(updated, message).at(i).variantProperty(QStringLiteral("k")).toList();
        };
        QCOMPARE(int(list(0).size()), 600);
        QVERIFY(list(1).isEmpty());
        QCOMPARE(records(updated, message).at(3).id(), QStringLiteral("plain"));
    }
}

void ProxyPushTest::proxyDeletedInsideAnUpdate()
{
    ProxiedRunner served;
    const auto listener = clientOf(served.id);
    QSignalSpy heard(listener.get(), &KinletRunnerInterface::dataUpdate);
    int updates = 0;
    connect(served.proxy.get(), &KinletInterface::dataUpdate, this, [&] {
        ++updates;
        served.proxy.reset();
    });
    served.push("dataUpdate", {Payload::write(record(QStringLiteral("1")))});
    served.push("dataUpdate", {Payload::write(record(QStringLiteral("2")))});
    QTRY_COMPARE_WITH_TIMEOUT(heard.count(), 2, Patience);
    QCOMPARE(updates, 1);
    QVERIFY(!served.proxy);
}

QTEST_GUILESS_MAIN(ProxyPushTest)
#include "proxypushtest.moc"
