// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "initlog.h"
#include "plugins/socialpluginloader.h"
#include "provider/personcollectorinterface.h"
#include "support/messagelog.h"
#include "support/pluginfolder.h"

#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

QStringList repeated(const QString &text, int times)
{
    QStringList list;
    for (int i = 0; i < times; ++i)
        list.append(text);
    return list;
}

}

/// What the loader tells, and what plug-ins tell it.
class PluginSignalsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { takeInitLog(); }

    void loadPluginInitialisesAndTells();
    void loadPluginThatFailsTellsNothing();
    void pluginsLoadedComesAtConnection();
    void whoConnectsDuringConstructionHearsNothing();
    void errorInitialisesAgainOncePerPlugin();
    void errorOfAnUnknownNameAddsAnEmptyEntry();
    void errorAfterUnloadingAddsNothing();
    void errorInsideInitEnds();
    void errorsThatBlameEachOtherEnd();
    void signalsAndSlotsByName();
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

void PluginSignalsTest::errorInitialisesAgainOncePerPlugin()
{
    const PluginFolder folder;
    folder.providers({alpha, omega});
    folder.copy("testcollector", QStringLiteral("beta.so"));
    SocialPluginLoader loader(initNothing, {}, nullptr);
    for (int round = 0; round < 2; ++round) {
        QVERIFY(QMetaObject::invokeMethod(loader.plugin(omega), "fail"));
        QCOMPARE(takeInitLog(), repeated(omega, 3));
    }
    loader.removePlugin(beta);
    QVERIFY(QMetaObject::invokeMethod(loader.plugin(omega), "fail"));
    QCOMPARE(takeInitLog(), repeated(omega, 2));
}

void PluginSignalsTest::errorOfAnUnknownNameAddsAnEmptyEntry()
{
    const PluginFolder folder;
    folder.providers({alpha});
    SocialPluginLoader loader(initNothing, {}, nullptr);
    loader.plugin(alpha)->setProperty("blamed", omega);
    QVERIFY(QMetaObject::invokeMethod(loader.plugin(alpha), "fail"));
    QCOMPARE(takeInitLog(), QStringList());
    QCOMPARE(loader.validPlugins(), QStringList({alpha, omega}));
    QVERIFY(!loader.plugin(omega));
    QVERIFY(!loader.kinletPlugin(omega));
    QVERIFY(!loader.initPlugin(omega));

    // The entry counts as one more plug-in.
    loader.onError(alpha, QString(), QString());
    QCOMPARE(takeInitLog(), repeated(alpha, 2));
}

void PluginSignalsTest::errorAfterUnloadingAddsNothing()
{
    const PluginFolder folder;
    folder.providers({alpha});
    SocialPluginLoader loader(initNothing, {}, nullptr);
    loader.unloadAllPlugins();
    loader.onError(alpha, QString(), QString());
    QCOMPARE(loader.validPlugins(), QStringList());
    QCOMPARE(takeInitLog(), QStringList());
}

void PluginSignalsTest::errorInsideInitEnds()
{
    const PluginFolder folder;
    const QString failing = QStringLiteral("failing");
    folder.providers({alpha, failing, omega});
    const std::unique_ptr<SocialPluginLoader> loader(SocialPluginLoader::createClassLoader());
    // Itself, then once for each of the three; further errors meanwhile start nothing.
    QCOMPARE(takeInitLog(), QStringList({alpha}) + repeated(failing, 4) + QStringList(omega));

    // The next error starts a round again.
    QVERIFY(QMetaObject::invokeMethod(loader->plugin(failing), "fail"));
    QCOMPARE(takeInitLog(), repeated(failing, 3));
}

void PluginSignalsTest::errorsThatBlameEachOtherEnd()
{
    const PluginFolder folder;
    folder.providers({alpha, beta});
    SocialPluginLoader loader(initNothing, {}, nullptr);
    for (const auto &names : {qMakePair(alpha, beta), qMakePair(beta, alpha)}) {
        loader.plugin(names.first)->setProperty("failing", true);
        loader.plugin(names.first)->setProperty("blamed", names.second);
    }
    loader.onError(alpha, QString(), QString());
    // Each of alpha's two calls sets off two of beta.
    QCOMPARE(takeInitLog(), QStringList({alpha, beta, beta, alpha, beta, beta}));
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

QTEST_GUILESS_MAIN(PluginSignalsTest)
#include "pluginsignalstest.moc"
