// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include <Kinlet/KinletManager>
#include <Kinlet/SocialGetActivitiesRequest>
#include <Kinlet/SocialPostActivitiesRequest>
#include <Kinlet/TimelineRequestFactory>

#include <QCoreApplication>
#include <QDateTime>
#include <QTextStream>

#include <algorithm>

namespace {

void print(const QString &text)
{
    QTextStream(stdout) << text << Qt::endl;
}

void printErrors(const SocialDataRequest &request)
{
    const QList<KinletError> errors = request.errors();
    for (const KinletError &error : errors) {
        if (error.type() == KinletError::ProviderTimeout)
            print(QStringLiteral("Not everybody has answered."));
        else if (error.type() == KinletError::UnsupportedRequest)
            print(QStringLiteral("Somebody cannot do this."));
        else
            print(QStringLiteral("Error: ") + error.description());
    }
}

QList<SocialActivity> newestFirst(QList<SocialActivity> activities)
{
    const auto time = [](const SocialActivity &activity) {
        return activity.variantProperty(SocialActivity::StartTime).toDateTime();
    };
    std::stable_sort(activities.begin(), activities.end(),
                     [&](const auto &a, const auto &b) { return time(a) > time(b); });
    return activities;
}

/// Shows what there is each time a provider has answered.
class PatientRequest : public SocialGetActivitiesRequest {
public:
    void setRequestProgress(Status status, const QList<KinletError> &errors) override
    {
        if (status != Started)
            QTextStream(stderr) << "so far: " << results().size() << Qt::endl;
        // Last: who is told of the end may delete this.
        SocialGetActivitiesRequest::setRequestProgress(status, errors);
    }
};

}

class Application : public QObject {
public:
    void start();

private:
    void listAccounts();
    void post();
    void showTimeline();
    void showAll();
    void showNews(const QList<SocialGenericData> &records);
    void leave();

    int left = 2;
};

void Application::start()
{
    KinletManager *manager = KinletManager::instance();
    connect(manager, &KinletManager::dataUpdate, this, &Application::showNews);
    if (manager->isInitialized())
        listAccounts();
    else
        connect(manager, &KinletManager::initialized, this, &Application::listAccounts);
}

void Application::listAccounts()
{
    const KinletManager *manager = KinletManager::instance();
    const QList<SocialServiceAccount> accounts = manager->accounts();
    for (const SocialServiceAccount &account : accounts)
        print(account.id() + QStringLiteral(" on ") + manager->service(account).description());
    post();
}

void Application::post()
{
    KinletManager *manager = KinletManager::instance();
    const SocialServiceAccount account = manager->account(QStringLiteral("local"));
    if (account.id().isEmpty()) {
        print(QStringLiteral("There is no local journal to post to."));
        leave();
        showTimeline();
        return;
    }
    auto *request =
        new SocialPostActivitiesRequest(SocialActivity::Status, QStringLiteral("Good morning"));
    connect(request, &SocialDataRequest::finished, this, [this, request] {
        request->deleteLater();
        printErrors(*request);
        showTimeline();
    });
    manager->performRequest(request, {account});
}

void Application::showTimeline()
{
    SocialGetActivitiesRequest *request = TimelineRequestFactory::createHomepageTimelineRequest();
    request->setLimit(20);
    connect(request, &SocialDataRequest::finished, this, [this, request] {
        request->deleteLater();
        const QList<SocialActivity> activities = newestFirst(request->activities());
        for (const SocialActivity &activity : activities)
            print(activity.parentAccount() + QStringLiteral(": ") + activity.description());
        printErrors(*request);
        showAll();
    });
    KinletManager::instance()->performRequest(request, {});
}

void Application::showAll()
{
    auto *request = new PatientRequest;
    connect(request, &SocialDataRequest::finished, this, [this, request] {
        request->deleteLater();
        print(QStringLiteral("%1 activities").arg(request->activities().size()));
        leave();
    });
    KinletManager::instance()->performRequest(request, {});
}

void Application::showNews(const QList<SocialGenericData> &records)
{
    for (const SocialGenericData &record : records) {
        if (record.className() == SocialActivity::ClassName)
            print(QStringLiteral("New: ") + record.description());
    }
    leave();
}

// When everything has been shown and the news have come, whichever is later, or none will come.
void Application::leave()
{
    if (--left == 0)
        QCoreApplication::quit();
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    Application sample;
    // Once the event loop runs: an answer may come at once, and then ask it to end.
    QMetaObject::invokeMethod(
        &sample, [&sample] { sample.start(); }, Qt::QueuedConnection);
    return QCoreApplication::exec();
}
