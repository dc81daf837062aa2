// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include <Kinlet/KinletManager>
#include <Kinlet/SocialGetActivitiesRequest>

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    SocialGetActivitiesRequest request;
    const auto print = [&] {
        QTextStream out(stdout);
        for (const SocialActivity &activity : request.activities())
            out << activity.description() << Qt::endl;
        application.exit(request.errors().isEmpty() ? 0 : 1);
    };
    // Queued, since an answer may come before the event loop runs.
    QObject::connect(&request, &SocialDataRequest::finished, &application, print,
                     Qt::QueuedConnection);
    KinletManager::instance()->performRequest(&request, {});
    return application.exec();
}
