// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "locate.h"

#include "language.h"
#include "listing.h"
#include "table.h"

#include <Kinlet/KinletManager>
#include <Kinlet/SocialGetActivitiesRequest>

#include <algorithm>

namespace {

// Whether the error only says that this provider does not know the activity.
bool saysElsewhere(const KinletError &error)
{
    return error.type() == KinletError::InvalidRequest
        || error.type() == KinletError::UnsupportedRequest;
}

// One question for each account: a record need not say which account it came from.
std::vector<Question> questionsFor(const Session &session, const QString &activityId)
{
    std::vector<Question> questions;
    const auto add = [&](const Target &target) {
        auto request = std::make_unique<SocialGetActivitiesRequest>();
        request->setActivityIdsFilter({activityId});
        questions.push_back({target, std::move(request)});
    };
    const QList<Target> targets = session.targets();
    for (const Target &target : targets) {
        if (target.accounts.isEmpty())
            add(target);
        for (const SocialServiceAccount &account : target.accounts)
            add({target.provider, {account}});
    }
    return questions;
}

// The account that the record names, unless that is not one of the provider's.
Target ownerOf(const Session &session, const Answer &answer, const SocialGenericData &activity)
{
    const SocialServiceAccount named = session.manager()->account(activity.parentAccount());
    const Target target = session.targetOf(named);
    return target.provider == answer.target.provider ? target : answer.target;
}

bool sameTarget(const Target &a, const Target &b)
{
    return a.provider == b.provider && a.accounts.isEmpty() == b.accounts.isEmpty()
        && (a.accounts.isEmpty() || a.accounts.first().id() == b.accounts.first().id());
}

}

QList<Located> locate(Context &context, const QString &activityId)
{
    const QList<Answer> answers = context.session.ask(questionsFor(context.session, activityId));
    QList<Located> found;
    for (const Answer &answer : answers) {
        for (const SocialGenericData &record : answer.records) {
            const Located place{ownerOf(context.session, answer, record), record};
            const bool seen = std::any_of(found.cbegin(), found.cend(), [&](const Located &other) {
                return sameTarget(other.target, place.target);
            });
            // A provider that does not know this filter answers with other activities.
            if (record.id() == activityId && !seen)
                found.append(place);
        }
    }
    if (context.session.interrupted()) {
        context.session.reportInterruption();
        return {};
    }
    for (const Answer &answer : answers) {
        for (const KinletError &error : answer.errors) {
            if (found.isEmpty() || !saysElsewhere(error))
                context.report.failures(answer.target.provider, {error});
        }
    }
    if (found.isEmpty())
        context.report.failure(
            Tool::tr("no activity with the id \"%1\" was found").arg(activityId));
    return found;
}

QList<Located> locateOne(Context &context, const QString &activityId, ExitCode &code)
{
    const QList<Located> found = locate(context, activityId);
    code = context.report.exitCode();
    if (found.size() < 2)
        return found;
    QList<SocialServiceAccount> accounts;
    for (const Located &place : qAsConst(found))
        accounts += place.target.accounts;
    context.report.note(
        Tool::tr("\"%1\" is in several accounts; choose one with --account:").arg(activityId));
    listChoice(context, accounts);
    code = WrongUse;
    return {};
}

void listChoice(Context &context, const QList<SocialServiceAccount> &accounts)
{
    for (const SocialServiceAccount &account : accounts)
        context.report.note(
            QStringLiteral("  --account %1   %2").arg(account.id(), Session::accountName(account)));
}
