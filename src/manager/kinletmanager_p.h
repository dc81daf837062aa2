// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "plugins/socialpluginrepository.h"
#include "provider/kinletinterface.h"
#include "provider/socialrequestworker.h"
#include "records/typedrecords.h"

#include <QHash>
#include <QSharedPointer>
#include <QStringList>

class SocialDataRequest;

class KinletManagerPrivate {
public:
    ~KinletManagerPrivate();

    /// The repository's plug-in of that id as a provider; null if it is none.
    QSharedPointer<KinletInterface> pluginHandle(const QString &id) const;

    SocialPluginRepository *pluginRepository = nullptr;
    SocialRequestWorker requestWorker{nullptr};
    QHash<QString, QSharedPointer<KinletInterface>> providers;
    QHash<QString, QList<SocialService>> serviceCache;
    QHash<QString, QList<SocialServiceAccount>> accountCache;
    QStringList pendingProviders;
    QHash<SocialDataRequest *, QString> initRequests;
    bool initializedFlag = false;
    // While the providers of the repository are being added nobody can tell whether all have
    // answered.
    bool collecting = true;
};

/// The name under which a provider is registered.
QString providerName(KinletInterface *provider);
