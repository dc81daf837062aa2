// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/child.h"
#include "commands.h"
#include "json.h"
#include "language.h"
#include "output.h"
#include "text.h"

#include <QFileInfo>
#include <QMap>

#include <algorithm>

namespace {

Finding joined(const QStringList &mistakes)
{
    return {Verdict::Broken, mistakes.join(QStringLiteral("; "))};
}

// The whole examination of a provider.
class Examination {
public:
    Examination(const CommandLine &line, Output &out, Report &report);
    ExitCode run();

private:
    Finding judge(const Rule &rule);
    Finding judgeAnswers(const Rule &rule);
    Finding judgeIds(const Rule &rule);
    Finding judgePauses(const Rule &rule);
    Finding judgeLife(const Rule &rule) const;
    Finding runChild(const Rule &rule, const CheckSettings &settings);
    void print(const Rule &rule, const Finding &finding);
    void printText(const Rule &rule, const Finding &finding);
    void printSum();

    const CommandLine &line;
    Output &out;
    Report &report;
    CheckSettings settings;
    // Why nothing else can be checked.
    QString obstacle;
    // How processes have ended before their time.
    QStringList accidents;
    // What the last process has told.
    QVariantMap ids;
    QStringList brokenRules;
    QMap<Verdict, int> sums;
};

Examination::Examination(const CommandLine &line, Output &out, Report &report)
    : line(line), out(out), report(report)
{
    settings.file = QFileInfo(line.arguments.constFirst()).absoluteFilePath();
    settings.kinds = Kind::all();
    settings.waitMilliseconds = line.waitMilliseconds;
    settings.pauseMilliseconds = line.pauseMilliseconds;
    settings.post = line.post;
}

ExitCode Examination::run()
{
    for (const Rule &rule : allRules()) {
        const Finding finding = judge(rule);
        if (report.exitCode() != Done)
            break;
        ++sums[finding.verdict];
        if (finding.verdict == Verdict::Broken)
            brokenRules.append(rule.name);
        print(rule, finding);
        // Nobody reads on.
        if (!out.flush())
            return EndedWithErrors;
    }
    if (!line.json)
        printSum();
    return brokenRules.isEmpty() ? report.exitCode() : EndedWithErrors;
}

Finding Examination::judge(const Rule &rule)
{
    const bool first = rule.name == allRules().constFirst().name;
    if (!rule.check)
        return judgeLife(rule);
    if (!obstacle.isEmpty())
        return {Verdict::NotChecked, obstacle};
    if (rule.check == checkAnswers)
        return judgeAnswers(rule);
    if (rule.check == checkIds)
        return judgeIds(rule);
    if (rule.check == checkPauses)
        return judgePauses(rule);
    for (const QString &kind : rule.needs) {
        if (!settings.kinds.contains(kind))
            return {
                Verdict::NotChecked,
                Tool::tr("it does not answer when it is asked %1").arg(plainInquiry(kind).what)};
    }
    const Finding finding = runChild(rule, settings);
    if (first && finding.verdict != Verdict::Kept)
        obstacle = finding.verdict == Verdict::Broken ? Tool::tr("it does not load") : finding.text;
    return finding;
}

// Each kind by itself, since one that is not answered is not asked for again; then all together.
Finding Examination::judgeAnswers(const Rule &rule)
{
    Finding whole{Verdict::Kept, rule.promise};
    QStringList mistakes;
    const auto ask = [&](const CheckSettings &with) {
        const Finding finding = runChild(rule, with);
        if (finding.verdict == Verdict::Broken)
            mistakes.append(finding.text);
        else if (finding.verdict == Verdict::NotChecked)
            whole = finding;
        return finding.verdict == Verdict::Kept;
    };
    const QStringList kinds = settings.kinds;
    for (const QString &kind : kinds) {
        CheckSettings alone = settings;
        alone.kinds = QStringList(kind);
        if (!ask(alone))
            settings.kinds.removeOne(kind);
    }
    if (settings.kinds.size() > 1)
        ask(settings);
    return mistakes.isEmpty() ? whole : joined(mistakes);
}

// In one process, and from one to the next.
Finding Examination::judgeIds(const Rule &rule)
{
    const Finding first = runChild(rule, settings);
    const QVariantMap before = ids;
    if (first.verdict != Verdict::Kept)
        return first;
    const Finding second = runChild(rule, settings);
    QStringList mistakes;
    const QStringList changed = changedKinds(before, ids);
    for (const QString &kind : changed)
        mistakes.append(
            Tool::tr("asked for %1 after a new start, it gave other ids").arg(Kind::text(kind)));
    return mistakes.isEmpty() ? second : joined(mistakes);
}

// The machine may be busy with other things: only what happens each time is the provider's own.
Finding Examination::judgePauses(const Rule &rule)
{
    constexpr int tries = 3;
    Finding finding = runChild(rule, settings);
    for (int i = 1; i < tries && finding.verdict == Verdict::Broken; ++i)
        finding = runChild(rule, settings);
    return finding;
}

Finding Examination::judgeLife(const Rule &rule) const
{
    if (!accidents.isEmpty())
        return joined(accidents);
    if (!obstacle.isEmpty())
        return {Verdict::NotChecked, obstacle};
    return {Verdict::Kept, rule.promise};
}

Finding Examination::runChild(const Rule &rule, const CheckSettings &with)
{
    const ChildResult result = checkInChild(rule, with);
    ids = result.ids;
    if (!result.obstacle.isEmpty())
        report.failure(Tool::tr("the check could not be started: %1").arg(result.obstacle));
    if (result.accident.isEmpty())
        return result.finding;
    if (result.accidentRule == rule.name)
        return {Verdict::Broken, result.accident};
    // What a rule has found before is told once.
    if (!brokenRules.contains(result.accidentRule) && !accidents.contains(result.accident))
        accidents.append(result.accident);
    return result.finding;
}

void Examination::print(const Rule &rule, const Finding &finding)
{
    static const QMap<Verdict, QString> names{
        {Verdict::Kept, QStringLiteral("kept")},
        {Verdict::Broken, QStringLiteral("broken")},
        {Verdict::NotChecked, QStringLiteral("not-checked")},
    };
    if (!line.json) {
        printText(rule, finding);
        return;
    }
    const bool isBroken = finding.verdict == Verdict::Broken;
    out.line(jsonLine({{QStringLiteral("class"), QStringLiteral("Check")},
                       {QStringLiteral("name"), rule.name},
                       {QStringLiteral("result"), names[finding.verdict]},
                       {QStringLiteral("text"), finding.text},
                       {QStringLiteral("advice"), isBroken ? rule.advice : QString()}}));
}

void Examination::printText(const Rule &rule, const Finding &finding)
{
    constexpr int resultWidth = 13;
    constexpr int nameWidth = 13;
    constexpr int margin = resultWidth + nameWidth;
    constexpr int narrowest = 20;
    const bool isBroken = finding.verdict == Verdict::Broken;
    const QString result = isBroken        ? Tool::tr("BROKEN")
        : finding.verdict == Verdict::Kept ? Tool::tr("kept")
                                           : Tool::tr("not checked");
    const int width = out.width() > 0 ? std::max(narrowest, out.width() - margin) : 0;
    QString start = result.leftJustified(resultWidth);
    start = (isBroken ? out.strong(start) : start) + rule.name.leftJustified(nameWidth);
    const auto block = [&](const QString &text) {
        for (const QString &part : wrapped(text, width)) {
            out.line(start + isolated(part));
            start = QString(margin, QLatin1Char(' '));
        }
    };
    block(oneLine(finding.text));
    if (isBroken)
        block(QStringLiteral("-> ") + rule.advice);
}

void Examination::printSum()
{
    out.line();
    out.line(Tool::tr("%1 kept, %2 broken, %3 not checked")
                 .arg(sums.value(Verdict::Kept))
                 .arg(sums.value(Verdict::Broken))
                 .arg(sums.value(Verdict::NotChecked)));
}

}

ExitCode runCheck(const CommandLine &line, Output &out, Report &report)
{
    const QString file = line.arguments.constFirst();
    if (!QFileInfo(file).isFile()) {
        report.note(Tool::tr("there is no file \"%1\"").arg(file));
        return WrongUse;
    }
    return Examination(line, out, report).run();
}
