// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "dbus/managedrunner.h"
#include "manager/kinletmanager.h"
#include "support/scriptedprovider.h"

#include <QElapsedTimer>
#include <QTest>

#include <memory>

/// Milliseconds, enough for a clock that runs fast.
constexpr int Patience = 600000;

/// A request to all providers, or to one account.
class Asked : public SocialGetPersonsRequest {
public:
    explicit Asked(const QList<SocialServiceAccount> &accounts = {})
    {
        QObject::connect(this, &SocialDataRequest::finished, this, [this] {
            ++ends;
            m_endedAfter = m_clock.elapsed();
        });
        m_clock.start();
        KinletManager::instance()->performRequest(this, accounts);
    }

    QStringList answeredBy() const
    {
        QStringList ids = idsOf(results());
        ids.sort();
        return ids;
    }

    bool waitForAnswerOf(const QString &id) const
    {
        return QTest::qWaitFor([&] { return answeredBy().contains(id); }, Patience);
    }

    bool waitForEnd() const
    {
        return QTest::qWaitFor([&] { return ends > 0; }, Patience);
    }

    /// Whether it ended once, as if nothing had happened.
    bool wasServed() const { return ends == 1 && errors().isEmpty(); }

    /// Whether it ended once, when its minute was up.
    bool wasGivenUp() const
    {
        return ends == 1 && m_endedAfter >= 60000 && status() == Finished
            && typesOf(errors()) == QList<int>{KinletError::ProviderTimeout};
    }

    int ends = 0;

private:
    QElapsedTimer m_clock;
    qint64 m_endedAfter = 0;
};

/// Two runners, "a" and "b", and the manager that knows them.
class TwoRunners {
public:
    TwoRunners()
    {
        TestBus::removeActivatable();
        renewA();
        b = std::make_unique<ManagedRunner>(QStringLiteral("b"));
    }
    ~TwoRunners()
    {
        KinletManager::cleanupInstance();
        runDeferredDeletes();
    }

    /// The manager notices when "a" goes and comes. To be called before there is a manager.
    static void watchA()
    {
        // What the bus itself would start ends at once.
        TestBus::makeActivatable(FakeRunner::busName(QStringLiteral("a")), "/bin/false");
    }

    /// Starts the manager; true once both have told it their accounts.
    bool start()
    {
        const KinletManager *manager = KinletManager::instance();
        a->answerStartUp();
        b->answerStartUp();
        return QTest::qWaitFor(
            [=] { return manager->isInitialized() && manager->accounts().size() == 2; }, Patience);
    }

    /// Another process in the place of "a".
    void renewA()
    {
        a.reset();
        a = std::make_unique<ManagedRunner>(QStringLiteral("a"));
    }

    /// Whether that runner serves a request of its own.
    static bool goesOnWorking(ManagedRunner &runner)
    {
        const Asked request({runner.account()});
        runner.answerNext();
        return request.waitForEnd() && request.wasServed()
            && request.answeredBy() == QStringList(runner.id());
    }

    std::unique_ptr<ManagedRunner> a;
    std::unique_ptr<ManagedRunner> b;
};
