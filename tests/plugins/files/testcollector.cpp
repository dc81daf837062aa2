// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "provider/personcollectorinterface.h"

#include "pluginname.h"

class TestCollector : public PersonCollectorInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0")

public:
    void init() override { logInit(name); }
    QVariantMap metaData() override { return pluginMetaData(name); }

private:
    const QString name = pluginName();
};

#include "testcollector.moc"
