// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "requests/socialdatarequest.h"

#include <QSharedPointer>

#include <vector>

/// A request as it is kept in the golden files; every result is a record with values of all types.
struct GoldenRequest {
    QString name;
    QSharedPointer<SocialDataRequest> request;
};

/// One request of every kind.
std::vector<GoldenRequest> goldenRequests();

/// A stream version that golden files are kept in, and how their names call it.
struct GoldenVersion {
    QString name;
    int version;
};

std::vector<GoldenVersion> goldenVersions();
