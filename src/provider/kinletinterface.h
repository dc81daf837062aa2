// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "provider/personcollectorinterface.h"
#include "records/typedrecords.h"
#include "records/valuetypes.h"

#include <QList>
#include <QString>
#include <QtPlugin>

class SocialDataRequest;

/**
 * A provider: it serves requests for one social network and pushes what is new.
 *
 * A plug-in derives from it and declares
 * Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0") and Q_INTERFACES(KinletInterface).
 *
 * Everything happens on the thread that owns the manager. A provider that works on other threads
 * brings its answers back to that thread before it touches a request.
 *
 * To answer a request, a provider
 * - looks at its type() and parameters; performOnAccountsFilter() names only accounts of this
 * provider, or is empty, which means all of them;
 * - stores what it found with setResults() or the request's own typed setter;
 * - ends with exactly one call of setRequestProgress() with SocialDataRequest::Finished and the
 * errors that there were, inside performRequest() or later. What a request holds at Progressing is
 * passed on when another provider ends. A request left at Stopped keeps the application waiting for
 * the time-out.
 *
 * Nothing is reported by return value or exception. In an application's process a request that is
 * not answered within 60 seconds is cancelled, but not what the manager asks of a new provider: its
 * services and accounts. kinlet-runner knows no time: it cancels when the caller has left the bus,
 * when it leaves itself, and after Stopped. A provider that waits for a network bounds that wait.
 */
class KINLET_EXPORT KinletInterface : public PersonCollectorInterface {
    Q_OBJECT

public:
    /// A provider that nobody has asked yet.
    explicit KinletInterface(QObject *parent = nullptr);
    ~KinletInterface() override;

    /**
     * Starts serving \a request, which stays the caller's and lives until it has finished or
     * cancelRequest() was called for it.
     *
     * The default answers the two registry requests from services() and accounts(), and ends any
     * other at once with status Finished and one error of type KinletError::UnsupportedRequest.
     */
    virtual void performRequest(SocialDataRequest *request);

    /// Stop working on \a request and do not touch it again: it may be deleted. The default does
    /// nothing.
    virtual void cancelRequest(SocialDataRequest *request);

    /// The services as the provider knows them now. The default is none.
    virtual QList<SocialService> services();

    /// The accounts as the provider knows them now. The default is none.
    virtual QList<SocialServiceAccount> accounts();

Q_SIGNALS:
    /// Persons are new or have changed. The manager passes it on.
    void personsUpdate(const QList<SocialNetworkPerson> &data,
                       const QList<QString> &updatedProperties);
    /// Activities of a timeline are new or have changed. The manager does not pass it on: use
    /// dataUpdate() for what applications are to see.
    void activityUpdate(const QList<SocialActivity> &data, const QList<QString> &updatedProperties,
                        KinletTimeline::TimelineType timelineType);
    /**
     * Records are new or have changed. The manager passes it on, unless \a updatedProperties names
     * "ImportProgress" or "State": then it reads the account records in \a data and emits
     * importStarted(), importEnded() or accountsRemoved() instead.
     */
    void dataUpdate(const QList<SocialGenericData> &data, const QList<QString> &updatedProperties);
    /// The provider no longer has these persons. The manager does not pass it on.
    void personsRemoved(const QList<SocialNetworkPerson> &data);
};

Q_DECLARE_INTERFACE(KinletInterface, "com.orvane.lumend.Kinlet/1.0")
