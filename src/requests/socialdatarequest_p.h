// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "requests/socialdatarequest.h"

/// Data of a request. Each request class extends it by its own fields and names its kind.
class SocialDataRequestPrivate {
public:
    SocialDataRequestPrivate() = default;
    virtual ~SocialDataRequestPrivate() = default;
    virtual int type() const { return SocialDataRequest::GenericRequest; }

    SocialDataRequest::Status status = SocialDataRequest::Inactive;
    QList<KinletError> errors;
    QList<SocialGenericData> results;
    QStringList performOnAccountsFilter;

    Q_DISABLE_COPY(SocialDataRequestPrivate)
};
