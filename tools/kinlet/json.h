// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/SocialGenericData>

#include <QJsonObject>

/*
 * Records as JSON, for other programs. Keys are in alphabetical order.
 *
 * A record is {"class": its class name, "properties": all of them, "provider": the provider's
 * name}. The values of properties:
 *
 *   truth values, numbers   true, 12, 0.5; what JSON has no number for is null, whole numbers of
 *                           more than 53 bits, which readers would round, are texts
 *   texts, URLs, UUIDs      texts
 *   dates and times         texts in ISO 8601 form, in UTC with milliseconds; null when invalid
 *   byte arrays             texts, in Base64
 *   regular expressions     texts, their patterns
 *   lists, maps             arrays, objects
 *   Media                   {"description", "kind", "preview", "url"}, the kind as a number
 *   attachments             {"media", "subtitle", "summary", "title", "url"}
 *   icon texts of actions   {"action", "icon", "label", "undoLabel"}, the action as a number
 *   import progress         {"added", "merged", "removed", "running"}
 *   records                 {"class", "properties"}
 *   anything else           its text form if it has one, or {"type": the name of its type}
 *   invalid                 null
 */

QJsonValue jsonValue(const QVariant &value);
QJsonObject jsonRecord(const SocialGenericData &record);
QJsonObject jsonRecord(const SocialGenericData &record, const QString &provider);

/// One line, without control characters of any kind and without its line end.
QString jsonLine(const QJsonObject &object);
