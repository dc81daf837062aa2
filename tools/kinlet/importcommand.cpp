// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "commands.h"

#include "json.h"
#include "language.h"
#include "output.h"
#include "progress.h"
#include "session.h"
#include "text.h"

#include <Kinlet/KinletManager>

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QStandardPaths>
#include <QTimer>
#include <QUuid>

#include <optional>

namespace {

// The provider that keeps an archive, and the folder that it reads.
const QString localProvider = QStringLiteral("local");

QString importFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/kinlet/import");
}

struct Counts {
    int added = 0;
    int removed = 0;
    int merged = 0;
};

// A copy of the user's file on its way through the import folder.
class DroppedFile {
public:
    /// Copies the file into the folder. A null text, or what went wrong.
    QString drop(const QString &source, const QString &folder);

    /// Where the file is now: whoever takes it renames it, and only the system knows to what.
    QFileInfo place() const
    {
        return QFileInfo(
            QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(file.handle())));
    }

private:
    QFile file;
};

QString DroppedFile::drop(const QString &source, const QString &folder)
{
    QFile original(source);
    const QFileInfo info(source);
    if (info.isDir())
        return Tool::tr("is a folder");
    if (!original.open(QIODevice::ReadOnly))
        return original.errorString();
    if (!QDir().mkpath(folder))
        return Tool::tr("%1 cannot be made").arg(folder);
    // Files whose names begin with a dot are not read: this one is not complete yet.
    const QString hidden =
        QStringLiteral("%1/.%2").arg(folder, QUuid::createUuid().toString(QUuid::WithoutBraces));
    if (!original.copy(hidden))
        return original.errorString();
    file.setFileName(hidden);
    if (!file.open(QIODevice::ReadOnly)) {
        QFile::remove(hidden);
        return file.errorString();
    }
    QString stem = info.completeBaseName();
    while (stem.startsWith(QLatin1Char('.')))
        stem.remove(0, 1);
    if (stem.isEmpty())
        stem = QStringLiteral("import");
    const QString suffix = info.suffix().isEmpty() ? QString() : QLatin1Char('.') + info.suffix();
    QString name = folder + QLatin1Char('/') + stem + suffix;
    // Renaming never replaces another file.
    for (int i = 2; !QFile::rename(hidden, name); ++i) {
        if (!QFileInfo::exists(name)) {
            QFile::remove(hidden);
            return Tool::tr("%1 cannot be written").arg(name);
        }
        name = QStringLiteral("%1/%2-%3%4").arg(folder, stem, QString::number(i), suffix);
    }
    return QString();
}

// Follows the file until it has been read.
class Import {
public:
    Import(Session &session, const DroppedFile &file, const QString &folder)
        : session(session), file(file), folder(folder)
    {
        QObject::connect(session.manager(), &KinletManager::importStarted, &loop,
                         [this](const QString &service) {
                             if (service == localProvider)
                                 ++running;
                         });
        QObject::connect(
            session.manager(), &KinletManager::importEnded, &loop,
            [this](const QString &service, const QString &, int added, int removed, int merged) {
                if (service != localProvider)
                    return;
                --running;
                counts = Counts{added, removed, merged};
            });
    }

    /// Returns when the file is done with, when nobody has taken it in time, or when interrupted.
    void wait(int milliseconds)
    {
        const Progress progress(
            [this] { return Tool::tr("importing %1").arg(file.place().fileName()); });
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &loop, [this, milliseconds] {
            waited += 50;
            if (ended() || (!taken() && waited >= milliseconds))
                loop.quit();
        });
        look.start(50);
        if (!ended())
            session.run(loop, -1);
    }

    bool taken() const { return file.place().absolutePath() != folder; }
    bool succeeded() const { return isIn(QStringLiteral("done")); }
    bool failed() const { return isIn(QStringLiteral("failed")); }
    /// The numbers of this process; none if another program has read the file.
    std::optional<Counts> result() const { return counts; }

    QString reason() const
    {
        QFile text(reasonFile());
        return text.open(QIODevice::ReadOnly) ? QString::fromUtf8(text.readAll()).trimmed()
                                              : Tool::tr("no reason was given");
    }

private:
    QString reasonFile() const
    {
        return file.place().absoluteFilePath() + QStringLiteral(".reason.txt");
    }
    bool isIn(const QString &subfolder) const
    {
        return file.place().absolutePath() == folder + QLatin1Char('/') + subfolder;
    }
    // The end is told before or after the file has been moved; a reason may follow it.
    bool ended() const
    {
        return running <= 0 && (succeeded() || (failed() && QFileInfo::exists(reasonFile())));
    }

    Session &session;
    const DroppedFile &file;
    const QString folder;
    QEventLoop loop;
    std::optional<Counts> counts;
    int running = 0;
    int waited = 0;
};

void printResult(Context &context, const QString &source, const std::optional<Counts> &counts)
{
    if (context.line.json) {
        QJsonObject properties{{QStringLiteral("file"), source}};
        if (counts) {
            properties.insert(QStringLiteral("added"), counts->added);
            properties.insert(QStringLiteral("removed"), counts->removed);
            properties.insert(QStringLiteral("merged"), counts->merged);
        }
        context.out.line(jsonLine({{QStringLiteral("class"), QStringLiteral("Import")},
                                   {QStringLiteral("properties"), properties},
                                   {QStringLiteral("provider"), localProvider}}));
        return;
    }
    const QString file = isolated(oneLine(source));
    if (counts)
        context.out.line(Tool::tr("Imported %1: persons added %2, removed %3, merged %4.")
                             .arg(file, QString::number(counts->added),
                                  QString::number(counts->removed),
                                  QString::number(counts->merged)));
    else
        context.out.line(Tool::tr("Imported %1 by another program that is running.").arg(file));
}

}

ExitCode runImport(Context &context)
{
    if (!context.session.manager()->hasProvider(localProvider)) {
        context.report.note(Tool::tr(
            "archives are imported by the provider \"local\", which is not there; it is local.so "
            "in a folder of provider plug-ins (KINLET_PLUGIN_PATH or --plugin-path)"));
        return NoProvider;
    }
    const QString source = context.line.arguments.first();
    const QString folder = QDir::cleanPath(importFolder());
    DroppedFile file;
    const QString problem = file.drop(source, folder);
    if (!problem.isNull()) {
        context.report.failure(source + QStringLiteral(": ") + problem);
        return context.report.exitCode();
    }
    // Paths of the system have no symbolic links in them.
    Import import(context.session, file, QFileInfo(folder).canonicalFilePath());
    import.wait(context.line.waitMilliseconds);
    if (import.succeeded())
        printResult(context, source, import.result());
    else if (import.failed())
        context.report.failure(source + QStringLiteral(": ") + import.reason());
    else
        context.report.failure(
            source + QStringLiteral(": ")
            + (import.taken() ? Tool::tr("the import is not finished; it goes on when a program "
                                         "with the local provider runs")
                              : Tool::tr("not yet read; it waits in %1").arg(folder)));
    return context.report.exitCode();
}
