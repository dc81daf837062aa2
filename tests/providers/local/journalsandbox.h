// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "manager/kinletmanager.h"
#include "requests/socialdatarequest.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

/**
 * A person's data folder of its own, and the real plug-in file, for as long as it lives. The
 * manager and processes that are started find both through the environment.
 */
class JournalSandbox {
public:
    JournalSandbox()
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(dir.path()));
        qputenv("KINLET_PLUGIN_PATH", KINLET_LOCAL_PLUGIN_DIR);
        qputenv("KINLET_USE_DBUS", "0");
    }
    ~JournalSandbox() { KinletManager::cleanupInstance(); }
    JournalSandbox(const JournalSandbox &) = delete;
    JournalSandbox &operator=(const JournalSandbox &) = delete;

    QString dataHome() const { return dir.path(); }
    QString folder() const { return dir.filePath(QStringLiteral("kinlet")); }
    QString databasePath() const { return folder() + QStringLiteral("/local.db"); }
    QString importPath(const QString &name = QString()) const
    {
        return folder() + QStringLiteral("/import/") + name;
    }

    /// Drops a document as the import folder's users do.
    void drop(const QString &name, const QByteArray &content) const
    {
        QDir().mkpath(importPath());
        write(importPath(QLatin1Char('.') + name), content);
        if (!QFile::rename(importPath(QLatin1Char('.') + name), importPath(name)))
            qFatal("Cannot drop %s", qPrintable(name));
    }

    static void write(const QString &path, const QByteArray &content)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QFile::WriteOnly) || file.write(content) != content.size())
            qFatal("Cannot write %s", qPrintable(path));
    }
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    static QByteArray sample(const char *name)
    {
        const QByteArray content =
            read(QStringLiteral(KINLET_TEST_DATA "/archives/") + QLatin1String(name));
        if (content.isEmpty())
            qFatal("There is no sample %s", name);
        return content;
    }

private:
    const QTemporaryDir dir;
};

/// Performs the request through the manager; whether it has ended.
inline bool perform(SocialDataRequest &request, const QList<SocialServiceAccount> &accounts = {})
{
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    KinletManager::instance()->performRequest(&request, accounts);
    return request.isFinished() || finished.wait(20000);
}

/// Performs the request by the provider itself; whether it has ended.
inline bool performDirectly(SocialDataRequest &request)
{
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    KinletManager::instance()->provider(QStringLiteral("local"))->performRequest(&request);
    return request.isFinished() || finished.wait(20000);
}

inline QStringList idsOf(const QList<SocialGenericData> &records)
{
    QStringList ids;
    for (const SocialGenericData &record : records)
        ids.append(record.id());
    return ids;
}

inline QStringList textsOf(const QList<SocialGenericData> &records)
{
    QStringList texts;
    for (const SocialGenericData &record : records)
        texts.append(record.description());
    return texts;
}
