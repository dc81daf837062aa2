// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/rules.h"

#include "check/probe.h"
#include "language.h"

namespace {

QString text(const char *words)
{
    return QString::fromLatin1(words);
}

QList<Rule> beginning()
{
    return {
        {text("loads"),
         Tool::tr("loads, and is a provider"),
         Tool::tr("Derive one class from KinletInterface, with Q_OBJECT, "
                  "Q_PLUGIN_METADATA(IID \"com.orvane.lumend.Kinlet/1.0\") and "
                  "Q_INTERFACES(KinletInterface), and build it for the same Qt as this program."),
         {},
         checkLoads},
        {text("name"),
         Tool::tr("names itself"),
         Tool::tr("Return {\"name\", NAME} from metaData(), always the same, before init() too: "
                  "letters, digits and _, no digit first. Give error() that name."),
         {},
         checkName},
        {text("answers"),
         Tool::tr("answers in time, whatever it is asked for"),
         Tool::tr("Call setRequestProgress(SocialDataRequest::Finished, errors) for every request, "
                  "also when something fails. Hand what you do not support to "
                  "KinletInterface::performRequest(), which refuses it. Applications have several "
                  "requests open at a time. They wait for 60 seconds: --wait 60 waits for a slow "
                  "network as long."),
         {},
         checkAnswers},
        {text("status"),
         Tool::tr("ends with status Finished"),
         Tool::tr("End with SocialDataRequest::Finished and errors. Stopped keeps applications "
                  "waiting for the time-out."),
         {},
         checkStatus},
        {text("once"),
         Tool::tr("answers exactly once"),
         Tool::tr(
             "Call setRequestProgress() with Finished once for each request, and nothing on it "
             "afterwards: set the results before. Return after ending a request."),
         {},
         checkOnce},
    };
}

QList<Rule> content()
{
    return {
        {text("services"),
         Tool::tr("reports its services"),
         Tool::tr(
             "Leave the request to KinletInterface::performRequest(), and give each service in "
             "services() an \"Id\" of its own."),
         {Kind::Services},
         checkServices},
        {text("accounts"),
         Tool::tr("reports its accounts, each on one of its services"),
         Tool::tr("Leave the request to KinletInterface::performRequest(). Give each account in "
                  "accounts() an \"Id\" of its own, and the \"Id\" of one of "
                  "your services() as its SocialServiceId."),
         {Kind::Services, Kind::Accounts},
         checkAccounts},
        {text("records"),
         Tool::tr("gives records with \"Id\" and \"ParentAccount\""),
         Tool::tr(
             "Set SocialGenericData::Id and call setParentAccount() with the id of one of your "
             "accounts on every person and activity."),
         {Kind::Accounts},
         checkRecords},
        {text("ids"),
         Tool::tr("gives the same records the same ids"),
         Tool::tr("Take ids from the network, or derive them from what does not change; never from "
                  "a counter, a pointer or chance. No two records of an account share one."),
         {},
         checkIds},
        {text("filter"),
         Tool::tr("keeps to the account filter"),
         Tool::tr("Unless performOnAccountsFilter() is empty, answer only with what belongs to the "
                  "accounts that it names, and with all that belongs to them."),
         {Kind::Accounts},
         checkFilter},
        {text("limit"),
         Tool::tr("keeps to the limit of activities, newest first to stay"),
         Tool::tr("Answer with at most limit() activities: those with the newest StartTime. A "
                  "limit less than 1 is none."),
         {Kind::Activities},
         checkLimit},
        {text("times"),
         Tool::tr("keeps to the time bounds of activities"),
         Tool::tr("Leave out activities whose StartTime is not older than before(), or not newer "
                  "than after(), where these are not null."),
         {Kind::Activities},
         checkTimes},
        {text("errors"),
         Tool::tr("describes its errors"),
         Tool::tr(
             "Give each KinletError a description for people: what failed, and what to do. Only "
             "UnsupportedRequest, PostFailed and LikeFailed say enough by themselves."),
         {},
         checkErrors},
        {text("unsupported"),
         Tool::tr("refuses what it does not support"),
         Tool::tr("End requests that you do not know with an error of type "
                  "KinletError::UnsupportedRequest, as KinletInterface::performRequest() does."),
         {},
         checkUnsupported},
    };
}

QList<Rule> behaviour()
{
    return {
        {text("cancelled"),
         Tool::tr("leaves a cancelled request alone"),
         Tool::tr("In cancelRequest(), abort the work and forget the request: no results and no "
                  "progress reports any more."),
         {},
         checkCancelled},
        {text("deleted"),
         Tool::tr("survives requests that are deleted"),
         Tool::tr("Never touch a request after it has finished or was cancelled. Keep "
                  "QPointer<SocialDataRequest>, and drop it in cancelRequest()."),
         {Kind::Activities},
         checkDeleted},
        {text("pauses"),
         Tool::tr("does not hold up the event loop"),
         Tool::tr(
             "Return from performRequest() at once and answer later: with the signals of "
             "QNetworkAccessManager, in small steps from a QTimer, or from a thread that hands "
             "the answer back. The same goes for init() and cancelRequest()."),
         {},
         checkPauses},
        {text("post"),
         Tool::tr("posts"),
         Tool::tr("See the error. Refuse posts as an unsupported request if there is no posting."),
         {Kind::Accounts},
         checkPost},
        {text("like"),
         Tool::tr("likes, and takes the like back"),
         Tool::tr("See the error. Refuse likes as an unsupported request if there is no liking."),
         {Kind::Activities, Kind::Like},
         checkLike},
        {text("lives"),
         Tool::tr("neither crashes nor hangs"),
         Tool::tr("Run the same request in a debugger: kinlet --in-process, with --plugin-path."),
         {},
         nullptr},
    };
}

}

const QList<Rule> &allRules()
{
    static const QList<Rule> rules = beginning() + content() + behaviour();
    return rules;
}

const Rule *findRule(const QString &name)
{
    for (const Rule &rule : allRules()) {
        if (rule.name == name)
            return &rule;
    }
    return nullptr;
}

void broken(const QString &text)
{
    throw Finding{Verdict::Broken, text};
}

void notChecked(const QString &text)
{
    throw Finding{Verdict::NotChecked, text};
}

void requireNone(QStringList mistakes)
{
    mistakes.removeAll(QString());
    if (!mistakes.isEmpty())
        broken(mistakes.join(QStringLiteral("; ")));
}
