// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "progress.h"

#include "output.h"
#include "text.h"

#include <algorithm>
#include <cstdio>

#include <unistd.h>

Progress::Progress(std::function<QString()> text) : text(std::move(text))
{
    if (!isTerminal(STDERR_FILENO))
        return;
    elapsed.start();
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { show(); });
    timer.start(1000);
}

Progress::~Progress()
{
    if (shown)
        std::fputs("\r\033[K", stderr);
}

void Progress::show()
{
    const QString line = oneLine(text()) + QStringLiteral(" (%1 s)").arg(elapsed.elapsed() / 1000);
    const int width = terminalWidth(STDERR_FILENO);
    // One column short: some terminals wrap as soon as the last one is used.
    const QString fitting = width > 1 ? wrapped(line, width - 1).first() : line;
    std::fprintf(stderr, "\r\033[K%s", isolated(fitting).toUtf8().constData());
    std::fflush(stderr);
    shown = true;
}
