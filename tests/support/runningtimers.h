// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QAbstractEventDispatcher>
#include <QList>
#include <QObject>

#include <algorithm>

/// The intervals of all single-shot timers that are running, in order; negative for one that is not
/// precise. They outlive the object that they are to call.
inline QList<int> runningTimers()
{
    QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance();
    QList<int> intervals;
    const auto objects = dispatcher->findChildren<QObject *>();
    for (QObject *object : objects) {
        const auto timers = dispatcher->registeredTimers(object);
        for (const auto &timer : timers)
            intervals.append(timer.timerType == Qt::PreciseTimer ? timer.interval
                                                                 : -timer.interval);
    }
    std::sort(intervals.begin(), intervals.end());
    return intervals;
}
