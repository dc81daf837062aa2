// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "kinletexport.h"

#include <QStringList>

class SocialGetActivitiesRequest;

/// Makes the usual timeline requests. The caller owns what is returned; it has no parent.
class KINLET_EXPORT TimelineRequestFactory {
public:
    /// Statuses of the home page.
    static SocialGetActivitiesRequest *createHomepageTimelineRequest();
    /// Statuses that the given persons published, fetched anew from the network.
    static SocialGetActivitiesRequest *createProfileTimelineRequest(const QStringList &personIds);
};
