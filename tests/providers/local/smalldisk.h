// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "journalsandbox.h"

#include <QByteArray>
#include <QFile>
#include <QStorageInfo>

#include <cerrno>
#include <cstring>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

/// A disk of 16 MiB, mounted on a folder, that only this process sees.
class SmallDisk {
public:
    /// Before anything else in the process: from now on nobody else sees what it mounts. False if
    /// the system does not let it.
    static bool prepare()
    {
        const QByteArray user = QByteArray::number(getuid());
        const QByteArray group = QByteArray::number(getgid());
        if (unshare(CLONE_NEWNS) == -1) {
            // Who may not mount is the super-user of a world of its own.
            if (unshare(CLONE_NEWUSER | CLONE_NEWNS) == -1)
                return false;
            JournalSandbox::write(QStringLiteral("/proc/self/setgroups"), "deny");
            JournalSandbox::write(QStringLiteral("/proc/self/uid_map"), "0 " + user + " 1");
            JournalSandbox::write(QStringLiteral("/proc/self/gid_map"), "0 " + group + " 1");
        }
        return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    }

    explicit SmallDisk(const QString &folder)
        : folder(QFile::encodeName(folder)), filler(folder + QStringLiteral("/filler"))
    {
        change(0);
    }
    ~SmallDisk() { umount2(folder.constData(), MNT_DETACH); }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    /// Takes all the space but so many bytes.
    void fill(qint64 rest = 0)
    {
        QFile file(filler);
        if (!file.open(QFile::Append | QFile::Unbuffered))
            qFatal("Cannot write %s", qPrintable(filler));
        while (file.write(QByteArray(4096, 'x')) > 0) { }
        if (space() != 0 || !file.resize(file.size() - rest))
            qFatal("The disk is not full");
    }
    void free() { QFile::remove(filler); }
    qint64 space() const { return QStorageInfo(QFile::decodeName(folder)).bytesAvailable(); }
    /// Nothing on it may be open for writing.
    void setReadOnly(bool readOnly) { change(MS_REMOUNT | (readOnly ? MS_RDONLY : 0)); }

private:
    void change(unsigned long flags)
    {
        if (mount("none", folder.constData(), "tmpfs", flags, "size=16m") == -1)
            qFatal("Cannot mount: %s", strerror(errno));
    }

    const QByteArray folder;
    const QString filler;
};
