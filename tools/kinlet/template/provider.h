// SPDX-FileCopyrightText: @YEAR@ The @NAME@ developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "network.h"

#include <Kinlet/KinletInterface>
#include <Kinlet/SocialGetActivitiesRequest>
#include <Kinlet/SocialGetLikersRequest>

#include <QHash>

/// Asks the network what it is asked, and answers when the reply has come.
class Provider : public KinletInterface {
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
    void answerActivities(SocialGetActivitiesRequest *request, const Reply &reply);
    void answerLikers(SocialGetLikersRequest *request, const Reply &reply);
    void answerPersons(SocialGetPersonsRequest *request, const Reply &reply);

    Network network;
    /// What the open requests wait for. A request that is not here must not be touched any more.
    QHash<SocialDataRequest *, Reply *> replies;
};
