// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/probe.h"
#include "language.h"

#include <QElapsedTimer>

namespace {

// Applications have several requests open at a time.
QList<Asked> performAll(Probe &probe)
{
    QList<Asked> all;
    for (const QString &kind : probe.settings.kinds)
        all.append(probe.perform(plainInquiry(kind)));
    if (all.isEmpty())
        notChecked(Tool::tr("it answers nothing"));
    return all;
}

QList<Asked> askAll(Probe &probe)
{
    const QList<Asked> all = performAll(probe);
    for (const Asked &asked : all)
        probe.await(asked);
    return all;
}

}

void checkAnswers(Probe &probe)
{
    QList<Asked> all = performAll(probe);
    for (Asked &asked : all) {
        if (all.size() > 1)
            asked.what = Tool::tr("%1, with other requests open").arg(asked.what);
        probe.await(asked, Verdict::Broken);
    }
}

void checkStatus(Probe &probe)
{
    QStringList mistakes;
    const QList<Asked> all = askAll(probe);
    for (const Asked &asked : all)
        mistakes.append(statusMistake(asked));
    requireNone(mistakes);
}

void checkOnce(Probe &probe)
{
    QElapsedTimer timer;
    timer.start();
    const QList<Asked> all = askAll(probe);
    probe.rest(timeForMore(timer.elapsed()));
    QStringList mistakes;
    for (const Asked &asked : all)
        mistakes.append(onceMistake(asked));
    requireNone(mistakes);
}

void checkUnsupported(Probe &probe)
{
    const Asked asked = probe.ask(
        inquiry<SocialDataRequest>(Tool::tr("for what no provider supports")), Verdict::Broken);
    if (asked.reports->errors.isEmpty())
        broken(Tool::tr("it answered a request of unknown kind without an error"));
}

void checkErrors(Probe &probe)
{
    // Those that Kinlet makes itself have no description.
    static const QList<KinletError::Type> speaking{
        KinletError::UnsupportedRequest, KinletError::PostFailed, KinletError::LikeFailed};
    int seen = 0;
    QStringList mistakes;
    const QList<Asked> all = askAll(probe);
    for (const Asked &asked : all) {
        for (const KinletError &error : std::as_const(asked.reports->errors)) {
            if (speaking.contains(error.type()))
                continue;
            ++seen;
            if (error.description().trimmed().isEmpty())
                mistakes.append(Tool::tr("asked %1, it gave the error %2 without a description")
                                    .arg(asked.what, errorText(error)));
        }
    }
    requireNone(mistakes);
    if (seen == 0)
        notChecked(Tool::tr("nothing led to an error other than UnsupportedRequest"));
}
