// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QJsonObject>
#include <QString>

namespace ActivityStreams {

/// What is wrong with an object and the things inside it that matter here, in one English line;
/// empty if nothing is.
QString problem(const QJsonObject &object);

} // namespace ActivityStreams
