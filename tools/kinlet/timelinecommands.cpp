// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "commands.h"

#include "language.h"
#include "listing.h"
#include "locate.h"
#include "output.h"

#include <Kinlet/SocialGetActivitiesRequest>
#include <Kinlet/SocialGetLikersRequest>
#include <Kinlet/TimelineRequestFactory>

namespace {

constexpr int UsualEntries = 20;
constexpr int UsualComments = 100;

std::unique_ptr<SocialDataRequest> timelineRequest(const CommandLine &line)
{
    std::unique_ptr<SocialGetActivitiesRequest> request(
        line.profile.isEmpty()
            ? TimelineRequestFactory::createHomepageTimelineRequest()
            : TimelineRequestFactory::createProfileTimelineRequest({line.profile}));
    request->setActivityFilter(line.type);
    request->setLimit(line.limit > 0 ? line.limit : UsualEntries);
    request->setBefore(line.before);
    request->setAfter(line.after);
    return request;
}

void printActivities(Context &context, const QList<Entry> &activities)
{
    if (printJson(context, activities))
        return;
    Names names(context.session);
    names.lookUp(activities);
    for (const Entry &activity : activities)
        printActivity(context, names, activity);
}

std::vector<Question> detailQuestions(Context &context, const Located &place)
{
    const QString id = place.activity.id();
    auto comments = std::make_unique<SocialGetActivitiesRequest>();
    comments->setParentActivityIdFilter(id);
    comments->setLimit(context.line.limit > 0 ? context.line.limit : UsualComments);
    std::vector<Question> questions;
    questions.push_back({place.target, std::move(comments)});
    questions.push_back({place.target, std::make_unique<SocialGetLikersRequest>(id)});
    return questions;
}

}

ExitCode runTimeline(Context &context)
{
    const QList<Answer> answers = context.session.askEach(
        context.session.targets(), [&] { return timelineRequest(context.line); });
    QList<Entry> activities = entriesOf(answers);
    sortNewestFirst(activities);
    cut(activities, context.line, UsualEntries);
    printActivities(context, activities);
    reportErrors(context, answers);
    if (activities.isEmpty() && !context.line.json)
        context.report.note(Tool::tr("no activities"));
    return context.report.exitCode();
}

ExitCode runShow(Context &context)
{
    ExitCode code = Done;
    const QList<Located> found = locateOne(context, context.line.arguments.first(), code);
    if (found.isEmpty())
        return code;
    const Located &place = found.first();
    const QList<Answer> answers = context.session.ask(detailQuestions(context, place));
    QList<Entry> activities = entriesOf({answers[0]});
    sortNewestFirst(activities);
    cut(activities, context.line, UsualComments);
    activities.prepend({place.target.provider, place.activity});
    printActivities(context, activities);
    const QList<Entry> likers = entriesOf({answers[1]});
    if (context.line.json)
        printJson(context, likers);
    else if (!likers.isEmpty()) {
        context.out.line(context.out.strong(Tool::tr("Liked by")));
        printPersons(context, likers);
    }
    reportErrors(context, answers);
    return context.report.exitCode();
}
