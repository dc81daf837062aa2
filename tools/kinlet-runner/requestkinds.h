// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

class SocialDataRequest;

/// An empty request of that kind (SocialDataRequest::Type), owned by the caller; null for an
/// unknown kind.
SocialDataRequest *makeRequest(int kind);
