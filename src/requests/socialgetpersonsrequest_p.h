// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "requests/socialdatarequest_p.h"

#include <QHash>
#include <QRegExp>

class SocialGetPersonsRequestPrivate : public SocialDataRequestPrivate {
public:
    int type() const override { return SocialDataRequest::GetPersons; }

    QHash<QString, QRegExp> propertyFilter;
};
