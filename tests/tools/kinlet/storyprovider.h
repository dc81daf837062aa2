// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/KinletInterface>
#include <Kinlet/SocialDataRequest>

#include <QJsonObject>
#include <QTimer>

class SocialGetActivitiesRequest;
class SocialGetPersonsRequest;

/**
 * A provider that tells what the file NAME.json in the folder KINLET_TEST_STORIES holds:
 *
 *   "metaData"     further entries of its meta-data
 *   "services", "accounts", "persons", "activities"   its records, as objects of properties
 *   "likers"       the ids of persons who like an activity, by its id
 *   "silent"       kinds of requests that it never answers
 *   "partial"      how many results it has told of those, in a progress report
 *   "stops"        kinds of requests that it ends with status Stopped
 *   "interrupts"   kinds of requests during which the user presses Ctrl-C
 *   "errors"       [type, description] pairs that it answers a kind of request with
 *   "messages"     what it prints when it starts
 *   "pushes"       what it pushes once the application waits: {"signal", "records", "updated"}
 *
 * What it is asked for it appends to the file KINLET_TEST_LOG, one object a line.
 */
class StoryProvider : public KinletInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0")
    Q_INTERFACES(KinletInterface)

public:
    StoryProvider();

    void init() override;
    QVariantMap metaData() override;
    void performRequest(SocialDataRequest *request) override;
    void cancelRequest(SocialDataRequest *request) override;
    QList<SocialService> services() override;
    QList<SocialServiceAccount> accounts() override;

private:
    QList<SocialGenericData> found(SocialDataRequest *request);
    QList<SocialGenericData> activities(const SocialGetActivitiesRequest &request);
    QList<SocialGenericData> persons(const SocialGetPersonsRequest &request);
    void push();

    QJsonObject story;
    QTimer pushing;
};
