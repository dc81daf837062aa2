// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/probe.h"
#include "language.h"

#include <QPair>
#include <QSet>

#include <algorithm>

namespace {

struct Content {
    QString kind;
    QList<SocialGenericData> records;
};

// One answer of each of these kinds, as far as it has any.
QList<Content> contentOf(Probe &probe, const QStringList &kinds = {Kind::Persons, Kind::Activities})
{
    QList<Content> all;
    for (const QString &kind : kinds) {
        if (!probe.settings.kinds.contains(kind))
            continue;
        const QList<SocialGenericData> records = probe.ask(plainInquiry(kind)).reports->results;
        if (!records.isEmpty())
            all.append({kind, records});
    }
    return all;
}

QString unnamedMistake(const Content &content)
{
    for (const SocialGenericData &record : content.records) {
        if (record.id().isEmpty())
            return Tool::tr("one of its %1 has no \"Id\"").arg(Kind::text(content.kind));
    }
    return QString();
}

QString parentMistake(const Content &content, const QStringList &accounts)
{
    for (const SocialGenericData &record : content.records) {
        if (!accounts.contains(record.parentAccount()))
            return Tool::tr("\"%1\" among its %2 has the \"ParentAccount\" \"%3\", which is "
                            "no account of it")
                .arg(record.id(), Kind::text(content.kind), record.parentAccount());
    }
    return QString();
}

// Two accounts may well give the same person or activity.
QString doubleMistake(const Content &content)
{
    QSet<QPair<QString, QString>> seen;
    for (const SocialGenericData &record : content.records) {
        const QPair<QString, QString> own{record.id(), record.parentAccount()};
        if (!record.id().isEmpty() && seen.contains(own))
            return Tool::tr("two of its %1 have the same \"Id\"").arg(Kind::text(content.kind));
        seen.insert(own);
    }
    return QString();
}

QVariantMap idsOf(const QList<Content> &all)
{
    QVariantMap ids;
    for (const Content &content : all) {
        QStringList list;
        for (const SocialGenericData &record : content.records)
            list.append(record.id());
        ids.insert(content.kind, list);
    }
    return ids;
}

QSet<QString> parentsOf(const QList<SocialGenericData> &records)
{
    QSet<QString> parents;
    for (const SocialGenericData &record : records)
        parents.insert(record.parentAccount());
    return parents;
}

// What it gives for these accounts, compared with what it gives without a filter.
QString filterMistake(Probe &probe, const Content &content, const QStringList &accounts,
                      const QStringList &filter)
{
    Inquiry inquiry = plainInquiry(content.kind);
    inquiry.what = Tool::tr("%1 of the account \"%2\"")
                       .arg(inquiry.what, filter.join(QStringLiteral("\", \"")));
    inquiry.request->setPerformOnAccountsFilter(filter);
    const QString what = inquiry.what;
    const QSet<QString> given = parentsOf(probe.records(std::move(inquiry)));
    const QSet<QString> known = parentsOf(content.records);
    for (const QString &account : accounts) {
        const bool wanted = filter.contains(account);
        if (!wanted && given.contains(account))
            return Tool::tr("asked %1, it gave some of \"%2\"").arg(what, account);
        if (wanted && known.contains(account) && !given.contains(account))
            return Tool::tr("asked %1, it gave none of \"%2\"").arg(what, account);
    }
    return QString();
}

// Each account by itself, and two together that have something.
QList<QStringList> filtersFor(const Content &content, const QStringList &accounts)
{
    QList<QStringList> filters;
    for (const QString &account : accounts)
        filters.append(QStringList(account));
    const QSet<QString> known = parentsOf(content.records);
    QStringList two = accounts;
    std::stable_partition(two.begin(), two.end(),
                          [&known](const QString &account) { return known.contains(account); });
    filters.append(two.mid(0, 2));
    return filters;
}

}

void checkRecords(Probe &probe)
{
    const QStringList accounts = probe.accountIds();
    const QList<Content> all = contentOf(probe);
    if (all.isEmpty())
        notChecked(Tool::tr("it gave no persons and no activities"));
    QStringList mistakes;
    for (const Content &content : all)
        mistakes.append(unnamedMistake(content));
    requireNone(mistakes);
    if (accounts.isEmpty())
        notChecked(Tool::tr("it has no %1").arg(Kind::text(Kind::Accounts)));
    for (const Content &content : all)
        mistakes.append(parentMistake(content, accounts));
    requireNone(mistakes);
}

QStringList changedKinds(const QVariantMap &before, const QVariantMap &after)
{
    QStringList changed;
    for (auto it = before.begin(); it != before.end(); ++it) {
        if (!after.contains(it.key()))
            continue;
        const QStringList old = it->toStringList();
        const QStringList now = after[it.key()].toStringList();
        QSet<QString> seen(old.begin(), old.end());
        seen.remove(QString());
        const auto kept = std::count_if(now.begin(), now.end(),
                                        [&seen](const QString &id) { return seen.contains(id); });
        // Something may have been published or deleted meanwhile, but not most of it.
        if (2 * kept < seen.size())
            changed.append(it.key());
    }
    return changed;
}

void checkIds(Probe &probe)
{
    const QStringList registry{Kind::Services, Kind::Accounts};
    const QList<Content> all = contentOf(probe);
    QStringList mistakes;
    for (const Content &content : all)
        mistakes.append(doubleMistake(content));
    probe.ids = idsOf(contentOf(probe, registry) + all);
    const QVariantMap again = idsOf(contentOf(probe, registry) + contentOf(probe));
    const QStringList changed = changedKinds(probe.ids, again);
    for (const QString &kind : changed)
        mistakes.append(Tool::tr("asked twice for %1, it gave other ids the second time")
                            .arg(Kind::text(kind)));
    requireNone(mistakes);
    if (probe.ids.isEmpty())
        notChecked(Tool::tr("it gave no records"));
}

void checkFilter(Probe &probe)
{
    const QStringList accounts = probe.accountIds();
    if (accounts.size() < 2)
        notChecked(Tool::tr("it takes two accounts to judge"));
    const QList<Content> all = contentOf(probe);
    if (all.isEmpty())
        notChecked(Tool::tr("it gave no persons and no activities"));
    QStringList mistakes;
    for (const Content &content : all) {
        QString mistake;
        for (const QStringList &filter : filtersFor(content, accounts)) {
            if (mistake.isEmpty())
                mistake = filterMistake(probe, content, accounts, filter);
        }
        mistakes.append(mistake);
    }
    requireNone(mistakes);
}
