// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "importfolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
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

ImportFolder::~ImportFolder()
{
    release();
}

// A lock on the folder itself leaves nothing behind and needs no room on the disk.
bool ImportFolder::claim()
{
    if (claimed != -1)
        return true;
    claimed = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (flock(claimed, LOCK_EX | LOCK_NB) == -1 && errno == EWOULDBLOCK)
        release();
    return claimed != -1;
}

void ImportFolder::release()
{
    if (claimed != -1)
        close(claimed);
    claimed = -1;
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
    all.erase(std::remove_if(all.begin(), all.end(),
                             [this](const QString &name) {
                                 return left.contains(name) || unmovable.contains(name);
                             }),
              all.end());
    return all;
}

bool ImportFolder::moveToDone(const QString &name)
{
    return !moveTo(QStringLiteral("done"), name).isNull();
}

bool ImportFolder::moveToFailed(const QString &name, const QString &reason)
{
    const QString path = moveTo(QStringLiteral("failed"), name);
    QFile file(path + QStringLiteral(".reason.txt"));
    if (!path.isNull() && file.open(QFile::WriteOnly))
        file.write(reason.simplified().toUtf8() + '\n');
    return !path.isNull();
}

void ImportFolder::leave(const QString &name)
{
    left.insert(name);
}

void ImportFolder::takeBack()
{
    left.clear();
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
    unmovable.insert(name);
    return QString();
}
