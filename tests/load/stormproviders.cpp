// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// The providers of the storm, what they are going to answer, and what the registry has to know.

#include "load/storm.h"
#include "load/stormprovider.h"
#include "support/scriptedprovider.h"

#include "manager/kinletmanager.h"

#include <utility>

namespace {

constexpr int Providers = 64;
constexpr int Accounts = 10000;

QString providerName(int number)
{
    return QStringLiteral("provider-%1").arg(number, 2, 10, QLatin1Char('0'));
}

QString accountId(int number)
{
    return QStringLiteral("account-%1").arg(number);
}

// All accounts in equal parts; the first of the next provider is claimed as well.
QStringList accountsOf(int provider)
{
    QStringList ids;
    for (int i = Accounts * provider / Providers; i <= Accounts * (provider + 1) / Providers; ++i)
        ids.append(accountId(i));
    return ids;
}

bool add(KinletInterface *provider)
{
    return KinletManager::instance()->addProvider(
        QSharedPointer<KinletInterface>(provider, &QObject::deleteLater));
}

QList<SocialGenericData> plain(const QList<SocialServiceAccount> &accounts)
{
    return QList<SocialGenericData>(accounts.begin(), accounts.end());
}

}

Storm::Storm(unsigned seed) : m_random(seed)
{
    for (int i = 0; i < Providers; ++i)
        addProvider(i);
}

QStringList Storm::newIds()
{
    QStringList ids;
    for (int i = below(4); i > 0; --i)
        ids.append(QString::number(++m_ids));
    return ids;
}

// Some that nobody has, and some twice.
QStringList Storm::someAccounts()
{
    QStringList ids;
    for (int i = below(4); i >= 0; --i)
        ids.append(oneIn(10) && !ids.isEmpty() ? ids.first() : accountId(below(Accounts + 200)));
    return ids;
}

// Errors of that kind of request.
QList<KinletError::Type> Storm::someErrors(int kind)
{
    if (!oneIn(4))
        return {};
    if (kind == SocialDataRequest::PostActivities)
        return {KinletError::PostFailed};
    if (kind == SocialDataRequest::LikeActivity)
        return {KinletError::LikeFailed};
    return oneIn(2)
        ? QList<KinletError::Type>{KinletError::NetworkFailed}
        : QList<KinletError::Type>{KinletError::InvalidRequest, KinletError::UnsupportedRequest};
}

std::deque<StormAnswer> Storm::makePlan(const StormModel::Job &job)
{
    std::deque<StormAnswer> plan;
    if (oneIn(4))
        plan.push_back({oneIn(2) ? SocialDataRequest::Started : SocialDataRequest::Progressing,
                        newIds(), someErrors(job->kind)});
    // Some requests have providers that never answer, or only stop.
    if (job->number % 16 == 0 && oneIn(3)) {
        count("copies never answered");
        if (oneIn(2))
            plan.push_back({SocialDataRequest::Stopped, newIds(), someErrors(job->kind)});
        return plan;
    }
    if (oneIn(20))
        plan.push_back({SocialDataRequest::Stopped, newIds(), someErrors(job->kind)});
    for (int times = oneIn(8) ? 2 : 1; times > 0; --times)
        plan.push_back({SocialDataRequest::Finished, newIds(), someErrors(job->kind)});
    return plan;
}

void Storm::addOrRemoveProvider()
{
    const int number = below(Providers);
    const QString name = providerName(number);
    if (!model.registered.contains(name)) {
        count("providers added");
        addProvider(number);
    } else if (oneIn(3)) {
        count("providers removed");
        ScriptedProvider::remove(name);
        model.providerRemoved(name);
        m_registered.remove(name);
    } else {
        // There is one of that name.
        model.check(!add(new StormProvider(*this, name, {})), "added though the name is taken");
    }
}

// A provider that comes again may have lost accounts.
void Storm::addProvider(int number)
{
    QStringList ids = accountsOf(number);
    if (oneIn(4))
        ids = ids.mid(0, below(int(ids.size())));
    auto *provider = new StormProvider(*this, providerName(number), ids);
    model.providerAdded(provider->name);
    m_registered.insert(provider->name, provider);
    m_registering = true;
    model.check(add(provider), "not added");
    m_registering = false;
}

// Accounts come at once or later.
void Storm::answerRegistry(StormProvider &provider, SocialDataRequest *request)
{
    const bool asksForAccounts = request->type() == SocialDataRequest::GetAccounts;
    if (asksForAccounts && oneIn(3)) {
        LateAccounts late{request, provider.name, provider.accountIds, {}};
        for (const SocialServiceAccount &account : provider.accounts())
            late.records.append(account);
        m_lateAccounts.push_back(late);
        return;
    }
    if (asksForAccounts)
        model.accountsAnswered(provider.name, provider.accountIds);
    provider.KinletInterface::performRequest(request);
}

// Of a provider that has been removed, too.
void Storm::answerLateAccounts()
{
    if (m_lateAccounts.empty())
        return;
    count("late accounts");
    const LateAccounts late = m_lateAccounts.front();
    m_lateAccounts.erase(m_lateAccounts.begin());
    model.accountsAnswered(late.provider, late.ids);
    late.request->setResults(late.records);
    late.request->setRequestProgress(SocialDataRequest::Finished, {});
}

void Storm::lookUp()
{
    count("look-ups");
    const KinletManager *manager = KinletManager::instance();
    const QString id = accountId(below(Accounts + 200));
    const QString owner = model.ownerOf(id);
    const bool isRegistered = model.registered.contains(owner);
    const QString service = isRegistered ? QStringLiteral("service-") + owner : QString();
    model.check(manager->providerNameFromAccountId(id) == owner, "another owner");
    model.check(manager->account(id).id() == (owner.isEmpty() ? QString() : id), "no such account");
    model.check(manager->serviceFromAccountId(id).id() == service, "another service");
    model.check(manager->services().size() == model.registered.size(), "other services");
    if (isRegistered)
        model.check(idsOf(plain(manager->accounts(manager->service(service))))
                        == model.accountsOf(owner),
                    "other accounts of a service");
    if (!oneIn(10))
        return;
    const QList<QString> names = manager->allProviderNames();
    model.check(QSet<QString>(names.begin(), names.end()) == model.registered, "other providers");
    model.check(idsOf(plain(manager->accounts())) == model.accounts(), "other accounts");
}

// Alive are those that are registered and those that requests hold which are kept for good.
void Storm::checkProviders()
{
    QSet<QObject *> held;
    for (QObject *provider : std::as_const(m_registered))
        held.insert(provider);
    for (const StormCopy &copy : m_kept)
        held.insert(copy.providerObject);
    model.check(StormProvider::alive == held, "other providers are alive");
}
