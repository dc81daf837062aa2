// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "posttext.h"

#include "htmltext.h"
#include "vocabulary.h"

#include <QUrl>

using namespace ActivityStreams;

namespace {

/// What the author typed, if the document has it besides the HTML that was made of it: servers
/// differ in how well they escape what only looks like HTML.
QString typedText(const QJsonObject &post)
{
    const QString typed = post.value(QLatin1String("sourceContent")).toString();
    const QJsonObject source = post.value(QLatin1String("source")).toObject();
    const bool plain = source.value(QLatin1String("mediaType")) == QLatin1String("text/plain");
    return typed.isEmpty() && plain ? source.value(QLatin1String("content")).toString() : typed;
}

QString contentText(const QJsonObject &post)
{
    const QString typed = typedText(post);
    if (!typed.isEmpty()) {
        return plainText(typed);
    }
    const QString content = text(post, QStringLiteral("content"));
    const QString mediaType = post.value(QLatin1String("mediaType")).toString();
    // Of a picture it is the type of the picture; its description is HTML like any other.
    const bool plain = mediaType.startsWith(QLatin1String("text/"))
        && !mediaType.startsWith(QLatin1String("text/html"));
    return plain ? plainText(content) : htmlToText(content);
}

QStringList options(const QJsonObject &post)
{
    QStringList lines;
    for (const char *key : {"oneOf", "anyOf"}) {
        const QVector<QJsonValue> all = values(post, QString::fromLatin1(key));
        for (const QJsonValue &option : all) {
            const QString name = plainText(text(option.toObject(), QStringLiteral("name")));
            if (!name.isEmpty()) {
                lines << QLatin1String("- ") + name;
            }
        }
    }
    return lines;
}

Media::Kind mediaKind(const QJsonObject &thing)
{
    QString mediaType = thing.value(QLatin1String("mediaType")).toString();
    const QVector<QJsonValue> links = values(thing, QStringLiteral("url"));
    if (mediaType.isEmpty() && !links.isEmpty()) {
        mediaType = links.first().toObject().value(QLatin1String("mediaType")).toString();
    }
    const QStringList all = types(thing);
    const auto is = [&](const char *type, const char *prefix) {
        return all.contains(QLatin1String(type)) || mediaType.startsWith(QLatin1String(prefix));
    };
    return is("Image", "image/") ? Media::Image
        : is("Video", "video/")  ? Media::Video
        : is("Audio", "audio/")  ? Media::Audio
                                 : Media::Link;
}

void addMedia(const QJsonValue &value, QList<Media> *media)
{
    const QJsonObject thing = value.isString()
        ? QJsonObject{{QStringLiteral("href"), value.toString()}}
        : value.toObject();
    const QString href = thing.value(QLatin1String("href")).toString();
    Media found;
    found.kind = mediaKind(thing);
    found.firstText = usableUrl(href.isEmpty() ? firstUrl(thing, QStringLiteral("url")) : href);
    for (const char *key : {"preview", "icon"}) {
        if (found.secondText.isEmpty()) {
            found.secondText = usableUrl(firstUrl(thing, QString::fromLatin1(key)));
        }
    }
    found.thirdText = plainText(text(thing, QStringLiteral("name")));
    for (const char *key : {"summary", "content"}) {
        if (found.thirdText.isEmpty()) {
            found.thirdText = htmlToText(text(thing, QString::fromLatin1(key)));
        }
    }
    if (!found.firstText.isEmpty()) {
        media->append(found);
    }
}

} // namespace

QString postText(const QJsonObject &post)
{
    QStringList parts;
    for (const QString &part : {plainText(text(post, QStringLiteral("name"))),
                                htmlToText(text(post, QStringLiteral("summary"))),
                                contentText(post), options(post).join(QLatin1Char('\n'))}) {
        // Some repeat the content as the title.
        if (!part.isEmpty() && !parts.contains(part)) {
            parts << part;
        }
    }
    return parts.join(QLatin1String("\n\n"));
}

QList<Media> postMedia(const QJsonObject &post)
{
    QList<Media> media;
    const QStringList all = types(post);
    for (const char *type : {"Image", "Video", "Audio", "Document"}) {
        if (all.contains(QLatin1String(type))) {
            addMedia(post, &media);
            break;
        }
    }
    for (const char *key : {"attachment", "image"}) {
        const QVector<QJsonValue> things = values(post, QString::fromLatin1(key));
        for (const QJsonValue &thing : things) {
            addMedia(thing, &media);
        }
    }
    return media;
}

QString usableUrl(const QString &url)
{
    const QUrl parsed(url);
    const QString scheme = parsed.scheme();
    const bool usable = parsed.isValid()
        && (scheme.isEmpty() || scheme == QLatin1String("https")
            || scheme == QLatin1String("http"));
    return usable ? url : QString();
}
