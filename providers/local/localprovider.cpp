// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "localprovider.h"

#include "journal.h"

void LocalProvider::init() { }

QVariantMap LocalProvider::metaData()
{
    return {{QStringLiteral("name"), Journal::Id}};
}

QList<SocialService> LocalProvider::services()
{
    return {Journal::service()};
}

QList<SocialServiceAccount> LocalProvider::accounts()
{
    return {Journal::account()};
}
