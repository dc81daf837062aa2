// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/SocialService>
#include <Kinlet/SocialServiceAccount>

/// What the journal is made of: its names, its one service and its one account.
namespace Journal {

/// Id of the provider, of its service and of its account.
extern const QString Id;
/// Id of the person who keeps the journal.
extern const QString Me;

/// The login user's full name, or the login name where the system knows no other.
QString fullName();

SocialService service();
/// The account as it is called in the journal.
SocialServiceAccount account(const QString &name);

}
