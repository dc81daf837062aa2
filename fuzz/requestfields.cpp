// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requestfields.h"

#include "dbus/payload.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetpersonsrequest.h"

#include <QDateTime>
#include <QIODevice>
#include <QMap>
#include <QRegExp>

#include <tuple>
#include <utility>

namespace {

using Patterns = QHash<QString, QRegExp>;

// The place of the results among the fields.
constexpr int Results = 2;

template <typename T>
void writeField(QDataStream &out, const T &field)
{
    out << field;
}

void writeField(QDataStream &out, const QDateTime &time)
{
    writeSorted(out, time);
}

void writeField(QDataStream &out, const QList<SocialGenericData> &records)
{
    out << int(records.size());
    for (const SocialGenericData &record : records)
        writeSorted(out, record);
}

void writeField(QDataStream &out, const Patterns &patterns)
{
    QMap<QString, QRegExp> sorted;
    for (auto it = patterns.begin(); it != patterns.end(); ++it)
        sorted.insert(it.key(), it.value());
    out << sorted;
}

template <typename... OwnFields>
Reading readFields(const QByteArray &bytes, int kind, const StreamForm &form)
{
    std::tuple<qint32, qint32, QList<SocialGenericData>, QStringList, OwnFields...> fields;
    QDataStream in(bytes);
    form.applyTo(in);
    std::apply([&in](auto &...field) { (in >> ... >> field); }, fields);
    // The kind in the stream is deliberately not looked at.
    std::get<0>(fields) = kind;
    const auto results = std::exchange(std::get<Results>(fields), {});
    Reading reading;
    reading.status = in.status();
    reading.position = in.device()->pos();
    QDataStream out(&reading.fields, QIODevice::WriteOnly);
    std::apply([&out](const auto &...field) { (writeField(out, field), ...); }, fields);
    writeField(out, results);
    return reading;
}

}

Reading readByQt(const QByteArray &bytes, int kind, const StreamForm &form)
{
    switch (kind) {
    case SocialDataRequest::GetPersons:
        return readFields<Patterns>(bytes, kind, form);
    case SocialDataRequest::GetLikers:
        return readFields<Patterns, QString>(bytes, kind, form);
    case SocialDataRequest::GetActivities:
        return readFields<QStringList, qint32, QDateTime, QDateTime, QStringList, QString, quint8,
                          quint8, bool>(bytes, kind, form);
    case SocialDataRequest::PostActivities:
        return readFields<quint8, QString, QString>(bytes, kind, form);
    case SocialDataRequest::LikeActivity:
        return readFields<QString, bool>(bytes, kind, form);
    default:
        return readFields(bytes, kind, form);
    }
}

QByteArray fieldsOf(SocialDataRequest &request)
{
    const QList<SocialGenericData> results = request.results();
    // Some can be read and written but not read again.
    request.setResults({});
    QByteArray fields = readByQt(Payload::write(request), request.type(), StreamForm(0)).fields;
    request.setResults(results);
    // In place of their number, which is 0.
    fields.chop(sizeof(int));
    QDataStream out(&fields, QIODevice::Append);
    writeField(out, results);
    return fields;
}

void checkRequest(const SocialDataRequest &request, int kind, qint64 bytes)
{
    check(request.type() == kind, "a request of the kind that it was made as");
    qint64 elements = countValues(request.results()) + request.performOnAccountsFilter().size();
    if (const auto *persons = dynamic_cast<const SocialGetPersonsRequest *>(&request))
        elements += persons->propertyFilter().size();
    if (const auto *activities = dynamic_cast<const SocialGetActivitiesRequest *>(&request))
        elements += activities->personsFilter().size() + activities->activityIdsFilter().size();
    check(elements <= bytes, "no more elements than bytes");
}
