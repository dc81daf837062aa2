// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "initlog.h"
#include "plugins/socialpluginloader.h"
#include "provider/personcollectorinterface.h"
#include "support/messagelog.h"
#include "support/pluginfolder.h"
#include "support/virtualslots.h"

#include <QMetaMethod>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

/// What the loader tells, and how it is called.
class PluginSignalsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { takeInitLog(); }

    void loadPluginInitialisesAndTells();
    void loadPluginThatFailsTellsNothing();
    void scanTellsOfEachPluginAndOnceOfItsEnd();
    void fileLoadedAgainIsToldOfAgain();
    void pluginsLoadedComesAtConnection();
    void whoConnectsDuringConstructionHearsNothing();
    void signalsAndSlotsByName();
    void keepsTheOrderOfItsVirtualCalls();
};

void PluginSignalsTest::loadPluginInitialisesAndTells()
{
    const PluginFolder folder;
    SocialPluginLoader loader({}, {}, nullptr);
    QStringList events;
    connect(&loader, &SocialPluginLoader::pluginLoaded, this, [&](const QString &id) {
        QVERIFY(loader.plugin(id));
        events << QStringLiteral("loaded ") + id << takeInitLog();
    });
    connect(&loader, &SocialPluginLoader::pluginsLoaded, this,
            [&] { events << takeInitLog() << QStringLiteral("all loaded"); });
    events.clear();

    QVERIFY(loader.loadPlugin(folder.copy("testcollector", QStringLiteral("beta.so"))));
    QCOMPARE(events,
             QStringList({QStringLiteral("loaded beta"), beta, QStringLiteral("all loaded")}));
    QCOMPARE(loader.loadPluginImpl(folder.provider(QStringLiteral("alpha.so"))), alpha);
    QCOMPARE(events.mid(3), QStringList(QStringLiteral("loaded alpha")));
    QCOMPARE(takeInitLog(), QStringList());
}

void PluginSignalsTest::loadPluginThatFailsTellsNothing()
{
    const PluginFolder folder;
    SocialPluginLoader loader({}, {}, nullptr);
    const QSignalSpy finished(&loader, SIGNAL(pluginsLoaded()));
    const auto before = finished.count();
    const MessageLog log;
    QVERIFY(!loader.loadPlugin(folder.text(QStringLiteral("text.so"))));
    QVERIFY(!loader.loadPlugin(folder.copy("wrongroot", QStringLiteral("wrong.so"))));
    QCOMPARE(log.critical().size(), 2);
    QCOMPARE(finished.count(), before);
    QVERIFY(loader.loadPlugin(folder.provider(QStringLiteral("alpha.so"))));
    QCOMPARE(finished.count(), before + 1);
}

void PluginSignalsTest::scanTellsOfEachPluginAndOnceOfItsEnd()
{
    SocialPluginLoader loader({}, {}, nullptr);
    const PluginFolder folder;
    folder.provider(QStringLiteral("1=omega.so"));
    folder.text(QStringLiteral("2.so"));
    folder.copy("testcollector", QStringLiteral("3=alpha.so"));

    QStringList events;
    connect(&loader, &SocialPluginLoader::pluginLoaded, this,
            [&](const QString &id) { events << QStringLiteral("loaded ") + id; });
    connect(&loader, &SocialPluginLoader::pluginsLoaded, this,
            [&] { events << QStringLiteral("all loaded"); });
    events.clear();
    const MessageLog log;
    loader.loadPlugins(folder.path());
    QCOMPARE(events,
             QStringList({QStringLiteral("loaded omega"), QStringLiteral("loaded alpha"),
                          QStringLiteral("all loaded")}));
    // Initialising is another step.
    QCOMPARE(takeInitLog(), QStringList());
}

void PluginSignalsTest::fileLoadedAgainIsToldOfAgain()
{
    const PluginFolder folder;
    folder.providers({alpha});
    SocialPluginLoader loader(initNothing, {}, nullptr);
    const QPointer<QObject> root(loader.plugin(alpha));
    loader.removePlugin(alpha);

    const QSignalSpy loaded(&loader, SIGNAL(pluginLoaded(QString)));
    loader.loadPlugins(QString());
    QCOMPARE(loaded.count(), 1);
    QCOMPARE(static_cast<QObject *>(loader.plugin(alpha)), root.data());
    // By both connections.
    QVERIFY(QMetaObject::invokeMethod(root, "fail"));
    QCOMPARE(takeInitLog(), QStringList({alpha, alpha}));

    loader.unloadAllPlugins();
    QVERIFY(!root);
}

void PluginSignalsTest::pluginsLoadedComesAtConnection()
{
    const PluginFolder folder;
    const std::unique_ptr<SocialPluginLoader> loader(SocialPluginLoader::createClassLoader());
    int first = 0;
    connect(loader.get(), &SocialPluginLoader::pluginsLoaded, this, [&] { ++first; });
    QCOMPARE(first, 1);
    const QSignalSpy second(loader.get(), SIGNAL(pluginsLoaded()));
    QCOMPARE(second.count(), 1);
    QCOMPARE(first, 2);
    // Only this signal.
    const QSignalSpy others(loader.get(), SIGNAL(pluginLoaded(QString)));
    QCOMPARE(first, 2);
    QCOMPARE(others.count(), 0);

    loader->loadPlugins(QString());
    QCOMPARE(first, 3);
}

void PluginSignalsTest::whoConnectsDuringConstructionHearsNothing()
{
    const PluginFolder folder;
    const QString early = QStringLiteral("early");
    folder.providers({early});
    const auto loader = std::make_unique<SocialPluginLoader>(QStringList(), QStringList(), qApp);
    const QObject *plugin = loader->plugin(early);
    QCOMPARE(plugin->property("pluginsLoadedHeard").toInt(), 0);
    loader->loadPlugins(folder.filePath(QStringLiteral("missing")));
    QCOMPARE(plugin->property("pluginsLoadedHeard").toInt(), 1);
}

void PluginSignalsTest::signalsAndSlotsByName()
{
    const auto methodsOf = [](const QMetaObject &meta) {
        QStringList list;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            list.append(QString::fromLatin1(
                (method.methodType() == QMetaMethod::Signal ? "signal " : "slot ")
                + method.methodSignature() + ' ' + method.parameterNames().join(',')));
        }
        return list;
    };
    QCOMPARE(methodsOf(SocialPluginRepository::staticMetaObject),
             QStringList({QStringLiteral("signal pluginLoaded(QString) pluginId"),
                          QStringLiteral("signal pluginRemoved(QString) pluginId")}));
    QCOMPARE(methodsOf(SocialPluginLoader::staticMetaObject),
             QStringList({QStringLiteral("signal pluginsLoaded() "),
                          QStringLiteral("slot onError(QString,QString,QString) "
                                         "name,error,message")}));
}

void PluginSignalsTest::keepsTheOrderOfItsVirtualCalls()
{
    const int lastOfObject = slotOf(&OpenObject::disconnectNotify);
    QCOMPARE(slotOf(&SocialPluginRepository::validPlugins), lastOfObject + 1);
    QCOMPARE(slotOf(&SocialPluginRepository::removePlugin), lastOfObject + 2);
    QCOMPARE(slotOf(&SocialPluginRepository::plugin), lastOfObject + 3);
    QCOMPARE(slotOf(&SocialPluginRepository::kinletPlugin), lastOfObject + 4);
    QCOMPARE(slotOf(&Extended<SocialPluginRepository>::next), lastOfObject + 5);
    // The loader adds none.
    QCOMPARE(slotOf(&Extended<SocialPluginLoader>::next), lastOfObject + 5);
}

QTEST_GUILESS_MAIN(PluginSignalsTest)
#include "pluginsignalstest.moc"
