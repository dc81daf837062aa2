// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "fuzzing.h"

#include "patternsearch.h"

#include "dbus/patternguard.h"
#include "dbus/payloadguard.h"

#include <QRegExp>

#include <ctime>

/*
 * A pattern of a property filter against a text: one byte for its syntax, the pattern up to the end
 * of the line, then the text. What the guard lets through is compiled, and
 * matched as the local provider does, in a bounded time.
 */

namespace {

constexpr double MostSeconds = 5;

// Of this process: other load on the machine does not count.
double cpuSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
}

}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes = inputBytes(data + 1, size - 1);
    const int lineEnd = int(bytes.indexOf('\n'));
    const QString pattern = QString::fromUtf8(bytes.left(lineEnd));
    const QString text = QString::fromUtf8(bytes.mid(lineEnd + 1));
    const int syntax = data[0] % 8;
    const auto caseSensitivity = data[0] & 8 ? Qt::CaseSensitive : Qt::CaseInsensitive;

    const auto cost = patternCost(pattern, syntax);
    check(!cost || *cost >= 0, "a cost that is none or positive");
    if (!cost || *cost > Allowance().patternCost)
        return 0;

    const double start = cpuSeconds();
    const QRegExp expression(pattern, caseSensitivity, QRegExp::PatternSyntax(syntax));
    const bool isValid = expression.isValid();
    const double compiled = cpuSeconds();
    check(compiled - start < MostSeconds, "compiled in time");
    if (!isValid)
        return 0;
    const PatternSearch search(expression);
    const double understood = cpuSeconds();
    check(understood - compiled < MostSeconds, "understood in time");
    search.isFoundIn(text.left(search.longestText()));
    check(cpuSeconds() - understood < MostSeconds, "matched in time");
    return 0;
}
