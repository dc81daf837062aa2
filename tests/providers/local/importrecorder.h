// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "activitystreams.h"

#include <QBuffer>
#include <QFile>
#include <QStringList>

// Takes everything down as lines of text, which are easy to compare.
class Recorder : public ImportSink {
public:
    void person(const ImportedPerson &person) override
    {
        add({"person", person.id, person.screenName, person.name, person.summary, person.url,
             person.avatarUrl});
    }

    void activity(const ImportedActivity &activity) override
    {
        static const char *const kinds[] = {"status", "comment", "boost"};
        activities << activity;
        add({kinds[activity.kind], activity.id, activity.authorId,
             activity.inReplyTo + activity.boostOf, activity.text, timeText(activity.published),
             activity.url});
        for (const Media &media : activity.media) {
            add({"media", QString::number(media.kind), media.firstText, media.secondText,
                 media.thirdText});
        }
    }

    void like(const ImportedLike &like) override
    {
        add({"like", like.personId, like.activityId,
             like.time.isValid() ? timeText(like.time) : QString()});
    }

    void skipped(const QString &what, const QString &why) override { add({"skipped", what, why}); }

    QStringList lines;
    QList<ImportedActivity> activities;

private:
    struct Word : QString {
        Word(const char *text) : QString(QString::fromLatin1(text)) { }
        Word(const QString &text) : QString(text) { }
    };

    static QString timeText(const QDateTime &time)
    {
        return time.timeSpec() == Qt::UTC ? time.toString(Qt::ISODateWithMs)
                                          : QStringLiteral("not in UTC");
    }

    void add(std::initializer_list<Word> words)
    {
        QStringList line;
        for (const Word &word : words) {
            line << word;
        }
        lines << line.join(QLatin1Char('|'));
    }
};

inline ActivityStreamsReader::State readAll(QIODevice &device, ImportSink &sink, QString *reason)
{
    ActivityStreamsReader reader(device, sink);
    auto state = ActivityStreamsReader::Unfinished;
    while (state == ActivityStreamsReader::Unfinished) {
        state = reader.readNext();
    }
    *reason = reader.reason();
    return state;
}

inline ActivityStreamsReader::State read(const QByteArray &document, Recorder &recorder,
                                         QString *reason)
{
    QBuffer device;
    device.setData(document);
    device.open(QIODevice::ReadOnly);
    return readAll(device, recorder, reason);
}

// What comes of one document that is good.
inline QStringList linesOf(const QByteArray &document)
{
    Recorder recorder;
    QString reason;
    if (read(document, recorder, &reason) != ActivityStreamsReader::Finished || !reason.isEmpty()) {
        return {QStringLiteral("bad: ") + reason};
    }
    return recorder.lines;
}

inline QByteArray fileBytes(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline QByteArray archive(const char *name)
{
    return fileBytes(QStringLiteral(KINLET_TEST_DATA "/archives/") + QString::fromLatin1(name));
}

// A document with the usual beginning.
inline QByteArray with(const QByteArray &members)
{
    return "{\"@context\":\"https://www.w3.org/ns/activitystreams\"," + members + '}';
}

// The shortest note that can be imported, without its braces, and what comes of it.
inline const QByteArray note = "\"type\":\"Note\",\"id\":\"https://e.org/n\",\"published\":"
                               "\"2026-11-21T00:37:04Z\",\"content\":\"hello\"";

inline constexpr char noteLine[] = "status|https://e.org/n|||hello|2026-11-21T00:37:04.000Z|";
