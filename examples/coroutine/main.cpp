// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Prints the newest status of all accounts, the comments on it, and who likes it.

#include <Kinlet/KinletManager>
#include <Kinlet/SocialGetActivitiesRequest>
#include <Kinlet/SocialGetLikersRequest>

#include <QCoroSignal>
#include <QCoroTask>

#include <QCoreApplication>
#include <QTextStream>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace {

// Kinlet gives up only after a minute.
constexpr std::chrono::seconds Patience(5);

// What a request has brought: values, which outlive it.
struct Answer {
    QList<SocialGenericData> records;
    QList<KinletError> errors;
    bool complete = false;
};

// What has come when everybody has answered, or when it has taken too long.
QCoro::Task<Answer> answerTo(std::unique_ptr<SocialDataRequest> given,
                             QList<SocialServiceAccount> accounts)
{
    // Taken over: a local variable goes before the one who waits for the answer goes on, and with
    // it a signal that is still on its way to here; a parameter would stay.
    const std::unique_ptr<SocialDataRequest> request = std::move(given);
    KinletManager::instance()->performRequest(request.get(), accounts);
    // Asked first: it may have ended before performRequest() returned, and does not tell twice.
    if (!request->isFinished())
        co_await qCoro(request.get(), &SocialDataRequest::finished, Patience);
    co_return Answer{request->results(), request->errors(), request->isFinished()};
}

// Whether that is all. What some providers have found stands beside the errors of the others.
bool print(const QString &title, const Answer &answer)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    for (const SocialGenericData &record : answer.records)
        out << title << (record.description().isEmpty() ? record.id() : record.description())
            << Qt::endl;
    for (const KinletError &error : answer.errors)
        err << title << "error " << error.type() << ": " << error.description() << Qt::endl;
    if (!answer.complete)
        err << title << "not everybody has answered" << Qt::endl;
    return answer.complete && answer.errors.isEmpty();
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
QCoro::Task<bool> printNewest()
{
    KinletManager *manager = KinletManager::instance();
    if (!manager->isInitialized())
        co_await qCoro(manager, &KinletManager::initialized, Patience);
    if (!manager->isInitialized()) {
        QTextStream(stderr) << "not everybody has started" << Qt::endl;
        co_return false;
    }

    auto request = std::make_unique<SocialGetActivitiesRequest>();
    request->setActivityFilter(SocialActivity::Status);
    request->setLimit(1);
    Answer answer = co_await answerTo(std::move(request), {});
    if (answer.records.isEmpty())
        co_return print(QString(), answer);
    const SocialGenericData newest = newestOf(answer.records);
    answer.records = {newest};
    const bool printed = print(QString(), answer);

    // Both questions at once, to the activity's own provider: a task begins when it is made.
    const QList<SocialServiceAccount> accounts{manager->account(newest.parentAccount())};
    auto comments = std::make_unique<SocialGetActivitiesRequest>();
    comments->setParentActivityIdFilter(newest.id());
    auto likers = std::make_unique<SocialGetLikersRequest>(newest.id());
    auto commentsAnswer = answerTo(std::move(comments), accounts);
    auto likersAnswer = answerTo(std::move(likers), accounts);
    const bool commentsPrinted = print(QStringLiteral("Comment: "), co_await commentsAnswer);
    const bool likersPrinted = print(QStringLiteral("Liked by: "), co_await likersAnswer);
    const bool allPrinted = printed && commentsPrinted && likersPrinted;
    co_return allPrinted;
}

}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    // Runs the event loop until then.
    return QCoro::waitFor(printNewest()) ? 0 : 1;
}
