// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "initlog.h"
#include "plugins/socialpluginloader.h"
#include "provider/kinletinterface.h"
#include "support/pluginfolder.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

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
    void removedPluginStaysInMemory();
    void unloadingEndsEveryPlugin_data();
    void unloadingEndsEveryPlugin();
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
    // Loaded in another order than that of the ids.
    folder.provider(QStringLiteral("1=omega.so"));
    folder.copy("testcollector", QStringLiteral("2=beta.so"));
    folder.provider(QStringLiteral("3=alpha.so"));

    QObject parent;
    const auto *loader = new SocialPluginLoader(initList, {}, &parent);
    QCOMPARE(loader->parent(), &parent);
    QCOMPARE(takeInitLog(), initialised);
    QCOMPARE(loader->validPlugins(), QStringList({alpha, beta, omega}));
}

void PluginInitTest::classLoaderInitialisesOnlyProviders()
{
    const PluginFolder folder;
    folder.provider(QStringLiteral("1=omega.so"));
    folder.copy("testcollector", QStringLiteral("2=beta.so"));
    folder.provider(QStringLiteral("3=alpha.so"));
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
    folder.copy("testcollector", QStringLiteral("1=beta.so"));
    folder.provider(QStringLiteral("2=alpha.so"));
    auto loader = std::make_unique<SocialPluginLoader>(QStringList(), QStringList(), nullptr);
    const QPointer<QObject> first(loader->plugin(alpha));
    const QPointer<QObject> second(loader->plugin(beta));
    QVERIFY(first && second);
    QStringList ended;
    const auto watch = [&](QObject *plugin, const QString &id) {
        connect(plugin, &QObject::destroyed, this, [&ended, id, held = loader.get()] {
            ended.append(id);
            QCOMPARE(held->validPlugins(), QStringList());
        });
    };
    watch(first, alpha);
    watch(second, beta);

    const QSignalSpy removed(loader.get(), SIGNAL(pluginRemoved(QString)));
    if (bydestruction) {
        loader.reset();
    } else {
        loader->unloadAllPlugins();
        QCOMPARE(loader->validPlugins(), QStringList());
        QVERIFY(!loader->plugin(alpha));
    }
    QVERIFY(!first && !second);
    QCOMPARE(ended, QStringList({beta, alpha}));
    QCOMPARE(removed.count(), 0);
}

QTEST_GUILESS_MAIN(PluginInitTest)
#include "plugininittest.moc"
