// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QObject>

#include <cstddef>
#include <cstring>

/**
 * The place of a virtual function in its class's table. Plug-ins call by place, so one built
 * against an older library breaks when places change.
 *
 * As the C++ ABI of GCC and clang lays out pointers to members: first the offset in the table, plus
 * 1 on some processors. A virtual destructor takes two places.
 */
template <typename Function>
int slotOf(Function function)
{
    std::ptrdiff_t parts[2];
    static_assert(sizeof(function) == sizeof(parts));
    std::memcpy(parts, &function, sizeof(parts));
    return int(parts[0] / std::ptrdiff_t(sizeof(void *)));
}

/// Adds a virtual function, which takes the next free place.
template <typename Class>
class Extended : public Class {
public:
    virtual void next() { }
};

/// For the place of the last virtual function of QObject.
class OpenObject : public QObject {
public:
    using QObject::disconnectNotify;
};
