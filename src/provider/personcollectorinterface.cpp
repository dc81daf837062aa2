// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "provider/personcollectorinterface.h"

PersonCollectorInterface::PersonCollectorInterface(QObject *parent) : QObject(parent) { }

PersonCollectorInterface::~PersonCollectorInterface() = default;
