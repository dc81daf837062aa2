// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "provider/kinletinterface.h"

#include <QHash>

/**
 * A provider whose accounts, NAME-10, NAME-1000 and NAME-never, tell what becomes of a request: it
 * is answered at once with that many persons, or never. Posts are accepted at once.
 */
class BenchmarkProvider : public KinletInterface {
    Q_OBJECT

public:
    explicit BenchmarkProvider(const QString &name);

    void init() override;
    QVariantMap metaData() override;
    QList<SocialServiceAccount> accounts() override;
    void performRequest(SocialDataRequest *request) override;

    static QString account(const QString &provider, const QByteArray &behaviour);

private:
    const QString m_name;
    QHash<QString, QList<SocialGenericData>> m_answers;
};
