// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "kinletexport.h"
#include "provider/kinletinterface.h"
#include "records/typedrecords.h"

#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QStringList>

class KinletManagerPrivate;
class SocialDataRequest;

/**
 * The one object through which an application reaches its providers.
 *
 * At construction it finds the providers and asks each for its services and accounts. A request
 * made before isInitialized() may miss accounts that have not been reported yet.
 *
 * The environment decides where providers come from: a value of KINLET_USE_DBUS that contains the
 * character 0 loads plug-ins into this process, from KINLET_PLUGIN_PATH if that names a directory;
 * with any other value, and with none, providers are processes on the session bus.
 *
 * Everything happens on the thread that made the manager, driven by its event loop.
 */
class KINLET_EXPORT KinletManager : public QObject {
    Q_OBJECT

public:
    /// The manager, made at the first call with the application object as parent. Also while the
    /// manager is being built, to a provider that asks for it. Not to be called first from two
    /// threads at once.
    static KinletManager *instance();
    /// Ends the manager; harmless when there is none. The next instance() makes a new one. The only
    /// sanctioned way: once the manager has ended otherwise, with the application object for one,
    /// instance() returns a dangling pointer. May be called from a slot on one of the manager's
    /// signals, but not while the manager is being built.
    static void cleanupInstance();

    /// For tests: a manager beside instance(). Providers and registry are its own, but requests go
    /// to the providers of instance() whichever manager performs them. KinletInitializer::init() is
    /// to be called before.
    explicit KinletManager(QObject *parent);
    ~KinletManager() override;

    /// Whether start-up is complete. Ask before waiting for initialized(), which is not emitted
    /// when start-up was complete as soon as the manager was made: without providers, or when all
    /// answered at once.
    bool isInitialized() const;

    /// The provider of that name, or a null handle.
    QSharedPointer<KinletInterface> provider(const QString &name) const;
    /// Whether there is a provider of that name.
    bool hasProvider(const QString &name) const;
    /// In no particular order.
    QList<QString> allProviderNames() const;
    /// In no particular order.
    QList<QSharedPointer<KinletInterface>> allProviders() const;

    /**
     * Registers a provider under the "name" of its metaData() and asks it for services and
     * accounts, as for those that the manager finds itself. Its init() is not called, neither now
     * nor after error(): that is for whoever made it. False, without any effect, if the
     * handle is null or the name is taken. The manager shares ownership until the provider goes;
     * give the handle a deleter that calls deleteLater(), so that a provider never dies inside its
     * own signal.
     */
    bool addProvider(QSharedPointer<KinletInterface> provider);

    /**
     * Performs \a request on \a accounts, or on all providers if the list is empty.
     *
     * The request stays the caller's. It ends with SocialDataRequest::finished(), which may come
     * before this call returns. A provider that does not answer is given up after 60 seconds: the
     * request then ends with the others' results and an error of type KinletError::ProviderTimeout.
     * Accounts that no provider claims are left out; with no provider at all the request ends at
     * once, without results and without errors. So it does for an empty record, which account()
     * returns for an id that nobody has reported.
     *
     * Errors are those of the manager and of plug-ins in this process: providers on the bus report
     * none back.
     */
    void performRequest(SocialDataRequest *request, const QList<SocialServiceAccount> &accounts);

    /**
     * \name The registry
     *
     * Copies of what the providers have reported so far, each answer in place of an earlier one.
     * Nothing is merged: several providers may report one id. All lookups walk the providers in the
     * order of their names; within one, in the order of its answer. Ids are compared exactly. What
     * is not found is an empty record of its type, or a null text.
     * @{
     */

    /// Every service of every provider.
    QList<SocialService> services() const;
    /// The first service with that id.
    SocialService service(const QString &serviceId) const;
    /// The service whose id is the account's SocialServiceId.
    SocialService service(const SocialServiceAccount &account) const;
    /// Every account of every provider.
    QList<SocialServiceAccount> accounts() const;
    /// The first account with that id.
    SocialServiceAccount account(const QString &accountId) const;
    /// The accounts whose SocialServiceId is the service's id.
    QList<SocialServiceAccount> accounts(const SocialService &service) const;
    /// The name of the first provider that reported an account with that id.
    QString providerNameFromAccountId(const QString &accountId) const;
    /// The service of the account with that id.
    SocialService serviceFromAccountId(const QString &accountId) const;

    /** @} */

Q_SIGNALS:
    /// A provider has pushed persons; \a updatedProperties names what it says has changed in them.
    void personsUpdate(const QList<SocialNetworkPerson> &data,
                       const QList<QString> &updatedProperties);
    /// The same for records, unless they are account news: those are the signals below instead.
    void dataUpdate(const QList<SocialGenericData> &data, const QList<QString> &updatedProperties);
    /// A provider has reported that accounts are gone. Not emitted before isInitialized(). The
    /// accounts stay in the registry until their provider goes or answers again.
    void accountsRemoved(const QStringList &accountIds);
    /// A contacts import has begun; \a service and \a accountId are ids. Emitted at any time, also
    /// for accounts that are not in the registry; one that is has been replaced by the pushed
    /// record.
    void importStarted(const QString &service, const QString &accountId);
    /// A contacts import has ended, with numbers of contacts. Otherwise like importStarted().
    void importEnded(const QString &service, const QString &accountId, int contactsAdded,
                     int contactsRemoved, int contactsMerged);
    /// The accounts answers of all providers present at construction have arrived. At most once.
    /// One that never answers keeps it from coming: start-up has no time limit.
    void initialized();

private Q_SLOTS:
    void onPluginLoaded(const QString &pluginId);
    void onPluginRemoved(const QString &name);
    void onGetServicesFinished(SocialDataRequest *request);
    void onGetAccountsFinished(SocialDataRequest *request);
    void onDataUpdate(const QList<SocialGenericData> &data,
                      const QList<QString> &updatedProperties);
    // Spelled so on purpose: it is reached by this name. Ends start-up without the providers that
    // have not answered: they are dropped.
    void onInitalized();

private:
    KinletManager(QObject *parent, KinletManager **self);
    void accountStateUpdate(const QString &providerName, const QList<SocialGenericData> &data);
    void importProgressUpdate(const QString &providerName, const QList<SocialGenericData> &data);

    static KinletManager *instance_;
    // A plain pointer: slots still reach it while it is being deleted.
    KinletManagerPrivate *const d;
};
