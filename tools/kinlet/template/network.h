// SPDX-FileCopyrightText: @YEAR@ The @NAME@ developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/KinletError>
#include <Kinlet/SocialActivity>
#include <Kinlet/SocialNetworkPerson>
#include <Kinlet/SocialService>
#include <Kinlet/SocialServiceAccount>

#include <QList>
#include <QObject>

/// What the network answers, once finished() has been emitted. Whoever asked deletes it; before its
/// end that takes the question back.
class Reply : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Everything comes with the id of its account; activities newest first.
    QList<SocialNetworkPerson> persons;
    QList<SocialActivity> activities;
    /// Why there is nothing; empty if all went well.
    QList<KinletError> errors;

Q_SIGNALS:
    /// Never before the function that made the reply has returned.
    void finished();
};

/// The network. Nothing here waits for an answer: an application that waits stands still.
class Network : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    SocialService service() const;
    QList<SocialServiceAccount> accounts() const;
    Reply *fetchPersons();
    Reply *fetchActivities();
};
