// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "busexchange.h"

/// How many messages go over the bus for each request, as a monitor sees them.
double messagesPerRequest(Exchange &exchange);
