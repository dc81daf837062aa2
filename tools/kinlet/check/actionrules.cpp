// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/probe.h"
#include "language.h"

#include <Kinlet/SocialActivity>
#include <Kinlet/SocialLikeActivityRequest>
#include <Kinlet/SocialPostActivitiesRequest>

#include <QDateTime>
#include <QElapsedTimer>

#include <algorithm>

namespace {

void requirePermission(const Probe &probe)
{
    if (!probe.settings.post)
        notChecked(Tool::tr("it changes what others see of the account: --post tries it"));
}

Asked askToChange(Probe &probe, Inquiry inquiry, const QString &account)
{
    inquiry.request->setPerformOnAccountsFilter({account});
    const Asked asked = probe.ask(std::move(inquiry), Verdict::Broken);
    for (const KinletError &error : std::as_const(asked.reports->errors)) {
        if (error.type() == KinletError::UnsupportedRequest)
            notChecked(Tool::tr("it does not support it"));
        broken(Tool::tr("asked %1, it gave the error %2").arg(asked.what, errorText(error)));
    }
    return asked;
}

Asked askToLike(Probe &probe, const SocialGenericData &activity, bool wanted)
{
    const QString what =
        wanted ? Tool::tr("to like the newest activity") : Tool::tr("to take back the like");
    return askToChange(probe, inquiry<SocialLikeActivityRequest>(what, activity.id(), wanted),
                       activity.parentAccount());
}

// Of the activities that users publish.
SocialGenericData newestStatus(Probe &probe)
{
    const auto time = [](const SocialGenericData &activity) {
        return activity.variantProperty(SocialActivity::StartTime).toDateTime();
    };
    const QList<SocialGenericData> all =
        probe.activities(Tool::tr("for activities"), [](SocialGetActivitiesRequest &request) {
            request.setActivityFilter(SocialActivity::Status);
        });
    const auto newest =
        std::max_element(all.begin(), all.end(),
                         [&time](const SocialGenericData &one, const SocialGenericData &other) {
                             return time(one) < time(other);
                         });
    if (newest == all.end())
        notChecked(Tool::tr("it gave no activities"));
    return *newest;
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
    QElapsedTimer timer;
    timer.start();
    const Asked post = askToChange(
        probe,
        inquiry<SocialPostActivitiesRequest>(Tool::tr("to post"), SocialActivity::Status, text),
        accounts.constFirst());
    probe.rest(timeForMore(timer.elapsed()));
    requireNone({statusMistake(post), onceMistake(post)});
}

void checkLike(Probe &probe)
{
    requirePermission(probe);
    const SocialGenericData newest = newestStatus(probe);
    const QVariant known = newest.variantProperty(SocialActivity::IsLikedByMe);
    if (!known.isValid())
        notChecked(Tool::tr("its newest activity does not say with \"IsLikedByMe\" whether "
                            "it is liked, so that this could not be restored"));
    const bool liked = known.toBool();
    QElapsedTimer timer;
    timer.start();
    const Asked change = askToLike(probe, newest, !liked);
    // In the end everything is as it was, whatever is wrong with the answers.
    const Asked restored = askToLike(probe, newest, liked);
    probe.rest(timeForMore(timer.elapsed()));
    requireNone({statusMistake(change), onceMistake(change), statusMistake(restored),
                 onceMistake(restored)});
}
