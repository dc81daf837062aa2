// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cli.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <csignal>

namespace {

const QByteArray archive = json(R"({
    '@context': 'https://www.w3.org/ns/activitystreams',
    'type': 'OrderedCollection',
    'id': 'https://example.org/users/ada/outbox',
    'orderedItems': [
        {'type': 'Create', 'id': 'https://example.org/1/activity',
         'actor': 'https://example.org/users/ada', 'published': '2026-01-02T03:04:05Z',
         'object': {'type': 'Note', 'id': 'https://example.org/1',
                    'attributedTo': 'https://example.org/users/ada',
                    'published': '2026-01-02T03:04:05Z', 'content': '<p>Hello archive</p>'}}]
})");

QString written(const Cli &cli, const QString &name, const QByteArray &content)
{
    QFile file(cli.path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("Cannot write %s", qPrintable(name));
    return file.fileName();
}

QStringList importFiles(const Cli &cli, const QString &subfolder = QString())
{
    return QDir(cli.dataFolder() + QStringLiteral("/kinlet/import/") + subfolder)
        .entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

}

class CliImportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void goodFile();
    void sameNameTwice();
    void forPrograms();
    void badFile();
    void unreadable_data();
    void unreadable();
    void withoutTheLocalProvider();
    void hiddenName();
    void readByAnotherProgram();
    void nobodyReadsIt();
    void interrupted();
    void takenButNotFinished();
};

void CliImportTest::goodFile()
{
    Cli cli;
    cli.addLocal();
    const QString file = written(cli, QStringLiteral("outbox.json"), archive);
    const Ended ended = cli.run({QStringLiteral("import"), file});
    QCOMPARE(ended.err, QString());
    const QString begin = QStringLiteral("Imported %1: ").arg(file);
    QVERIFY2(ended.out.startsWith(begin), qPrintable(ended.out));
    static const QRegularExpression counts(
        QStringLiteral(": persons added \\d+, removed 0, merged \\d+\\.\n$"));
    QVERIFY2(ended.out.contains(counts), qPrintable(ended.out));
    QCOMPARE(ended.code, 0);
    QCOMPARE(importFiles(cli), QStringList());
    QCOMPARE(importFiles(cli, QStringLiteral("done")), QStringList(QStringLiteral("outbox.json")));
    QVERIFY(QFile::exists(file));

    const Ended timeline = cli.run({QStringLiteral("timeline")});
    QVERIFY2(timeline.out.contains(QStringLiteral("Hello archive")), qPrintable(timeline.out));
}

void CliImportTest::sameNameTwice()
{
    Cli cli;
    cli.addLocal();
    const QString file = written(cli, QStringLiteral("outbox.json"), archive);
    QCOMPARE(cli.run({QStringLiteral("import"), file}).code, 0);
    const Ended again = cli.run({QStringLiteral("import"), file});
    QVERIFY2(again.out.contains(QStringLiteral(": persons added 0, removed 0, ")),
             qPrintable(again.out));
    QCOMPARE(again.code, 0);
    // The first one's fate is not taken for the second's.
    const QString bad = written(cli, QStringLiteral("outbox.json"), "{");
    QCOMPARE(cli.run({QStringLiteral("import"), bad}).code, 1);
    QCOMPARE(importFiles(cli, QStringLiteral("done")).size(), 2);
}

void CliImportTest::forPrograms()
{
    Cli cli;
    cli.addLocal();
    const QString file = written(cli, QStringLiteral("a.json"), archive);
    const Ended ended = cli.run({QStringLiteral("import"), QStringLiteral("--json"), file});
    QCOMPARE(ended.objects().size(), 1);
    const QJsonObject object = ended.objects().first();
    QCOMPARE(object[QLatin1String("class")].toString(), QStringLiteral("Import"));
    QCOMPARE(object[QLatin1String("provider")].toString(), QStringLiteral("local"));
    const QJsonObject properties = object[QLatin1String("properties")].toObject();
    QCOMPARE(properties[QLatin1String("file")].toString(), file);
    for (const char *count : {"added", "removed", "merged"})
        QVERIFY(properties[QLatin1String(count)].isDouble());
}

void CliImportTest::badFile()
{
    Cli cli;
    cli.addLocal();
    const QString file = written(cli, QStringLiteral("broken.json"), "{\"type\": ");
    const Ended ended = cli.run({QStringLiteral("import"), file});
    QCOMPARE(ended.out, QString());
    const QString begin = QStringLiteral("kinlet: ") + file + QStringLiteral(": ");
    QVERIFY2(ended.err.startsWith(begin), qPrintable(ended.err));
    QVERIFY(!ended.err.contains(QStringLiteral("no reason was given")));
    QCOMPARE(ended.err.count(QLatin1Char('\n')), 1);
    QCOMPARE(ended.code, 1);
    QCOMPARE(
        importFiles(cli, QStringLiteral("failed")),
        QStringList({QStringLiteral("broken.json"), QStringLiteral("broken.json.reason.txt")}));
}

void CliImportTest::unreadable_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing") << QStringLiteral("missing.json")
                             << QStringLiteral("No such file or directory");
    QTest::newRow("folder") << QStringLiteral("plugins") << QStringLiteral("is a folder");
}

void CliImportTest::unreadable()
{
    Cli cli;
    cli.addLocal();
    QFETCH(QString, name);
    QFETCH(QString, reason);
    const Ended ended = cli.run({QStringLiteral("import"), cli.path(name)});
    QCOMPARE(ended.out, QString());
    QCOMPARE(ended.err, QStringLiteral("kinlet: %1: %2\n").arg(cli.path(name), reason));
    QCOMPARE(ended.code, 1);
    QCOMPARE(importFiles(cli), QStringList());
}

void CliImportTest::withoutTheLocalProvider()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"));
    const Ended ended =
        cli.run({QStringLiteral("import"), written(cli, QStringLiteral("a.json"), archive)});
    QVERIFY(ended.err.contains(QStringLiteral("local.so")));
    QVERIFY(ended.err.contains(QStringLiteral("--plugin-path")));
    QCOMPARE(ended.code, 3);
    QCOMPARE(importFiles(cli), QStringList());
}

void CliImportTest::hiddenName()
{
    Cli cli;
    cli.addLocal();
    const Ended ended =
        cli.run({QStringLiteral("import"), written(cli, QStringLiteral(".a.json"), archive)});
    QCOMPARE(ended.err, QString());
    QCOMPARE(ended.code, 0);
    QCOMPARE(importFiles(cli, QStringLiteral("done")), QStringList(QStringLiteral("a.json")));
}

void CliImportTest::readByAnotherProgram()
{
    Cli reader;
    reader.addLocal();
    QProcess watching;
    reader.start(watching, {QStringLiteral("watch")});
    watching.setReadChannel(QProcess::StandardError);
    QVERIFY(watching.waitForReadyRead(30000));

    // Its provider reads nothing.
    Cli cli;
    cli.environment.insert(QStringLiteral("XDG_DATA_HOME"), reader.dataFolder());
    cli.addProvider(QStringLiteral("local"));
    const QString good = written(cli, QStringLiteral("a.json"), archive);
    const Ended ended = cli.run({QStringLiteral("import"), good});
    QCOMPARE(ended.out,
             QStringLiteral("Imported %1 by another program that is running.\n").arg(good));
    QCOMPARE(ended.code, 0);
    const QString bad = written(cli, QStringLiteral("b.json"), "{");
    const Ended failed = cli.run({QStringLiteral("import"), bad});
    QVERIFY2(failed.err.startsWith(QStringLiteral("kinlet: %1: ").arg(bad)),
             qPrintable(failed.err));
    QCOMPARE(failed.code, 1);

    kill(pid_t(watching.processId()), SIGINT);
    QCOMPARE(Cli::end(watching).code, 0);
}

void CliImportTest::nobodyReadsIt()
{
    Cli cli;
    cli.addProvider(QStringLiteral("local"));
    const QString file = written(cli, QStringLiteral("a.json"), archive);
    const QString folder = cli.dataFolder() + QStringLiteral("/kinlet/import");
    const QStringList arguments{QStringLiteral("import"), file, QStringLiteral("--wait"),
                                QStringLiteral("0.3")};
    const Ended ended = cli.run(arguments);
    QCOMPARE(ended.err,
             QStringLiteral("kinlet: %1: not yet read; it waits in %2\n").arg(file, folder));
    QCOMPARE(ended.code, 1);
    // What waits is not replaced.
    QCOMPARE(cli.run(arguments).code, 1);
    QCOMPARE(importFiles(cli), QStringList({QStringLiteral("a-2.json"), QStringLiteral("a.json")}));
}

void CliImportTest::interrupted()
{
    Cli cli;
    cli.addProvider(QStringLiteral("local"));
    QProcess process;
    cli.start(process,
              {QStringLiteral("import"), QStringLiteral("--wait"), QStringLiteral("1000"),
               written(cli, QStringLiteral("a.json"), archive)});
    QTRY_COMPARE_WITH_TIMEOUT(importFiles(cli), QStringList(QStringLiteral("a.json")), 30000);
    kill(pid_t(process.processId()), SIGINT);
    QCOMPARE(Cli::end(process).code, 1);
}

void CliImportTest::takenButNotFinished()
{
    Cli cli;
    cli.addProvider(QStringLiteral("local"));
    QProcess process;
    cli.start(process,
              {QStringLiteral("import"), QStringLiteral("--wait"), QStringLiteral("3"),
               written(cli, QStringLiteral("a.json"), archive)});
    QTRY_COMPARE_WITH_TIMEOUT(importFiles(cli), QStringList(QStringLiteral("a.json")), 30000);
    QDir folder(cli.dataFolder() + QStringLiteral("/kinlet/import"));
    QVERIFY(folder.mkdir(QStringLiteral(".busy")));
    QVERIFY(folder.rename(QStringLiteral("a.json"), QStringLiteral(".busy/a.json")));
    // It waits for a file that is being read, however long that takes.
    QVERIFY(!process.waitForFinished(4500));
    kill(pid_t(process.processId()), SIGINT);
    const Ended ended = Cli::end(process);
    QVERIFY2(ended.err.contains(QStringLiteral("the import is not finished")),
             qPrintable(ended.err));
    QCOMPARE(ended.code, 1);
}

QTEST_GUILESS_MAIN(CliImportTest)
#include "cliimporttest.moc"
