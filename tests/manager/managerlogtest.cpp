// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "managerinternals.h"
#include "support/categorylog.h"
#include "support/pluginfolder.h"
#include "support/scriptedprovider.h"

#include <QTest>

namespace {

const char *const onlyManager = "kinlet.manager=true";

}

/// What is told of providers that come and go.
class ManagerLogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { KinletManager::cleanupInstance(); }

    void nothingIsToldUnlessAskedFor();
    void startUp();
    void startUpThatWaits();
    void whoDoesNotAnswerIsDropped();
    void providersComeAndGo();
    void updates();
};

void ManagerLogTest::nothingIsToldUnlessAskedFor()
{
    const PluginFolder folder;
    folder.providers({QStringLiteral("a")});
    const CategoryLog log("");
    ScriptedProvider::add(QStringLiteral("A"));
    ScriptedProvider::remove(QStringLiteral("A"));
    QVERIFY(manager()->hasProvider(QStringLiteral("a")));
    QCOMPARE(log.take(), QStringList());
}

void ManagerLogTest::startUp()
{
    const PluginFolder folder;
    folder.providers({QStringLiteral("a")});
    folder.copy("testcollector", QStringLiteral("b.so"));
    const CategoryLog log(onlyManager);
    QVERIFY(manager()->isInitialized());
    QCOMPARE(log.take(),
             lines({"kinlet.manager.debug: Providers are plug-ins in this process",
                    "kinlet.manager.info: The provider \"a\" is added",
                    "kinlet.manager.debug: The provider \"a\" has 1 services",
                    "kinlet.manager.debug: The provider \"a\" has 1 accounts",
                    "kinlet.manager.info: The plug-in \"b\" is no provider",
                    "kinlet.manager.debug: Start-up is complete"}));
}

void ManagerLogTest::startUpThatWaits()
{
    const PluginFolder folder;
    folder.providers({QStringLiteral("held")});
    const CategoryLog log(onlyManager);
    KinletInterface *provider = manager()->provider(QStringLiteral("held")).data();
    const QString waits = log.take().last();
    QVERIFY2(waits.startsWith(QLatin1String("kinlet.manager.debug: Start-up waits for"))
                 && waits.contains(QLatin1String("\"held\"")),
             qPrintable(waits));
    QVERIFY(QMetaObject::invokeMethod(provider, "answer",
                                      Q_ARG(int, int(SocialDataRequest::GetAccounts))));
    QCOMPARE(log.take(),
             lines({"kinlet.manager.debug: The provider \"held\" has 1 accounts",
                    "kinlet.manager.debug: Start-up is complete"}));
}

void ManagerLogTest::whoDoesNotAnswerIsDropped()
{
    const PluginFolder folder;
    folder.providers({QStringLiteral("held")});
    const CategoryLog log("kinlet.manager.warning=true");
    QVERIFY(forceInitialized(manager()));
    QCOMPARE(log.take(),
             lines({"kinlet.manager.warning: The provider \"held\" is dropped: its accounts are "
                    "unknown"}));
}

void ManagerLogTest::providersComeAndGo()
{
    manager();
    const CategoryLog log(onlyManager);
    ScriptedProvider::add(QStringLiteral("A"),
                          {QStringLiteral("a1"), QStringLiteral("a2"), QStringLiteral("a3")});
    QVERIFY(!ScriptedProvider::add(QStringLiteral("A")));
    ScriptedProvider::remove(QStringLiteral("A"));
    ScriptedProvider::remove(QStringLiteral("A"));
    QCOMPARE(log.take(),
             lines({"kinlet.manager.info: The provider \"A\" is added",
                    "kinlet.manager.debug: The provider \"A\" has 1 services",
                    "kinlet.manager.debug: The provider \"A\" has 3 accounts",
                    "kinlet.manager.warning: There is a provider \"A\" already: another is refused",
                    "kinlet.manager.info: The provider \"A\" is removed"}));
}

void ManagerLogTest::updates()
{
    ScriptedProvider *provider = ScriptedProvider::add(QStringLiteral("A"));
    ScriptedProvider *nameless = ScriptedProvider::add(QString());
    const CategoryLog log(onlyManager);
    SocialServiceAccount account;
    account.setProperty(SocialServiceAccount::Id, QStringLiteral("a1"));
    account.setProperty(SocialServiceAccount::State, 4);
    Q_EMIT provider->dataUpdate({account}, {SocialServiceAccount::State});
    Q_EMIT nameless->dataUpdate({account}, {SocialServiceAccount::State});
    const QStringList told = log.take();
    QCOMPARE(told.size(), 3);
    QVERIFY2(
        told.at(0).startsWith(QLatin1String("kinlet.manager.debug: The provider \"A\" has news "
                                            "of 1 records, updated: "))
            && told.at(0).contains(QLatin1String("\"State\"")),
        qPrintable(told.at(0)));
    QVERIFY2(told.at(1).startsWith(QLatin1String("kinlet.manager.info: Accounts are gone: "))
                 && told.at(1).contains(QLatin1String("\"a1\"")),
             qPrintable(told.at(1)));
    QCOMPARE(told.at(2),
             QStringLiteral("kinlet.manager.warning: An update of a provider without a "
                            "name is dropped"));
}

QTEST_GUILESS_MAIN(ManagerLogTest)
#include "managerlogtest.moc"
