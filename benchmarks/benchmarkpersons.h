// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "records/typedrecords.h"

#include <QList>
#include <QVariantMap>

/// A person of ten texts of twenty letters.
inline QVariantMap personProperties(int number)
{
    QVariantMap properties;
    for (const QString &key :
         {SocialGenericData::Id, SocialGenericData::Description, SocialGenericData::ParentAccount,
          SocialNetworkPerson::ScreenName, SocialNetworkPerson::FirstName,
          SocialNetworkPerson::LastName, SocialNetworkPerson::Status, SocialNetworkPerson::AboutMe,
          SocialNetworkPerson::ProfileLink, SocialNetworkPerson::PhoneNumber})
        properties.insert(key, key.leftJustified(20, QChar('0' + number % 10), true));
    return properties;
}

inline QList<QVariantMap> personMaps(int count)
{
    QList<QVariantMap> maps;
    for (int i = 0; i < count; ++i)
        maps.append(personProperties(i));
    return maps;
}

inline QList<SocialNetworkPerson> persons(int count)
{
    QList<SocialNetworkPerson> persons;
    for (int i = 0; i < count; ++i) {
        SocialNetworkPerson person;
        const QVariantMap properties = personProperties(i);
        for (auto it = properties.cbegin(); it != properties.cend(); ++it)
            person.setProperty(it.key(), it.value());
        persons.append(person);
    }
    return persons;
}
