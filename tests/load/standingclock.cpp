// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "load/standingclock.h"

#include <atomic>
#include <ctime>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

std::atomic<qint64> moved{0};

timespec realTime(clockid_t clock)
{
    timespec time;
    syscall(SYS_clock_gettime, clock, &time);
    return time;
}

double realClock()
{
    const timespec time = realTime(CLOCK_MONOTONIC);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

const double realStart = realClock();

timespec standingTime(clockid_t clock)
{
    // The real times, so that deadlines that the kernel compares with its own clock are not past.
    static const timespec wallClock = realTime(CLOCK_REALTIME);
    static const timespec timerClock = realTime(CLOCK_MONOTONIC);
    timespec time = clock == CLOCK_REALTIME ? wallClock : timerClock;
    const qint64 nanoseconds = time.tv_nsec + moved % 1000 * 1000000;
    time.tv_sec += time_t(moved / 1000 + nanoseconds / 1000000000);
    time.tv_nsec = long(nanoseconds % 1000000000);
    return time;
}

}

qint64 StandingClock::now()
{
    return moved;
}

void StandingClock::advance(qint64 milliseconds)
{
    moved += milliseconds;
}

double StandingClock::realSeconds()
{
    return realClock() - realStart;
}

// Qt reads the clocks through these two; defined here they take the place of the C library's for
// the whole program.
extern "C" Q_DECL_EXPORT int clock_gettime(clockid_t clock, struct timespec *time) noexcept
{
    *time =
        clock == CLOCK_REALTIME || clock == CLOCK_MONOTONIC ? standingTime(clock) : realTime(clock);
    return 0;
}

extern "C" Q_DECL_EXPORT int gettimeofday(struct timeval *time, void *) noexcept
{
    const timespec standing = standingTime(CLOCK_REALTIME);
    time->tv_sec = standing.tv_sec;
    time->tv_usec = standing.tv_nsec / 1000;
    return 0;
}
