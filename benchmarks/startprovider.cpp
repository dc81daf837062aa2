// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "provider/kinletinterface.h"

#include "pluginname.h"

#include <chrono>

/// A provider with one service and one account. It notes in the application's properties
/// "firstInit" and "firstRequest" when the first of its copies was called so.
class StartProvider : public KinletInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0")
    Q_INTERFACES(KinletInterface)

public:
    void init() override { note("firstInit"); }

    QVariantMap metaData() override { return pluginMetaData(m_name); }

    void performRequest(SocialDataRequest *request) override
    {
        note("firstRequest");
        KinletInterface::performRequest(request);
    }

    QList<SocialService> services() override
    {
        SocialService service;
        service.setProperty(SocialGenericData::Id, QString(m_name + QLatin1String("-service")));
        return {service};
    }

    QList<SocialServiceAccount> accounts() override
    {
        SocialServiceAccount account;
        account.setProperty(SocialGenericData::Id, QString(m_name + QLatin1String("-account")));
        return {account};
    }

private:
    static void note(const char *event)
    {
        using std::chrono::steady_clock;
        if (!qApp->property(event).isValid())
            qApp->setProperty(event, qint64(steady_clock::now().time_since_epoch().count()));
    }

    const QString m_name = pluginName();
};

#include "startprovider.moc"
