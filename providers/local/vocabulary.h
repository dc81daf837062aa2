// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

/*
 * Reading members of ActivityStreams objects, which leave much open: one thing or an array of them,
 * a thing or only its URL, a text or a map of languages. What is not there, or is not what the
 * vocabulary says, reads as an empty value.
 */
namespace ActivityStreams {

/// The types of an object; most have one.
QStringList types(const QJsonObject &object);
bool isCollection(const QJsonObject &object);
/// The member's values: those of the array, or the one there is, or none.
QVector<QJsonValue> values(const QJsonObject &object, const QString &key);
/// The id of a thing, which may be the thing itself, a link to it or only its URL.
QString idOf(const QJsonValue &thing);
/// The id of the first thing under the key that has one.
QString firstId(const QJsonObject &object, const QString &key);
/// The first URL under the key, which may hold URLs, links, and things that have URLs.
QString firstUrl(const QJsonObject &object, const QString &key);
/// The text under the key, or the best language from the map that stands in its place.
QString text(const QJsonObject &object, const QString &key);
/// The time under the key in UTC. Seconds may be left out; a time without an offset is in UTC.
QDateTime time(const QJsonObject &object, const QString &key);

} // namespace ActivityStreams
