// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QLoggingCategory>

/// "kinlet.local": what happens to the journal, in names and numbers, without what stands in it.
/// Silent below critical until a rule turns it on.
Q_DECLARE_LOGGING_CATEGORY(localLog)
