// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/SocialDataRequest>
#include <Kinlet/SocialGetActivitiesRequest>

#include <QDeadlineTimer>

#include <functional>
#include <memory>

/// The kinds of requests that every provider must answer, and that change nothing.
namespace Kind {
extern const QString Services;
extern const QString Accounts;
extern const QString Persons;
extern const QString Activities;
extern const QString Likers;
extern const QString Like;
QStringList all();
/// The kind in the words of the user.
QString text(const QString &kind);
}

/// What a provider has done with a request. It outlives the request.
struct Reports {
    QList<SocialDataRequest::Status> statuses;
    /// As they were at the first end.
    QList<SocialGenericData> results;
    QList<KinletError> errors;
    /// Until when it has to have ended.
    QDeadlineTimer due;
    /// Called at each end.
    std::function<void()> onEnd;

    bool ended() const;
};

/// A request that keeps a record of what is reported to it. Without Q_OBJECT, so that providers see
/// the class that it is made from.
template <typename Request>
class Watched : public Request {
public:
    template <typename... Arguments>
    explicit Watched(std::shared_ptr<Reports> reports, Arguments &&...arguments)
        : Request(std::forward<Arguments>(arguments)...), reports(std::move(reports))
    {
    }

    void setRequestProgress(SocialDataRequest::Status status,
                            const QList<KinletError> &errors) override
    {
        // This object may be gone after the signal.
        const std::shared_ptr<Reports> kept = reports;
        const bool first = !kept->ended();
        kept->statuses.append(status);
        if (first && kept->ended()) {
            kept->results = this->results();
            kept->errors = errors;
        }
        Request::setRequestProgress(status, errors);
        if (kept->ended() && kept->onEnd)
            kept->onEnd();
    }

private:
    const std::shared_ptr<Reports> reports;
};

/// A request that is to be performed.
struct Inquiry {
    /// What it is in words, after "asked".
    QString what;
    std::unique_ptr<SocialDataRequest> request;
    std::shared_ptr<Reports> reports;
};

template <typename Request, typename... Arguments>
Inquiry inquiry(const QString &what, Arguments &&...arguments)
{
    auto reports = std::make_shared<Reports>();
    auto request =
        std::make_unique<Watched<Request>>(reports, std::forward<Arguments>(arguments)...);
    return {what, std::move(request), reports};
}

/// The request of that kind as applications make it, without filters. Likes and likers are those of
/// an activity that does not exist.
Inquiry plainInquiry(const QString &kind);

/// A request that has been handed over.
struct Asked {
    QString what;
    SocialDataRequest *request = nullptr;
    std::shared_ptr<Reports> reports;
};

/// What is wrong with the status that it ended with; empty if nothing is.
QString statusMistake(const Asked &asked);
/// What was done to it after its end; empty if nothing was.
QString onceMistake(const Asked &asked);
