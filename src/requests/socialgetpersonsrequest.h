// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "records/typedrecords.h"
#include "requests/socialdatarequest.h"

#include <QHash>
#include <QRegExp>

/// Asks for persons: the contacts of the accounts.
class KINLET_EXPORT SocialGetPersonsRequest : public SocialDataRequest {
    Q_OBJECT

public:
    /// Asks for everybody.
    Q_INVOKABLE SocialGetPersonsRequest();
    /// For subclasses: takes ownership of \a otherd, which must extend this class's own private
    /// data.
    Q_INVOKABLE explicit SocialGetPersonsRequest(SocialDataRequestPrivate *otherd);
    ~SocialGetPersonsRequest() override;

    /// Property names and the patterns that the values must match; empty means everybody. How a
    /// pattern is applied is the provider's choice; a person should match all of them.
    QHash<QString, QRegExp> propertyFilter() const;
    /// Adds a pattern, or replaces the one of the same property. There is no way to take one back.
    void setPropertyFilter(const QString &propertyName, const QRegExp &pattern);

    /// The results as persons, every record of them, in their order; empty before an answer.
    QList<SocialNetworkPerson> persons() const;
    /// For providers: replaces the results.
    void setPersons(const QList<SocialNetworkPerson> &persons);

    /// Appends the property filter: count (32 bit), then each property name and its QRegExp.
    void serialize(QDataStream &stream) override;
    void unserialize(QDataStream &stream) override;
};
