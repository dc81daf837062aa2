// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "provider/kinletinterface.h"

#include <QSet>

class Storm;

/// A provider that leaves to the storm what it does.
class StormProvider : public KinletInterface {
public:
    StormProvider(Storm &storm, const QString &name, const QStringList &accountIds);
    ~StormProvider() override;

    void init() override { }
    QVariantMap metaData() override;
    void performRequest(SocialDataRequest *request) override;
    void cancelRequest(SocialDataRequest *request) override;
    QList<SocialService> services() override;
    QList<SocialServiceAccount> accounts() override;

    const QString name;
    const QStringList accountIds;
    /// All that have not been deleted.
    static inline QSet<QObject *> alive;

private:
    Storm &m_storm;
};
