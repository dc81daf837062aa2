// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/child.h"
#include "commands.h"
#include "language.h"
#include "output.h"
#include "session.h"
#include "text.h"

#include <QCoreApplication>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>

namespace {

// A file that is opened later, a database for example, must not become standard output because
// that was closed. What stands in for it refuses to be used, so that nothing goes unnoticed.
void occupyStandardDescriptors()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) < 0)
            ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

// Texts and file names are UTF-8 whatever the locale says; without this Qt and wcwidth() disagree.
void ensureUtf8()
{
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        qputenv("LC_ALL", "C.UTF-8");
}

void printMessage(QtMsgType, const QMessageLogContext &, const QString &text)
{
    Report().note(text);
}

void discardMessage(QtMsgType, const QMessageLogContext &, const QString &) { }

void applyEnvironment(const CommandLine &line)
{
    if (line.source == Source::InProcess)
        qputenv("KINLET_USE_DBUS", "0");
    else if (line.source == Source::Bus)
        qputenv("KINLET_USE_DBUS", "1");
    if (!line.pluginPath.isEmpty())
        qputenv("KINLET_PLUGIN_PATH", line.pluginPath.toLocal8Bit());
}

ExitCode noProvider(const Report &report)
{
    const bool inProcess = qgetenv("KINLET_USE_DBUS").contains('0');
    report.note(Tool::tr("no provider was found"));
    if (inProcess) {
        const QString path = qEnvironmentVariable("KINLET_PLUGIN_PATH");
        report.note(
            Tool::tr("looked for plug-ins in %1")
                .arg(path.isEmpty() ? QStringLiteral("/usr/lib/kinlet-1.0/plugins") : path));
    } else {
        report.note(Tool::tr(
            "looked on the session bus: \"kinlet runners\" lists what it can start, and \"kinlet "
            "runners start\" has it started; --in-process (or KINLET_USE_DBUS=0) loads plug-ins "
            "into this process instead"));
    }
    report.note(Tool::tr("to get one, install a package kinlet-provider-..., or name a "
                         "folder of plug-ins with --plugin-path or KINLET_PLUGIN_PATH"));
    return NoProvider;
}

ExitCode runCommand(const CommandLine &line, Output &out)
{
    Report report;
    // What programs read is the same everywhere.
    if (line.json)
        speak({});
    applyEnvironment(line);
    if (line.command->runAlone)
        return line.command->runAlone(line, out, report);
    Session session(line, report);
    if (!session.hasProviders())
        return noProvider(report);
    if (line.command->needsStart && !session.start())
        return report.exitCode();
    if (!session.chooseAccounts())
        return session.hasLeftOut() ? EndedWithErrors : WrongUse;
    Context context{line, session, out, report};
    return line.command->run(context);
}

ExitCode run(const CommandLine &line, Output &out)
{
    if (!line.mistake.isEmpty()) {
        const Report report;
        report.note(line.mistake);
        report.note(Tool::tr("kinlet --help tells more"));
        return WrongUse;
    }
    if (line.information.isEmpty())
        return runCommand(line, out);
    out.text(line.information);
    return Done;
}

}

int main(int argc, char **argv)
{
    occupyStandardDescriptors();
    // Before the next line changes what they are read from.
    const QStringList languages = wantedLanguages();
    ensureUtf8();
    // A reader that has gone is told by the write that fails.
    std::signal(SIGPIPE, SIG_IGN);
    QCoreApplication application(argc, argv);
    qInstallMessageHandler(printMessage);

    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromUtf8(argv[i]));
    if (arguments.value(0) == childArgument)
        return runChild(arguments.mid(1));
    speak(languages);
    Output out;
    ExitCode code = run(parseCommandLine(arguments), out);
    if (!out.flush()) {
        Report().note(Tool::tr("the output cannot be written: %1").arg(out.errorText()));
        code = EndedWithErrors;
    }
    // Qt's thread for the bus outlives this, and complains of what is no longer there.
    qInstallMessageHandler(discardMessage);
    return code;
}
