// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "provider/kinletinterface.h"

#include <QSharedPointer>

// Calls of the test plug-in.

/// Lets a plug-in that holds its requests answer the one of that type.
inline bool answer(const QSharedPointer<KinletInterface> &provider, int type)
{
    return QMetaObject::invokeMethod(provider.data(), "answer", Q_ARG(int, type));
}

/// Whether the request that it holds is still there.
inline bool holds(const QSharedPointer<KinletInterface> &provider, int type)
{
    bool held = false;
    QMetaObject::invokeMethod(provider.data(), "holds", Q_RETURN_ARG(bool, held), Q_ARG(int, type));
    return held;
}

/// Lets any plug-in push an update.
inline bool push(const QSharedPointer<KinletInterface> &provider)
{
    return QMetaObject::invokeMethod(provider.data(), "push");
}
