// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "manager/kinletmanager.h"

#include "dbus/socialdbuspluginrepository.h"
#include "logging.h"
#include "manager/kinletmanager_p.h"
#include "plugins/socialpluginloader.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"

#include <QCoreApplication>
#include <QPointer>

namespace {

const QString nameKey = QStringLiteral("name");

SocialPluginRepository *createRepository()
{
    // Any value with a 0 in it, 10 too, switches the bus off.
    const bool inProcess = qgetenv("KINLET_USE_DBUS").contains('0');
    qCDebug(Log::manager) << "Providers are"
                          << (inProcess ? "plug-ins in this process"
                                        : "runners on the session bus");
    if (inProcess)
        return SocialPluginLoader::createClassLoader();
    return new SocialDBusPluginRepository(nullptr);
}

// A handle may outlive its provider, which unloading the plug-in deletes: then there is nothing
// left to do.
QSharedPointer<KinletInterface> sharedHandle(KinletInterface *provider)
{
    if (!provider)
        return {};
    return QSharedPointer<KinletInterface>(
        provider, [guard = QPointer<QObject>(provider)](KinletInterface *) {
            if (guard)
                guard->deleteLater();
        });
}

}

QString providerName(KinletInterface *provider)
{
    return provider->metaData().value(nameKey).toString();
}

KinletManagerPrivate::~KinletManagerPrivate()
{
    providers.clear();
    delete pluginRepository;
}

QSharedPointer<KinletInterface> KinletManagerPrivate::pluginHandle(const QString &id) const
{
    KinletInterface *const plugin = pluginRepository->kinletPlugin(id);
    if (!plugin)
        qCInfo(Log::manager) << "The plug-in" << id << "is no provider";
    // One that is registered already must not get a second owner.
    for (const auto &registered : providers) {
        if (registered == plugin)
            return registered;
    }
    return sharedHandle(plugin);
}

KinletManager *KinletManager::instance_ = nullptr;

KinletManager *KinletManager::instance()
{
    if (!instance_) {
        KinletInitializer::init();
        new KinletManager(QCoreApplication::instance(), &instance_);
    }
    return instance_;
}

void KinletManager::cleanupInstance()
{
    delete instance_;
    instance_ = nullptr;
}

KinletManager::KinletManager(QObject *parent) : KinletManager(parent, nullptr) { }

// Sets *self first: a plug-in that asks for the instance while it is being loaded gets this one.
KinletManager::KinletManager(QObject *parent, KinletManager **self)
    : QObject(parent), d(new KinletManagerPrivate)
{
    if (self)
        *self = this;
    d->pluginRepository = createRepository();
    connect(d->pluginRepository, SIGNAL(pluginLoaded(QString)), this,
            SLOT(onPluginLoaded(QString)));
    connect(d->pluginRepository, SIGNAL(pluginRemoved(QString)), this,
            SLOT(onPluginRemoved(QString)));

    const QStringList ids = d->pluginRepository->validPlugins();
    bool ready = ids.isEmpty();
    for (const QString &id : ids) {
        const auto provider = d->pluginHandle(id);
        if (!provider)
            continue;
        // Before it is asked: it may answer at once.
        const QString name = providerName(provider.data());
        d->pendingProviders.append(name);
        if (addProvider(provider))
            ready = true;
        else
            d->pendingProviders.removeOne(name);
    }
    d->collecting = false;
    // Not emitted: nobody is connected yet. If there were plug-ins but no provider among them,
    // start-up is left to a provider that comes later.
    if (ready && d->pendingProviders.isEmpty()) {
        d->initializedFlag = true;
        qCDebug(Log::manager) << "Start-up is complete";
    } else {
        qCDebug(Log::manager) << "Start-up waits for the accounts of" << d->pendingProviders;
    }
}

// Deliberately leaves instance_ alone: only cleanupInstance() ends the singleton.
KinletManager::~KinletManager()
{
    delete d;
}

bool KinletManager::isInitialized() const
{
    return d->initializedFlag;
}

QSharedPointer<KinletInterface> KinletManager::provider(const QString &name) const
{
    return d->providers.value(name);
}

bool KinletManager::hasProvider(const QString &name) const
{
    return d->providers.contains(name);
}

QList<QString> KinletManager::allProviderNames() const
{
    return d->providers.keys();
}

QList<QSharedPointer<KinletInterface>> KinletManager::allProviders() const
{
    return d->providers.values();
}

bool KinletManager::addProvider(QSharedPointer<KinletInterface> provider)
{
    if (!provider)
        return false;
    const QString name = providerName(provider.data());
    if (d->providers.contains(name)) {
        qCWarning(Log::manager) << "There is a provider" << name << "already: another is refused";
        return false;
    }
    qCInfo(Log::manager) << "The provider" << name << "is added";
    connect(provider.data(), SIGNAL(personsUpdate(QList<SocialNetworkPerson>, QList<QString>)),
            this, SIGNAL(personsUpdate(QList<SocialNetworkPerson>, QList<QString>)),
            Qt::UniqueConnection);
    connect(provider.data(), SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)), this,
            SLOT(onDataUpdate(QList<SocialGenericData>, QList<QString>)), Qt::UniqueConnection);
    d->providers.insert(name, provider);

    // Asked directly, without the worker and thus without its time-out. Each call may end the
    // manager.
    const QPointer<KinletManager> self(this);
    const auto ask = [&](SocialDataRequest *request, const char *slot) {
        connect(request, SIGNAL(finished(SocialDataRequest *)), this, slot);
        d->initRequests.insert(request, name);
        provider->performRequest(request);
    };
    ask(new GetAggregatedServicesRequest, SLOT(onGetServicesFinished(SocialDataRequest *)));
    if (self)
        ask(new SocialGetAccountsRequest, SLOT(onGetAccountsFinished(SocialDataRequest *)));
    return true;
}

void KinletManager::performRequest(SocialDataRequest *request,
                                   const QList<SocialServiceAccount> &accounts)
{
    QStringList ids;
    for (const SocialServiceAccount &account : accounts)
        ids.append(account.id());
    request->setPerformOnAccountsFilter(ids);
    d->requestWorker.performRequest(request);
}

void KinletManager::onPluginLoaded(const QString &pluginId)
{
    addProvider(d->pluginHandle(pluginId));
}

// Deliberately without a look at what is still pending: a removal alone does not end start-up. Nor
// are its requests forgotten: a late answer still counts.
void KinletManager::onPluginRemoved(const QString &name)
{
    d->pendingProviders.removeAll(name);
    const QSharedPointer<KinletInterface> provider = d->providers.take(name);
    // From everybody, not from the manager only.
    if (provider) {
        qCInfo(Log::manager) << "The provider" << name << "is removed";
        QObject::disconnect(provider.data(), nullptr, nullptr, nullptr);
    }
    d->serviceCache.remove(name);
    d->accountCache.remove(name);
}

// Deliberately unlike a removal: whoever is dropped stays connected, and keeps its requests, whose
// answers do not count any more.
void KinletManager::onInitalized()
{
    if (isInitialized())
        return;
    const QStringList dropped = d->pendingProviders;
    for (const QString &name : dropped) {
        qCWarning(Log::manager) << "The provider" << name << "is dropped: its accounts are unknown";
        d->providers.remove(name);
        d->serviceCache.remove(name);
        d->accountCache.remove(name);
        d->pluginRepository->removePlugin(name);
        const QList<SocialDataRequest *> requests = d->initRequests.keys(name);
        for (SocialDataRequest *request : requests)
            d->initRequests.remove(request);
    }
    d->pendingProviders.clear();
    d->initializedFlag = true;
    Q_EMIT initialized();
}
