// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "load/storm.h"
#include "support/scriptedprovider.h"

#include <utility>

/// An application's request, which tells the storm what becomes of it. Without Q_OBJECT on purpose:
/// its copies are of the plain class.
template <class Base>
class StormRequest : public Base {
public:
    template <typename... Arguments>
    explicit StormRequest(Storm &storm, const StormModel::Job &job, Arguments &&...arguments)
        : Base(std::forward<Arguments>(arguments)...), m_storm(storm), m_job(job)
    {
        job->caller = this;
        job->kind = this->type();
        QObject::connect(this, &SocialDataRequest::finished, this,
                         [&storm, job] { storm.requestFinished(job); });
    }
    ~StormRequest() override { m_storm.model.callerGoing(m_job); }

    void setRequestProgress(SocialDataRequest::Status status,
                            const QList<KinletError> &errors) override
    {
        // This may be deleted below.
        Storm &storm = m_storm;
        const StormModel::Job job = m_job;
        storm.model.reported(job, {status, idsOf(this->results()), typesOf(errors)});
        Base::setRequestProgress(status, errors);
        storm.requestReported(job);
    }

private:
    Storm &m_storm;
    const StormModel::Job m_job;
};
