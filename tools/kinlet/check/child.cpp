// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/child.h"

#include "json.h"
#include "language.h"

#include <Kinlet/KinletInitializer>

#include <csignal>

#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

const QString childArgument = QStringLiteral("--check-child");

namespace {

// What the provider prints goes to standard error, so that nothing comes between the lines.
int takeStandardOutput()
{
    const int taken = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    return taken;
}

void writeLine(int descriptor, const QJsonObject &object)
{
    const QByteArray line = jsonLine(object).toUtf8() + '\n';
    // Without a reader there is nobody to tell either.
    if (::write(descriptor, line.constData(), size_t(line.size())) != line.size())
        ::_exit(1);
}

Finding find(const Rule &rule, Probe &probe)
{
    try {
        probe.load();
        rule.check(probe);
    } catch (const Finding &finding) {
        return finding;
    }
    return {Verdict::Kept, rule.promise};
}

CheckSettings readSettings(const QStringList &arguments)
{
    CheckSettings settings;
    settings.file = arguments.value(1);
    settings.kinds = arguments.value(2).split(QLatin1Char(','), Qt::SkipEmptyParts);
    settings.waitMilliseconds = arguments.value(3).toInt();
    settings.pauseMilliseconds = arguments.value(4).toInt();
    settings.post = arguments.value(5) == QLatin1String("post");
    return settings;
}

}

int runChild(const QStringList &arguments)
{
    speak({arguments.value(6)});
    const Rule *rule = findRule(arguments.value(0));
    if (!rule || !rule->check)
        return 2;
    // A provider that hangs does not outlive the one who waits for it.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int out = takeStandardOutput();
    KinletInitializer::init();
    Probe probe(readSettings(arguments), [out](const QString &doing, const QString &blamed) {
        writeLine(out, {{QStringLiteral("doing"), doing}, {QStringLiteral("rule"), blamed}});
    });
    const Finding finding = find(*rule, probe);
    writeLine(out,
              {{QStringLiteral("verdict"), int(finding.verdict)},
               {QStringLiteral("text"), finding.text},
               {QStringLiteral("ids"), QJsonObject::fromVariantMap(probe.ids)}});
    return 0;
}
