// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "initlog.h"
#include "plugins/socialpluginloader.h"
#include "support/messagelog.h"
#include "support/pluginfolder.h"

#include <QPluginLoader>
#include <QSignalSpy>
#include <QTest>

namespace {

// What Qt says about a file that has not been tried yet.
QString loadError(const QString &path)
{
    QPluginLoader probe(path);
    probe.instance();
    const QString error = probe.errorString();
    probe.unload();
    return error;
}

}

/// Files that the loader does not take.
class PluginRefusalTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { takeInitLog(); }

    void fileThatDoesNotLoadIsReported_data();
    void fileThatDoesNotLoadIsReported();
    void wrongRootObjectIsReportedAndUnloaded();
    void scanGoesOnAfterBadFiles();
    void excludedPluginIsSilentlyLeftOutButStaysInMemory();
    void exclusionIsCaseSensitive();
};

void PluginRefusalTest::fileThatDoesNotLoadIsReported_data()
{
    QTest::addColumn<QString>("file");

    QTest::newRow("text") << QStringLiteral("a \"text\".so");
    QTest::newRow("library that is no plug-in") << QStringLiteral("library.so");
    QTest::newRow("missing") << QStringLiteral("missing.so");
}

void PluginRefusalTest::fileThatDoesNotLoadIsReported()
{
    QFETCH(QString, file);
    const PluginFolder folder;
    SocialPluginLoader loader({}, {}, nullptr);
    folder.text(QStringLiteral("a \"text\".so"));
    folder.copy("plainlibrary", QStringLiteral("library.so"));
    const QString path = folder.filePath(file);
    const QString error = loadError(path);

    const QSignalSpy loaded(&loader, SIGNAL(pluginLoaded(QString)));
    const MessageLog log;
    QVERIFY(loader.loadPluginImpl(path).isNull());
    QCOMPARE(log.critical(),
             QStringList(QStringLiteral("Problem loading plugin:  ") + MessageLog::quoted(path)
                         + QStringLiteral(" :  ") + MessageLog::quoted(error)));
    QCOMPARE(loaded.count(), 0);
    QCOMPARE(loader.validPlugins(), QStringList());
}

void PluginRefusalTest::wrongRootObjectIsReportedAndUnloaded()
{
    const PluginFolder folder;
    SocialPluginLoader loader({}, {}, nullptr);
    const QString path = folder.copy("wrongroot", QStringLiteral("wrong.so"));
    const QString error = loadError(path);

    const QSignalSpy loaded(&loader, SIGNAL(pluginLoaded(QString)));
    const MessageLog log;
    QVERIFY(loader.loadPluginImpl(path).isNull());
    QCOMPARE(
        log.critical(),
        QStringList(QStringLiteral("Unexpected class type from plugin:  type= WrongRoot : Error= ")
                    + MessageLog::quoted(error)));
    QCOMPARE(loaded.count(), 0);
    QCOMPARE(loader.validPlugins(), QStringList());

    QVERIFY(!QPluginLoader(path).isLoaded());
}

void PluginRefusalTest::scanGoesOnAfterBadFiles()
{
    const PluginFolder folder;
    folder.text(QStringLiteral("1.so"));
    folder.copy("wrongroot", QStringLiteral("2.so"));
    folder.provider(QStringLiteral("3.so"));
    folder.text(QStringLiteral("4.so"));
    folder.copy("testcollector", QStringLiteral("5.so"));

    const MessageLog log;
    const SocialPluginLoader loader(initNothing, {QStringLiteral("none")}, nullptr);
    QCOMPARE(loader.validPlugins(), QStringList({QStringLiteral("3"), QStringLiteral("5")}));
    QCOMPARE(log.critical().size(), 3);
    QVERIFY(log.critical().at(0).contains(folder.filePath(QStringLiteral("1.so"))));
    QVERIFY(log.critical().at(1).contains(QStringLiteral("WrongRoot")));
    QVERIFY(log.critical().at(2).contains(folder.filePath(QStringLiteral("4.so"))));
}

void PluginRefusalTest::excludedPluginIsSilentlyLeftOutButStaysInMemory()
{
    const PluginFolder folder;
    const QString path = folder.provider(QStringLiteral("alpha.so"));
    folder.provider(QStringLiteral("beta.so"));

    const MessageLog log;
    SocialPluginLoader loader({}, {alpha}, nullptr);
    QCOMPARE(loader.validPlugins(), QStringList(beta));
    QVERIFY(!loader.plugin(alpha));
    const QSignalSpy loaded(&loader, SIGNAL(pluginLoaded(QString)));
    const QSignalSpy finished(&loader, SIGNAL(pluginsLoaded()));
    const auto before = finished.count();
    QVERIFY(!loader.loadPlugin(path));
    QVERIFY(loader.loadPluginImpl(path).isNull());
    QCOMPARE(loaded.count(), 0);
    QCOMPARE(finished.count(), before);
    QCOMPARE(takeInitLog(), QStringList(beta));
    QCOMPARE(log.critical(), QStringList());

    QVERIFY(QPluginLoader(path).isLoaded());
    loader.unloadAllPlugins();
    QVERIFY(QPluginLoader(path).isLoaded());
    QVERIFY(!QPluginLoader(folder.filePath(QStringLiteral("beta.so"))).isLoaded());
}

void PluginRefusalTest::exclusionIsCaseSensitive()
{
    const PluginFolder folder;
    folder.providers({alpha});
    const SocialPluginLoader loader({}, {QStringLiteral("Alpha"), QStringLiteral("alph")}, nullptr);
    QCOMPARE(loader.validPlugins(), QStringList(alpha));
}

QTEST_GUILESS_MAIN(PluginRefusalTest)
#include "pluginrefusaltest.moc"
