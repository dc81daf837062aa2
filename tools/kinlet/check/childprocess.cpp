// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/child.h"
#include "language.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

// How long a process may say nothing: longer than its provider may take for an answer.
int patienceOf(const CheckSettings &settings)
{
    constexpr int grace = 5000;
    const qint64 most = qint64(settings.waitMilliseconds) * 2 + settings.pauseMilliseconds + grace;
    return int(std::min<qint64>(most, std::numeric_limits<int>::max()));
}

class Child {
public:
    Child(const Rule &rule, const CheckSettings &settings);
    ChildResult result();

private:
    void readLines();
    void read(const QByteArray &line);
    void noteAccident();

    QProcess process;
    const int patience;
    QString doing;
    bool hung = false;
    bool found = false;
    ChildResult seen;
};

Child::Child(const Rule &rule, const CheckSettings &settings) : patience(patienceOf(settings))
{
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QCoreApplication::applicationFilePath(),
                  {childArgument, rule.name, settings.file, settings.kinds.join(QLatin1Char(',')),
                   QString::number(settings.waitMilliseconds),
                   QString::number(settings.pauseMilliseconds),
                   settings.post ? QStringLiteral("post") : QString(), spokenLanguage()});
}

// Until it has ended, or says nothing for too long.
ChildResult Child::result()
{
    while (process.waitForReadyRead(patience))
        readLines();
    const bool silent = process.error() == QProcess::Timedout;
    hung =
        process.state() != QProcess::NotRunning && (silent || !process.waitForFinished(patience));
    if (hung) {
        process.kill();
        process.waitForFinished(-1);
    }
    readLines();
    if (hung || !found || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        noteAccident();
    return seen;
}

void Child::readLines()
{
    while (process.canReadLine())
        read(process.readLine());
}

void Child::read(const QByteArray &line)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    const QString text = object[QLatin1String("text")].toString();
    if (object.contains(QLatin1String("verdict"))) {
        found = true;
        seen.finding = {Verdict(object[QLatin1String("verdict")].toInt()), text};
        seen.ids = object[QLatin1String("ids")].toObject().toVariantMap();
        return;
    }
    doing = object[QLatin1String("doing")].toString();
    seen.accidentRule = object[QLatin1String("rule")].toString();
}

void Child::noteAccident()
{
    QString end;
    if (hung)
        end = Tool::tr("it hung");
    else if (process.error() == QProcess::FailedToStart)
        end = process.errorString();
    else if (process.exitStatus() == QProcess::CrashExit)
        // QProcess has the number of the signal there.
        end = Tool::tr("it crashed (%1)")
                  .arg(QString::fromLocal8Bit(::strsignal(process.exitCode())));
    else
        end = Tool::tr("it ended the process (exit code %1)").arg(process.exitCode());
    // It speaks before it touches the provider.
    if (doing.isEmpty()) {
        seen.obstacle = end;
        return;
    }
    seen.accident = Tool::tr("%1 when %2").arg(end, doing);
    if (!found)
        seen.finding = {Verdict::NotChecked, seen.accident};
}

}

ChildResult checkInChild(const Rule &rule, const CheckSettings &settings)
{
    return Child(rule, settings).result();
}
