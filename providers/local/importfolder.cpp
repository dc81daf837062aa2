// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "importfolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

// Whether a program has the file open for writing, as one that copies it does until the end.
bool isBeingWritten(const QString &path)
{
    const int file = open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (file == -1)
        return false;
    // A lease for reading is refused while somebody writes. A writer who comes before it is given
    // back makes the system send a signal; the usual one would end the process, this one does
    // nothing.
    fcntl(file, F_SETSIG, SIGURG);
    const bool written = fcntl(file, F_SETLEASE, F_RDLCK) == -1 && errno == EAGAIN;
    close(file);
    return written;
}

// The path for a file in a folder; with a number before the extension if the name is taken.
QString freePath(const QDir &folder, const QString &name)
{
    const QFileInfo parts(name);
    const QString extension =
        parts.suffix().isEmpty() ? QString() : QLatin1Char('.') + parts.suffix();
    QString path = folder.filePath(name);
    for (int number = 2; QFileInfo::exists(path); ++number)
        path = folder.filePath(QStringLiteral("%1-%2%3").arg(parts.completeBaseName(),
                                                             QString::number(number), extension));
    return path;
}

}

ImportFolder::ImportFolder(const QString &path) : folder(path)
{
    QDir().mkpath(path);
}

bool ImportFolder::isEmpty() const
{
    return names().isEmpty();
}

QString ImportFolder::next() const
{
    const QStringList all = names();
    for (const QString &name : all) {
        if (!isBeingWritten(QDir(folder).filePath(name)))
            return name;
    }
    return QString();
}

QStringList ImportFolder::names() const
{
    QStringList all = QDir(folder).entryList(QDir::Files | QDir::NoSymLinks, QDir::Name);
    for (const QString &name : left)
        all.removeAll(name);
    return all;
}

void ImportFolder::moveToDone(const QString &name)
{
    moveTo(QStringLiteral("done"), name);
}

void ImportFolder::moveToFailed(const QString &name, const QString &reason)
{
    const QString path = moveTo(QStringLiteral("failed"), name);
    QFile file(path + QStringLiteral(".reason.txt"));
    if (!path.isNull() && file.open(QFile::WriteOnly))
        file.write(reason.simplified().toUtf8() + '\n');
}

void ImportFolder::leave(const QString &name)
{
    left.insert(name);
}

// Where the file is then; null if it could not be moved.
QString ImportFolder::moveTo(const QString &target, const QString &name)
{
    const QDir from(folder);
    from.mkdir(target);
    const QString path = freePath(from.filePath(target), name);
    if (QFile::rename(from.filePath(name), path))
        return path;
    // It must not be read again and again.
    leave(name);
    return QString();
}
