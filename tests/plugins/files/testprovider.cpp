// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "manager/kinletmanager.h"
#include "provider/kinletinterface.h"
#include "requests/socialdatarequest.h"

#include "pluginname.h"

#include <QHash>
#include <QPointer>

/*
 * A provider whose name says what it does. One with
 * - "failing" in its name emits error() from init();
 * - "held" keeps its requests until a test calls answer();
 * - "renamed" is called "same" once it has been initialised;
 * - "curious" asks for the manager whenever it is called, and listens to it from the start.
 * - "early" listens, from init(), to a loader that is the application's child.
 * All others answer at once, with one service and one account.
 */
class TestProvider : public KinletInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0")
    Q_INTERFACES(KinletInterface)
    /// The name that error() carries, if not its own.
    Q_PROPERTY(QString blamed MEMBER blamed)
    Q_PROPERTY(bool failing MEMBER failing)
    /// Types of the requests received, in order, and their status then.
    Q_PROPERTY(QVariantList asked MEMBER asked)
    Q_PROPERTY(QVariantList statusWhenAsked MEMBER statusWhenAsked)
    /// The managers that it was given, one for each time it asked.
    Q_PROPERTY(QVariantList managers MEMBER managers)
    /// How often that loader has said that all are loaded.
    Q_PROPERTY(int pluginsLoadedHeard MEMBER pluginsLoadedHeard)
    /// How often the manager has said that it is initialized.
    Q_PROPERTY(int initializedHeard MEMBER initializedHeard)

public:
    void init() override
    {
        logInit(name);
        meetManager();
        if (name.contains(QLatin1String("renamed")))
            reportedName = QStringLiteral("same");
        if (name.contains(QLatin1String("early")))
            connect(qApp->children().last(), SIGNAL(pluginsLoaded()), this,
                    SLOT(onPluginsLoaded()));
        if (failing)
            fail();
    }

    QVariantMap metaData() override { return pluginMetaData(reportedName); }

    void performRequest(SocialDataRequest *request) override
    {
        asked.append(request->type());
        statusWhenAsked.append(request->status());
        meetManager();
        if (name.contains(QLatin1String("held")))
            held.insert(request->type(), request);
        else
            KinletInterface::performRequest(request);
    }

    QList<SocialService> services() override
    {
        SocialService service;
        service.setProperty(SocialGenericData::Id, QString(name + QLatin1String("-service")));
        return {service};
    }

    QList<SocialServiceAccount> accounts() override
    {
        SocialServiceAccount account;
        account.setProperty(SocialGenericData::Id, QString(name + QLatin1String("-account")));
        return {account};
    }

    Q_INVOKABLE void answer(int type) { KinletInterface::performRequest(held.value(type)); }
    Q_INVOKABLE bool holds(int type) { return !held.value(type).isNull(); }
    Q_INVOKABLE void fail()
    {
        Q_EMIT error(blamed.isEmpty() ? name : blamed, QStringLiteral("Broken"),
                     QStringLiteral("It does not work."));
    }
    Q_INVOKABLE void push() { Q_EMIT dataUpdate({}, {QStringLiteral("Pushed")}); }

private Q_SLOTS:
    void onPluginsLoaded() { ++pluginsLoadedHeard; }

private:
    void meetManager()
    {
        if (!name.contains(QLatin1String("curious")))
            return;
        if (managers.isEmpty())
            connect(KinletManager::instance(), &KinletManager::initialized, this,
                    [this] { ++initializedHeard; });
        managers.append(QVariant::fromValue<QObject *>(KinletManager::instance()));
    }

    const QString name = pluginName();
    QString reportedName = name;
    QString blamed;
    bool failing = name.contains(QLatin1String("failing"));
    QVariantList asked;
    QVariantList statusWhenAsked;
    QVariantList managers;
    int pluginsLoadedHeard = 0;
    int initializedHeard = 0;
    QHash<int, QPointer<SocialDataRequest>> held;
};

#include "testprovider.moc"
