// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/Media>

#include <QDateTime>
#include <QList>
#include <QString>

#include <memory>

class QIODevice;

/*
 * Reading of ActivityStreams 2.0 documents, the form in which social networks hand out people's
 * archives. All texts are plain text, all times UTC; an empty field means that the document does
 * not say.
 */

struct ImportedPerson {
    /// Never empty.
    QString id;
    /// The name on the network, for example "ada".
    QString screenName;
    /// The name for people, for example "Ada L".
    QString name;
    QString summary;
    QString url;
    QString avatarUrl;
};

struct ImportedActivity {
    enum Kind { Status, Comment, Boost };

    /// Never empty.
    QString id;
    Kind kind = Status;
    QString authorId;
    /// Of a comment: the id of what it answers.
    QString inReplyTo;
    /// Of a boost: the id of what was boosted.
    QString boostOf;
    /// A status or comment has a text or media or both; a boost has neither.
    QString text;
    /// Always valid.
    QDateTime published;
    QString url;
    QList<Media> media;
};

struct ImportedLike {
    /// Never empty.
    QString personId;
    /// Never empty. The activity need not be in the document.
    QString activityId;
    /// Invalid if the document does not say when.
    QDateTime time;
};

/// Takes what is read. The same thing may come more than once, in one document or in several.
class ImportSink {
public:
    virtual ~ImportSink() = default;

    virtual void person(const ImportedPerson &person) = 0;
    virtual void activity(const ImportedActivity &activity) = 0;
    virtual void like(const ImportedLike &like) = 0;
    /// Something well-formed that has no place here: its id or type, and one English line.
    virtual void skipped(const QString &what, const QString &why) = 0;
};

/**
 * Reads one document: an actor, a collection or a page of one, or a single object or activity.
 * Reading goes in small steps, so that a long document holds up no event loop:
 *
 *     ActivityStreamsReader reader(device, sink);
 *     while (reader.readNext() == ActivityStreamsReader::Unfinished) { }
 *
 * The items of a collection are delivered one by one as they come, each before the next is read, so
 * memory does not grow with their number. That a document is bad may show only at its end: whoever
 * reads throws away what was delivered when the reader ends with Bad.
 *
 * An item of a collection that is wrong in itself is skipped with the reason. A document is bad if
 * it is not JSON in UTF-8, is not one object (several objects belong into a collection), has a
 * context without ActivityStreams, or if its own members are not what the vocabulary says. Bytes
 * from anywhere are safe to read: one member or item may have 16 MiB and 500 levels.
 */
class ActivityStreamsReader {
public:
    enum State { Unfinished, Finished, Bad };

    /// The device is open for reading; device and sink outlive the reader.
    ActivityStreamsReader(QIODevice &device, ImportSink &sink);
    ~ActivityStreamsReader();

    /// Reads on to the next item or member at most. Further calls after the end change nothing.
    State readNext();
    /// Why the document is bad, in one English line; empty unless the state is Bad.
    QString reason() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
