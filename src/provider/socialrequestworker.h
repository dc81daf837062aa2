// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "kinletexport.h"

#include <QObject>

#include <memory>

class SocialDataRequest;
class SocialRequestWorkerPrivate;
struct SocialRequestJob;

/**
 * Serves one request by several providers: gives each a copy, merges their answers into the
 * caller's request as they come, ends it when all have answered or a minute has passed, and deletes
 * the copies later.
 */
class KINLET_AUTOTEST_EXPORT SocialRequestWorker : public QObject {
    Q_OBJECT

public:
    explicit SocialRequestWorker(QObject *parent);
    /// Open jobs and their copies stay: providers may still be working on them.
    ~SocialRequestWorker() override;

    /// Serves \a request, which stays the caller's. False only if it could not be copied.
    bool performRequest(SocialDataRequest *request);
    /// Does nothing and returns false: only the time-out cancels providers.
    bool cancelRequest(SocialDataRequest *request);
    /// A new request of the same class with the same content, without a parent, owned by the
    /// caller; null if the class cannot be made from its meta-object.
    static SocialDataRequest *requestCopy(SocialDataRequest *request);

private Q_SLOTS:
    void requestFinished(SocialDataRequest *request);
    void timeoutElapsed();
    void onRequestDisposed(QObject *object);
    void onDeferredDelete();

private:
    void startProviders(SocialRequestJob *job);
    bool processResults(SocialRequestJob *job);
    void deleteJob(SocialRequestJob *job);

    const std::unique_ptr<SocialRequestWorkerPrivate> d;
};
