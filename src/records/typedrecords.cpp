// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/typedrecords.h"

const QString SocialNetworkPerson::ClassName = QStringLiteral("SocialNetworkPerson");
const QString SocialNetworkPerson::ScreenName = QStringLiteral("ScreenName");
const QString SocialNetworkPerson::FirstName = QStringLiteral("FirstName");
const QString SocialNetworkPerson::LastName = QStringLiteral("LastName");
const QString SocialNetworkPerson::AvatarList = QStringLiteral("AvatarList");
const QString SocialNetworkPerson::Status = QStringLiteral("Status");
const QString SocialNetworkPerson::StatusChangeTime = QStringLiteral("StatusChangeTime");
const QString SocialNetworkPerson::AboutMe = QStringLiteral("AboutMe");
const QString SocialNetworkPerson::Relationship = QStringLiteral("Relationship");
const QString SocialNetworkPerson::ProfileLink = QStringLiteral("ProfileLink");
const QString SocialNetworkPerson::PhoneNumber = QStringLiteral("PhoneNumber");
const QString SocialNetworkPerson::EmailAddresses = QStringLiteral("EmailAddresses");
const QString SocialNetworkPerson::Websites = QStringLiteral("Websites");
const QString SocialNetworkPerson::Birthday = QStringLiteral("Birthday");

SocialNetworkPerson::SocialNetworkPerson() : SocialGenericData(ClassName) { }

SocialNetworkPerson::SocialNetworkPerson(const SocialGenericData &other) : SocialGenericData(other)
{
    setClassName(ClassName);
}

SocialNetworkPerson::~SocialNetworkPerson() = default;

const QString SocialActivity::ClassName = QStringLiteral("SocialActivity");
const QString SocialActivity::StartTime = QStringLiteral("StartTime");
const QString SocialActivity::EndTime = QStringLiteral("EndTime");
const QString SocialActivity::OwnerPersonId = QStringLiteral("OwnerPersonId");
const QString SocialActivity::ReceiverPersonId = QStringLiteral("ReceiverPersonId");
const QString SocialActivity::ActivityType = QStringLiteral("ActivityType");
const QString SocialActivity::CommentCount = QStringLiteral("CommentCount");
const QString SocialActivity::ParentActivityId = QStringLiteral("ParentActivityId");
const QString SocialActivity::LikeCount = QStringLiteral("LikeCount");
const QString SocialActivity::IsLikedByMe = QStringLiteral("IsLikedByMe");
const QString SocialActivity::Attachment = QStringLiteral("Attachment");

SocialActivity::SocialActivity() : SocialGenericData(ClassName) { }

SocialActivity::SocialActivity(const SocialGenericData &other) : SocialGenericData(other)
{
    setClassName(ClassName);
}

SocialActivity::~SocialActivity() = default;

const QString SocialService::ClassName = QStringLiteral("SocialService");
const QString SocialService::ProviderName = QStringLiteral("ProviderName");
const QString SocialService::Icon = QStringLiteral("Icon");
const QString SocialService::Website = QStringLiteral("Website");
const QString SocialService::CanDataBeCached = QStringLiteral("CanDataBeCached");
const QString SocialService::SocialActions = QStringLiteral("SocialActions");
const QString SocialService::ActionIconTexts = QStringLiteral("ActionIconTexts");
const QString SocialService::ForceAutomerged = QStringLiteral("ForceAutomerged");

SocialService::SocialService() : SocialGenericData(ClassName) { }

SocialService::SocialService(const SocialGenericData &other) : SocialGenericData(other)
{
    setClassName(ClassName);
}

SocialService::~SocialService() = default;

const QString SocialServiceAccount::ClassName = QStringLiteral("SocialServiceAccount");
const QString SocialServiceAccount::SocialServiceId = QStringLiteral("SocialServiceId");
const QString SocialServiceAccount::ProfileId = QStringLiteral("ProfileId");
const QString SocialServiceAccount::AccountName = QStringLiteral("AccountName");
const QString SocialServiceAccount::UserName = QStringLiteral("UserName");
const QString SocialServiceAccount::Avatar = QStringLiteral("Avatar");
const QString SocialServiceAccount::State = QStringLiteral("State");
const QString SocialServiceAccount::ImportProgress = QStringLiteral("ImportProgress");

SocialServiceAccount::SocialServiceAccount() : SocialGenericData(ClassName) { }

SocialServiceAccount::SocialServiceAccount(const SocialGenericData &other)
    : SocialGenericData(other)
{
    setClassName(ClassName);
}

SocialServiceAccount::~SocialServiceAccount() = default;
