// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "initlog.h"
#include "plugins/socialpluginloader.h"
#include "provider/kinletinterface.h"
#include "support/messagelog.h"
#include "support/pluginfolder.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <dirent.h>
#include <dlfcn.h>

namespace {

QStringList openedDirectories;

QString idOf(const QList<QVariant> &arguments)
{
    return arguments.first().toString();
}

}

// In place of the C library's function: notes which directories are listed.
extern "C" Q_DECL_EXPORT DIR *opendir(const char *name)
{
    using Function = DIR *(*)(const char *);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "opendir"));
    openedDirectories.append(QFile::decodeName(name));
    return real(name);
}

class PluginFilesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void entriesThatAreLoaded_data();
    void entriesThatAreLoaded();
    void linksCountAsWhatTheyPointTo();
    void filesLoadInNameOrderIgnoringCase();
    void pathIsOneDirectory_data();
    void pathIsOneDirectory();
    void pathIsReadOnceAndKept();
    void relativeDirectoryIsMadeAbsolute();
    void pathThatIsUnsetOrEmptyGivesTheDefault_data();
    void pathThatIsUnsetOrEmptyGivesTheDefault();
    void pathIsDecodedFromTheLocalEncoding();
    void missingDirectoryIsSilent();
    void idIsTheNameOfTheMetaData();
    void pluginWithoutNameHasTheEmptyId();
    void laterFileOfTheSameIdTakesThePlace();
    void validPluginsAreInKeyOrder();
};

void PluginFilesTest::entriesThatAreLoaded_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QStringList>("ids");
    const QStringList none;

    QTest::newRow("plug-in") << QStringLiteral("alpha.so") << QStringList(QStringLiteral("alpha"));
    QTest::newRow("capitals") << QStringLiteral("UP.SO") << QStringList(QStringLiteral("UP"));
    QTest::newRow("dots before the suffix")
        << QStringLiteral("a.b.so") << QStringList(QStringLiteral("a.b"));
    QTest::newRow("version after the suffix") << QStringLiteral("x.so.1") << none;
    QTest::newRow("other suffix") << QStringLiteral("alpha.dll") << none;
    QTest::newRow("suffix without a dot") << QStringLiteral("alphaso") << none;
    QTest::newRow("directory") << QStringLiteral("y.so/") << none;
    QTest::newRow("hidden") << QStringLiteral(".alpha.so") << none;
    QTest::newRow("in a directory") << QStringLiteral("sub/alpha.so") << none;
}

void PluginFilesTest::entriesThatAreLoaded()
{
    QFETCH(QString, entry);
    QFETCH(QStringList, ids);
    const PluginFolder folder;
    if (entry.endsWith(u'/'))
        QVERIFY(QDir().mkpath(folder.filePath(entry)));
    else
        folder.provider(entry);

    const MessageLog log;
    const SocialPluginLoader loader(initNothing, {}, nullptr);
    QCOMPARE(loader.validPlugins(), ids);
    QCOMPARE(log.critical(), QStringList());
}

void PluginFilesTest::linksCountAsWhatTheyPointTo()
{
    const PluginFolder elsewhere;
    const QString file = elsewhere.provider(QStringLiteral("alpha.so"));
    const PluginFolder folder;
    QVERIFY(QFile::link(file, folder.filePath(QStringLiteral("alpha.so"))));
    QVERIFY(QFile::link(elsewhere.path(), folder.filePath(QStringLiteral("directory.so"))));
    QVERIFY(QFile::link(elsewhere.filePath(QStringLiteral("nothing.so")),
                        folder.filePath(QStringLiteral("dangling.so"))));

    const MessageLog log;
    const SocialPluginLoader loader(initNothing, {}, nullptr);
    QCOMPARE(loader.validPlugins(), QStringList(alpha));
    QCOMPARE(log.critical(), QStringList());
}

void PluginFilesTest::filesLoadInNameOrderIgnoringCase()
{
    SocialPluginLoader loader(initNothing, {}, nullptr);
    const PluginFolder folder;
    folder.providers({QStringLiteral("Z"), QStringLiteral("b"), QStringLiteral("UP"),
                      QStringLiteral("a"), QStringLiteral("C")});
    const QSignalSpy loaded(&loader, SIGNAL(pluginLoaded(QString)));
    loader.loadPlugins(folder.path());
    QStringList order;
    for (const QList<QVariant> &arguments : loaded)
        order.append(idOf(arguments));
    QCOMPARE(order,
             QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("C"),
                          QStringLiteral("UP"), QStringLiteral("Z")}));
}

void PluginFilesTest::pathIsOneDirectory_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("ids");

    QTest::newRow("one") << QStringLiteral("one") << QStringList(QStringLiteral("first"));
    QTest::newRow("two joined by a colon") << QStringLiteral("one:%1/two") << QStringList();
    QTest::newRow("two joined by a semicolon") << QStringLiteral("one;%1/two") << QStringList();
    QTest::newRow("one with a colon in its name")
        << QStringLiteral("one:two") << QStringList(QStringLiteral("third"));
}

void PluginFilesTest::pathIsOneDirectory()
{
    QFETCH(QString, path);
    QFETCH(QStringList, ids);
    const PluginFolder folder;
    folder.provider(QStringLiteral("one/first.so"));
    folder.provider(QStringLiteral("two/second.so"));
    folder.provider(QStringLiteral("one:two/third.so"));
    if (path.contains(u'%'))
        path = path.arg(folder.path());
    qputenv("KINLET_PLUGIN_PATH", QFile::encodeName(folder.filePath(path)));

    const SocialPluginLoader loader(initNothing, {}, nullptr);
    QCOMPARE(loader.validPlugins(), ids);
}

void PluginFilesTest::pathIsReadOnceAndKept()
{
    const PluginFolder folder;
    folder.providers({alpha});
    SocialPluginLoader loader(initNothing, {}, nullptr);

    // The environment names this one from now on.
    const PluginFolder other;
    other.providers({beta});
    loader.loadPlugins(other.path());
    QCOMPARE(loader.validPlugins(), QStringList({alpha, beta}));

    folder.providers({omega});
    other.providers({QStringLiteral("delta")});
    loader.loadPlugins(QString());
    QCOMPARE(loader.validPlugins(), QStringList({alpha, beta, omega}));
}

void PluginFilesTest::relativeDirectoryIsMadeAbsolute()
{
    SocialPluginLoader loader(initNothing, {}, nullptr);
    const PluginFolder folder;
    folder.provider(QStringLiteral("sub/alpha.so"));
    folder.text(QStringLiteral("sub/text.so"));
    const QString before = QDir::currentPath();
    QDir::setCurrent(folder.path());
    const QString absolute = QDir::current().absoluteFilePath(QStringLiteral("sub/text.so"));
    const MessageLog log;
    loader.loadPlugins(QStringLiteral("sub"));
    QDir::setCurrent(before);
    QCOMPARE(loader.validPlugins(), QStringList(alpha));
    QCOMPARE(log.critical().size(), 1);
    QVERIFY(log.critical().at(0).contains(MessageLog::quoted(absolute)));
}

void PluginFilesTest::pathThatIsUnsetOrEmptyGivesTheDefault_data()
{
    QTest::addColumn<bool>("set");

    QTest::newRow("unset") << false;
    QTest::newRow("empty") << true;
}

void PluginFilesTest::pathThatIsUnsetOrEmptyGivesTheDefault()
{
    QFETCH(bool, set);
    const PluginFolder folder;
    folder.provider(QStringLiteral("here.so"));
    if (set)
        qputenv("KINLET_PLUGIN_PATH", "");
    else
        qunsetenv("KINLET_PLUGIN_PATH");

    const QString before = QDir::currentPath();
    QDir::setCurrent(folder.path());
    openedDirectories.clear();
    const SocialPluginLoader loader(initNothing, {}, nullptr);
    QDir::setCurrent(before);
    QCOMPARE(openedDirectories.size(), 1);
    QCOMPARE(QDir::cleanPath(openedDirectories.first()),
             QStringLiteral("/usr/lib/kinlet-1.0/plugins"));
    QVERIFY(!loader.validPlugins().contains(QStringLiteral("here")));
}

void PluginFilesTest::pathIsDecodedFromTheLocalEncoding()
{
    const PluginFolder folder;
    const QString name = QString::fromUtf8("plug-ins \xc3\xa4\xe6\x96\x87");
    folder.provider(name + QLatin1String("/alpha.so"));
    qputenv("KINLET_PLUGIN_PATH", folder.filePath(name).toUtf8());

    const SocialPluginLoader loader(initNothing, {}, nullptr);
    QCOMPARE(loader.validPlugins(), QStringList(QStringLiteral("alpha")));
}

void PluginFilesTest::missingDirectoryIsSilent()
{
    const PluginFolder folder;
    qputenv("KINLET_PLUGIN_PATH", QFile::encodeName(folder.filePath(QStringLiteral("missing"))));
    const MessageLog log;
    SocialPluginLoader loader({}, {}, nullptr);
    QCOMPARE(loader.validPlugins(), QStringList());

    const QSignalSpy finished(&loader, SIGNAL(pluginsLoaded()));
    const auto before = finished.count();
    loader.loadPlugins(folder.filePath(QStringLiteral("missing too")));
    QCOMPARE(finished.count(), before + 1);
    loader.loadPlugins(folder.text(QStringLiteral("file")));
    QCOMPARE(finished.count(), before + 2);
    QCOMPARE(log.critical(), QStringList());
}

void PluginFilesTest::idIsTheNameOfTheMetaData()
{
    const PluginFolder folder;
    folder.provider(QStringLiteral("file=alpha.so"));
    SocialPluginLoader loader({}, {}, nullptr);
    QCOMPARE(loader.validPlugins(), QStringList(QStringLiteral("alpha")));
    PersonCollectorInterface *plugin = loader.plugin(QStringLiteral("alpha"));
    QVERIFY(plugin);
    QCOMPARE(plugin->metaData().value(QStringLiteral("name")).toString(), QStringLiteral("alpha"));
}

void PluginFilesTest::pluginWithoutNameHasTheEmptyId()
{
    const PluginFolder folder;
    const QString path = folder.provider(QStringLiteral("nameless=.so"));
    qApp->setProperty("initLog", {});
    SocialPluginLoader loader({}, {}, nullptr);
    QCOMPARE(loader.validPlugins(), QStringList(QString()));
    QVERIFY(loader.plugin(QString()));
    QVERIFY(loader.kinletPlugin(QString()));
    loader.initPlugins();
    QVERIFY(!loader.initPlugin(QString()));
    QVERIFY(!loader.initPlugin(QStringLiteral("")));

    // Kept and announced, but not to be told from a failure.
    const QSignalSpy loaded(&loader, SIGNAL(pluginLoaded(QString)));
    const QSignalSpy finished(&loader, SIGNAL(pluginsLoaded()));
    const auto before = finished.count();
    QVERIFY(!loader.loadPlugin(path));
    QCOMPARE(loaded.count(), 1);
    QCOMPARE(finished.count(), before);
    QCOMPARE(qApp->property("initLog").toStringList(), QStringList());
}

void PluginFilesTest::laterFileOfTheSameIdTakesThePlace()
{
    SocialPluginLoader loader({}, {}, nullptr);
    const PluginFolder folder;
    folder.provider(QStringLiteral("b=twin.so"));
    folder.copy("testcollector", QStringLiteral("Z=twin.so"));

    QList<QPointer<QObject>> roots;
    connect(&loader, &SocialPluginLoader::pluginLoaded, this,
            [&](const QString &id) { roots.append(loader.plugin(id)); });
    const MessageLog log;
    loader.loadPlugins(folder.path());
    QCOMPARE(loader.validPlugins(), QStringList(QStringLiteral("twin")));
    QCOMPARE(roots.size(), 2);
    QVERIFY(roots.at(0) && roots.at(1) && roots.at(0) != roots.at(1));
    QCOMPARE(static_cast<QObject *>(loader.plugin(QStringLiteral("twin"))), roots.at(1).data());
    QCOMPARE(log.critical(), QStringList());

    loader.unloadAllPlugins();
    QVERIFY(!roots.at(0));
    QVERIFY(!roots.at(1));
}

void PluginFilesTest::validPluginsAreInKeyOrder()
{
    const PluginFolder folder;
    folder.providers({QStringLiteral("b"), QStringLiteral("Z"), QStringLiteral("a")});
    const SocialPluginLoader loader({}, {}, nullptr);
    QCOMPARE(loader.validPlugins(),
             QStringList({QStringLiteral("Z"), QStringLiteral("a"), QStringLiteral("b")}));
}

QTEST_GUILESS_MAIN(PluginFilesTest)
#include "pluginfilestest.moc"
