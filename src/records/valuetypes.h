// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "kinletexport.h"

#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>

class QDataStream;

/**
 * \file
 *
 * Values that records carry in their properties. All are plain structures, copied by value. Inside
 * a QVariant they can be streamed once KinletInitializer::init() has run.
 *
 * On the wire each is its fields in the order of declaration: int as 32 bit, bool as one byte,
 * texts as QString, all in the stream's byte order and version. A truncated stream leaves what
 * could be read; the stream's status tells.
 */

/// A picture, a film, a sound or a link.
struct Media {
    /// Values of kind.
    enum Kind : int {
        /// Not said.
        UnknownKind = 0,
        /// A picture.
        Image = 1,
        /// A film.
        Video = 2,
        /// A sound.
        Audio = 3,
        /// A page elsewhere.
        Link = 4
    };

    /// A Kind.
    qint32 kind = UnknownKind;
    /// URL of the thing itself.
    QString firstText;
    /// URL of a small preview picture; empty when there is none.
    QString secondText;
    /// What it shows, in words, for people who cannot see or hear it.
    QString thirdText;
};

/// How a service wants one of its actions to be shown.
struct SocialActionIconTexts {
    /// The action: one KinletAction::Action value.
    qint32 kind = 0;
    /// Name of an icon of the theme, or a URL.
    QString firstText;
    /// Label while the action can be done, for example "Like".
    QString secondText;
    /// Label while it can be taken back, for example "Unlike"; empty when it cannot.
    QString thirdText;
};

/// What is attached to an activity: a shared page, and media.
struct SocialActivityAttachment {
    /// Title
    QString firstText;
    /// Second line, for example the name of a site or an author.
    QString secondText;
    /// Summary
    QString thirdText;
    /// URL that the attachment leads to.
    QString fourthText;
    /// Pictures, films, sounds and links.
    QList<Media> media;
};

/// State of a contacts import, the value of SocialServiceAccount::ImportProgress.
struct SocialImportProgress {
    /// True while the import runs; the counts are those of a finished one.
    bool running = false;
    /// How many contacts are new.
    qint32 contactsAdded = 0;
    /// How many contacts have gone.
    qint32 contactsRemoved = 0;
    /// How many contacts were merged with others.
    qint32 contactsMerged = 0;
};

/// Writes the fields in their order.
KINLET_EXPORT QDataStream &operator<<(QDataStream &out, const Media &media);
/// Reads the fields in their order.
KINLET_EXPORT QDataStream &operator>>(QDataStream &in, Media &media);
/// Writes the fields in their order.
KINLET_EXPORT QDataStream &operator<<(QDataStream &out, const SocialActionIconTexts &texts);
/// Reads the fields in their order.
KINLET_EXPORT QDataStream &operator>>(QDataStream &in, SocialActionIconTexts &texts);
/// Writes the fields in their order.
KINLET_EXPORT QDataStream &operator<<(QDataStream &out, const SocialActivityAttachment &attachment);
/// Reads the fields in their order.
KINLET_EXPORT QDataStream &operator>>(QDataStream &in, SocialActivityAttachment &attachment);
/// Writes the fields in their order.
KINLET_EXPORT QDataStream &operator<<(QDataStream &out, const SocialImportProgress &progress);
/// Reads the fields in their order.
KINLET_EXPORT QDataStream &operator>>(QDataStream &in, SocialImportProgress &progress);

// Below the operators: Qt 6 takes note of them when a type is declared.
Q_DECLARE_METATYPE(Media)
Q_DECLARE_METATYPE(SocialActionIconTexts)
Q_DECLARE_METATYPE(SocialActivityAttachment)
Q_DECLARE_METATYPE(SocialImportProgress)

/// Holds the timelines that activities can be asked from.
class KINLET_EXPORT KinletTimeline : public QObject {
    Q_OBJECT

public:
    /// One byte on the wire.
    enum TimelineType : int {
        /// No timeline in particular; what requests ask for unless told otherwise.
        Any = 0,
        /// What the account's user sees on the front page.
        Homepage = 1,
        /// What the persons of the request's filter have published.
        Profile = 2,
        /// What the account's user has published.
        Personal = 3,
        /// What the account's user has liked or marked.
        Favorites = 4,
        /// Messages that only the account's user can read.
        Private = 5,
        /// A timeline of the provider's own.
        Custom = 6
    };
    Q_ENUM(TimelineType)
};

/// Holds what a service lets its users do. Not registered with the meta-object system.
class KINLET_EXPORT KinletAction : public QObject {
    Q_OBJECT

public:
    /// Bits of SocialService::SocialActions.
    enum Action : int {
        /// Only reading.
        NoAction = 0,
        /// To like an activity, and to take that back.
        Like = 1,
        /// To comment on an activity.
        Comment = 2,
        /// To publish a status.
        Post = 4,
        /// To pass an activity on to others.
        Share = 8,
        /// To write to a person.
        SendMessage = 16
    };
};

/// Holds what can be posted to a service. Not registered with the meta-object system; the library
/// carries it in no property of its own.
class KINLET_EXPORT KinletPostCap : public QObject {
    Q_OBJECT

public:
    /// Bits, for a property that a provider and an application agree on.
    enum Capability : int {
        /// Nothing.
        NoCapability = 0,
        /// Words.
        Text = 1,
        /// Pictures.
        Image = 2,
        /// Films.
        Video = 4,
        /// The URL of a page.
        Link = 8,
        /// Where the author is.
        Location = 16
    };
};

/// Makes the value types known to Qt's meta-type system.
class KINLET_EXPORT KinletInitializer {
public:
    /**
     * Registers the value types with their stream operators.
     *
     * KinletManager::instance() calls it; a program that streams records without the manager calls
     * it first. Every call after the first returns at once. To be called on the manager's thread:
     * there is no lock.
     */
    static void init();
};
