// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "commands.h"
#include "session.h"

/// An activity, and where it was found.
struct Located {
    Target target;
    SocialGenericData activity;
};

/// Every account in which the activity is found; none after an interruption. Errors are reported
/// unless they only say that it is somewhere else, and so is that it was found nowhere.
QList<Located> locate(Context &context, const QString &activityId);

/// The one account in which the activity is found. Otherwise it is reported what is wrong, and \a
/// code is what to end with.
QList<Located> locateOne(Context &context, const QString &activityId, ExitCode &code);

/// The accounts, one a line, for somebody who has to choose.
void listChoice(Context &context, const QList<SocialServiceAccount> &accounts);
