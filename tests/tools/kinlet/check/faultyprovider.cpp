// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include <Kinlet/KinletError>
#include <Kinlet/KinletInterface>
#include <Kinlet/SocialGetActivitiesRequest>
#include <Kinlet/SocialGetLikersRequest>
#include <Kinlet/SocialLikeActivityRequest>
#include <Kinlet/SocialPostActivitiesRequest>

#include "faultycontent.h"

#include <QPointer>
#include <QThread>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

#include <unistd.h>

/*
 * A provider that does everything right, but for what its file is named after: a copy called
 * greedy.so has the fault "greedy". The faults are where fault() is asked for, and a few ways to be
 * right too.
 */
class FaultyProvider : public KinletInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0")
    Q_INTERFACES(KinletInterface)

public:
    ~FaultyProvider() override
    {
        if (fault("crashes-on-unload"))
            std::abort();
    }

    void init() override;
    QVariantMap metaData() override;
    QList<SocialService> services() override;
    QList<SocialServiceAccount> accounts() override;
    void performRequest(SocialDataRequest *request) override;
    void cancelRequest(SocialDataRequest *request) override;

private:
    void misbehaveAsked(const SocialDataRequest &request) const;
    bool refuses(SocialDataRequest *request) const;
    bool keepsSilent(const SocialDataRequest &request) const;
    bool canStop(SocialDataRequest *request) const;
    void misbehaveCancelled(SocialDataRequest *request);
    QString serviceId() const;
    void answer(SocialDataRequest *request);
    void end(SocialDataRequest *request, const Records &results,
             const QList<KinletError> &errors = {});
    void answerLikers(SocialDataRequest *request);
    void answerLike(SocialLikeActivityRequest *request);
    void answerPost(SocialPostActivitiesRequest *request);

    bool initialised = false;
    QList<QPointer<SocialDataRequest>> open;
    // The request that is being worked on.
    QPointer<SocialDataRequest> begun;
};

namespace {

constexpr int AnswerMilliseconds = 10;
constexpr int LaterMilliseconds = 50;
constexpr int LongMilliseconds = 400;
constexpr int PauseMilliseconds = 150;

bool isFresh(const SocialDataRequest &request)
{
    const auto *activities = qobject_cast<const SocialGetActivitiesRequest *>(&request);
    return activities && activities->forceRefresh();
}

}

void FaultyProvider::init()
{
    // It must not get between what the check prints.
    std::puts("The provider says hello.");
    std::fflush(stdout);
    initialised = true;
    if (fault("slow-to-start"))
        QThread::msleep(PauseMilliseconds);
    if (fault("foreign-error"))
        Q_EMIT error(QStringLiteral("somebody"), QStringLiteral("start"), QStringLiteral("No."));
    if (fault("crashes-in-init"))
        std::abort();
}

QVariantMap FaultyProvider::metaData()
{
    const auto named = [](const QVariant &name) {
        return QVariantMap{{QStringLiteral("name"), name}};
    };
    if (fault("nameless"))
        return {};
    if (fault("numbered"))
        return named(7);
    if (fault("unfit-name"))
        return named(QStringLiteral("unfit-name"));
    if (fault("renamed"))
        return named(initialised ? QStringLiteral("new") : QStringLiteral("old"));
    if (fault("name-in-bytes"))
        return named(QByteArray("faulty"));
    return named(QStringLiteral("faulty"));
}

QString FaultyProvider::serviceId() const
{
    if (fault("services-of-this-start"))
        return QStringLiteral("service:%1").arg(::getpid());
    return fault("service-without-id") ? QString() : QStringLiteral("service");
}

QList<SocialService> FaultyProvider::services()
{
    SocialService service;
    service.setProperty(SocialService::Id, serviceId());
    return {service};
}

QList<SocialServiceAccount> FaultyProvider::accounts()
{
    if (fault("no-accounts") || fault("records-without-accounts"))
        return {};
    QList<SocialServiceAccount> all;
    for (const QString &id : {FirstAccount, SecondAccount}) {
        SocialServiceAccount account;
        account.setProperty(SocialServiceAccount::Id, id);
        account.setProperty(SocialServiceAccount::SocialServiceId, serviceId());
        all.append(account);
    }
    if (fault("stray-account"))
        all[1].setProperty(SocialServiceAccount::SocialServiceId, QStringLiteral("elsewhere"));
    if (fault("one-account-twice"))
        all.append(all.constFirst());
    return all;
}

void FaultyProvider::performRequest(SocialDataRequest *request)
{
    misbehaveAsked(*request);
    if (refuses(request) || keepsSilent(*request))
        return;
    if (request->type() <= SocialDataRequest::GetAccounts) {
        KinletInterface::performRequest(request);
        return;
    }
    if (fault("unstoppable-persons") && request->type() == SocialDataRequest::GetActivities) {
        answer(request);
        return;
    }
    open.append(request);
    const QPointer<SocialDataRequest> held(request);
    QTimer::singleShot(0, this, [this, held] {
        if (held && open.contains(held))
            begun = held;
    });
    const bool lasts = fault("unstoppable-once-begun") && isFresh(*request);
    QTimer::singleShot(lasts ? LongMilliseconds : AnswerMilliseconds, this, [this, held] {
        if (held && open.removeOne(held))
            answer(held);
    });
}

void FaultyProvider::misbehaveAsked(const SocialDataRequest &request) const
{
    static bool first = true;
    if (request.type() == SocialDataRequest::GetActivities) {
        if (fault("slow") || (fault("slow-at-first") && first))
            QThread::msleep(PauseMilliseconds);
        first = false;
    }
    if (fault("crashes-and-leaves") && request.type() == SocialDataRequest::GetLikers)
        std::_Exit(3);
    if (request.type() != SocialDataRequest::GetPersons)
        return;
    if (fault("crashes") || fault("crashes-and-leaves"))
        std::abort();
    if (fault("leaves"))
        std::_Exit(3);
    while (fault("hangs"))
        ::pause();
}

bool FaultyProvider::keepsSilent(const SocialDataRequest &request) const
{
    switch (request.type()) {
    case SocialDataRequest::GetAccounts:
        return fault("silent-on-accounts");
    case SocialDataRequest::GetPersons:
        return fault("silent") || fault("silent-on-two");
    case SocialDataRequest::GetActivities:
        return fault("silent-on-activities") || (fault("silent-when-fresh") && isFresh(request))
            || (fault("one-at-a-time") && !open.isEmpty());
    case SocialDataRequest::GetLikers:
        return fault("silent-on-two");
    case SocialDataRequest::LikeActivity:
        return fault("silent-on-like");
    default:
        return false;
    }
}

// The faults of refusing.
bool FaultyProvider::refuses(SocialDataRequest *request) const
{
    const int type = request->type();
    if (fault("refuses-registry") && type == SocialDataRequest::GetAggregatedServices) {
        request->setRequestProgress(SocialDataRequest::Finished,
                                    {KinletError(KinletError::UnsupportedRequest)});
        return true;
    }
    if (type != SocialDataRequest::GenericRequest)
        return false;
    if (fault("accepts-anything"))
        request->setRequestProgress(SocialDataRequest::Finished, {});
    return fault("accepts-anything") || fault("ignores-unknown");
}

bool FaultyProvider::canStop(SocialDataRequest *request) const
{
    return !fault("unstoppable") && !(fault("unstoppable-once-begun") && begun == request)
        && !(fault("unstoppable-persons") && request->type() == SocialDataRequest::GetPersons);
}

void FaultyProvider::cancelRequest(SocialDataRequest *request)
{
    const bool wasOpen = canStop(request) && open.removeOne(request);
    misbehaveCancelled(request);
    if (wasOpen && fault("answers-in-cancel"))
        request->setRequestProgress(SocialDataRequest::Finished, {});
}

void FaultyProvider::misbehaveCancelled(SocialDataRequest *request)
{
    if (fault("crashes-in-cancel"))
        std::abort();
    if (fault("slow-to-cancel"))
        QThread::msleep(PauseMilliseconds);
    if (fault("clings-to-cancelled"))
        QTimer::singleShot(LaterMilliseconds, this, [request] { request->type(); });
    const QPointer<SocialDataRequest> held(request);
    if (fault("progresses-when-cancelled"))
        QTimer::singleShot(LaterMilliseconds, this, [held] {
            if (held)
                held->setRequestProgress(SocialDataRequest::Progressing, {});
        });
    if (fault("sets-results-when-cancelled"))
        QTimer::singleShot(LaterMilliseconds, this, [held] {
            if (held)
                held->setResults({SocialNetworkPerson()});
        });
}

void FaultyProvider::answer(SocialDataRequest *request)
{
    switch (request->type()) {
    case SocialDataRequest::GetPersons:
        end(request, persons(*request));
        break;
    case SocialDataRequest::GetActivities:
        end(request, activities(*static_cast<SocialGetActivitiesRequest *>(request)));
        break;
    case SocialDataRequest::GetLikers:
        answerLikers(request);
        break;
    case SocialDataRequest::LikeActivity:
        answerLike(static_cast<SocialLikeActivityRequest *>(request));
        break;
    default:
        answerPost(static_cast<SocialPostActivitiesRequest *>(request));
    }
}

void FaultyProvider::end(SocialDataRequest *request, const Records &results,
                         const QList<KinletError> &errors)
{
    const bool tooLate =
        fault("results-too-late") && request->type() == SocialDataRequest::GetPersons;
    if (!tooLate)
        request->setResults(results);
    if (fault("stops") && request->type() == SocialDataRequest::GetPersons) {
        request->setRequestProgress(SocialDataRequest::Stopped, errors);
        return;
    }
    const QPointer<SocialDataRequest> held(request);
    request->setRequestProgress(SocialDataRequest::Finished, errors);
    if (held && tooLate)
        request->setResults(results);
    if (held && fault("answers-twice"))
        request->setRequestProgress(SocialDataRequest::Finished, errors);
    if (held && fault("goes-on"))
        request->setRequestProgress(SocialDataRequest::Progressing, errors);
    if (fault("clings-to-finished"))
        QTimer::singleShot(LaterMilliseconds, this, [request] { request->type(); });
}

void FaultyProvider::answerLikers(SocialDataRequest *request)
{
    const QString why = fault("speechless") ? QString() : QStringLiteral("There is none such.");
    end(request, {}, {KinletError(KinletError::InvalidRequest, why)});
}

void FaultyProvider::answerLike(SocialLikeActivityRequest *request)
{
    const QString id = request->activityId();
    const bool known = fault("status-not-first") ? id == QLatin1String("activity:0")
                                                 : id.startsWith(QLatin1String("activity:"));
    request->likeResult(known && (request->like() || !fault("keeps-likes")));
}

void FaultyProvider::answerPost(SocialPostActivitiesRequest *request)
{
    const QPointer<SocialDataRequest> held(request);
    request->postResult(!fault("cannot-post"));
    if (held && fault("posts-twice-answered"))
        request->postResult(true);
}

#include "faultyprovider.moc"
