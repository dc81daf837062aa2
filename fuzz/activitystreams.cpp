// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "fuzzing.h"

#include "activitystreams.h"

#include <QBuffer>

/*
 * An ActivityStreams 2.0 document, as the local provider imports it.
 */

namespace {

// Keeps everything, and checks what every import may rely on.
class Sink : public ImportSink {
public:
    void person(const ImportedPerson &person) override
    {
        check(!person.id.isEmpty(), "a person with an id");
        take({person.id, person.screenName, person.name, person.summary, person.url,
              person.avatarUrl});
    }

    void activity(const ImportedActivity &activity) override
    {
        check(!activity.id.isEmpty(), "an activity with an id");
        check(activity.published.isValid() && activity.published.timeSpec() == Qt::UTC,
              "an activity with a time in UTC");
        const bool isEmpty = activity.text.isEmpty() && activity.media.isEmpty();
        check(isEmpty == (activity.kind == ImportedActivity::Boost),
              "something to see, unless it is a boost");
        take({activity.id, activity.authorId, activity.inReplyTo, activity.boostOf, activity.text,
              activity.url, activity.published.toString(Qt::ISODateWithMs)});
        for (const Media &media : activity.media)
            take({media.firstText, media.secondText, media.thirdText});
    }

    void like(const ImportedLike &like) override
    {
        check(!like.personId.isEmpty() && !like.activityId.isEmpty(), "a like of something");
        check(!like.time.isValid() || like.time.timeSpec() == Qt::UTC, "a time in UTC");
        take({like.personId, like.activityId, like.time.toString(Qt::ISODateWithMs)});
    }

    void skipped(const QString &what, const QString &why) override
    {
        check(!why.isEmpty(), "a reason");
        take({what, why});
    }

    QStringList texts;

private:
    void take(const QStringList &all)
    {
        for (const QString &text : all)
            check(text.isValidUtf16(), "whole characters");
        texts += all;
    }
};

// Hands out a few bytes at a time, as a slow disk may.
class Trickle : public QIODevice {
public:
    explicit Trickle(const QByteArray &bytes) : m_bytes(bytes)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const qint64 some = qMin<qint64>(qMin<qint64>(size, 7), m_bytes.size() - m_at);
        std::copy_n(m_bytes.constData() + m_at, some, data);
        m_at += some;
        return some;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArray &m_bytes;
    qint64 m_at = 0;
};

ActivityStreamsReader::State readAll(QIODevice &device, Sink &sink, QString *reason,
                                     qint64 mostSteps)
{
    ActivityStreamsReader reader(device, sink);
    auto state = ActivityStreamsReader::Unfinished;
    while (state == ActivityStreamsReader::Unfinished) {
        check(mostSteps-- >= 0, "no more steps than bytes");
        state = reader.readNext();
    }
    *reason = reader.reason();
    check((state == ActivityStreamsReader::Bad) != reason->isEmpty(), "a reason if it is bad");
    check(reader.readNext() == state, "an end");
    return state;
}

}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QByteArray bytes = inputBytes(data, size);
    Sink sink;
    QString reason;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const auto state = readAll(buffer, sink, &reason, bytes.size());

    Sink slowSink;
    QString slowReason;
    Trickle trickle(bytes);
    check(readAll(trickle, slowSink, &slowReason, bytes.size()) == state, "the same end");
    check(slowReason == reason, "the same reason");
    check(slowSink.texts == sink.texts, "the same contents");
    return 0;
}
