// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "requests/socialdatarequest.h"

#include <QByteArray>
#include <QList>
#include <QMap>

#include <functional>

/// The bytes of every example in docs/wire-format.md.
QMap<QString, QByteArray> documentedExamples();

/// A request of the document.
struct RequestExample {
    QString name;
    QStringList accounts;
    std::function<SocialDataRequest *()> make;
};

/// One of each kind.
QList<RequestExample> requestExamples();
