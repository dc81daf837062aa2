// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "manager/kinletmanager.h"
#include "manager/kinletmanager_p.h"

// An explicit instantiation may name a private member: so tests see inside the manager without a
// hook in it.

template <KinletManagerPrivate *const KinletManager::*member>
struct ManagerInternals {
    friend KinletManagerPrivate *internalsOf(const KinletManager *manager)
    {
        return manager->*member;
    }
};

KinletManagerPrivate *internalsOf(const KinletManager *manager);
template struct ManagerInternals<&KinletManager::d>;

inline KinletManager *manager()
{
    return KinletManager::instance();
}

inline SocialPluginRepository *repository()
{
    return internalsOf(manager())->pluginRepository;
}

/// Calls the slot that ends start-up.
inline bool forceInitialized(KinletManager *manager)
{
    return QMetaObject::invokeMethod(manager, "onInitalized", Qt::DirectConnection);
}
