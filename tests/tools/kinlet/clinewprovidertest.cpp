// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cli.h"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>

class CliNewProviderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void writesFilesAndTellsThePlaces();
    void emptyFolderIsTaken();
    void packageNameIsOneOfDebian();
    void badNames_data();
    void badNames();
    void foldersInUseAreLeftAlone_data();
    void foldersInUseAreLeftAlone();
    void folderNeedsAName();
    void failureIsTold();
    void failureLeavesNothing_data();
    void failureLeavesNothing();
    void printedCommandsFitTheFolder();

private:
    static Ended write(Cli &cli, const QString &name, const QString &folder);
    static QString contentOf(const QString &path);
};

Ended CliNewProviderTest::write(Cli &cli, const QString &name, const QString &folder)
{
    return cli.run({QStringLiteral("new-provider"), name, folder, QStringLiteral("--json")});
}

QString CliNewProviderTest::contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void CliNewProviderTest::writesFilesAndTellsThePlaces()
{
    Cli cli;
    const QDir folder(cli.path(QStringLiteral("some/where")));
    const Ended ended = write(cli, QStringLiteral("Elm_2"), folder.path());
    QCOMPARE(ended.err, QString());
    QCOMPARE(ended.code, 0);
    int marked = 0;
    QDirIterator it(folder.path(), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString content = contentOf(it.next());
        QVERIFY2(!content.contains(QRegularExpression(QStringLiteral("@[A-Z]+@"))),
                 qPrintable(content));
        marked += int(content.count(QStringLiteral("FILL IN: ")));
    }
    QVERIFY(marked > 5);
    QCOMPARE(int(ended.objects().size()), marked);
    for (const QJsonObject &place : ended.objects()) {
        const QString file = folder.filePath(place[QLatin1String("file")].toString());
        const QStringList lines = contentOf(file).split(QLatin1Char('\n'));
        const QString line = lines[place[QLatin1String("line")].toInt() - 1];
        const QString text = place[QLatin1String("text")].toString();
        QVERIFY(!text.isEmpty());
        QVERIFY2(line.contains(QStringLiteral("FILL IN: ") + text), qPrintable(line));
    }
    QVERIFY(contentOf(folder.filePath(QStringLiteral("CMakeLists.txt")))
                .contains(QStringLiteral("kinlet_add_provider(Elm_2\n")));
    QVERIFY(QFileInfo(folder.filePath(QStringLiteral("debian/rules"))).isExecutable());
}

void CliNewProviderTest::emptyFolderIsTaken()
{
    Cli cli;
    const QDir folder(cli.path(QStringLiteral("empty")));
    QVERIFY(folder.mkpath(QStringLiteral(".")));
    QCOMPARE(write(cli, QStringLiteral("elm"), folder.path()).code, 0);
    QVERIFY(folder.exists(QStringLiteral("provider.cpp")));
}

void CliNewProviderTest::packageNameIsOneOfDebian()
{
    Cli cli;
    const QDir folder(cli.path(QStringLiteral("elm")));
    QCOMPARE(write(cli, QStringLiteral("Elm_2"), folder.path()).code, 0);
    const QString changes = contentOf(folder.filePath(QStringLiteral("debian/changelog")));
    QVERIFY2(changes.startsWith(QStringLiteral("kinlet-provider-elm-2 (0.1.0) ")),
             qPrintable(changes));
}

void CliNewProviderTest::badNames_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"", "two words", "dash-ed", "dot.ted", "2elms", "\xc3\xbclme", "a/b", "elm\n", "@NAME@"})
        QTest::newRow(name) << QString::fromUtf8(name);
    QTest::newRow("too long") << QString(201, QLatin1Char('a'));
    QTest::newRow("of the local provider") << QStringLiteral("local");
    for (const char *target :
         {"test", "edit_cache", "rebuild_cache", "package_source", "Nightly", "Experimental",
          "Continuous", "NightlyMemoryCheck", "ExperimentalStart"})
        QTest::newRow(target) << QString::fromLatin1(target);
}

void CliNewProviderTest::badNames()
{
    QFETCH(QString, name);
    Cli cli;
    const QString folder = cli.path(QStringLiteral("elm"));
    const Ended ended = write(cli, name, folder);
    QCOMPARE(ended.code, 2);
    QVERIFY(ended.err.startsWith(QStringLiteral("kinlet: ")));
    QVERIFY(!QFileInfo::exists(folder));
}

void CliNewProviderTest::foldersInUseAreLeftAlone_data()
{
    QTest::addColumn<QString>("before");
    QTest::newRow("with a file") << QStringLiteral("mkdir elm; echo mine > elm/README.md; ");
    QTest::newRow("with a hidden file") << QStringLiteral("mkdir elm; touch elm/.mine; ");
    QTest::newRow("a file") << QStringLiteral("echo mine > elm; ");
    QTest::newRow("a link to nowhere") << QStringLiteral("ln -s nowhere elm; ");
}

void CliNewProviderTest::foldersInUseAreLeftAlone()
{
    QFETCH(QString, before);
    Cli cli;
    QVERIFY(QDir::setCurrent(cli.path(QString())));
    const Ended ended = cli.runInShell(
        {QStringLiteral("new-provider"), QStringLiteral("elm"), QStringLiteral("elm")}, QString(),
        before);
    QCOMPARE(ended.code, 2);
    QVERIFY(ended.err.contains(QStringLiteral("\"elm\"")));
    QVERIFY(!QFileInfo::exists(cli.path(QStringLiteral("elm/provider.cpp"))));
    QVERIFY(!QFileInfo::exists(cli.path(QStringLiteral("nowhere"))));
}

void CliNewProviderTest::folderNeedsAName()
{
    Cli cli;
    QVERIFY(QDir::setCurrent(cli.path(QString())));
    const Ended ended = write(cli, QStringLiteral("elm"), QString());
    QCOMPARE(ended.code, 2);
    QVERIFY(!QFileInfo::exists(cli.path(QStringLiteral("provider.cpp"))));
}

void CliNewProviderTest::failureIsTold()
{
    Cli cli;
    const Ended ended =
        write(cli, QStringLiteral("elm"), QStringLiteral("/proc/no-such-folder/elm"));
    QCOMPARE(ended.code, 1);
    QVERIFY2(ended.err.contains(QStringLiteral("cannot be made")), qPrintable(ended.err));
}

void CliNewProviderTest::failureLeavesNothing_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<bool>("stays");
    QTest::newRow("new folder") << QString() << false;
    QTest::newRow("empty folder") << QStringLiteral("mkdir elm; ") << true;
}

void CliNewProviderTest::failureLeavesNothing()
{
    QFETCH(QString, before);
    QFETCH(bool, stays);
    Cli cli;
    QVERIFY(QDir::setCurrent(cli.path(QString())));
    // Files of more than a kilobyte cannot be written, and there are smaller and larger ones.
    const Ended ended = cli.runInShell(
        {QStringLiteral("new-provider"), QStringLiteral("elm"), QStringLiteral("elm")}, QString(),
        before + QStringLiteral("trap '' XFSZ; ulimit -f 2; "));
    QCOMPARE(ended.code, 1);
    QVERIFY2(ended.err.contains(QStringLiteral("cannot be written")), qPrintable(ended.err));
    const QDir folder(cli.path(QStringLiteral("elm")));
    QCOMPARE(folder.exists(), stays);
    QCOMPARE(folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
}

void CliNewProviderTest::printedCommandsFitTheFolder()
{
    Cli cli;
    QVERIFY(QDir::setCurrent(cli.path(QString())));
    const QString folder = QStringLiteral("-it's two");
    const Ended ended = cli.run(
        {QStringLiteral("new-provider"), QStringLiteral("--"), QStringLiteral("elm"), folder});
    QCOMPARE(ended.code, 0);
    const QString command =
        ended.out.section(QStringLiteral("  cd "), 1).section(QLatin1Char('\n'), 0, 0);
    QProcess shell;
    shell.start(QStringLiteral("/bin/sh"),
                {QStringLiteral("-c"), QStringLiteral("cd %1 && pwd").arg(command)});
    const Ended there = Cli::end(shell);
    QVERIFY2(there.out.endsWith(folder + QLatin1Char('\n')), qPrintable(command));
}

QTEST_GUILESS_MAIN(CliNewProviderTest)
#include "clinewprovidertest.moc"
