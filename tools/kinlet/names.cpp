// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "names.h"

#include <Kinlet/SocialActivity>
#include <Kinlet/SocialGetPersonsRequest>
#include <Kinlet/SocialNetworkPerson>

namespace {

// Longer patterns are refused on their way to providers in other processes.
constexpr int LongestPattern = 1000;

// Patterns that match the ids, as few as the length allows.
QStringList patternsOf(const QStringList &ids)
{
    QStringList patterns;
    for (const QString &id : ids) {
        const QString escaped = QRegExp::escape(id);
        if (escaped.size() > LongestPattern)
            continue;
        if (patterns.isEmpty() || patterns.last().size() + 1 + escaped.size() > LongestPattern)
            patterns.append(escaped);
        else
            patterns.last() += QLatin1Char('|') + escaped;
    }
    return patterns;
}

}

Names::Names(Session &session) : session(session) { }

void Names::lookUp(const QList<Entry> &activities)
{
    QHash<QString, QStringList> wanted;
    for (const Entry &entry : activities) {
        for (const QString &key :
             {SocialActivity::OwnerPersonId, SocialActivity::ReceiverPersonId}) {
            const QString id = entry.record.property(key);
            if (!id.isEmpty() && !known.contains({entry.provider, id})
                && !wanted[entry.provider].contains(id))
                wanted[entry.provider].append(id);
        }
    }
    std::vector<Question> questions;
    const QList<Target> targets = session.targets();
    for (const Target &target : targets) {
        const QStringList patterns = patternsOf(wanted.value(target.provider));
        for (const QString &pattern : patterns) {
            auto request = std::make_unique<SocialGetPersonsRequest>();
            request->setPropertyFilter(SocialGenericData::Id, QRegExp(pattern));
            questions.push_back({target, std::move(request)});
        }
    }
    if (questions.empty() || session.interrupted())
        return;
    const QList<Entry> persons = entriesOf(session.ask(std::move(questions)));
    for (const Entry &person : persons)
        known.insert({person.provider, person.record.id()}, personName(person.record));
}

QString Names::name(const QString &provider, const QString &personId) const
{
    return known.value({provider, personId}, personId);
}

QString personName(const SocialGenericData &person)
{
    const QString screenName = person.property(SocialNetworkPerson::ScreenName);
    if (!screenName.isEmpty())
        return screenName;
    const QString fullName = (person.property(SocialNetworkPerson::FirstName) + QLatin1Char(' ')
                              + person.property(SocialNetworkPerson::LastName))
                                 .trimmed();
    return fullName.isEmpty() ? person.id() : fullName;
}
