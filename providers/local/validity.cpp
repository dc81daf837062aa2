// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "validity.h"

#include "vocabulary.h"

#include <QLocale>
#include <QRegularExpression>
#include <QUrl>

namespace ActivityStreams {

namespace {

QString quoted(const QString &key)
{
    return QLatin1Char('"') + key.left(100) + QLatin1Char('"');
}

QString kindOf(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return QStringLiteral("true or false");
    case QJsonValue::Double:
        return QStringLiteral("a number");
    case QJsonValue::String:
        return QStringLiteral("a text");
    case QJsonValue::Array:
        return QStringLiteral("an array");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    default:
        return QStringLiteral("nothing");
    }
}

QString mismatch(const QString &key, const QJsonValue &value, const char *expected)
{
    return QStringLiteral("%1 is %2, not %3")
        .arg(quoted(key), kindOf(value), QString::fromLatin1(expected));
}

bool isLanguageTag(const QString &tag)
{
    static const QRegularExpression form(
        QStringLiteral("\\A(?:(?:[a-z]{2,3}(?:-[a-z]{3}){0,3}|[a-z]{4,8})" // language
                       "(?:-[a-z]{4})?" // script
                       "(?:-(?:[a-z]{2}|\\d{3}))?" // region
                       "(?:-(?:[a-z\\d]{5,8}|\\d[a-z\\d]{3}))*" // variants
                       "(?:-[a-wyz\\d](?:-[a-z\\d]{2,8})+)*" // extensions
                       "(?:-x(?:-[a-z\\d]{1,8})+)?" // private use
                       "|x(?:-[a-z\\d]{1,8})+" // all private
                       "|i-[a-z]{2,8}|en-gb-oed|sgn-(?:be|ch)-(?:fr|nl|de)" // from before the rules
                       ")\\z"),
        QRegularExpression::CaseInsensitiveOption);
    return form.match(tag).hasMatch();
}

QString contextProblem(const QJsonObject &object)
{
    const QString key = QStringLiteral("@context");
    const QVector<QJsonValue> contexts = values(object, key);
    bool found = contexts.isEmpty();
    for (const QJsonValue &context : contexts) {
        if (!context.isString() && !context.isObject()) {
            return mismatch(key, context, "a URL or an object");
        }
        QString name = context.isObject()
            ? context.toObject().value(QLatin1String("@vocab")).toString()
            : context.toString();
        if (name.endsWith(QLatin1Char('#'))) {
            name.chop(1);
        }
        found = found || name == QLatin1String("https://www.w3.org/ns/activitystreams")
            || name == QLatin1String("http://www.w3.org/ns/activitystreams");
    }
    return found ? QString() : QStringLiteral("its \"@context\" is not that of ActivityStreams");
}

QString typeProblem(const QJsonObject &object)
{
    const QString key = QStringLiteral("type");
    const QVector<QJsonValue> all = values(object, key);
    for (const QJsonValue &type : all) {
        if (!type.isString()) {
            return mismatch(key, type, "a text");
        }
    }
    return QString();
}

QString idProblem(const QJsonObject &object)
{
    const QString key = QStringLiteral("id");
    const QJsonValue id = object.value(key);
    return id.isUndefined() || id.isNull() || id.isString() ? QString()
                                                            : mismatch(key, id, "a text");
}

/// Older documents have a map of languages under the plain name. It is told from any other object
/// by having languages only.
QString plainTextProblem(const QString &key, const QJsonValue &value)
{
    if (value.isUndefined() || value.isNull() || value.isString()) {
        return QString();
    }
    const QStringList tags = value.toObject().keys();
    for (const QString &tag : tags) {
        if (QLocale(tag).language() == QLocale::C) {
            return mismatch(key, value, "a text")
                + QStringLiteral(" (%1 is no language)").arg(quoted(tag));
        }
    }
    return tags.isEmpty() ? mismatch(key, value, "a text") : QString();
}

QString languageMapProblem(const QString &key, const QJsonValue &value)
{
    if (value.isUndefined() || value.isNull()) {
        return QString();
    }
    if (!value.isObject()) {
        return mismatch(key, value, "a map of languages");
    }
    const QJsonObject map = value.toObject();
    for (auto text = map.begin(); text != map.end(); ++text) {
        if (!isLanguageTag(text.key())) {
            return QStringLiteral("%1 has %2, which is no language tag")
                .arg(quoted(key), quoted(text.key()));
        }
        if (!text.value().isString()) {
            return mismatch(text.key(), text.value(), "a text");
        }
    }
    return QString();
}

QString textProblem(const QJsonObject &object)
{
    for (const char *name : {"name", "summary", "content"}) {
        const QString key = QString::fromLatin1(name);
        const QString mapKey = key + QLatin1String("Map");
        QString found = plainTextProblem(key, object.value(key));
        if (found.isEmpty()) {
            found = languageMapProblem(mapKey, object.value(mapKey));
        }
        if (!found.isEmpty()) {
            return found;
        }
    }
    return QString();
}

QString urlProblem(const QJsonObject &object)
{
    const QString key = QStringLiteral("url");
    const QVector<QJsonValue> urls = values(object, key);
    for (const QJsonValue &url : urls) {
        if (!url.isString() && !url.isObject()) {
            return mismatch(key, url, "a URL or a link");
        }
        if (url.isString() && QUrl(url.toString()).scheme().isEmpty()) {
            return QStringLiteral("\"url\" is relative: %1").arg(quoted(url.toString()));
        }
    }
    return QString();
}

QString thingsProblem(const QJsonObject &object)
{
    for (const char *name : {"actor", "attributedTo", "object", "target", "inReplyTo"}) {
        const QString key = QString::fromLatin1(name);
        const QVector<QJsonValue> things = values(object, key);
        for (const QJsonValue &thing : things) {
            if (thing.isString()) {
                continue;
            }
            if (!thing.isObject()) {
                return mismatch(key, thing, "an object or its URL");
            }
            const QString inside = problem(thing.toObject());
            if (!inside.isEmpty()) {
                return QStringLiteral("in its %1: %2").arg(quoted(key), inside);
            }
        }
    }
    return QString();
}

QString pagesProblem(const QJsonObject &object)
{
    for (const char *name : {"first", "last", "current", "next", "prev"}) {
        const QString key = QString::fromLatin1(name);
        const QJsonValue page = object.value(key);
        if (page.isUndefined() || page.isNull() || page.isString() || !isCollection(object)) {
            continue;
        }
        const QStringList all = types(page.toObject());
        if (!all.contains(QLatin1String("CollectionPage"))
            && !all.contains(QLatin1String("OrderedCollectionPage"))
            && !all.contains(QLatin1String("Link"))) {
            return mismatch(key, page, "a page of a collection");
        }
        const QString inside = problem(page.toObject());
        if (!inside.isEmpty()) {
            return QStringLiteral("in its %1: %2").arg(quoted(key), inside);
        }
    }
    return QString();
}

QString orderProblem(const QJsonObject &object)
{
    if (!object.contains(QLatin1String("items"))
        && !object.contains(QLatin1String("orderedItems"))) {
        return QString();
    }
    const QStringList all = types(object);
    const bool ordered = all.contains(QLatin1String("OrderedCollection"))
        || all.contains(QLatin1String("OrderedCollectionPage"));
    if (ordered && object.contains(QLatin1String("items"))) {
        return QStringLiteral("an ordered collection has \"items\", not \"orderedItems\"");
    }
    if (!ordered && object.contains(QLatin1String("orderedItems"))) {
        return QStringLiteral("\"orderedItems\" in what is no ordered collection");
    }
    if (!isCollection(object) && object.contains(QLatin1String("items"))) {
        return QStringLiteral("\"items\" in what is no collection");
    }
    return QString();
}

} // namespace

QString problem(const QJsonObject &object)
{
    for (const auto check : {contextProblem, typeProblem, idProblem, textProblem, urlProblem,
                             orderProblem, pagesProblem, thingsProblem}) {
        const QString found = check(object);
        if (!found.isEmpty()) {
            return found;
        }
    }
    return QString();
}

} // namespace ActivityStreams
