// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QtGlobal>

/// Marks the public classes: everything else in the library is hidden.
#ifdef KINLET_BUILDING_LIBRARY
#define KINLET_EXPORT Q_DECL_EXPORT
#else
#define KINLET_EXPORT Q_DECL_IMPORT
#endif

/// Marks internal classes that tests link: visible only in builds with BUILD_TESTING.
#ifdef KINLET_EXPORT_INTERNALS
#define KINLET_AUTOTEST_EXPORT KINLET_EXPORT
#else
#define KINLET_AUTOTEST_EXPORT
#endif
