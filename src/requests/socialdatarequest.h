// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "kinletexport.h"
#include "records/socialgenericdata.h"
#include "requests/kinleterror.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <memory>

class QDataStream;
class SocialDataRequestPrivate;

/**
 * A request to the providers, and the answer to it.
 *
 * An application makes an object of a subclass and hands it to KinletManager::performRequest().
 * Every provider that can answer gets a copy of its own; their answers are merged into the
 * application's object, which emits finished() at their end. The application owns its object
 * and may delete it at any time, also inside finished(). A request and everything that touches it
 * stay on the manager's thread.
 *
 * Ask once: a request that has been performed carries results, and performing it again would hand
 * them to the providers. Make a new object for each question.
 *
 * Providers see the copies: they set the results and then call setRequestProgress().
 *
 * Subclasses outside the library: with Q_OBJECT a subclass needs an invokable constructor without
 * arguments, or it cannot be copied and ends with KinletError::NotPerformed. Without Q_OBJECT its
 * copies are of the base class, which suits a class that only overrides setRequestProgress() to see
 * partial results.
 */
class KINLET_EXPORT SocialDataRequest : public QObject {
    Q_OBJECT

public:
    /// The kind of a request. The numbers are part of the stream form and of the bus protocol.
    enum Type : int {
        /// Of no kind in particular.
        GenericRequest = 0,
        /// A GetAggregatedServicesRequest.
        GetAggregatedServices = 1,
        /// A SocialGetAccountsRequest.
        GetAccounts = 3,
        /// A SocialGetPersonsRequest.
        GetPersons = 5,
        /// A SocialGetActivitiesRequest.
        GetActivities = 7,
        /// A SocialPostActivitiesRequest.
        PostActivities = 9,
        /// A SocialLikeActivityRequest.
        LikeActivity = 10,
        /// A SocialGetLikersRequest.
        GetLikers = 11
    };

    /// How far a request has come. A lower value means less progress.
    enum Status : int {
        /// Made, not yet performed.
        Inactive = 0,
        /// Handed to the providers.
        Started = 1,
        /// Some results may be there; more will come.
        Progressing = 2,
        /// Left by a provider that has given up. An application's request has it when all
        /// providers have ended and one of them so; it becomes Finished with the time-out.
        Stopped = 3,
        /// Complete, with or without errors.
        Finished = 4
    };

    /// A request of kind 0, which no provider answers with results.
    Q_INVOKABLE SocialDataRequest();
    /// For subclasses: takes ownership of \a d, which must not be null.
    explicit SocialDataRequest(SocialDataRequestPrivate *d);
    ~SocialDataRequest() override;

    /// The kind, a value of Type.
    int type() const;
    /// How far it has come.
    Status status() const;
    /// Whether the status is Started or Progressing.
    bool isActive() const;
    /// Whether the status is Stopped or Finished. At Stopped there is more to come, see finished().
    bool isFinished() const;

    /// The records found so far; empty before an answer. With several providers, in the order in
    /// which the providers were asked.
    QList<SocialGenericData> results() const;
    /// For providers: replaces all results. To be called before the progress report that ends the
    /// request.
    void setResults(const QList<SocialGenericData> &results);

    /// The errors of the last progress report. Empty when nothing went wrong, or nothing is known
    /// of it: those of a provider on the bus do not come back, and its failed request looks like
    /// one without results.
    QList<KinletError> errors() const;

    /// Ids of the accounts that the request is for; empty means all.
    /// KinletManager::performRequest() sets it.
    QStringList performOnAccountsFilter() const;
    /// Replaces the account filter.
    void setPerformOnAccountsFilter(const QStringList &accountIds);

    /**
     * For providers: reports progress. Stores \a status, replaces all errors by \a errors, and
     * emits finished() when \a status is Stopped or Finished: at every such call, also when the
     * request had ended before. Results stay as they are.
     *
     * An application that overrides it sees each partial result: the library calls it on the
     * application's object after every provider's answer. Call the base implementation.
     */
    virtual void setRequestProgress(Status status, const QList<KinletError> &errors);

    /**
     * Writes kind, status, results and account filter; subclasses append their own fields. Integers
     * are 32 bit in the stream's byte order, lists a 32 bit count and their elements. Errors are
     * not written.
     */
    virtual void serialize(QDataStream &stream);
    /**
     * Reads what serialize() wrote, into this object, and emits nothing. The kind in the stream is
     * not compared with this object's. What a truncated stream does not hold is empty or 0; the
     * stream's status tells. The errors stay as they are.
     */
    virtual void unserialize(QDataStream &stream);

Q_SIGNALS:
    /**
     * The request has ended: \a self is this object. Emitted from within setRequestProgress().
     *
     * At Stopped an application's request is still open: the signal comes again, with the status
     * Finished, after 60 seconds at the latest. To delete the request here is one way to have it
     * once.
     */
    void finished(SocialDataRequest *self);

protected:
    /// The private data, which subclasses extend. Never null.
    const std::unique_ptr<SocialDataRequestPrivate> d_ptr;
};
