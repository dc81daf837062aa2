// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// An application that the tests start: what it does is its first argument, after "unprivileged" if
// file permissions are to hold for the super-user too, or "slow-disk" if what is written takes a
// while to reach the disk.

#include "database.h"
#include "manager/kinletmanager.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"
#include "store.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTextStream>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

bool slowDisk = false;

int reachDisk(long call, int file)
{
    if (slowDisk)
        usleep(500000);
    return int(syscall(call, file));
}

QTextStream out(stdout);

void say(const QString &line)
{
    out << line << '\n';
    out.flush();
}

// Prints each error; whether there was none.
bool perform(SocialDataRequest &request)
{
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    KinletManager::instance()->performRequest(&request, {});
    if (!request.isFinished() && !finished.wait(60000))
        say(QStringLiteral("no answer"));
    const QList<KinletError> errors = request.errors();
    for (const KinletError &error : errors)
        say(QStringLiteral("error %1 %2").arg(int(error.type())).arg(error.description()));
    return errors.isEmpty() && request.isFinished();
}

int post(int count, const QString &text)
{
    int failures = 0;
    for (int i = 0; i < count; ++i) {
        SocialPostActivitiesRequest request(SocialActivity::Status,
                                            QStringLiteral("%1 %2").arg(text).arg(i));
        failures += perform(request) ? 0 : 1;
    }
    return failures;
}

int like(const QString &activityId)
{
    SocialLikeActivityRequest request(activityId);
    return perform(request) ? 0 : 1;
}

bool setLiked(const QString &id, bool liked)
{
    SocialLikeActivityRequest request(id, liked);
    if (!perform(request))
        return false;
    say((liked ? QStringLiteral("liked ") : QStringLiteral("unliked ")) + id);
    return true;
}

// Posts without end. Of these statuses every second one is liked, and of those every second one is
// liked no more after that. Says each time what has been stored, and when something is imported.
int keepWriting(const QString &text)
{
    KinletManager *const manager = KinletManager::instance();
    QObject::connect(manager, &KinletManager::importStarted,
                     [] { say(QStringLiteral("importing")); });
    QObject::connect(manager, &KinletManager::importEnded, [] { say(QStringLiteral("imported")); });
    for (int i = 0;; ++i) {
        SocialPostActivitiesRequest status(SocialActivity::Status,
                                           QStringLiteral("%1-%2").arg(text).arg(i));
        if (!perform(status))
            return 1;
        const QString id = status.results().constFirst().id();
        say(QStringLiteral("stored %1 %2").arg(id, status.statusText()));
        if (i % 2 == 1 && !setLiked(id, true))
            return 1;
        if (i % 4 == 3 && !setLiked(id, false))
            return 1;
        // The import goes on meanwhile.
        QCoreApplication::processEvents();
    }
}

// One request of each kind that needs the store.
int tryEverything()
{
    SocialGetActivitiesRequest activities;
    SocialGetPersonsRequest persons;
    SocialPostActivitiesRequest status(SocialActivity::Status, QStringLiteral("text"));
    SocialLikeActivityRequest like(QStringLiteral("id"));
    int failures = 0;
    for (SocialDataRequest *request :
         std::initializer_list<SocialDataRequest *>{&activities, &persons, &status, &like})
        failures += perform(*request) ? 0 : 1;
    return failures;
}

int watch()
{
    KinletManager *const manager = KinletManager::instance();
    QObject::connect(
        manager, &KinletManager::dataUpdate,
        [](const QList<SocialGenericData> &data, const QList<QString> &properties) {
            for (const SocialGenericData &record : data)
                say(QStringLiteral("data %1 likes %2 properties %3")
                        .arg(record.description(), record.property(SocialActivity::LikeCount))
                        .arg(properties.size()));
        });
    QObject::connect(manager, &KinletManager::personsUpdate,
                     [](const QList<SocialNetworkPerson> &data) {
                         for (const SocialNetworkPerson &person : data)
                             say(QStringLiteral("person ") + person.id());
                     });
    QObject::connect(manager, &KinletManager::importStarted,
                     [] { say(QStringLiteral("started")); });
    QObject::connect(manager, &KinletManager::importEnded,
                     [](const QString &, const QString &, int added, int removed, int merged) {
                         say(QStringLiteral("ended %1 %2 %3").arg(added).arg(removed).arg(merged));
                     });
    QObject::connect(manager->provider(QStringLiteral("local")).data(), &KinletInterface::error,
                     [](const QString &, const QString &, const QString &message) {
                         say(QStringLiteral("problem ") + message);
                     });
    say(QStringLiteral("ready"));
    return QCoreApplication::exec();
}

// Writes until standard input ends.
int hold(const QString &path)
{
    Database database(path);
    const Transaction transaction(database, Transaction::Soon);
    say(QStringLiteral("ready"));
    QTextStream(stdin).readAll();
    return 0;
}

void giveUpPrivileges()
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct none[2]{};
    syscall(SYS_capset, &header, none);
}

}

// These stand in the way of the C library's, which SQLite calls.
extern "C" Q_DECL_EXPORT int fsync(int file)
{
    return reachDisk(SYS_fsync, file);
}

extern "C" Q_DECL_EXPORT int fdatasync(int file)
{
    return reachDisk(SYS_fdatasync, file);
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QStringList arguments = application.arguments();
    if (arguments.value(1) == QLatin1String("unprivileged")) {
        giveUpPrivileges();
        arguments.removeAt(1);
    } else if (arguments.value(1) == QLatin1String("slow-disk")) {
        slowDisk = true;
        arguments.removeAt(1);
    }
    const QString what = arguments.value(1);
    if (what == QLatin1String("hold"))
        return hold(arguments.value(2));
    KinletManager *const manager = KinletManager::instance();
    if (!manager->isInitialized())
        return 99;
    if (what == QLatin1String("post"))
        return post(arguments.value(2).toInt(), arguments.value(3));
    if (what == QLatin1String("keep-writing"))
        return keepWriting(arguments.value(2));
    if (what == QLatin1String("like"))
        return like(arguments.value(2));
    if (what == QLatin1String("watch"))
        return watch();
    return tryEverything();
}
