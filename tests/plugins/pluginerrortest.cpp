// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "initlog.h"
#include "plugins/socialpluginloader.h"
#include "provider/personcollectorinterface.h"
#include "support/pluginfolder.h"

#include <QEvent>
#include <QPluginLoader>
#include <QPointer>
#include <QTest>

#include <memory>
#include <thread>

namespace {

QStringList repeated(const QString &text, int times)
{
    QStringList list;
    for (int i = 0; i < times; ++i)
        list.append(text);
    return list;
}

}

/// What follows when a plug-in emits error().
class PluginErrorTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { takeInitLog(); }

    void errorInitialisesAgainOncePerPlugin();
    void errorOfAnUnknownNameAddsAnEmptyEntry();
    void errorAfterUnloadingAddsNothing();
    void errorInsideInitEnds();
    void errorsThatBlameEachOtherEnd();
    void errorAtTheAnnouncementIsHeard();
    void errorOfARemovedPluginAddsAnEmptyEntry();
    void errorFromAnotherThreadWaitsForTheEventLoop();
    void loaderMayEndInsideInit();
};

void PluginErrorTest::errorInitialisesAgainOncePerPlugin()
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

void PluginErrorTest::errorOfAnUnknownNameAddsAnEmptyEntry()
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

void PluginErrorTest::errorAfterUnloadingAddsNothing()
{
    const PluginFolder folder;
    folder.providers({alpha});
    SocialPluginLoader loader(initNothing, {}, nullptr);
    loader.unloadAllPlugins();
    loader.onError(alpha, QString(), QString());
    QCOMPARE(loader.validPlugins(), QStringList());
    QCOMPARE(takeInitLog(), QStringList());
}

void PluginErrorTest::errorInsideInitEnds()
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

void PluginErrorTest::errorsThatBlameEachOtherEnd()
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

void PluginErrorTest::errorAtTheAnnouncementIsHeard()
{
    const PluginFolder folder;
    SocialPluginLoader loader({}, {}, nullptr);
    connect(&loader, &SocialPluginLoader::pluginLoaded, this, [&](const QString &id) {
        QVERIFY(QMetaObject::invokeMethod(loader.plugin(id), "fail"));
    });
    loader.loadPluginImpl(folder.provider(QStringLiteral("alpha.so")));
    QCOMPARE(takeInitLog(), QStringList(alpha));
}

void PluginErrorTest::errorOfARemovedPluginAddsAnEmptyEntry()
{
    const PluginFolder folder;
    folder.providers({alpha, beta});
    SocialPluginLoader loader(initNothing, {}, nullptr);
    PersonCollectorInterface *removed = loader.plugin(alpha);
    loader.removePlugin(alpha);
    QVERIFY(QMetaObject::invokeMethod(removed, "fail"));
    QCOMPARE(loader.validPlugins(), QStringList({alpha, beta}));
    QVERIFY(!loader.plugin(alpha));
    QCOMPARE(takeInitLog(), QStringList());
}

void PluginErrorTest::errorFromAnotherThreadWaitsForTheEventLoop()
{
    const PluginFolder folder;
    folder.providers({alpha});
    SocialPluginLoader loader(initNothing, {}, nullptr);
    QObject *plugin = loader.plugin(alpha);
    std::thread([plugin] {
        QMetaObject::invokeMethod(plugin, "fail", Qt::DirectConnection);
    }).join();
    QCOMPARE(takeInitLog(), QStringList());
    QTRY_COMPARE(qApp->property("initLog").toStringList(), QStringList(alpha));
}

/// Deletes a loader at the next init().
class LoaderEnd : public QObject {
public:
    explicit LoaderEnd(SocialPluginLoader *loader) : loader(loader)
    {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        // The log of init() calls grows.
        if (event->type() == QEvent::DynamicPropertyChange)
            loader.reset();
        return false;
    }

private:
    std::unique_ptr<SocialPluginLoader> loader;
};

void PluginErrorTest::loaderMayEndInsideInit()
{
    const PluginFolder folder;
    folder.providers({alpha, beta});
    // Keeps the object alive without the loader.
    QPluginLoader keeper(folder.filePath(QStringLiteral("alpha.so")));
    QVERIFY(keeper.load());
    auto *loader = new SocialPluginLoader(initNothing, {}, nullptr);
    const QPointer<QObject> ended(loader);
    const LoaderEnd end(loader);
    QVERIFY(QMetaObject::invokeMethod(loader->plugin(alpha), "fail"));
    QVERIFY(!ended);
    QCOMPARE(takeInitLog(), QStringList(alpha));
    keeper.unload();
}

QTEST_GUILESS_MAIN(PluginErrorTest)
#include "pluginerrortest.moc"
