// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "initlog.h"
#include "plugins/socialpluginloader.h"
#include "provider/personcollectorinterface.h"
#include "support/categorylog.h"
#include "support/messagelog.h"
#include "support/pluginfolder.h"

#include <QTest>

namespace {

QString line(const char *level, const QString &path, const char *text)
{
    return QStringLiteral("kinlet.plugins.%1: %2 %3")
        .arg(QLatin1String(level), MessageLog::quoted(path), QLatin1String(text));
}

}

/// What is told of plug-in files.
class PluginLogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingIsToldUnlessAskedFor();
    void filesThatAreTakenAndRefused();
    void whatIsInitialisedAndUnloaded();
    void errors();
};

void PluginLogTest::nothingIsToldUnlessAskedFor()
{
    const PluginFolder folder;
    folder.text(QStringLiteral("bad.so"));
    folder.providers({alpha});
    const MessageLog messages;
    const CategoryLog log("");
    {
        SocialPluginLoader loader({}, {}, nullptr);
        QVERIFY(QMetaObject::invokeMethod(loader.plugin(alpha), "fail"));
    }
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(messages.critical().size(), 1);
}

void PluginLogTest::filesThatAreTakenAndRefused()
{
    const PluginFolder folder;
    const QString first = folder.provider(QStringLiteral("1renamed.so"));
    const QString excluded = folder.provider(QStringLiteral("2.so"));
    const QString text = folder.text(QStringLiteral("3.so"));
    const QString wrong = folder.copy("wrongroot", QStringLiteral("4.so"));
    const MessageLog messages;
    const CategoryLog log;
    SocialPluginLoader loader({QStringLiteral("1renamed")}, {QStringLiteral("2")}, nullptr);
    QCOMPARE(log.take(),
             QStringList({line("debug", folder.path(), "has 4 plug-in files")
                              .replace(QLatin1String(": "), QLatin1String(": The folder ")),
                          line("info", first, "is loaded: the plug-in \"1renamed\""),
                          line("info", excluded, "is refused: the plug-in \"2\" is excluded"),
                          line("warning", text, "is refused: it does not load"),
                          line("warning", wrong, "is refused: it holds a WrongRoot"),
                          QStringLiteral("kinlet.plugins.debug: The plug-in \"1renamed\" is "
                                         "initialised")}));
    // What is told as critical is told as before.
    QCOMPARE(messages.critical().size(), 2);
    QVERIFY(messages.critical().at(0).startsWith(QStringLiteral("Problem loading plugin:  ")
                                                 + MessageLog::quoted(text)));
    QVERIFY(messages.critical().at(1).startsWith(
        QStringLiteral("Unexpected class type from plugin:  type= WrongRoot : Error= ")));

    loader.loadPluginImpl(first);
    log.take();
    loader.loadPluginImpl(folder.copy("testprovider", QStringLiteral("sub/1renamed.so")));
    QVERIFY(log.has("kinlet.plugins.warning: There was another plug-in \"1renamed\" before"));
}

void PluginLogTest::whatIsInitialisedAndUnloaded()
{
    const PluginFolder folder;
    folder.providers({alpha, beta});
    const CategoryLog log("kinlet.plugins.debug=true");
    {
        const SocialPluginLoader loader({beta}, {}, nullptr);
        log.take();
    }
    QCOMPARE(log.take(), lines({"kinlet.plugins.debug: 2 plug-ins are unloaded"}));
}

void PluginLogTest::errors()
{
    const PluginFolder folder;
    folder.providers({alpha});
    SocialPluginLoader loader(initNothing, {}, nullptr);
    const CategoryLog log;
    Q_EMIT loader.plugin(alpha)->error(alpha, QStringLiteral("SECRET"), QStringLiteral("SECRET"));
    QCOMPARE(log.take(),
             lines({"kinlet.plugins.warning: The plug-in \"alpha\" reports an error and is "
                    "initialised again"}));
}

QTEST_GUILESS_MAIN(PluginLogTest)
#include "pluginlogtest.moc"
