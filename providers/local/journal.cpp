// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "journal.h"

#include <Kinlet/KinletAction>
#include <Kinlet/SocialActionIconTexts>

#include <QDir>
#include <QFile>
#include <QUrl>

#include <pwd.h>
#include <unistd.h>

namespace Journal {

const QString Id = QStringLiteral("local");
const QString Me = QStringLiteral("local:me");

namespace {

// Any value but 4 and 5, which say that an account is gone.
constexpr int AccountPresent = 1;

QString loginName()
{
    const passwd *user = getpwuid(getuid());
    return user ? QString::fromUtf8(user->pw_name) : QString::number(getuid());
}

QVariant actionTexts(KinletAction::Action action, const QString &icon, const QString &label,
                     const QString &undoLabel)
{
    SocialActionIconTexts texts;
    texts.kind = action;
    texts.firstText = icon;
    texts.secondText = label;
    texts.thirdText = undoLabel;
    return QVariant::fromValue(texts);
}

// The picture that desktops show for the login user.
QString faceUrl()
{
    const QString face = QDir::home().filePath(QStringLiteral(".face"));
    return QFile::exists(face) ? QUrl::fromLocalFile(face).toString() : QString();
}

}

QString fullName()
{
    const passwd *user = getpwuid(getuid());
    const QString name =
        user ? QString::fromUtf8(user->pw_gecos).section(QLatin1Char(','), 0, 0) : QString();
    return name.trimmed().isEmpty() ? loginName() : name.trimmed();
}

SocialService service()
{
    SocialService service;
    service.setProperty(SocialService::Id, Id);
    service.setProperty(SocialService::Description, QStringLiteral("Local journal"));
    service.setProperty(SocialService::ProviderName, Id);
    service.setProperty(SocialService::Icon, QStringLiteral("accessories-text-editor"));
    service.setProperty(SocialService::Website, QString());
    service.setProperty(SocialService::CanDataBeCached, true);
    service.setProperty(SocialService::SocialActions,
                        KinletAction::Like | KinletAction::Comment | KinletAction::Post);
    service.setProperty(
        SocialService::ActionIconTexts,
        QVariantList{actionTexts(KinletAction::Like, QStringLiteral("emblem-favorite"),
                                 QStringLiteral("Like"), QStringLiteral("Unlike")),
                     actionTexts(KinletAction::Comment, QStringLiteral("mail-reply-sender"),
                                 QStringLiteral("Comment"), QString()),
                     actionTexts(KinletAction::Post, QStringLiteral("document-new"),
                                 QStringLiteral("Post"), QString())});
    service.setProperty(SocialService::ForceAutomerged, false);
    return service;
}

SocialServiceAccount account(const QString &name)
{
    SocialServiceAccount account;
    account.setProperty(SocialServiceAccount::Id, Id);
    account.setProperty(SocialServiceAccount::Description, name);
    account.setProperty(SocialServiceAccount::SocialServiceId, Id);
    account.setProperty(SocialServiceAccount::ProfileId, Me);
    account.setProperty(SocialServiceAccount::AccountName, name);
    account.setProperty(SocialServiceAccount::UserName, loginName());
    account.setProperty(SocialServiceAccount::Avatar, faceUrl());
    account.setProperty(SocialServiceAccount::State, AccountPresent);
    return account;
}

}
