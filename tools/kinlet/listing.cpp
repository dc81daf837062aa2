// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "listing.h"

#include "json.h"
#include "language.h"
#include "output.h"
#include "table.h"
#include "text.h"
#include "times.h"

#include <Kinlet/KinletManager>
#include <Kinlet/Media>
#include <Kinlet/SocialNetworkPerson>

#include <algorithm>

namespace {

const QString indent = QStringLiteral("    ");

void printIndented(Output &out, const QString &text)
{
    const int room = out.width() > 0 ? std::max(out.width() - int(indent.size()), 10) : 0;
    const QStringList lines = wrapped(cleaned(text).trimmed(), room);
    for (const QString &line : lines)
        out.line(line.isEmpty() ? QString() : indent + isolated(line));
}

QString timeText(const CommandLine &line, const QDateTime &time)
{
    return line.absolute ? absoluteTime(time) : relativeTime(time, QDateTime::currentDateTime());
}

QString echo(const SocialGenericData &activity)
{
    const int likes = activity.variantProperty(SocialActivity::LikeCount).toInt();
    const int comments = activity.variantProperty(SocialActivity::CommentCount).toInt();
    QStringList parts;
    if (likes > 0)
        parts += likes == 1 ? Tool::tr("1 like") : Tool::tr("%n likes", nullptr, likes);
    if (activity.variantProperty(SocialActivity::IsLikedByMe).toBool())
        parts += Tool::tr("you like it");
    if (comments > 0)
        parts += comments == 1 ? Tool::tr("1 comment") : Tool::tr("%n comments", nullptr, comments);
    return parts.join(QStringLiteral(", "));
}

void printAttachment(Output &out, const SocialGenericData &activity)
{
    const QVariant value = activity.variantProperty(SocialActivity::Attachment);
    if (value.userType() != qMetaTypeId<SocialActivityAttachment>())
        return;
    const auto attachment = value.value<SocialActivityAttachment>();
    for (const QString &text : {attachment.firstText, attachment.secondText, attachment.thirdText,
                                attachment.fourthText}) {
        if (!text.trimmed().isEmpty())
            printIndented(out, text);
    }
    static const QStringList kinds{Tool::tr("file"), Tool::tr("picture"), Tool::tr("film"),
                                   Tool::tr("sound"), Tool::tr("link")};
    for (const Media &media : attachment.media) {
        QString text = QStringLiteral("[%1]").arg(kinds.value(media.kind, kinds.first()));
        for (const QString &part : {media.thirdText, media.firstText}) {
            if (!part.trimmed().isEmpty())
                text += QLatin1Char(' ') + part.trimmed();
        }
        printIndented(out, text);
    }
}

QString accountLabel(const Context &context, const Entry &activity)
{
    const KinletManager *manager = context.session.manager();
    if (manager->accounts().size() < 2 && context.session.providers().size() < 2)
        return QString();
    const QString account = activity.record.parentAccount();
    return account.isEmpty() || account == activity.provider
        ? activity.provider
        : activity.provider + QLatin1Char('/') + account;
}

// Name, time and account on one line; they go on the next ones where the first is too short.
void printHeading(Context &context, const Names &names, const Entry &activity)
{
    const QString receiver = activity.record.property(SocialActivity::ReceiverPersonId);
    const auto name = [&](const QString &id) { return oneLine(names.name(activity.provider, id)); };
    QString who = name(activity.record.property(SocialActivity::OwnerPersonId));
    if (who.isEmpty())
        who = Tool::tr("somebody");
    QStringList strong =
        wrapped(receiver.isEmpty() ? who : Tool::tr("%1 to %2").arg(who, name(receiver)),
                context.out.width());
    QStringList details{
        timeText(context.line,
                 activity.record.variantProperty(SocialActivity::StartTime).toDateTime()),
        oneLine(accountLabel(context, activity)),
    };
    details.removeAll(QString());
    const QString last = strong.takeLast();
    for (const QString &line : qAsConst(strong))
        context.out.line(context.out.strong(isolated(line)));
    const int used = displayWidth(last);
    const QString rest = details.join(QStringLiteral(" · "));
    const QString shown = context.out.strong(isolated(last));
    if (context.out.width() == 0 || used + 2 + displayWidth(rest) <= context.out.width()) {
        context.out.line(rest.isEmpty()
                             ? shown
                             : shown + QStringLiteral("  ") + context.out.faint(isolated(rest)));
        return;
    }
    context.out.line(shown);
    const QStringList more = wrapped(rest, context.out.width());
    for (const QString &line : more)
        context.out.line(context.out.faint(isolated(line)));
}

}

bool printJson(Context &context, const QList<Entry> &entries)
{
    if (!context.line.json)
        return false;
    for (const Entry &entry : entries)
        context.out.line(jsonLine(jsonRecord(entry.record, entry.provider)));
    return true;
}

void printPersons(Context &context, QList<Entry> persons)
{
    std::stable_sort(persons.begin(), persons.end(), [](const Entry &a, const Entry &b) {
        return personName(a.record).compare(personName(b.record), Qt::CaseInsensitive) < 0;
    });
    cut(persons, context.line, 0);
    if (printJson(context, persons))
        return;
    Table table({Tool::tr("NAME"), Tool::tr("STATUS"), Tool::tr("ACCOUNT"), Tool::tr("ID")});
    for (const Entry &person : qAsConst(persons)) {
        const SocialGenericData &record = person.record;
        const QString account = record.parentAccount();
        table.addRow({personName(record), record.property(SocialNetworkPerson::Status),
                      account.isEmpty() ? person.provider : account, record.id()});
    }
    if (table.isEmpty())
        context.report.note(Tool::tr("no persons"));
    else
        table.print(context.out);
}

void sortNewestFirst(QList<Entry> &activities)
{
    const auto time = [](const Entry &entry) {
        const QDateTime start =
            entry.record.variantProperty(SocialActivity::StartTime).toDateTime();
        return start.isValid() ? start.toMSecsSinceEpoch() : std::numeric_limits<qint64>::min();
    };
    std::stable_sort(activities.begin(), activities.end(),
                     [&](const Entry &a, const Entry &b) { return time(a) > time(b); });
}

void printActivity(Context &context, const Names &names, const Entry &activity)
{
    Output &out = context.out;
    const SocialGenericData &record = activity.record;
    printHeading(context, names, activity);
    const QString parent = record.property(SocialActivity::ParentActivityId);
    if (!parent.isEmpty())
        out.line(out.faint(indent + Tool::tr("on %1").arg(isolated(oneLine(parent)))));
    if (!record.description().trimmed().isEmpty())
        printIndented(out, record.description());
    printAttachment(out, record);
    const QString reactions = echo(record);
    if (!reactions.isEmpty())
        printIndented(out, reactions);
    // Whole, however long it is: it is there to be copied.
    out.line(out.faint(indent + isolated(oneLine(record.id()))));
    out.line();
}

void cut(QList<Entry> &entries, const CommandLine &line, int usual)
{
    const int limit = line.limit > 0 ? line.limit : usual;
    if (limit > 0)
        entries = entries.mid(0, limit);
}

void reportErrors(Context &context, const QList<Answer> &answers)
{
    for (const Answer &answer : answers)
        context.report.failures(answer.target.provider, answer.errors);
}
