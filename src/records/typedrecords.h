// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "records/socialgenericdata.h"

/**
 * \file
 *
 * The four kinds of record that the library knows. They add no data to SocialGenericData: each
 * fixes the class name and spells the property keys once for everybody. The text of a key is its
 * name.
 *
 * Each is made empty, with only its class name, or from any record: it then has that record's
 * properties and its own class name. The source stays as it was. Its class name is not checked, so
 * any record can be viewed as any kind. copyFrom() and reading from a stream bring the class name
 * of what is copied or read. A look-up that finds nothing gives an empty record of the right kind,
 * without an id.
 *
 * Where a value has a type that providers and applications must agree on, the key says it. A key
 * without a remark holds text. Times are QDateTime in UTC.
 */

/// A person: a contact, an author, somebody who likes something.
class KINLET_EXPORT SocialNetworkPerson : public SocialGenericData {
public:
    /// "SocialNetworkPerson"
    static const QString ClassName;
    /// The name that the network shows.
    static const QString ScreenName;
    /// The given name.
    static const QString FirstName;
    /// The family name.
    static const QString LastName;
    /// QVariantList of Media, or QStringList of URLs; the first is the preferred one.
    static const QString AvatarList;
    /// The person's current status text.
    static const QString Status;
    /// QDateTime
    static const QString StatusChangeTime;
    /// What the person says of itself.
    static const QString AboutMe;
    /// How the person stands to the account's user.
    static const QString Relationship;
    /// URL of the person's page.
    static const QString ProfileLink;
    /// A telephone number.
    static const QString PhoneNumber;
    /// QStringList
    static const QString EmailAddresses;
    /// QStringList
    static const QString Websites;
    /// QDate
    static const QString Birthday;

    /// An empty person.
    SocialNetworkPerson();
    /// The same properties as a person.
    SocialNetworkPerson(const SocialGenericData &other);
    ~SocialNetworkPerson() override;
};

/// An entry of a timeline: a status, a comment, a message. Its text is the Description.
class KINLET_EXPORT SocialActivity : public SocialGenericData {
public:
    /// What an activity is. Not registered with the meta-object system; one byte on the wire.
    enum Type : int {
        /// Not said.
        UnknownType = 0,
        /// What a person has published on its own account.
        Status = 1,
        /// What a person has said about another activity.
        Comment = 2,
        /// What a person has written to another.
        Message = 3,
        /// As a filter: every type.
        AnyType = 4
    };

    /// "SocialActivity"
    static const QString ClassName;
    /// QDateTime
    static const QString StartTime;
    /// QDateTime
    static const QString EndTime;
    /// Id of the person who published it.
    static const QString OwnerPersonId;
    /// Id of the person whom it is meant for.
    static const QString ReceiverPersonId;
    /// int, a SocialActivity::Type
    static const QString ActivityType;
    /// int
    static const QString CommentCount;
    /// The activity that this one comments on.
    static const QString ParentActivityId;
    /// int
    static const QString LikeCount;
    /// bool
    static const QString IsLikedByMe;
    /// SocialActivityAttachment
    static const QString Attachment;

    /// An empty activity.
    SocialActivity();
    /// The same properties as an activity.
    SocialActivity(const SocialGenericData &other);
    ~SocialActivity() override;
};

/// A social network as a provider offers it. Its name for people is the Description.
class KINLET_EXPORT SocialService : public SocialGenericData {
public:
    /// "SocialService"
    static const QString ClassName;
    /// Name of the provider that offers the service.
    static const QString ProviderName;
    /// Name of an icon of the theme, or a URL.
    static const QString Icon;
    /// URL of the network's own page.
    static const QString Website;
    /// bool: whether applications may keep the service's data.
    static const QString CanDataBeCached;
    /// int, KinletAction::Action values joined with "or"
    static const QString SocialActions;
    /// QVariantList of SocialActionIconTexts
    static const QString ActionIconTexts;
    /// bool: whether applications merge its persons with their own contacts without asking.
    static const QString ForceAutomerged;

    /// An empty service.
    SocialService();
    /// The same properties as a service.
    SocialService(const SocialGenericData &other);
    ~SocialService() override;
};

/// A user's account on a service.
class KINLET_EXPORT SocialServiceAccount : public SocialGenericData {
public:
    /// "SocialServiceAccount"
    static const QString ClassName;
    /// Id of the SocialService that the account belongs to; the manager finds services by it.
    static const QString SocialServiceId;
    /// Id of the person who is the account's user.
    static const QString ProfileId;
    /// The account's name for people.
    static const QString AccountName;
    /// The user's name on the network.
    static const QString UserName;
    /// URL of a picture.
    static const QString Avatar;
    /// int; in a pushed update 4 and 5 mean that the account is gone. The other numbers are the
    /// provider's own.
    static const QString State;
    /// SocialImportProgress; the manager turns updates of it into importStarted() and
    /// importEnded().
    static const QString ImportProgress;

    /// An empty account.
    SocialServiceAccount();
    /// The same properties as an account.
    SocialServiceAccount(const SocialGenericData &other);
    ~SocialServiceAccount() override;
};

Q_DECLARE_TYPEINFO(SocialNetworkPerson, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(SocialActivity, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(SocialService, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(SocialServiceAccount, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(SocialNetworkPerson)
Q_DECLARE_METATYPE(SocialActivity)
Q_DECLARE_METATYPE(SocialService)
Q_DECLARE_METATYPE(SocialServiceAccount)
