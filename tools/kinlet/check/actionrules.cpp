// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/probe.h"
#include "check/rules.h"
#include "language.h"

#include <Kinlet/SocialActivity>
#include <Kinlet/SocialLikeActivityRequest>
#include <Kinlet/SocialPostActivitiesRequest>

#include <QDateTime>

namespace {

void requirePermission(const Probe &probe)
{
    if (!probe.settings.post)
        notChecked(Tool::tr("it changes what others see of the account: --post tries it"));
}

void requireSuccess(Probe &probe, Inquiry inquiry)
{
    const QString what = inquiry.what;
    const std::shared_ptr<Reports> reports = probe.ask(std::move(inquiry), Verdict::Broken).reports;
    for (const KinletError &error : std::as_const(reports->errors)) {
        if (error.type() == KinletError::UnsupportedRequest)
            notChecked(Tool::tr("it does not support it"));
        broken(Tool::tr("asked %1, it gave the error %2").arg(what, errorText(error)));
    }
}

void like(Probe &probe, const QString &id, const QString &account, bool wanted)
{
    const QString what =
        wanted ? Tool::tr("to like the newest activity") : Tool::tr("to take back the like");
    Inquiry asked = inquiry<SocialLikeActivityRequest>(what, id, wanted);
    asked.request->setPerformOnAccountsFilter({account});
    requireSuccess(probe, std::move(asked));
}

}

void checkPost(Probe &probe)
{
    requirePermission(probe);
    const QStringList accounts = probe.accountIds();
    if (accounts.isEmpty())
        notChecked(Tool::tr("it has no account"));
    const QString text = Tool::tr("A test by \"kinlet check\", %1: it can be deleted.")
                             .arg(QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    Inquiry asked =
        inquiry<SocialPostActivitiesRequest>(Tool::tr("to post"), SocialActivity::Status, text);
    asked.request->setPerformOnAccountsFilter({accounts.constFirst()});
    requireSuccess(probe, std::move(asked));
}

void checkLike(Probe &probe)
{
    requirePermission(probe);
    const QList<SocialGenericData> all = probe.activities(Tool::tr("for activities"));
    if (all.isEmpty())
        notChecked(Tool::tr("it gave no activities"));
    const SocialGenericData &newest = all.constFirst();
    // In the end everything is as it was.
    const bool liked = newest.variantProperty(SocialActivity::IsLikedByMe).toBool();
    like(probe, newest.id(), newest.parentAccount(), !liked);
    like(probe, newest.id(), newest.parentAccount(), liked);
}
