// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "provider/kinletinterface.h"

#include "pluginname.h"

// Has all that a provider has, but does not say so.
class UndeclaredProvider : public KinletInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0")

public:
    void init() override { logInit(name); }
    QVariantMap metaData() override { return pluginMetaData(name); }

private:
    const QString name = pluginName();
};

#include "undeclaredprovider.moc"
