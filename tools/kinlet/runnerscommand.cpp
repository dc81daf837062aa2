// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "commands.h"

#include "interrupt.h"
#include "json.h"
#include "language.h"
#include "nearest.h"
#include "output.h"
#include "progress.h"
#include "table.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEventLoop>
#include <QJsonObject>

#include <memory>
#include <vector>

namespace {

const QString prefix = QStringLiteral("com.orvane.kinlet.");
const QString runnerInterface = QStringLiteral("com.orvane.kinlet.runner");

// What the functions below work with.
struct Work {
    const CommandLine &line;
    Output &out;
    Report &report;
    const Interrupt &interrupt;
    QDBusConnectionInterface *bus;
};

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

// Sends all calls at once: those that hang cost the time only once. After an interruption, which is
// reported, the rest of the replies are not finished.
std::vector<QDBusPendingCall> callAll(Work &work, const QList<QDBusMessage> &calls,
                                      int milliseconds)
{
    const Progress progress([] { return Tool::tr("waiting for runners"); });
    QEventLoop loop;
    std::vector<std::unique_ptr<QDBusPendingCallWatcher>> replies;
    qsizetype pending = calls.size();
    for (const QDBusMessage &call : calls) {
        replies.push_back(std::make_unique<QDBusPendingCallWatcher>(
            QDBusConnection::sessionBus().asyncCall(call, milliseconds)));
        QObject::connect(replies.back().get(), &QDBusPendingCallWatcher::finished, &loop, [&] {
            if (--pending == 0)
                loop.quit();
        });
    }
    QObject::connect(&work.interrupt, &Interrupt::occurred, &loop, &QEventLoop::quit);
    if (pending > 0 && !work.interrupt.happened())
        loop.exec();
    if (work.interrupt.happened() && work.report.exitCode() == Done)
        work.report.failure(Tool::tr("interrupted"));
    std::vector<QDBusPendingCall> results;
    results.reserve(replies.size());
    for (const auto &reply : replies)
        results.push_back(*reply);
    return results;
}

// Asks those that are running.
void askForVersions(Work &work, QList<Runner> &runners)
{
    QList<QDBusMessage> calls;
    for (const Runner &runner : std::as_const(runners)) {
        QDBusMessage call =
            QDBusMessage::createMethodCall(prefix + runner.name, QLatin1Char('/') + runner.name,
                                           runnerInterface, QStringLiteral("metaData"));
        // One that leaves meanwhile stays away.
        call.setAutoStartService(false);
        if (runner.running)
            calls.append(call);
    }
    const std::vector<QDBusPendingCall> replies = callAll(work, calls, work.line.waitMilliseconds);
    auto next = replies.cbegin();
    for (Runner &runner : runners) {
        if (!runner.running)
            continue;
        const QDBusPendingReply<QVariantMap> reply = *next++;
        runner.answering = reply.isFinished() && !reply.isError();
        if (runner.answering)
            runner.version = reply.value().value(QStringLiteral("version")).toString();
    }
}

void printJson(Output &out, const QList<Runner> &runners)
{
    for (const Runner &runner : runners)
        out.line(jsonLine({{QStringLiteral("class"), QStringLiteral("Runner")},
                           {QStringLiteral("name"), runner.name},
                           {QStringLiteral("running"), runner.running},
                           {QStringLiteral("activatable"), runner.activatable},
                           {QStringLiteral("answering"), runner.answering},
                           {QStringLiteral("version"), runner.version}}));
}

QString stateText(const Runner &runner)
{
    if (!runner.running)
        return Tool::tr("can be started");
    const QString state = runner.answering ? Tool::tr("running") : Tool::tr("does not answer");
    return runner.activatable ? state : Tool::tr("%1, not started by the bus").arg(state);
}

ExitCode listRunners(Work &work)
{
    QList<Runner> runners = findRunners(work.bus);
    askForVersions(work, runners);
    if (runners.isEmpty())
        work.report.note(Tool::tr("no runners on the bus; install a package "
                                  "kinlet-provider-..., or start one: kinlet-runner NAME"));
    if (work.line.json) {
        printJson(work.out, runners);
        return work.report.exitCode();
    }
    Table table({Tool::tr("NAME"), Tool::tr("STATE"), Tool::tr("VERSION")});
    for (const Runner &runner : std::as_const(runners))
        table.addRow({runner.name, stateText(runner), runner.version});
    if (!table.isEmpty())
        table.print(work.out);
    return work.report.exitCode();
}

QDBusMessage startCall(const QDBusConnectionInterface *bus, const QString &name)
{
    constexpr uint noFlags = 0;
    QDBusMessage call = QDBusMessage::createMethodCall(
        bus->service(), bus->path(), bus->interface(), QStringLiteral("StartServiceByName"));
    call << prefix + name << noFlags;
    return call;
}

// Empty if the reply says that the runner has started.
QString startProblem(const QDBusPendingCall &reply, int milliseconds)
{
    if (!reply.isFinished())
        return Tool::tr("has not started yet");
    if (!reply.isError())
        return QString();
    if (reply.error().type() == QDBusError::NoReply)
        return Tool::tr("did not start within %1 s").arg(milliseconds / 1000.0);
    return reply.error().message();
}

ExitCode startRunners(Work &work)
{
    QStringList names = activatableNames(work.bus);
    names.sort();
    const QString wanted = work.line.arguments.value(1);
    if (!wanted.isEmpty() && !names.contains(wanted)) {
        work.report.note(
            Tool::tr("the bus cannot start a runner \"%1\"").arg(wanted)
            + didYouMean(
                wanted, names,
                names.isEmpty()
                    ? Tool::tr(", nor any other")
                    : Tool::tr("; it can start %1").arg(names.join(QStringLiteral(", ")))));
        return WrongUse;
    }
    if (names.isEmpty())
        work.report.note(Tool::tr("the bus has no runners to start; install a package "
                                  "kinlet-provider-..."));
    if (!wanted.isEmpty())
        names = QStringList(wanted);
    QList<QDBusMessage> calls;
    for (const QString &name : std::as_const(names))
        calls.append(startCall(work.bus, name));
    const std::vector<QDBusPendingCall> replies = callAll(work, calls, work.line.startMilliseconds);
    QList<Runner> started;
    for (int i = 0; i < names.size(); ++i) {
        const QString problem = startProblem(replies[size_t(i)], work.line.startMilliseconds);
        if (problem.isEmpty())
            started.append({names[i], true, true, false, {}});
        else
            work.report.failure(names[i] + QStringLiteral(": ") + problem);
    }
    if (work.line.json) {
        askForVersions(work, started);
        printJson(work.out, started);
        return work.report.exitCode();
    }
    for (const Runner &runner : std::as_const(started))
        work.out.line(Tool::tr("%1 is running").arg(runner.name));
    return work.report.exitCode();
}

}

ExitCode runRunners(const CommandLine &line, Output &out, Report &report)
{
    const QString action = line.arguments.value(0);
    if (!action.isEmpty() && action != QLatin1String("start")) {
        report.note(Tool::tr("runners can be listed, or started: kinlet runners start "
                             "[NAME], not \"%1\"")
                        .arg(action));
        return WrongUse;
    }
    const QDBusConnection connection = QDBusConnection::sessionBus();
    if (!connection.isConnected()) {
        report.failure(Tool::tr("there is no session bus: %1; dbus-run-session starts one")
                           .arg(connection.lastError().message()));
        return report.exitCode();
    }
    const Interrupt interrupt;
    Work work{line, out, report, interrupt, connection.interface()};
    return action.isEmpty() ? listRunners(work) : startRunners(work);
}
