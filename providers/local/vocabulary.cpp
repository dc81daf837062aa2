// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vocabulary.h"

#include <QJsonArray>
#include <QLocale>
#include <QRegularExpression>

#include <utility>

namespace ActivityStreams {

namespace {

/// Of several languages the user's own, else English, else any.
QString bestLanguage(const QJsonObject &languages)
{
    if (languages.isEmpty()) {
        return QString();
    }
    QStringList wanted;
    const QStringList own = QLocale::system().uiLanguages();
    for (const QString &language : own) {
        wanted << language << language.section(QLatin1Char('-'), 0, 0);
    }
    wanted << QStringLiteral("en") << languages.keys();
    for (const QString &language : std::as_const(wanted)) {
        const QString text = languages.value(language).toString();
        if (!text.isEmpty()) {
            return text;
        }
    }
    return QString();
}

QString urlOf(const QJsonValue &thing)
{
    if (thing.isString()) {
        return thing.toString();
    }
    const QJsonObject object = thing.toObject();
    const QString href = object.value(QLatin1String("href")).toString();
    return href.isEmpty() ? firstId(object, QStringLiteral("url")) : href;
}

} // namespace

QStringList types(const QJsonObject &object)
{
    QStringList names;
    const QVector<QJsonValue> all = values(object, QStringLiteral("type"));
    for (const QJsonValue &type : all) {
        names << type.toString();
    }
    return names;
}

bool isCollection(const QJsonObject &object)
{
    const QStringList all = types(object);
    return all.contains(QLatin1String("Collection"))
        || all.contains(QLatin1String("CollectionPage"))
        || all.contains(QLatin1String("OrderedCollection"))
        || all.contains(QLatin1String("OrderedCollectionPage"));
}

QVector<QJsonValue> values(const QJsonObject &object, const QString &key)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined() || value.isNull()) {
        return {};
    }
    if (!value.isArray()) {
        return {value};
    }
    const QJsonArray all = value.toArray();
    return QVector<QJsonValue>(all.begin(), all.end());
}

QString idOf(const QJsonValue &thing)
{
    if (thing.isString()) {
        return thing.toString();
    }
    const QJsonObject object = thing.toObject();
    const QString id = object.value(QLatin1String("id")).toString();
    return id.isEmpty() ? object.value(QLatin1String("href")).toString() : id;
}

QString firstId(const QJsonObject &object, const QString &key)
{
    const QVector<QJsonValue> things = values(object, key);
    for (const QJsonValue &thing : things) {
        const QString id = idOf(thing);
        if (!id.isEmpty()) {
            return id;
        }
    }
    return QString();
}

QString firstUrl(const QJsonObject &object, const QString &key)
{
    const QVector<QJsonValue> things = values(object, key);
    for (const QJsonValue &thing : things) {
        const QString url = urlOf(thing);
        if (!url.isEmpty()) {
            return url;
        }
    }
    return QString();
}

QString text(const QJsonObject &object, const QString &key)
{
    const QJsonValue value = object.value(key);
    if (value.isString()) {
        return value.toString();
    }
    const QJsonValue map = object.value(key + QLatin1String("Map"));
    return bestLanguage(value.isObject() ? value.toObject() : map.toObject());
}

QDateTime time(const QJsonObject &object, const QString &key)
{
    static const QRegularExpression form(
        QStringLiteral("\\A(\\d{4}-\\d\\d-\\d\\d)"
                       "(?:[Tt ](\\d\\d:\\d\\d)(?:(:\\d\\d)(?:(\\.\\d{1,3})\\d*)?)?"
                       "(?:[Zz]|([+-])(\\d\\d):?(\\d\\d))?)?\\z"));
    const QRegularExpressionMatch parts = form.match(object.value(key).toString());
    if (!parts.hasMatch()) {
        return QDateTime();
    }
    const auto part = [&parts](int number, const char *otherwise) {
        const QString found = parts.captured(number);
        return found.isEmpty() ? QString::fromLatin1(otherwise) : found;
    };
    const QDateTime written =
        QDateTime::fromString(part(1, "") + QLatin1Char('T') + part(2, "00:00") + part(3, ":00")
                                  + part(4, "") + QLatin1Char('Z'),
                              Qt::ISODateWithMs);
    const int ahead = part(6, "0").toInt() * 3600 + part(7, "0").toInt() * 60;
    return written.addSecs(part(5, "+") == QLatin1String("+") ? -ahead : ahead);
}

} // namespace ActivityStreams
