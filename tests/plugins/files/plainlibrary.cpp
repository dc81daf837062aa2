// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include <QtGlobal>

// A library, but no plug-in.
extern "C" Q_DECL_EXPORT int plainLibraryAnswer()
{
    return 42;
}
