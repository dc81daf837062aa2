// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/socialdatarequest.h"

#include "logging.h"
#include "records/streamreading_p.h"
#include "requests/socialdatarequest_p.h"

#include <QDataStream>

SocialDataRequest::SocialDataRequest() : SocialDataRequest(new SocialDataRequestPrivate) { }

SocialDataRequest::SocialDataRequest(SocialDataRequestPrivate *d) : d_ptr(d) { }

SocialDataRequest::~SocialDataRequest() = default;

int SocialDataRequest::type() const
{
    return d_ptr->type();
}

SocialDataRequest::Status SocialDataRequest::status() const
{
    return d_ptr->status;
}

bool SocialDataRequest::isActive() const
{
    return d_ptr->status == Started || d_ptr->status == Progressing;
}

bool SocialDataRequest::isFinished() const
{
    return d_ptr->status == Stopped || d_ptr->status == Finished;
}

QList<SocialGenericData> SocialDataRequest::results() const
{
    return d_ptr->results;
}

void SocialDataRequest::setResults(const QList<SocialGenericData> &results)
{
    d_ptr->results = results;
}

QList<KinletError> SocialDataRequest::errors() const
{
    return d_ptr->errors;
}

QStringList SocialDataRequest::performOnAccountsFilter() const
{
    return d_ptr->performOnAccountsFilter;
}

void SocialDataRequest::setPerformOnAccountsFilter(const QStringList &accountIds)
{
    d_ptr->performOnAccountsFilter = accountIds;
}

void SocialDataRequest::setRequestProgress(Status status, const QList<KinletError> &errors)
{
    d_ptr->status = status;
    d_ptr->errors = errors;
    qCDebug(Log::requests) << this << "has status" << status << "with" << d_ptr->results.size()
                           << "results and" << errors.size() << "errors";
    if (isFinished())
        Q_EMIT finished(this);
}

void SocialDataRequest::serialize(QDataStream &stream)
{
    stream << qint32(type()) << qint32(d_ptr->status) << d_ptr->results
           << d_ptr->performOnAccountsFilter;
}

void SocialDataRequest::unserialize(QDataStream &stream)
{
    qint32 kind = 0;
    qint32 status = 0;
    stream >> kind >> status;
    readList(stream, d_ptr->results);
    readList(stream, d_ptr->performOnAccountsFilter);
    d_ptr->status = Status(status);
}
