// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "commands.h"

#include "language.h"
#include "listing.h"
#include "locate.h"
#include "output.h"
#include "text.h"

#include <Kinlet/KinletManager>
#include <Kinlet/SocialGetLikersRequest>
#include <Kinlet/SocialLikeActivityRequest>
#include <Kinlet/SocialPostActivitiesRequest>

#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace {

using MakeRequest = std::function<std::unique_ptr<SocialDataRequest>()>;

// The text of the command line, or standard input without its last line end. False, and reported,
// if that cannot be read.
bool readText(Context &context, const QString &argument, QString &text)
{
    text = argument;
    if (argument != QLatin1String("-"))
        return true;
    QByteArray input;
    char buffer[4096];
    for (ssize_t count = -1; count != 0; input.append(buffer, int(count))) {
        if (!context.session.waitToRead(STDIN_FILENO)) {
            context.report.failure(Tool::tr("interrupted; nothing has been sent"));
            return false;
        }
        count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count < 0) {
            context.report.failure(
                Tool::tr("standard input: %1").arg(QString::fromLocal8Bit(std::strerror(errno))));
            return false;
        }
    }
    text = QString::fromUtf8(input);
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    return true;
}

// Asks each account by itself, so that each outcome is known.
ExitCode act(Context &context, const QList<Target> &targets, const QString &done,
             const MakeRequest &request)
{
    const QList<Answer> answers = context.session.askEach(targets, request);
    printJson(context, entriesOf(answers));
    for (const Answer &answer : answers) {
        context.report.failures(answer.target.provider, answer.errors);
        if (context.line.json || !answer.complete || !answer.errors.isEmpty())
            continue;
        const QString account = answer.target.accounts.isEmpty()
            ? answer.target.provider
            : answer.target.accounts.first().id();
        context.out.line(isolated(oneLine(done.arg(account))));
        for (const SocialGenericData &record : answer.records)
            context.out.line(QStringLiteral("  ") + isolated(oneLine(record.id())));
    }
    return context.report.exitCode();
}

QList<Target> targetsOf(const Session &session, const QList<SocialServiceAccount> &accounts)
{
    QList<Target> targets;
    for (const SocialServiceAccount &account : accounts)
        targets.append(session.targetOf(account));
    return targets;
}

// Where to do something with an activity: the accounts of the command line as they are, otherwise
// where the activity is. Empty if that is unclear; then it has been reported.
QList<Target> activityTargets(Context &context, const QString &activityId, ExitCode &code)
{
    const bool everywhere = context.line.accounts.contains(allAccounts);
    if (!everywhere && !context.line.accounts.isEmpty())
        return targetsOf(context.session, context.session.accounts());
    const QList<Located> found =
        everywhere ? locate(context, activityId) : locateOne(context, activityId, code);
    if (everywhere)
        code = context.report.exitCode();
    QList<Target> targets;
    for (const Located &place : found)
        targets.append(place.target);
    return targets;
}

ExitCode actOnActivity(Context &context, const QString &activityId, const QString &done,
                       const MakeRequest &request)
{
    ExitCode code = Done;
    const QList<Target> targets = activityTargets(context, activityId, code);
    return targets.isEmpty() ? code : act(context, targets, done, request);
}

ExitCode setLike(Context &context, bool like)
{
    const QString id = context.line.arguments.first();
    const QString done = like ? Tool::tr("Liked with %1.") : Tool::tr("Like taken back with %1.");
    return actOnActivity(context, id, done,
                         [&] { return std::make_unique<SocialLikeActivityRequest>(id, like); });
}

}

ExitCode runPost(Context &context)
{
    const QList<SocialServiceAccount> accounts = context.session.accounts();
    if (accounts.isEmpty()) {
        context.report.failure(Tool::tr("there is no account to post with"));
        return context.report.exitCode();
    }
    const bool several = accounts.size() > 1 || context.session.hasLeftOut();
    if (several && context.line.accounts.isEmpty()) {
        context.report.note(Tool::tr("a post goes to one account; choose it with --account, "
                                     "or say --account all:"));
        listChoice(context, accounts);
        return WrongUse;
    }
    QString text;
    if (!readText(context, context.line.arguments.first(), text))
        return context.report.exitCode();
    return act(context, targetsOf(context.session, accounts), Tool::tr("Posted with %1."), [&] {
        return std::make_unique<SocialPostActivitiesRequest>(SocialActivity::Status, text);
    });
}

ExitCode runComment(Context &context)
{
    QString text;
    if (!readText(context, context.line.arguments.last(), text))
        return context.report.exitCode();
    const QString id = context.line.arguments.first();
    return actOnActivity(context, id, Tool::tr("Commented with %1."), [&] {
        return std::make_unique<SocialPostActivitiesRequest>(SocialActivity::Comment, text, id);
    });
}

ExitCode runLike(Context &context)
{
    return setLike(context, true);
}

ExitCode runUnlike(Context &context)
{
    return setLike(context, false);
}

ExitCode runLikers(Context &context)
{
    const QString id = context.line.arguments.first();
    ExitCode code = Done;
    const QList<Target> targets = activityTargets(context, id, code);
    if (targets.isEmpty())
        return code;
    const QList<Answer> answers = context.session.askEach(targets, [&] {
        auto request = std::make_unique<SocialGetLikersRequest>(id);
        for (const auto &filter : context.line.filters)
            request->setPropertyFilter(filter.first, filter.second);
        return request;
    });
    printPersons(context, entriesOf(answers));
    reportErrors(context, answers);
    return context.report.exitCode();
}
