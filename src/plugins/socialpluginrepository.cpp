// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/socialpluginrepository.h"

SocialPluginRepository::SocialPluginRepository(QObject *parent) : QObject(parent) { }

SocialPluginRepository::~SocialPluginRepository() = default;
