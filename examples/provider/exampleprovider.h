// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/KinletInterface>

/// A network with one account and one status.
class ExampleProvider : public KinletInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0")
    Q_INTERFACES(KinletInterface)

public:
    void init() override;
    QVariantMap metaData() override;
    QList<SocialService> services() override;
    QList<SocialServiceAccount> accounts() override;
    void performRequest(SocialDataRequest *request) override;
};
