// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/rules.h"

#include "check/probe.h"

namespace {

QString text(const char *words)
{
    return QString::fromLatin1(words);
}

QList<Rule> beginning()
{
    return {
        {text("loads"),
         text("loads, and is a provider"),
         text("Derive one class from KinletInterface, with Q_OBJECT, "
              "Q_PLUGIN_METADATA(IID \"com.orvane.lumend.Kinlet/1.0\") and "
              "Q_INTERFACES(KinletInterface), and build it for the same Qt as this program."),
         {},
         checkLoads},
        {text("name"),
         text("names itself"),
         text("Return {\"name\", NAME} from metaData(), always the same, before init() too: "
              "letters, digits and _, no digit first. Give error() that name."),
         {},
         checkName},
        {text("answers"),
         text("answers in time, whatever it is asked for"),
         text("Call setRequestProgress(SocialDataRequest::Finished, errors) for every request, "
              "also when something fails. Hand what you do not support to "
              "KinletInterface::performRequest(), which refuses it."),
         {},
         checkAnswers},
        {text("status"),
         text("ends with status Finished"),
         text("End with SocialDataRequest::Finished and errors. Stopped keeps applications "
              "waiting for the time-out."),
         {},
         checkStatus},
        {text("once"),
         text("answers exactly once"),
         text("Call setRequestProgress() with Finished once for each request, and nothing on it "
              "afterwards: set the results before. Return after ending a request."),
         {},
         checkOnce},
    };
}

QList<Rule> content()
{
    return {
        {text("services"),
         text("reports its services"),
         text("Leave the request to KinletInterface::performRequest(), and give each service in "
              "services() an \"Id\" of its own."),
         {Kind::Services},
         checkServices},
        {text("accounts"),
         text("reports its accounts, each on one of its services"),
         text("Leave the request to KinletInterface::performRequest(). Give each account in "
              "accounts() an \"Id\" of its own, and the \"Id\" of one of "
              "your services() as its SocialServiceId."),
         {Kind::Services, Kind::Accounts},
         checkAccounts},
        {text("records"),
         text("gives records with \"Id\" and \"ParentAccount\""),
         text("Set SocialGenericData::Id and call setParentAccount() with the id of one of your "
              "accounts on every person and activity."),
         {Kind::Accounts},
         checkRecords},
        {text("ids"),
         text("gives the same records the same ids"),
         text("Take ids from the network, or derive them from what does not change; never from "
              "a counter, a pointer or chance. No two records of an answer share one."),
         {},
         checkIds},
        {text("filter"),
         text("keeps to the account filter"),
         text("Unless performOnAccountsFilter() is empty, answer only with what belongs to the "
              "accounts that it names."),
         {Kind::Accounts},
         checkFilter},
        {text("limit"),
         text("keeps to the limit of activities, newest first to stay"),
         text("Answer with at most limit() activities: those with the newest StartTime."),
         {Kind::Activities},
         checkLimit},
        {text("times"),
         text("keeps to the time bounds of activities"),
         text("Leave out activities whose StartTime is not older than before(), or not newer "
              "than after(), where these are not null."),
         {Kind::Activities},
         checkTimes},
        {text("errors"),
         text("describes its errors"),
         text("Give each KinletError a description for people: what failed, and what to do. Only "
              "UnsupportedRequest says enough by itself."),
         {},
         checkErrors},
        {text("unsupported"),
         text("refuses what it does not support"),
         text("End requests that you do not know with an error of type "
              "KinletError::UnsupportedRequest, as KinletInterface::performRequest() does."),
         {},
         checkUnsupported},
    };
}

QList<Rule> behaviour()
{
    return {
        {text("cancelled"),
         text("leaves a cancelled request alone"),
         text("In cancelRequest(), abort the work and forget the request: no results and no "
              "progress reports any more."),
         {Kind::Activities},
         checkCancelled},
        {text("deleted"),
         text("survives requests that are deleted"),
         text("Never touch a request after it has finished or was cancelled. Keep "
              "QPointer<SocialDataRequest>, and drop it in cancelRequest()."),
         {Kind::Activities},
         checkDeleted},
        {text("pauses"),
         text("does not hold up the event loop"),
         text("Return from performRequest() at once and answer later: with the signals of "
              "QNetworkAccessManager, in small steps from a QTimer, or from a thread that hands "
              "the answer back."),
         {},
         checkPauses},
        {text("post"),
         text("posts"),
         text("See the error. Refuse posts as an unsupported request if there is no posting."),
         {Kind::Accounts},
         checkPost},
        {text("like"),
         text("likes, and takes the like back"),
         text("See the error. Refuse likes as an unsupported request if there is no liking."),
         {Kind::Activities},
         checkLike},
        {text("lives"),
         text("neither crashes nor hangs"),
         text("Run the same request in a debugger: kinlet --in-process, with --plugin-path."),
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
