// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/socialgetpersonsrequest.h"

#include "requests/socialgetpersonsrequest_p.h"
#include "requests/typedresults_p.h"

#include <QDataStream>

namespace {

SocialGetPersonsRequestPrivate *data(const std::unique_ptr<SocialDataRequestPrivate> &d)
{
    return static_cast<SocialGetPersonsRequestPrivate *>(d.get());
}

}

SocialGetPersonsRequest::SocialGetPersonsRequest()
    : SocialDataRequest(new SocialGetPersonsRequestPrivate)
{
}

SocialGetPersonsRequest::SocialGetPersonsRequest(SocialDataRequestPrivate *otherd)
    : SocialDataRequest(otherd)
{
}

SocialGetPersonsRequest::~SocialGetPersonsRequest() = default;

QHash<QString, QRegExp> SocialGetPersonsRequest::propertyFilter() const
{
    return data(d_ptr)->propertyFilter;
}

void SocialGetPersonsRequest::setPropertyFilter(const QString &propertyName, const QRegExp &pattern)
{
    data(d_ptr)->propertyFilter.insert(propertyName, pattern);
}

QList<SocialNetworkPerson> SocialGetPersonsRequest::persons() const
{
    return typedResults<SocialNetworkPerson>(results());
}

void SocialGetPersonsRequest::setPersons(const QList<SocialNetworkPerson> &persons)
{
    setResults(plainResults(persons));
}

void SocialGetPersonsRequest::serialize(QDataStream &stream)
{
    SocialDataRequest::serialize(stream);
    stream << data(d_ptr)->propertyFilter;
}

void SocialGetPersonsRequest::unserialize(QDataStream &stream)
{
    SocialDataRequest::unserialize(stream);
    stream >> data(d_ptr)->propertyFilter;
}
