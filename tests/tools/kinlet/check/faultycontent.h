// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/SocialGenericData>

#include <QList>

class SocialDataRequest;
class SocialGetActivitiesRequest;

const QString FirstAccount = QStringLiteral("account:a");
const QString SecondAccount = QStringLiteral("account:b");

/// Whether the plug-in's file has this name, which makes it do so.
bool fault(const char *name);

using Records = QList<SocialGenericData>;

/// What the faulty provider has to answer with.
Records persons(const SocialDataRequest &request);
Records activities(const SocialGetActivitiesRequest &request);
