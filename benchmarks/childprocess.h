// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdlib>

#include <sys/wait.h>
#include <unistd.h>

/// What \a measure returns, a plain structure, when it runs in a process of its own: a library is
/// loaded, and the bus connected to, once in the life of a process. A process that fails ends the
/// program.
template <typename Measure>
auto inChildProcess(Measure measure)
{
    decltype(measure()) result;
    int ends[2];
    if (pipe(ends) != 0)
        std::abort();
    const pid_t child = fork();
    if (child == 0) {
        result = measure();
        const auto size = write(ends[1], &result, sizeof result);
        _exit(size == ssize_t(sizeof result) ? 0 : 1);
    }
    close(ends[1]);
    const auto size = read(ends[0], &result, sizeof result);
    close(ends[0]);
    waitpid(child, nullptr, 0);
    if (size != ssize_t(sizeof result))
        std::abort();
    return result;
}
