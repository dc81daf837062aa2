// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "commands.h"

#include "json.h"
#include "nearest.h"
#include "output.h"
#include "table.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QJsonObject>

namespace {

const QString prefix = QStringLiteral("com.orvane.kinlet.");
const QString runnerInterface = QStringLiteral("com.orvane.kinlet.runner");

struct Runner {
    QString name;
    bool running = false;
    bool activatable = false;
    bool answering = false;
    QString version;
};

// The names of runners among bus names, without what they all begin with.
QStringList runnerNames(const QStringList &busNames)
{
    QStringList names;
    for (const QString &busName : busNames) {
        if (busName.size() > prefix.size() && busName.startsWith(prefix))
            names.append(busName.mid(prefix.size()));
    }
    return names;
}

QStringList activatableNames(QDBusConnectionInterface *bus)
{
    const QDBusReply<QStringList> reply = bus->call(QStringLiteral("ListActivatableNames"));
    return runnerNames(reply.value());
}

QList<Runner> findRunners(QDBusConnectionInterface *bus)
{
    const QStringList running = runnerNames(bus->registeredServiceNames().value());
    const QStringList activatable = activatableNames(bus);
    QStringList names = running + activatable;
    names.removeDuplicates();
    names.sort();
    QList<Runner> runners;
    for (const QString &name : names)
        runners.append({name, running.contains(name), activatable.contains(name), false, {}});
    return runners;
}

// Asks all that are running at once: one that hangs costs the time only once.
void askForVersions(QList<Runner> &runners, int milliseconds)
{
    std::vector<QDBusPendingReply<QVariantMap>> replies;
    for (const Runner &runner : std::as_const(runners)) {
        const QDBusMessage call =
            QDBusMessage::createMethodCall(prefix + runner.name, QLatin1Char('/') + runner.name,
                                           runnerInterface, QStringLiteral("metaData"));
        replies.push_back(runner.running
                              ? QDBusConnection::sessionBus().asyncCall(call, milliseconds)
                              : QDBusPendingReply<QVariantMap>());
    }
    for (int i = 0; i < runners.size(); ++i) {
        if (!runners[i].running)
            continue;
        replies[size_t(i)].waitForFinished();
        runners[i].answering = !replies[size_t(i)].isError();
        if (runners[i].answering)
            runners[i].version =
                replies[size_t(i)].value().value(QStringLiteral("version")).toString();
    }
}

QString stateText(const Runner &runner)
{
    if (!runner.running)
        return QStringLiteral("can be started");
    const QString state =
        runner.answering ? QStringLiteral("running") : QStringLiteral("does not answer");
    return runner.activatable ? state : state + QStringLiteral(", not started by the bus");
}

ExitCode listRunners(const CommandLine &line, Output &out, Report &report,
                     QDBusConnectionInterface *bus)
{
    QList<Runner> runners = findRunners(bus);
    askForVersions(runners, line.waitMilliseconds);
    Table table({QStringLiteral("NAME"), QStringLiteral("STATE"), QStringLiteral("VERSION")});
    for (const Runner &runner : std::as_const(runners)) {
        if (line.json)
            out.line(jsonLine({{QStringLiteral("class"), QStringLiteral("Runner")},
                               {QStringLiteral("name"), runner.name},
                               {QStringLiteral("running"), runner.running},
                               {QStringLiteral("activatable"), runner.activatable},
                               {QStringLiteral("answering"), runner.answering},
                               {QStringLiteral("version"), runner.version}}));
        table.addRow({runner.name, stateText(runner), runner.version});
    }
    if (runners.isEmpty())
        report.note(QStringLiteral("no runners on the bus; install a package "
                                   "kinlet-provider-..., or start one: kinlet-runner NAME"));
    else if (!line.json)
        table.print(out);
    return Done;
}

ExitCode startRunners(const CommandLine &line, Output &out, Report &report,
                      QDBusConnectionInterface *bus)
{
    QStringList names = activatableNames(bus);
    names.sort();
    const QString wanted = line.arguments.value(1);
    if (!wanted.isEmpty() && !names.contains(wanted)) {
        report.note(QStringLiteral("the bus cannot start a runner \"%1\"").arg(wanted)
                    + didYouMean(wanted, names,
                                 names.isEmpty() ? QStringLiteral(", nor any other")
                                                 : QStringLiteral("; it can start ")
                                         + names.join(QStringLiteral(", "))));
        return WrongUse;
    }
    if (names.isEmpty())
        report.note(QStringLiteral("the bus has no runners to start; install a package "
                                   "kinlet-provider-..."));
    if (!wanted.isEmpty())
        names = QStringList(wanted);
    for (const QString &name : std::as_const(names)) {
        const QDBusReply<void> reply = bus->startService(prefix + name);
        if (reply.isValid())
            out.line(QStringLiteral("%1 is running").arg(name));
        else
            report.failure(name + QStringLiteral(": ") + reply.error().message());
    }
    return report.exitCode();
}

}

ExitCode runRunners(const CommandLine &line, Output &out, Report &report)
{
    const QDBusConnection connection = QDBusConnection::sessionBus();
    if (!connection.isConnected()) {
        report.failure(QStringLiteral("there is no session bus: %1; dbus-run-session starts one")
                           .arg(connection.lastError().message()));
        return report.exitCode();
    }
    const QString action = line.arguments.value(0);
    if (action.isEmpty())
        return listRunners(line, out, report, connection.interface());
    if (action == QLatin1String("start"))
        return startRunners(line, out, report, connection.interface());
    report.note(QStringLiteral("runners can be listed, or started: kinlet runners start [NAME], "
                               "not \"%1\"")
                    .arg(action));
    return WrongUse;
}
