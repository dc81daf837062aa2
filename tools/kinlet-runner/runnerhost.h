// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/SocialGenericData>
#include <Kinlet/SocialNetworkPerson>

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusServiceWatcher>
#include <QHash>
#include <QObject>
#include <QVariantMap>

class KinletInterface;
class SocialDataRequest;

/// Serves one provider on the bus: the object behind the runner interface.
class RunnerHost : public QObject, protected QDBusContext {
    Q_OBJECT

public:
    /// \a provider must outlive this object; its \a name is part of the object's path.
    RunnerHost(KinletInterface *provider, const QString &name, const QDBusConnection &bus);
    ~RunnerHost() override;

    /// Takes no new requests, and cancels those that the provider has not finished.
    void stop();
    bool isBusy() const { return !m_jobs.isEmpty(); }

public Q_SLOTS:
    // Called from the bus.
    void performRequest(int requestType, const QString &requestId, const QByteArray &request);
    QVariantMap metaData();

Q_SIGNALS:
    // Sent to everybody on the bus.
    void dataUpdate(const QVariantList &data, const QStringList &updatedProperties);
    void personsUpdate(const QVariantList &data, const QStringList &updatedProperties);

    /// A request has come or gone.
    void used();
    void busLost();

private Q_SLOTS:
    void onFinished(SocialDataRequest *request);
    void onCallerGone(const QString &caller);
    void onDataUpdate(const QList<SocialGenericData> &data,
                      const QList<QString> &updatedProperties);
    void onPersonsUpdate(const QList<SocialNetworkPerson> &data,
                         const QList<QString> &updatedProperties);
    void onError(const QString &name, const QString &error, const QString &message);

private:
    struct Job {
        QString caller;
        QString requestId;
        int requestType;
    };

    void refuse(const QString &reason);
    void start(SocialDataRequest *request);
    void cancel(SocialDataRequest *request);
    void abandon(SocialDataRequest *request);
    void watchCaller(const QString &caller);

    KinletInterface *const m_provider;
    const QString m_name;
    QDBusConnection m_bus;
    QDBusServiceWatcher m_callers;
    QHash<SocialDataRequest *, Job> m_jobs;
    bool m_stopping = false;
    bool m_recovering = false;
};
