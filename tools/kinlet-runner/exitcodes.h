// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

/// How kinlet-runner ends.
enum ExitCode {
    /// Asked to leave by a signal or for want of requests; or a list or help was printed.
    Done = 0,
    /// The session bus went away.
    BusLost = 1,
    WrongUse = 2,
    /// There is no such plug-in, or the file is no provider.
    NoProvider = 3,
    /// The provider's name cannot be part of a bus name.
    InvalidName = 4,
    NoBus = 5,
    /// Another process owns the name.
    NameTaken = 6
};
