// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/probe.h"
#include "check/rules.h"
#include "language.h"

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

namespace {

struct Asked {
    QString kind;
    std::shared_ptr<Reports> reports;
};

QList<Asked> askAll(Probe &probe)
{
    QList<Asked> all;
    for (const QString &kind : probe.settings.kinds)
        all.append({kind, probe.ask(plainInquiry(kind))});
    if (all.isEmpty())
        notChecked(Tool::tr("it answers nothing"));
    return all;
}

// The longest time for which the event loop stood still while one answer was waited for.
qint64 longestPause(Probe &probe, const QString &kind)
{
    constexpr int beat = 5;
    qint64 longest = 0;
    QElapsedTimer since;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &timer,
                     [&] { longest = std::max(longest, since.restart()); });
    since.start();
    timer.start(beat);
    probe.ask(plainInquiry(kind));
    return std::max(longest, since.elapsed());
}

}

void checkAnswers(Probe &probe)
{
    askAll(probe);
}

void checkStatus(Probe &probe)
{
    const QList<Asked> all = askAll(probe);
    for (const Asked &one : all) {
        if (one.reports->statuses.contains(SocialDataRequest::Stopped))
            broken(
                Tool::tr("asked for %1, it ended with status Stopped").arg(Kind::text(one.kind)));
    }
}

void checkOnce(Probe &probe)
{
    const QList<Asked> all = askAll(probe);
    probe.rest(QuietMilliseconds);
    for (const Asked &one : all) {
        const QList<SocialDataRequest::Status> &statuses = one.reports->statuses;
        const auto times = statuses.count(SocialDataRequest::Finished);
        if (times > 1)
            broken(Tool::tr("asked once for %1, it answered %2 times")
                       .arg(Kind::text(one.kind))
                       .arg(times));
        if (times == 1 && statuses.last() != SocialDataRequest::Finished)
            broken(Tool::tr("asked for %1, it reported progress after it had answered")
                       .arg(Kind::text(one.kind)));
    }
}

void checkUnsupported(Probe &probe)
{
    const std::shared_ptr<Reports> reports =
        probe.ask(inquiry<SocialDataRequest>(Tool::tr("for what no provider supports")));
    if (reports->errors.isEmpty())
        broken(Tool::tr("it answered a request of unknown kind without an error"));
}

void checkErrors(Probe &probe)
{
    int seen = 0;
    const QList<Asked> all = askAll(probe);
    for (const Asked &one : all) {
        for (const KinletError &error : std::as_const(one.reports->errors)) {
            if (error.type() == KinletError::UnsupportedRequest)
                continue;
            ++seen;
            if (error.description().trimmed().isEmpty())
                broken(Tool::tr("asked for %1, it gave the error %2 without a description")
                           .arg(Kind::text(one.kind), errorText(error)));
        }
    }
    if (seen == 0)
        notChecked(Tool::tr("nothing led to an error other than UnsupportedRequest"));
}

void checkPauses(Probe &probe)
{
    // The machine may be busy with other things: only what lasts each time is the provider's own.
    constexpr int tries = 3;
    for (const QString &kind : probe.settings.kinds) {
        qint64 shortest = longestPause(probe, kind);
        for (int i = 1; i < tries && shortest > probe.settings.pauseMilliseconds; ++i)
            shortest = std::min(shortest, longestPause(probe, kind));
        if (shortest > probe.settings.pauseMilliseconds)
            broken(Tool::tr("asked for %1, it held up the event loop for %2 s; the bound is "
                            "%3 s (--pause)")
                       .arg(Kind::text(kind))
                       .arg(double(shortest) / 1000.0)
                       .arg(probe.settings.pauseMilliseconds / 1000.0));
    }
}
