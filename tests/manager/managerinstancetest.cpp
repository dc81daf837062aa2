// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "managerinternals.h"
#include "plugins/socialpluginloader.h"
#include "support/scriptedprovider.h"
#include "support/streambytes.h"

#include <QMetaMethod>
#include <QPointer>
#include <QTest>

#include <memory>
#include <utility>

namespace {

/// Reads a value of a type that the program is told by name, as one arrives from another process.
QVariant readImportProgress()
{
    const QByteArray name("SocialImportProgress", sizeof "SocialImportProgress");
    ByteReader in(hex("00000400 00") + written(name) + hex("00 00000000 00000000 00000007"),
                  QDataStream::Qt_5_15);
    QVariant value;
    in >> value;
    return value;
}

int receiverCount(const QObject *object, const char *signal)
{
    struct Opened : QObject {
        using QObject::receivers;
    };
    return (object->*&Opened::receivers)(signal);
}

// An explicit instantiation may name a private member.
template <KinletManager **pointer>
struct InstancePointer {
    friend KinletManager *&instancePointer() { return *pointer; }
};
KinletManager *&instancePointer();
template struct InstancePointer<&KinletManager::instance_>;

}

/// The singleton, and what it is made of.
class ManagerInstanceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { KinletManager::cleanupInstance(); }

    // The first: it finds that there has been no manager yet.
    void instanceRegistersTheValueTypes();
    void instanceIsOneChildOfTheApplication();
    void cleanupTwiceThenAFreshOne();
    void endOfAnotherManagerLeavesTheInstance();
    void instanceThatEndsOtherwiseIsKept();
    void signalsAndSlotsByName();
    void onlyPluginsThatComeAndGoAreListenedTo();
    void workerHasNoParent();
};

void ManagerInstanceTest::instanceRegistersTheValueTypes()
{
    QVERIFY(!readImportProgress().isValid());
    QVERIFY(manager());
    QCOMPARE(readImportProgress().value<SocialImportProgress>().contactsMerged, 7);
}

void ManagerInstanceTest::instanceIsOneChildOfTheApplication()
{
    const KinletManager *first = manager();
    QVERIFY(first);
    QCOMPARE(first->parent(), static_cast<QObject *>(QCoreApplication::instance()));
    QCOMPARE(manager(), first);
}

void ManagerInstanceTest::cleanupTwiceThenAFreshOne()
{
    const QPointer<KinletManager> first(manager());
    QVERIFY(ScriptedProvider::add(QStringLiteral("a")));
    KinletManager::cleanupInstance();
    QVERIFY(!first);
    KinletManager::cleanupInstance();
    QVERIFY(manager());
    QVERIFY(!manager()->hasProvider(QStringLiteral("a")));
}

void ManagerInstanceTest::endOfAnotherManagerLeavesTheInstance()
{
    const QPointer<KinletManager> instance(manager());
    auto other = std::make_unique<KinletManager>(nullptr);
    QVERIFY(!other->parent());
    QCOMPARE(manager(), instance.data());
    other.reset();
    QVERIFY(instance);
    QCOMPARE(manager(), instance.data());
}

// Deliberately: only cleanupInstance() ends the singleton.
void ManagerInstanceTest::instanceThatEndsOtherwiseIsKept()
{
    const auto ended = quintptr(manager());
    delete manager();
    const auto kept = quintptr(std::exchange(instancePointer(), nullptr));
    QCOMPARE(kept, ended);
}

void ManagerInstanceTest::signalsAndSlotsByName()
{
    QStringList methods;
    const QMetaObject &meta = KinletManager::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        QCOMPARE(method.access(), isSignal ? QMetaMethod::Public : QMetaMethod::Private);
        // The two Qt versions write a list of texts in two ways.
        QString signature = QString::fromLatin1(method.methodSignature());
        signature.replace(QLatin1String("QList<QString>"), QLatin1String("QStringList"));
        methods.append(QLatin1String(isSignal ? "signal " : "slot ") + signature + u' '
                       + QString::fromLatin1(method.parameterNames().join(',')));
    }
    const char *const expected[] = {
        "signal personsUpdate(QList<SocialNetworkPerson>,QStringList) data,updatedProperties",
        "signal dataUpdate(QList<SocialGenericData>,QStringList) data,updatedProperties",
        "signal accountsRemoved(QStringList) accountIds",
        "signal importStarted(QString,QString) service,accountId",
        ("signal importEnded(QString,QString,int,int,int) "
         "service,accountId,contactsAdded,contactsRemoved,contactsMerged"),
        "signal initialized() ",
        "slot onPluginLoaded(QString) pluginId",
        "slot onPluginRemoved(QString) name",
        "slot onGetServicesFinished(SocialDataRequest*) request",
        "slot onGetAccountsFinished(SocialDataRequest*) request",
        "slot onDataUpdate(QList<SocialGenericData>,QStringList) data,updatedProperties",
        "slot onInitalized() ",
    };
    QStringList list;
    for (const char *text : expected)
        list.append(QString::fromLatin1(text));
    QCOMPARE(methods, list);
}

void ManagerInstanceTest::onlyPluginsThatComeAndGoAreListenedTo()
{
    const auto *loader =
        qobject_cast<const SocialPluginLoader *>(internalsOf(manager())->pluginRepository);
    QVERIFY(loader);
    QCOMPARE(receiverCount(loader, SIGNAL(pluginLoaded(QString))), 1);
    QCOMPARE(receiverCount(loader, SIGNAL(pluginRemoved(QString))), 1);
    QCOMPARE(receiverCount(loader, SIGNAL(pluginsLoaded())), 0);
}

void ManagerInstanceTest::workerHasNoParent()
{
    QVERIFY(!internalsOf(manager())->requestWorker.parent());
}

QTEST_GUILESS_MAIN(ManagerInstanceTest)
#include "managerinstancetest.moc"
