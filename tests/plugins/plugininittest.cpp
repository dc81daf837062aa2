// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/socialpluginloader.h"
#include "provider/kinletinterface.h"
#include "support/messagelog.h"
#include "support/pluginfolder.h"

#include <QMetaMethod>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

const QStringList initNothing{QString()};
const QString alpha = QStringLiteral("alpha");
const QString beta = QStringLiteral("beta");
const QString omega = QStringLiteral("omega");

/// The plug-ins that were initialised since the last call, in order.
QStringList takeInitLog()
{
    const QStringList log = qApp->property("initLog").toStringList();
    qApp->setProperty("initLog", {});
    return log;
}

QStringList repeated(const QString &text, int times)
{
    QStringList list;
    for (int i = 0; i < times; ++i)
        list.append(text);
    return list;
}

}

class PluginInitTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { takeInitLog(); }

    void constructorInitialisesWhatItIsTold_data();
    void constructorInitialisesWhatItIsTold();
    void classLoaderInitialisesOnlyProviders();
    void everyCallOfInitPluginInitialises();
    void initPluginRefusesWhatIsNotThere();
    void lookingUpInsertsNothing();
    void providerIsRecognisedByItsDeclaration();
    void loadPluginInitialisesAndTells();
    void loadPluginThatFailsTellsNothing();
    void pluginsLoadedComesAtConnection();
    void removedPluginStaysInMemory();
    void unloadingEndsEveryPlugin_data();
    void unloadingEndsEveryPlugin();
    void errorInitialisesAgainOncePerPlugin();
    void errorOfAnUnknownNameAddsAnEmptyEntry();
    void errorAfterUnloadingAddsNothing();
    void errorInsideInitEnds();
    void errorsThatBlameEachOtherEnd();
    void signalsAndSlotsByName();
};

void PluginInitTest::constructorInitialisesWhatItIsTold_data()
{
    QTest::addColumn<QStringList>("initList");
    QTest::addColumn<QStringList>("initialised");

    QTest::newRow("empty list: all, in key order")
        << QStringList() << QStringList({alpha, beta, omega});
    QTest::newRow("one") << QStringList(beta) << QStringList(beta);
    QTest::newRow("in the list's order")
        << QStringList({omega, alpha}) << QStringList({omega, alpha});
    QTest::newRow("unknown ones are skipped")
        << QStringList({QStringLiteral("delta"), beta}) << QStringList(beta);
    QTest::newRow("twice") << QStringList({beta, beta}) << QStringList({beta, beta});
    QTest::newRow("one empty entry: none") << initNothing << QStringList();
}

void PluginInitTest::constructorInitialisesWhatItIsTold()
{
    QFETCH(QStringList, initList);
    QFETCH(QStringList, initialised);
    const PluginFolder folder;
    folder.providers({omega, alpha});
    folder.copy("testcollector", QStringLiteral("beta.so"));

    QObject parent;
    const auto *loader = new SocialPluginLoader(initList, {}, &parent);
    QCOMPARE(loader->parent(), &parent);
    QCOMPARE(takeInitLog(), initialised);
    QCOMPARE(loader->validPlugins(), QStringList({alpha, beta, omega}));
}

void PluginInitTest::classLoaderInitialisesOnlyProviders()
{
    const PluginFolder folder;
    folder.providers({omega, alpha});
    folder.copy("testcollector", QStringLiteral("beta.so"));
    folder.copy("undeclaredprovider", QStringLiteral("delta.so"));

    const std::unique_ptr<SocialPluginLoader> loader(SocialPluginLoader::createClassLoader());
    QVERIFY(!loader->parent());
    QCOMPARE(takeInitLog(), QStringList({alpha, omega}));
    QCOMPARE(loader->validPlugins(), QStringList({alpha, beta, QStringLiteral("delta"), omega}));
}

void PluginInitTest::everyCallOfInitPluginInitialises()
{
    const PluginFolder folder;
    folder.providers({alpha});
    SocialPluginLoader loader(initNothing, {}, nullptr);
    QCOMPARE(takeInitLog(), QStringList());
    QVERIFY(loader.initPlugin(alpha));
    QVERIFY(loader.initPlugin(alpha));
    QCOMPARE(takeInitLog(), QStringList({alpha, alpha}));
    loader.initPlugins();
    QCOMPARE(takeInitLog(), QStringList(alpha));
}

void PluginInitTest::initPluginRefusesWhatIsNotThere()
{
    const PluginFolder folder;
    folder.providers({alpha});
    SocialPluginLoader loader(initNothing, {beta}, nullptr);
    for (const QString &id : {QString(), beta, QStringLiteral("Alpha")})
        QVERIFY2(!loader.initPlugin(id), qPrintable(id));
    QCOMPARE(loader.validPlugins(), QStringList(alpha));
    loader.removePlugin(alpha);
    QVERIFY(!loader.initPlugin(alpha));
    QCOMPARE(loader.validPlugins(), QStringList());
    QCOMPARE(takeInitLog(), QStringList());
}

void PluginInitTest::lookingUpInsertsNothing()
{
    const PluginFolder folder;
    SocialPluginLoader loader({}, {}, nullptr);
    QVERIFY(!loader.plugin(alpha));
    QVERIFY(!loader.kinletPlugin(alpha));
    QCOMPARE(loader.validPlugins(), QStringList());
}

void PluginInitTest::providerIsRecognisedByItsDeclaration()
{
    const PluginFolder folder;
    folder.providers({alpha});
    folder.copy("testcollector", QStringLiteral("beta.so"));
    folder.copy("undeclaredprovider", QStringLiteral("omega.so"));
    SocialPluginLoader loader({}, {}, nullptr);

    QVERIFY(loader.plugin(alpha));
    QCOMPARE(loader.kinletPlugin(alpha), dynamic_cast<KinletInterface *>(loader.plugin(alpha)));
    QVERIFY(loader.plugin(beta));
    QVERIFY(!loader.kinletPlugin(beta));
    QVERIFY(dynamic_cast<KinletInterface *>(loader.plugin(omega)));
    QVERIFY(!loader.kinletPlugin(omega));
}

void PluginInitTest::loadPluginInitialisesAndTells()
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

void PluginInitTest::loadPluginThatFailsTellsNothing()
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

void PluginInitTest::pluginsLoadedComesAtConnection()
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

void PluginInitTest::removedPluginStaysInMemory()
{
    const PluginFolder folder;
    folder.providers({alpha, beta});
    SocialPluginLoader loader({}, {}, nullptr);
    const QPointer<QObject> root(loader.plugin(alpha));
    const QSignalSpy removed(&loader, SIGNAL(pluginRemoved(QString)));
    loader.removePlugin(alpha);
    loader.removePlugin(omega);
    QCOMPARE(loader.validPlugins(), QStringList(beta));
    QVERIFY(!loader.plugin(alpha));
    QVERIFY(root);

    loader.unloadAllPlugins();
    QVERIFY(!root);
    QCOMPARE(removed.count(), 0);
}

void PluginInitTest::unloadingEndsEveryPlugin_data()
{
    QTest::addColumn<bool>("bydestruction");

    QTest::newRow("unloadAllPlugins") << false;
    QTest::newRow("destructor") << true;
}

void PluginInitTest::unloadingEndsEveryPlugin()
{
    QFETCH(bool, bydestruction);
    const PluginFolder folder;
    folder.providers({alpha});
    folder.copy("testcollector", QStringLiteral("beta.so"));
    auto loader = std::make_unique<SocialPluginLoader>(QStringList(), QStringList(), nullptr);
    const QPointer<QObject> first(loader->plugin(alpha));
    const QPointer<QObject> second(loader->plugin(beta));
    QVERIFY(first && second);
    QStringList ended;
    const auto watch = [&](QObject *plugin, const QString &id) {
        connect(plugin, &QObject::destroyed, this, [&ended, id] { ended.append(id); });
    };
    watch(second, beta);
    watch(first, alpha);

    const QSignalSpy removed(loader.get(), SIGNAL(pluginRemoved(QString)));
    if (bydestruction) {
        loader.reset();
    } else {
        loader->unloadAllPlugins();
        QCOMPARE(loader->validPlugins(), QStringList());
        QVERIFY(!loader->plugin(alpha));
    }
    QVERIFY(!first && !second);
    QCOMPARE(ended, QStringList({alpha, beta}));
    QCOMPARE(removed.count(), 0);
}

void PluginInitTest::errorInitialisesAgainOncePerPlugin()
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

void PluginInitTest::errorOfAnUnknownNameAddsAnEmptyEntry()
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

void PluginInitTest::errorAfterUnloadingAddsNothing()
{
    const PluginFolder folder;
    folder.providers({alpha});
    SocialPluginLoader loader(initNothing, {}, nullptr);
    loader.unloadAllPlugins();
    loader.onError(alpha, QString(), QString());
    QCOMPARE(loader.validPlugins(), QStringList());
    QCOMPARE(takeInitLog(), QStringList());
}

void PluginInitTest::errorInsideInitEnds()
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

void PluginInitTest::errorsThatBlameEachOtherEnd()
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

void PluginInitTest::signalsAndSlotsByName()
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

QTEST_GUILESS_MAIN(PluginInitTest)
#include "plugininittest.moc"
