// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

/**
 * The folder into which documents are dropped.
 *
 * A regular file whose name does not begin with a dot is to be read once, as soon as no program
 * writes to it. It then goes to done/, or to failed/ with the reason in a text file beside it. A
 * name that is taken there gets a number.
 */
class ImportFolder {
public:
    /// Makes the folder if need be.
    explicit ImportFolder(const QString &path);
    ~ImportFolder();
    ImportFolder(const ImportFolder &) = delete;
    ImportFolder &operator=(const ImportFolder &) = delete;

    QString path() const { return folder; }
    /// Whether it is this process that reads the files; of all processes only one does until it
    /// calls release() or ends, however it ends.
    bool claim();
    void release();
    /// Whether there is nothing to read, now or later.
    bool isEmpty() const;
    /// The name of the next file; null if there is none but such as are still being written.
    QString next() const;
    /// Moves a file that has been read. False if it could not be moved: it is passed over then.
    bool moveToDone(const QString &name);
    /// Moves a file that cannot be read; like moveToDone().
    bool moveToFailed(const QString &name, const QString &reason);
    /// Passes over a file until takeBack().
    void leave(const QString &name);
    void takeBack();

private:
    QStringList names() const;
    QString moveTo(const QString &target, const QString &name);

    const QString folder;
    QSet<QString> left;
    QSet<QString> unmovable;
    int claimed = -1;
};
