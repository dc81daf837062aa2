// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "log.h"

Q_LOGGING_CATEGORY(localLog, "kinlet.local", QtCriticalMsg)
