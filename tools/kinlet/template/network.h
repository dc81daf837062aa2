// SPDX-FileCopyrightText: @YEAR@ The @NAME@ developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/SocialActivity>
#include <Kinlet/SocialNetworkPerson>
#include <Kinlet/SocialService>
#include <Kinlet/SocialServiceAccount>

#include <QList>

/// What the network holds. Everything comes with the id of its account, newest first.
namespace Network {

SocialService service();
QList<SocialServiceAccount> accounts();
QList<SocialNetworkPerson> persons();
QList<SocialActivity> activities();

}
