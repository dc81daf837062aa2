// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/busnames.h"
#include "dbus/proxiedrunner.h"
#include "support/virtualslots.h"

#include <QDBusConnection>
#include <QFile>
#include <QMetaMethod>
#include <QPointer>
#include <QTest>
#include <QXmlStreamReader>

namespace {

// Kind, name and arguments: "signal dataUpdate(QVariantList data, QStringList updatedProperties)".
QStringList membersOf(const QMetaObject &metaObject)
{
    QStringList members;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
        const QMetaMethod method = metaObject.method(i);
        QStringList arguments;
        for (int j = 0; j < method.parameterCount(); ++j)
            arguments.append(QString::fromLatin1(method.parameterTypes().at(j) + ' '
                                                 + method.parameterNames().at(j)));
        members.append((method.methodType() == QMetaMethod::Signal ? QStringLiteral("signal ")
                                                                   : QStringLiteral("slot "))
                       + QString::fromLatin1(method.name())
                       + QStringLiteral("(%1)").arg(arguments.join(QStringLiteral(", "))));
    }
    return members;
}

// As they stand in the file that describes the interface: "method metaData(out a{sv} metaData)".
QStringList describedMembers(const QString &fileName, QString &interface)
{
    QStringList members;
    QStringList arguments;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {QStringLiteral("no such file")};
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        xml.readNext();
        const QString element = xml.name().toString();
        const auto attribute = [&](const char *name) {
            return xml.attributes().value(QLatin1String(name)).toString();
        };
        if (xml.isStartElement() && element == QLatin1String("interface"))
            interface = attribute("name");
        else if (xml.isStartElement() && element == QLatin1String("arg"))
            arguments.append(QStringLiteral("%1 %2 %3")
                                 .arg(attribute("direction"), attribute("type"), attribute("name"))
                                 .trimmed());
        else if (xml.isStartElement()
                 && (element == QLatin1String("method") || element == QLatin1String("signal")))
            members.append(element + QLatin1Char(' ') + attribute("name"));
        else if (xml.isEndElement()
                 && (element == QLatin1String("method") || element == QLatin1String("signal"))) {
            members.last() += QStringLiteral("(%1)").arg(arguments.join(QStringLiteral(", ")));
            arguments.clear();
        }
    }
    return members;
}

// Notes which of its signals are connected.
class ListenedTo : public KinletRunnerInterface {
public:
    ListenedTo()
        : KinletRunnerInterface(QStringLiteral("com.orvane.kinlet.x"), QStringLiteral("/x"),
                                QDBusConnection::sessionBus(), nullptr)
    {
    }

    QStringList connected;

protected:
    void connectNotify(const QMetaMethod &signal) override
    {
        // QtDBus itself listens to destroyed().
        if (signal.enclosingMetaObject() == &KinletRunnerInterface::staticMetaObject)
            connected.append(QString::fromLatin1(signal.name()));
        KinletRunnerInterface::connectNotify(signal);
    }
};

}

/// What the client of a runner and its proxy consist of.
class ProxyMembersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void busNames();
    void interfaceDescription();
    void client();
    void clientAddsNoVirtualCalls();
    void proxy();
    void proxyKeepsTheOrderOfVirtualCalls();
    void proxyListensInOrder();
    void proxyOwnsItsClient();
    void metaDataIsTheName();
    void metaDataOfTheRunner();
};

void ProxyMembersTest::busNames()
{
    const QString id = QStringLiteral("x");
    QCOMPARE(BusNames::service(id), QStringLiteral("com.orvane.kinlet.x"));
    QCOMPARE(BusNames::path(id), QStringLiteral("/x"));
    QCOMPARE(BusNames::id(QStringLiteral("com.orvane.kinlet.x")), id);
    QCOMPARE(BusNames::id(QStringLiteral("com.orvane.kinletx")), QString());
}

void ProxyMembersTest::interfaceDescription()
{
    QString interface;
    const QStringList members =
        describedMembers(QStringLiteral(KINLET_RUNNER_DESCRIPTION), interface);
    QCOMPARE(interface, QStringLiteral("com.orvane.kinlet.runner"));
    QCOMPARE(members,
             QStringList({QStringLiteral("method performRequest(in i requestType, in s requestId, "
                                         "in ay request)"),
                          QStringLiteral("method metaData(out a{sv} metaData)"),
                          QStringLiteral("signal dataUpdate(av data, as updatedProperties)"),
                          QStringLiteral("signal personsUpdate(av data, as updatedProperties)"),
                          QStringLiteral("signal requestFinished(i requestType, s requestId, "
                                         "ay request, ay error)")}));
}

void ProxyMembersTest::client()
{
    const QMetaObject &metaObject = KinletRunnerInterface::staticMetaObject;
    QCOMPARE(QByteArray(metaObject.superClass()->className()),
             QByteArray("QDBusAbstractInterface"));
    QCOMPARE(
        membersOf(metaObject),
        QStringList(
            {QStringLiteral("signal dataUpdate(QVariantList data, QStringList updatedProperties)"),
             QStringLiteral(
                 "signal personsUpdate(QVariantList data, QStringList updatedProperties)"),
             QStringLiteral("signal requestFinished(int requestType, QString requestId, "
                            "QByteArray request, QByteArray error)"),
             QStringLiteral("slot performRequest(int requestType, QString requestId, "
                            "QByteArray request)"),
             QStringLiteral("slot metaData()")}));
    QObject parent;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const auto *client = new KinletRunnerInterface(QStringLiteral("com.orvane.kinlet.x"),
                                                   QStringLiteral("/x"), bus, &parent);
    QCOMPARE(client->interface(), QStringLiteral("com.orvane.kinlet.runner"));
    QCOMPARE(client->service(), QStringLiteral("com.orvane.kinlet.x"));
    QCOMPARE(client->path(), QStringLiteral("/x"));
    QCOMPARE(client->connection().baseService(), bus.baseService());
    QCOMPARE(client->parent(), &parent);
}

void ProxyMembersTest::clientAddsNoVirtualCalls()
{
    QCOMPARE(slotOf(&Extended<KinletRunnerInterface>::next),
             slotOf(&Extended<QDBusAbstractInterface>::next));
}

void ProxyMembersTest::proxy()
{
    const QMetaObject &metaObject = KinletInterfaceProxy::staticMetaObject;
    QCOMPARE(QByteArray(metaObject.superClass()->className()), QByteArray("KinletInterface"));
    // The id of the request deliberately has no name.
    QCOMPARE(
        membersOf(metaObject),
        QStringList({QStringLiteral(
                         "slot onDbusDataUpdate(QVariantList data, QStringList updatedProperties)"),
                     QStringLiteral("slot onDbusPersonsUpdate(QVariantList data, "
                                    "QStringList updatedProperties)"),
                     QStringLiteral("slot requestFinished(int requestType, QString , "
                                    "QByteArray request, QByteArray error)")}));
    KinletInterfaceProxy proxy(clientOf(QStringLiteral("x")).release(), QStringLiteral("x"));
    QVERIFY(!proxy.parent());
    QVERIFY(proxy.services().isEmpty());
    QVERIFY(proxy.accounts().isEmpty());
}

void ProxyMembersTest::proxyKeepsTheOrderOfVirtualCalls()
{
    const int lastOfObject = slotOf(&OpenObject::disconnectNotify);
    QCOMPARE(slotOf(&KinletInterfaceProxy::init), lastOfObject + 1);
    QCOMPARE(slotOf(&KinletInterfaceProxy::metaData), lastOfObject + 2);
    QCOMPARE(slotOf(&KinletInterfaceProxy::performRequest), lastOfObject + 3);
    QCOMPARE(slotOf(&KinletInterfaceProxy::cancelRequest), lastOfObject + 4);
    QCOMPARE(slotOf(&Extended<KinletInterfaceProxy>::next),
             slotOf(&Extended<KinletInterface>::next));
}

void ProxyMembersTest::proxyListensInOrder()
{
    auto *client = new ListenedTo;
    const KinletInterfaceProxy proxy(client, QStringLiteral("x"));
    QCOMPARE(client->connected,
             QStringList({QStringLiteral("dataUpdate"), QStringLiteral("personsUpdate"),
                          QStringLiteral("requestFinished")}));
}

void ProxyMembersTest::proxyOwnsItsClient()
{
    const QPointer<KinletRunnerInterface> client(clientOf(QStringLiteral("x")).release());
    {
        const KinletInterfaceProxy proxy(client, QStringLiteral("x"));
        QCOMPARE(client->parent(), &proxy);
    }
    QVERIFY(!client);
}

void ProxyMembersTest::metaDataIsTheName()
{
    ProxiedRunner served;
    const QVariantMap name{{QStringLiteral("name"), QStringLiteral("fake")}};
    QCOMPARE(served.proxy->metaData(), name);
    served.proxy->init();
    served.proxy->metaData().insert(QStringLiteral("more"), 1);
    QCOMPARE(served.proxy->metaData(), name);
    QCOMPARE(served.proxy->metaData().first().userType(), int(QMetaType::QString));
    // The runner has not been asked: the first call that it gets is the request.
    SocialGetPersonsRequest request;
    served.proxy->performRequest(&request);
    QCOMPARE(served.runner.nextCall().member, QStringLiteral("performRequest"));
}

void ProxyMembersTest::metaDataOfTheRunner()
{
    FakeRunner runner({FakeRunner::busName(QStringLiteral("fake"))});
    const auto client = clientOf(QStringLiteral("fake"));
    QDBusPendingReply<QVariantMap> reply = client->metaData();
    reply.waitForFinished();
    QVERIFY(!reply.isError());
    QCOMPARE(reply.value().value(QStringLiteral("version")).toString(), QStringLiteral("7"));
    for (int i = 0; i < 2; ++i) {
        const ReceivedCall call = runner.nextCall();
        QCOMPARE(call.member, QStringLiteral("metaData"));
        QCOMPARE(call.signature, QString());
        if (i == 0)
            QVERIFY(QMetaObject::invokeMethod(client.get(), "metaData"));
    }
}

QTEST_GUILESS_MAIN(ProxyMembersTest)
#include "proxymemberstest.moc"
