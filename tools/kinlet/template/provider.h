// SPDX-FileCopyrightText: @YEAR@ The @NAME@ developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/KinletError>
#include <Kinlet/KinletInterface>
#include <Kinlet/SocialGetActivitiesRequest>
#include <Kinlet/SocialGetLikersRequest>

#include <QList>

/// Answers requests from what the network holds.
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
    void answerActivities(SocialGetActivitiesRequest *request);
    void answerLikers(SocialGetLikersRequest *request);
    void answerPersons(SocialGetPersonsRequest *request);

    /// Requests that wait for their answer. One that was cancelled is not among them any more, and
    /// must not be touched.
    QList<SocialDataRequest *> waiting;
};
