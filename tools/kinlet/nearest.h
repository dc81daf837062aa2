// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QStringList>

/// The one of \a right that \a wrong was probably meant to be, or a null text when none is near.
QString nearest(const QString &wrong, const QStringList &right);

/// "; did you mean NAME?", or \a otherwise when none of \a right is near.
QString didYouMean(const QString &wrong, const QStringList &right,
                   const QString &otherwise = QString());
