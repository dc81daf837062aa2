// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QtGlobal>

/**
 * The clocks of the program, wall clock and timers, stand still until they are moved: so a minute
 * takes no time, and a stall of the machine does not count. Whoever wants timers to strike has to
 * run the event loop after moving the clocks. Waiting for a time, as QTest::qWait() does, has no
 * end.
 */
namespace StandingClock {

/// Milliseconds since the program started, as the program knows them.
qint64 now();
void advance(qint64 milliseconds);
/// Seconds since the program started, as everybody else knows them.
double realSeconds();

}
