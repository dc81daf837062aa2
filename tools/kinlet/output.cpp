// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "output.h"

#include <cerrno>
#include <cstring>

#include <sys/ioctl.h>
#include <unistd.h>

Output::Output()
{
    columns = qEnvironmentVariableIntValue("COLUMNS");
    if (columns <= 0)
        columns = isatty(STDOUT_FILENO) ? terminalWidth(STDOUT_FILENO) : 0;
    colours = isTerminal(STDOUT_FILENO) && qEnvironmentVariableIsEmpty("NO_COLOR");
}

void Output::line(const QString &text)
{
    pending += text.toUtf8() + '\n';
}

void Output::text(const QString &text)
{
    pending += text.toUtf8();
}

QString Output::strong(const QString &text) const
{
    return colours ? QStringLiteral("\033[1m%1\033[0m").arg(text) : text;
}

QString Output::faint(const QString &text) const
{
    return colours ? QStringLiteral("\033[2m%1\033[0m").arg(text) : text;
}

bool Output::flush()
{
    int written = 0;
    while (error == 0 && written < pending.size()) {
        const ssize_t count =
            ::write(STDOUT_FILENO, pending.constData() + written, size_t(pending.size() - written));
        if (count >= 0)
            written += int(count);
        else if (errno != EINTR)
            error = errno;
    }
    pending.clear();
    return error == 0;
}

QString Output::errorText() const
{
    return QString::fromLocal8Bit(std::strerror(error));
}

bool isTerminal(int descriptor)
{
    return isatty(descriptor) && qgetenv("TERM") != "dumb";
}

int terminalWidth(int descriptor)
{
    winsize size = {};
    return ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}
