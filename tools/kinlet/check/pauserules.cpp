// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/probe.h"
#include "language.h"

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

namespace {

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

// How long cancelRequest() took; 0 if there was nothing to cancel any more.
qint64 cancelTime(Probe &probe, const QString &kind)
{
    const Asked asked = probe.perform(plainInquiry(kind));
    if (asked.reports->ended())
        return 0;
    probe.note(Tool::tr("it was told to cancel a request"), QStringLiteral("cancelled"));
    QElapsedTimer timer;
    timer.start();
    probe.cancel(asked.request);
    return timer.elapsed();
}

QString seconds(qint64 milliseconds)
{
    return QString::number(double(milliseconds) / 1000.0);
}

}

// What has not been used before in this process is often what takes its time.
void checkPauses(Probe &probe)
{
    const int bound = probe.settings.pauseMilliseconds;
    QStringList mistakes;
    if (probe.initMilliseconds() > bound)
        mistakes.append(Tool::tr("init() held up the event loop for %1 s")
                            .arg(seconds(probe.initMilliseconds())));
    for (const QString &kind : probe.settings.kinds) {
        const QString what = plainInquiry(kind).what;
        const qint64 pause = longestPause(probe, kind);
        if (pause > bound)
            mistakes.append(
                Tool::tr("asked %1, it held up the event loop for %2 s").arg(what, seconds(pause)));
        const qint64 cancelled = cancelTime(probe, kind);
        if (cancelled > bound)
            mistakes.append(Tool::tr("asked %1, it held up the event loop for %2 s in "
                                     "cancelRequest()")
                                .arg(what, seconds(cancelled)));
    }
    if (!mistakes.isEmpty())
        mistakes.append(Tool::tr("the bound is %1 s (--pause)").arg(seconds(bound)));
    requireNone(mistakes);
    if (probe.settings.kinds.isEmpty())
        notChecked(Tool::tr("it answers nothing"));
}
