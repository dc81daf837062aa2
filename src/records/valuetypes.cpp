// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/valuetypes.h"

#include "records/streamreading_p.h"

#include <QDataStream>

namespace {

template <typename T>
void registerType(const char *name)
{
    qRegisterMetaType<T>(name);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    qRegisterMetaTypeStreamOperators<T>(name);
#endif
}

}

QDataStream &operator<<(QDataStream &out, const Media &media)
{
    return out << media.kind << media.firstText << media.secondText << media.thirdText;
}

QDataStream &operator>>(QDataStream &in, Media &media)
{
    in >> media.kind;
    readTexts(in, media.firstText, media.secondText, media.thirdText);
    return in;
}

QDataStream &operator<<(QDataStream &out, const SocialActionIconTexts &texts)
{
    return out << texts.kind << texts.firstText << texts.secondText << texts.thirdText;
}

QDataStream &operator>>(QDataStream &in, SocialActionIconTexts &texts)
{
    in >> texts.kind;
    readTexts(in, texts.firstText, texts.secondText, texts.thirdText);
    return in;
}

QDataStream &operator<<(QDataStream &out, const SocialActivityAttachment &attachment)
{
    return out << attachment.firstText << attachment.secondText << attachment.thirdText
               << attachment.fourthText << attachment.media;
}

QDataStream &operator>>(QDataStream &in, SocialActivityAttachment &attachment)
{
    readTexts(in, attachment.firstText, attachment.secondText, attachment.thirdText,
              attachment.fourthText);
    readList(in, attachment.media);
    return in;
}

QDataStream &operator<<(QDataStream &out, const SocialImportProgress &progress)
{
    return out << progress.running << progress.contactsAdded << progress.contactsRemoved
               << progress.contactsMerged;
}

QDataStream &operator>>(QDataStream &in, SocialImportProgress &progress)
{
    return in >> progress.running >> progress.contactsAdded >> progress.contactsRemoved
        >> progress.contactsMerged;
}

void KinletInitializer::init()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    registerType<SocialActivityAttachment>("SocialActivityAttachment");
    registerType<Media>("Media");
    registerType<SocialActionIconTexts>("SocialActionIconTexts");
    registerType<SocialImportProgress>("SocialImportProgress");
}
