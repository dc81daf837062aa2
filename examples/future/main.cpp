// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Prints the newest status of all accounts, the comments on it, and who likes it.

#include <Kinlet/KinletManager>
#include <Kinlet/SocialGetActivitiesRequest>
#include <Kinlet/SocialGetLikersRequest>

#include <QCoreApplication>
#include <QFuture>
#include <QFutureWatcher>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace {

// Kinlet gives up only after a minute.
constexpr std::chrono::seconds Patience(5);

// What a request has brought: values, which outlive it.
struct Answer {
    QList<SocialGenericData> records;
    QList<KinletError> errors;
};

using Answers = QList<QFuture<Answer>>;

// The request is the parent's until it has ended. Should the parent go before, the future is
// canceled, and what was to follow does not.
QFuture<Answer> answerTo(SocialDataRequest *request, const QList<SocialServiceAccount> &accounts,
                         QObject *parent)
{
    request->setParent(parent);
    // Connected first: the request may end before performRequest() returns.
    auto ended = QtFuture::connect(request, &SocialDataRequest::finished);
    KinletManager::instance()->performRequest(request, accounts);
    return ended.then([](SocialDataRequest *request) {
        request->deleteLater();
        return Answer{request->results(), request->errors()};
    });
}

// Both questions at once, to the activity's own provider.
QFuture<Answers> commentsAndLikers(const SocialGenericData &activity, QObject *parent)
{
    const auto account = KinletManager::instance()->account(activity.parentAccount());
    auto *comments = new SocialGetActivitiesRequest;
    comments->setParentActivityIdFilter(activity.id());
    auto *likers = new SocialGetLikersRequest(activity.id());
    Answers answers{answerTo(comments, {account}, parent), answerTo(likers, {account}, parent)};
    return QtFuture::whenAll(answers.begin(), answers.end());
}

// Whether there were no errors. What some providers have found stands beside those of the others.
bool print(const QString &title, const Answer &answer)
{
    QTextStream out(stdout);
    for (const SocialGenericData &record : answer.records)
        out << title << (record.description().isEmpty() ? record.id() : record.description())
            << Qt::endl;
    for (const KinletError &error : answer.errors)
        QTextStream(stderr) << title << "error " << error.type() << ": " << error.description()
                            << Qt::endl;
    return answer.errors.isEmpty();
}

bool print(const QString &title, const QFuture<Answer> &answer)
{
    if (!answer.isCanceled())
        return print(title, answer.result());
    QTextStream(stderr) << title << "not everybody has answered" << Qt::endl;
    return false;
}

// Each provider has given its newest.
SocialGenericData newestOf(const QList<SocialGenericData> &activities)
{
    const auto isOlder = [](const SocialGenericData &a, const SocialGenericData &b) {
        return a.variantProperty(SocialActivity::StartTime).toDateTime()
            < b.variantProperty(SocialActivity::StartTime).toDateTime();
    };
    return *std::max_element(activities.begin(), activities.end(), isOlder);
}

// Whether everything has been printed.
QFuture<bool> printNewest(QObject *parent)
{
    const auto printAndAsk = [parent](const Answer &answer) {
        if (answer.records.isEmpty())
            return QtFuture::makeReadyFuture(print(QString(), answer));
        const SocialGenericData newest = newestOf(answer.records);
        const bool printed = print(QString(), Answer{{newest}, answer.errors});
        return commentsAndLikers(newest, parent).then([printed](const Answers &answers) {
            const bool comments = print(QStringLiteral("Comment: "), answers.at(0));
            const bool likers = print(QStringLiteral("Liked by: "), answers.at(1));
            return printed && comments && likers;
        });
    };
    auto *request = new SocialGetActivitiesRequest;
    request->setActivityFilter(SocialActivity::Status);
    request->setLimit(1);
    return answerTo(request, {}, parent).then(printAndAsk).unwrap().onCanceled([] {
        QTextStream(stderr) << "not everybody has answered" << Qt::endl;
        return false;
    });
}

}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    KinletManager *manager = KinletManager::instance();
    // Goes before the application does, and with it the requests that are still open.
    QObject parent;
    QFutureWatcher<bool> watcher;
    // Through the event loop, also if everything has ended before that runs.
    QObject::connect(&watcher, &QFutureWatcherBase::finished, &application,
                     [&] { QCoreApplication::exit(watcher.result() ? 0 : 1); });
    QTimer::singleShot(Patience, &application, [manager] {
        if (!manager->isInitialized())
            QTextStream(stderr) << "not everybody has started" << Qt::endl;
        QCoreApplication::exit(1);
    });

    const auto start = [&] { watcher.setFuture(printNewest(&parent)); };
    if (manager->isInitialized())
        start();
    else
        QObject::connect(manager, &KinletManager::initialized, &parent, start);
    return QCoreApplication::exec();
}
