// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/busnames.h"
#include "dbus/receivelimit.h"
#include "exitcodes.h"
#include "interrupt.h"
#include "language.h"
#include "providerplugin.h"
#include "runnerhost.h"

#include <Kinlet/KinletInitializer>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QRegularExpression>
#include <QTimer>

#include <cstdio>

namespace {

int fail(ExitCode code, const QString &text)
{
    std::fprintf(stderr, "kinlet-runner: %s\n", qPrintable(text));
    return code;
}

int list()
{
    const QStringList paths = pluginFiles();
    if (paths.isEmpty())
        std::printf("%s\n", qPrintable(Tool::tr("No plug-ins in %1").arg(pluginFolder())));
    for (const QString &path : paths) {
        const LoadedProvider loaded = loadFile(path);
        if (loaded.provider)
            std::printf("%-16s %s\n", qPrintable(loaded.name), qPrintable(path));
        else
            std::printf("%-16s %s\n", "-", qPrintable(loaded.problem));
    }
    return Done;
}

// One element of a bus name that is one of an object path too.
bool isValidElement(const QString &name)
{
    static const QRegularExpression element(QStringLiteral("\\A[A-Za-z_][A-Za-z0-9_]*\\z"));
    constexpr int longestBusName = 255;
    return element.match(name).hasMatch() && BusNames::service(name).size() <= longestBusName;
}

int serve(const LoadedProvider &loaded, int idleSeconds, const Interrupt &interrupt)
{
    const QString service = BusNames::service(loaded.name);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return fail(NoBus,
                    Tool::tr("there is no session bus: %1; 'dbus-run-session' "
                             "starts one")
                        .arg(bus.lastError().message()));
    raiseReceiveLimit(bus);
    // First, so that it hears of what goes wrong in init().
    RunnerHost host(loaded.provider.get(), loaded.name, bus);
    loaded.provider->init();
    // The object first: whoever sees the name may call it.
    bus.registerObject(BusNames::path(loaded.name), &host, QDBusConnection::ExportAdaptors);
    if (!bus.registerService(service))
        return fail(NameTaken, Tool::tr("%1 is taken by another process").arg(service));

    const auto leave = [&] {
        bus.unregisterService(service);
        host.stop();
        QCoreApplication::exit(Done);
    };
    QObject::connect(&interrupt, &Interrupt::occurred, &host, leave);
    QTimer idle;
    idle.setSingleShot(true);
    if (idleSeconds > 0) {
        idle.setInterval(idleSeconds * 1000);
        idle.start();
        QObject::connect(&host, &RunnerHost::used, &idle, [&] {
            if (host.isBusy())
                idle.stop();
            else
                idle.start();
        });
        QObject::connect(&idle, &QTimer::timeout, &host, leave);
    }
    bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), &host,
                SIGNAL(busLost()));
    QObject::connect(&host, &RunnerHost::busLost, &host, [] {
        QCoreApplication::exit(fail(BusLost, Tool::tr("the session bus went away")));
    });
    return QCoreApplication::exec();
}

}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    speak(wantedLanguages());
    const Interrupt interrupt;
    QCoreApplication::setApplicationName(QStringLiteral("kinlet-runner"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KINLET_VERSION));
    KinletInitializer::init();

    QCommandLineParser parser;
    parser.setApplicationDescription(Tool::tr(
        "Serves a provider plug-in on the session bus, as com.orvane.kinlet.NAME.\n\n"
        "Ends with 0 when asked to by SIGTERM or SIGINT, 1 when the bus goes away, 2 after wrong\n"
        "use, 3 without such a provider, 4 for a name that cannot be part of a bus name, 5\n"
        "without a bus, 6 when the name is taken.\n\n"
        "Plug-ins are looked for in KINLET_PLUGIN_PATH or /usr/lib/kinlet-1.0/plugins."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption listOption(QStringLiteral("list"),
                                        Tool::tr("Show the plug-ins that are found."));
    const QCommandLineOption idleOption(
        QStringLiteral("idle-exit"), Tool::tr("Leave when nobody has asked for that many seconds."),
        Tool::tr("seconds"));
    parser.addOptions({listOption, idleOption});
    parser.addPositionalArgument(Tool::tr("NAME|FILE.so"),
                                 Tool::tr("The provider, by its name or by its file."));
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(WrongUse, Tool::tr("%1; see --help").arg(parser.errorText()));
    // Answers --help, --help-all and --version.
    parser.process(application);
    if (parser.isSet(listOption))
        return list();

    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 1)
        return fail(WrongUse, Tool::tr("name one provider, or its file; see --help"));
    bool isNumber = true;
    const int idleSeconds =
        parser.isSet(idleOption) ? parser.value(idleOption).toInt(&isNumber) : 0;
    constexpr int mostSeconds = 24 * 24 * 3600;
    if (!isNumber || idleSeconds < 0 || idleSeconds > mostSeconds
        || (parser.isSet(idleOption) && idleSeconds == 0))
        return fail(
            WrongUse,
            Tool::tr("--idle-exit takes a number of seconds from 1 to %1").arg(mostSeconds));

    const QString &wanted = arguments.first();
    const bool isFile = wanted.endsWith(QStringLiteral(".so")) || wanted.contains(QLatin1Char('/'));
    const LoadedProvider loaded = isFile ? loadFile(wanted) : loadByName(wanted);
    if (!loaded.provider)
        return fail(NoProvider, loaded.problem);
    if (!isValidElement(loaded.name))
        return fail(InvalidName,
                    Tool::tr("the provider's name '%1' cannot be part of a bus "
                             "name: letters, digits and _ only, no digit first")
                        .arg(loaded.name));
    return serve(loaded, idleSeconds, interrupt);
}
