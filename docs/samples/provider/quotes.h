// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/KinletError>
#include <Kinlet/KinletInterface>

#include <QHash>

class QTimer;

/// A network for quotes, which takes a moment to answer.
class Quotes : public KinletInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0")
    Q_INTERFACES(KinletInterface)

public:
    void init() override;
    QVariantMap metaData() override;
    QList<SocialService> services() override;
    QList<SocialServiceAccount> accounts() override;
    void performRequest(SocialDataRequest *request) override;
    void cancelRequest(SocialDataRequest *request) override;

private:
    void answer(SocialDataRequest *request);
    QList<KinletError> publish(const QString &text);

    QHash<SocialDataRequest *, QTimer *> replies;
    QList<SocialActivity> quotes;
};
