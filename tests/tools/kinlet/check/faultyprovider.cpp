// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include <Kinlet/KinletError>
#include <Kinlet/KinletInterface>
#include <Kinlet/SocialGetActivitiesRequest>
#include <Kinlet/SocialGetLikersRequest>
#include <Kinlet/SocialLikeActivityRequest>
#include <Kinlet/SocialPostActivitiesRequest>

#include "../../../plugins/files/pluginname.h"

#include <QDateTime>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <QUuid>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <unistd.h>

/*
 * A provider that does everything right, but for what its file is named after: a copy called
 * greedy.so has the fault "greedy". The faults are where fault() is asked for.
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
    using Records = QList<SocialGenericData>;

    bool fault(const char *name) const { return file == QLatin1String(name); }
    void misbehaveAsked(const SocialDataRequest &request) const;
    bool refuses(SocialDataRequest *request) const;
    void answer(SocialDataRequest *request);
    void end(SocialDataRequest *request, const Records &results,
             const QList<KinletError> &errors = {});
    Records persons(const SocialDataRequest &request) const;
    Records activities(const SocialGetActivitiesRequest &request) const;
    Records ofAccounts(const Records &records, const SocialDataRequest &request) const;
    QString idOf(const QString &id) const;
    void answerLikers(SocialDataRequest *request);
    void answerLike(SocialLikeActivityRequest *request);

    const QString file = pluginName();
    bool initialised = false;
    QList<QPointer<SocialDataRequest>> open;
};

namespace {

constexpr int AnswerMilliseconds = 10;
constexpr int LaterMilliseconds = 50;
const QString FirstAccount = QStringLiteral("account:a");
const QString SecondAccount = QStringLiteral("account:b");

}

void FaultyProvider::init()
{
    // It must not get between what the check prints.
    std::puts("The provider says hello.");
    std::fflush(stdout);
    initialised = true;
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
    return named(QStringLiteral("faulty"));
}

QList<SocialService> FaultyProvider::services()
{
    SocialService service;
    service.setProperty(SocialService::Id,
                        fault("service-without-id") ? QString() : QStringLiteral("service"));
    return {service};
}

QList<SocialServiceAccount> FaultyProvider::accounts()
{
    if (fault("no-accounts"))
        return {};
    QList<SocialServiceAccount> all;
    for (const QString &id : {FirstAccount, SecondAccount}) {
        SocialServiceAccount account;
        account.setProperty(SocialServiceAccount::Id, id);
        account.setProperty(SocialServiceAccount::SocialServiceId,
                            fault("service-without-id") ? QString() : QStringLiteral("service"));
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
    if (refuses(request))
        return;
    if (request->type() <= SocialDataRequest::GetAccounts) {
        KinletInterface::performRequest(request);
        return;
    }
    if (fault("silent") && request->type() == SocialDataRequest::GetPersons)
        return;
    open.append(request);
    const QPointer<SocialDataRequest> held(request);
    QTimer::singleShot(AnswerMilliseconds, this, [this, held] {
        if (held && (open.removeOne(held) || fault("unstoppable")))
            answer(held);
    });
}

void FaultyProvider::misbehaveAsked(const SocialDataRequest &request) const
{
    if (fault("slow") && request.type() == SocialDataRequest::GetActivities)
        QThread::msleep(150);
    if (request.type() != SocialDataRequest::GetPersons)
        return;
    if (fault("crashes"))
        std::abort();
    if (fault("leaves"))
        std::_Exit(3);
    while (fault("hangs"))
        ::pause();
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

void FaultyProvider::cancelRequest(SocialDataRequest *request)
{
    if (fault("crashes-in-cancel"))
        std::abort();
    if (!fault("unstoppable"))
        open.removeOne(request);
    if (fault("clings-to-cancelled"))
        QTimer::singleShot(LaterMilliseconds, this, [request] { request->type(); });
    if (fault("progresses-when-cancelled"))
        request->setRequestProgress(SocialDataRequest::Progressing, {});
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
        static_cast<SocialPostActivitiesRequest *>(request)->postResult(!fault("cannot-post"));
    }
}

void FaultyProvider::end(SocialDataRequest *request, const Records &results,
                         const QList<KinletError> &errors)
{
    request->setResults(results);
    if (fault("stops") && request->type() == SocialDataRequest::GetPersons) {
        request->setRequestProgress(SocialDataRequest::Stopped, errors);
        return;
    }
    const QPointer<SocialDataRequest> held(request);
    request->setRequestProgress(SocialDataRequest::Finished, errors);
    if (held && fault("answers-twice"))
        request->setRequestProgress(SocialDataRequest::Finished, errors);
    if (held && fault("goes-on"))
        request->setRequestProgress(SocialDataRequest::Progressing, errors);
    if (fault("clings-to-finished"))
        QTimer::singleShot(LaterMilliseconds, this, [request] { request->type(); });
}

QString FaultyProvider::idOf(const QString &id) const
{
    if (fault("random-ids"))
        return QUuid::createUuid().toString();
    return fault("same-ids") ? QStringLiteral("same") : id;
}

FaultyProvider::Records FaultyProvider::ofAccounts(const Records &records,
                                                   const SocialDataRequest &request) const
{
    const QStringList accounts = request.performOnAccountsFilter();
    Records wanted;
    for (const SocialGenericData &record : records) {
        if (accounts.isEmpty() || fault("unfiltered") || accounts.contains(record.parentAccount()))
            wanted.append(record);
    }
    return wanted;
}

FaultyProvider::Records FaultyProvider::persons(const SocialDataRequest &request) const
{
    Records all;
    for (const QString &account : {FirstAccount, SecondAccount}) {
        SocialNetworkPerson person;
        person.setProperty(SocialNetworkPerson::Id, idOf(account + QStringLiteral(":person")));
        person.setParentAccount(account);
        all.append(person);
    }
    all = ofAccounts(all, request);
    if (fault("orphans"))
        all.first().removeProperty(SocialGenericData::ParentAccount);
    return all;
}

FaultyProvider::Records FaultyProvider::activities(const SocialGetActivitiesRequest &request) const
{
    Records all;
    const QDateTime noon({2026, 1, 1}, {12, 0}, Qt::UTC);
    for (int i = 0; i < 4; ++i) {
        const QDateTime time = noon.addSecs(-3600 * i);
        if ((!request.before().isNull() && time >= request.before() && !fault("ignores-before"))
            || (!request.after().isNull() && time <= request.after() && !fault("ignores-after")))
            continue;
        SocialActivity activity;
        activity.setProperty(SocialActivity::Id, idOf(QStringLiteral("activity:%1").arg(i)));
        activity.setProperty(SocialActivity::StartTime, time);
        activity.setParentAccount(i % 2 == 0 ? FirstAccount : SecondAccount);
        all.append(activity);
    }
    all = ofAccounts(all, request);
    if (fault("unnamed-records") && !all.isEmpty())
        all.first().removeProperty(SocialGenericData::Id);
    if (fault("oldest-first"))
        std::reverse(all.begin(), all.end());
    return fault("greedy") ? all : all.mid(0, request.limit());
}

void FaultyProvider::answerLikers(SocialDataRequest *request)
{
    const QString why = fault("speechless") ? QString() : QStringLiteral("There is none such.");
    end(request, {}, {KinletError(KinletError::InvalidRequest, why)});
}

void FaultyProvider::answerLike(SocialLikeActivityRequest *request)
{
    request->likeResult(request->like() || !fault("keeps-likes"));
}

#include "faultyprovider.moc"
