// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "commands.h"
#include "json.h"
#include "language.h"
#include "output.h"
#include "table.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QLocale>
#include <QRegularExpression>
#include <QSaveFile>

namespace {

const QString templateFolder = QStringLiteral(":/template");
const QString placeMark = QStringLiteral("FILL IN: ");

// A place where the author has something to do.
struct Place {
    QString file;
    int line = 0;
    QString text;
};

// Why no provider can have the name; empty if one can.
QString nameMistake(const QString &name)
{
    // The name is part of the names of files, whose length is limited to 255.
    constexpr int longest = 200;
    static const QRegularExpression valid(QStringLiteral("\\A[A-Za-z_][A-Za-z0-9_]*\\z"));
    // The provider that comes with Kinlet, and what CMake and CTest call targets of their own.
    static const QRegularExpression taken(QStringLiteral(
        "\\A(local|all|clean|depend|help|install|package|package_source|preinstall|test|"
        "edit_cache|rebuild_cache|ALL_BUILD|INSTALL|PACKAGE|RUN_TESTS|ZERO_CHECK|"
        "NightlyMemoryCheck|(Continuous|Experimental|Nightly)"
        "(Start|Update|Configure|Build|Test|Coverage|MemCheck|Submit)?)\\z"));
    if (!valid.match(name).hasMatch() || name.size() > longest)
        return Tool::tr("\"%1\" cannot be the name of a provider: letters, digits and _ "
                        "only, no digit first, at most %2 of them")
            .arg(name)
            .arg(longest);
    if (taken.match(name).hasMatch())
        return Tool::tr("the name \"%1\" is taken").arg(name);
    return QString();
}

QString folderMistake(const QString &path)
{
    if (path.isEmpty())
        return Tool::tr("the folder has no name");
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink())
        return QString();
    if (!info.isDir())
        return Tool::tr("\"%1\" is not a folder").arg(path);
    const QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::System;
    if (!QDir(path).isEmpty(everything | QDir::NoDotAndDotDot))
        return Tool::tr("the folder \"%1\" is not empty").arg(path);
    return QString();
}

QString packageName(const QString &name)
{
    return QStringLiteral("kinlet-provider-")
        + name.toLower().replace(QLatin1Char('_'), QLatin1Char('-'));
}

QString filled(QString text, const QString &name)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    text.replace(QStringLiteral("@NAME@"), name);
    text.replace(QStringLiteral("@PACKAGE@"), packageName(name));
    text.replace(QStringLiteral("@YEAR@"), QString::number(now.date().year()));
    text.replace(QStringLiteral("@DATE@"),
                 QLocale::c().toString(now, QStringLiteral("ddd, dd MMM yyyy HH:mm:ss"))
                     + QStringLiteral(" +0000"));
    text.replace(QStringLiteral("@QTPACKAGE@"),
                 QT_VERSION_MAJOR == 6 ? QStringLiteral("qt6-base-dev")
                                       : QStringLiteral("qtbase5-dev"));
    return text;
}

QString readTemplate(const QString &file)
{
    QFile source(templateFolder + QLatin1Char('/') + file);
    if (!source.open(QIODevice::ReadOnly))
        qFatal("The template of %s is missing", qPrintable(file));
    return QString::fromUtf8(source.readAll());
}

QList<Place> placesIn(const QString &file, const QString &text)
{
    QList<Place> places;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        const auto mark = lines[i].indexOf(placeMark);
        if (mark < 0)
            continue;
        QString what = lines[i].mid(mark + placeMark.size());
        what.remove(QStringLiteral(" -->"));
        places.append({file, i + 1, what});
    }
    return places;
}

// Why the file cannot be written; empty if it has been.
QString write(const QString &path, const QString &text)
{
    if (!QDir().mkpath(QFileInfo(path).path()))
        return Tool::tr("the folder \"%1\" cannot be made").arg(QFileInfo(path).path());
    QSaveFile target(path);
    const QByteArray bytes = text.toUtf8();
    // By itself commit() does not tell that the last of it could not be written.
    if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size() || !target.flush()
        || !target.commit())
        return Tool::tr("\"%1\" cannot be written: %2").arg(path, target.errorString());
    // The only one that is run.
    const bool program = text.startsWith(QStringLiteral("#!"));
    if (program && !QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner))
        return Tool::tr("\"%1\" cannot be made a program").arg(path);
    return QString();
}

// Of these files nothing stays.
void takeBack(const QString &folder, const QStringList &files, bool wasThere)
{
    QDir dir(folder);
    for (const QString &file : files)
        dir.remove(file);
    for (const QString &file : files) {
        for (QString part = QFileInfo(file).path(); part != QLatin1String(".");
             part = QFileInfo(part).path())
            dir.rmdir(part);
    }
    if (!wasThere)
        QDir().rmdir(folder);
}

// The argument as a shell reads it.
QString quoted(QString argument)
{
    static const QRegularExpression plain(
        QStringLiteral("\\A[A-Za-z0-9_./+,@%][A-Za-z0-9_./+,@%-]*\\z"));
    if (plain.match(argument).hasMatch())
        return argument;
    argument.replace(QLatin1Char('\''), QStringLiteral("'\\''"));
    return QStringLiteral("-- '%1'").arg(argument);
}

QStringList templateFiles()
{
    QStringList files;
    QDirIterator it(templateFolder, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files.append(it.next().mid(templateFolder.size() + 1));
    files.sort();
    return files;
}

void print(Output &out, const CommandLine &line, const QList<Place> &places)
{
    if (line.json) {
        for (const Place &place : places)
            out.line(jsonLine({{QStringLiteral("class"), QStringLiteral("Place")},
                               {QStringLiteral("file"), place.file},
                               {QStringLiteral("line"), place.line},
                               {QStringLiteral("text"), place.text}}));
        return;
    }
    const QString folder = line.arguments[1];
    out.line(Tool::tr("The provider \"%1\" is in %2. It works, with sample data in place of "
                      "a network:")
                 .arg(line.arguments[0], folder));
    out.line();
    out.line(QStringLiteral("  cd %1").arg(quoted(folder)));
    out.line(QStringLiteral("  cmake -S . -B build && cmake --build build"));
    out.line(QStringLiteral("  ctest --test-dir build --output-on-failure"));
    out.line(QStringLiteral("  kinlet --plugin-path build timeline"));
    out.line();
    out.line(Tool::tr("The places to fill in (grep -rn \"FILL IN\"):"));
    out.line();
    Table table({Tool::tr("PLACE"), Tool::tr("WHAT")});
    for (const Place &place : places)
        table.addRow({QStringLiteral("%1:%2").arg(place.file).arg(place.line), place.text});
    table.print(out);
}

}

ExitCode runNewProvider(const CommandLine &line, Output &out, Report &report)
{
    const QString name = line.arguments[0];
    const QString folder = line.arguments[1];
    const QString mistake = nameMistake(name).isEmpty() ? folderMistake(folder) : nameMistake(name);
    if (!mistake.isEmpty()) {
        report.note(mistake);
        return WrongUse;
    }
    const bool wasThere = QFileInfo::exists(folder);
    QList<Place> places;
    const QStringList files = templateFiles();
    for (const QString &file : files) {
        const QString text = filled(readTemplate(file), name);
        const QString problem = write(QDir(folder).filePath(file), text);
        if (!problem.isEmpty()) {
            takeBack(folder, files, wasThere);
            report.failure(problem);
            return report.exitCode();
        }
        places += placesIn(file, text);
    }
    print(out, line, places);
    return Done;
}
