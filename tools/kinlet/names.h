// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "session.h"

#include <QHash>
#include <QPair>

/// The names of persons whom records mention by id.
class Names {
public:
    explicit Names(Session &session);

    /// Asks the providers for the persons who own or receive the activities, as far as they are not
    /// known. A provider that has no answer leaves ids without names: that is no error.
    void lookUp(const QList<Entry> &activities);
    /// The name, or the id itself when no name is known.
    QString name(const QString &provider, const QString &personId) const;

private:
    Session &session;
    QHash<QPair<QString, QString>, QString> known;
};

/// What a person is called.
QString personName(const SocialGenericData &person);
