// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "fuzzing.h"
#include "requests/socialdatarequest.h"

#include <memory>

using Request = std::unique_ptr<SocialDataRequest>;

/// What a reader made of a request's bytes.
struct Reading {
    /// The fields in a form that is the same for equal ones.
    QByteArray fields;
    QDataStream::Status status = QDataStream::Ok;
    qint64 position = 0;

    bool isClean(const QByteArray &bytes) const
    {
        return status == QDataStream::Ok && position == bytes.size();
    }
};

/// Reads a request of that kind with Qt's own readers, which trust what they read.
Reading readByQt(const QByteArray &bytes, int kind, const StreamForm &form);

/// The fields of a request, as readByQt() has them.
QByteArray fieldsOf(SocialDataRequest &request);

/// Checks what holds for a request whatever was read into it.
void checkRequest(const SocialDataRequest &request, int kind, qint64 bytes);
