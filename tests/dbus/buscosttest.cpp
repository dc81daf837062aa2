// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/runnerprocess.h"
#include "dbus/testbus.h"
#include "manager/kinletmanager.h"
#include "requests/socialgetpersonsrequest.h"

#include <QSignalSpy>

#include <algorithm>
#include <memory>
#include <vector>

/// What a request costs in messages, as a monitor sees them.
class BusCostTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void threeMessagesEach_data();
    void threeMessagesEach();

private:
    QStringList messagesUntil(const QString &member);
    void perform(int count);

    RunnerProcess m_runner;
    QProcess m_monitor;
};

void BusCostTest::initTestCase()
{
    QVERIFY(m_runner.startAs(QStringLiteral("probe"), QStringLiteral(KINLET_RUNNER),
                             {QStringLiteral(KINLET_PROBE_FOLDER "/probe.so")}));
    QTRY_VERIFY_WITH_TIMEOUT(KinletManager::instance()->isInitialized(), LongMilliseconds);
    // From its first request on a runner watches who has asked.
    perform(1);
    m_monitor.start(QStringLiteral("dbus-monitor"),
                    {QStringLiteral("--session"), QStringLiteral("--profile")});
    // It gives its name back once it monitors.
    QVERIFY(!messagesUntil(QStringLiteral("NameLost")).isEmpty());
}

void BusCostTest::cleanupTestCase()
{
    m_monitor.kill();
    m_monitor.waitForFinished();
    KinletManager::cleanupInstance();
}

// Type and member of every message before the next that has that member.
QStringList BusCostTest::messagesUntil(const QString &member)
{
    QStringList messages;
    for (;;) {
        if (!QTest::qWaitFor([this] { return m_monitor.canReadLine(); }, LongMilliseconds))
            return {};
        const QList<QByteArray> words = m_monitor.readLine().trimmed().split('\t');
        const QString type = QString::fromLatin1(words.value(0));
        if (words.contains(member.toLatin1()))
            return messages << type + QLatin1Char(' ') + member;
        messages.append(type == QLatin1String("mr")
                            ? type
                            : type + QLatin1Char(' ') + QString::fromLatin1(words.value(7)));
    }
}

void BusCostTest::perform(int count)
{
    KinletManager *manager = KinletManager::instance();
    std::vector<std::unique_ptr<SocialGetPersonsRequest>> requests;
    for (int i = 0; i < count; ++i) {
        requests.push_back(std::make_unique<SocialGetPersonsRequest>());
        manager->performRequest(requests.back().get(),
                                {manager->account(QStringLiteral("probe-now"))});
    }
    for (const auto &request : requests) {
        QTRY_VERIFY_WITH_TIMEOUT(request->isFinished(), LongMilliseconds);
        QCOMPARE(int(request->results().size()), 1);
    }
}

void BusCostTest::threeMessagesEach_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("atOnce");
    QTest::newRow("one after the other") << 10 << 1;
    QTest::newRow("all at once") << 1 << 10;
}

void BusCostTest::threeMessagesEach()
{
    QFETCH(int, count);
    QFETCH(int, atOnce);
    TestBus::ask("GetId");
    QVERIFY(!messagesUntil(QStringLiteral("GetId")).isEmpty());
    for (int i = 0; i < count; ++i)
        perform(atOnce);
    TestBus::ask("ListNames");
    QStringList messages = messagesUntil(QStringLiteral("ListNames"));
    QCOMPARE(messages.takeLast(), QStringLiteral("mc ListNames"));
    // The reply to the first question.
    QCOMPARE(messages.takeFirst(), QStringLiteral("mr"));

    if (atOnce == 1) {
        for (int i = 0; i < messages.size(); i += 3)
            QCOMPARE(messages.mid(i, 3),
                     QStringList({QStringLiteral("mc performRequest"), QStringLiteral("mr"),
                                  QStringLiteral("sig requestFinished")}));
    }
    QCOMPARE(int(messages.size()), 3 * count * atOnce);
    for (const char *message : {"mc performRequest", "mr", "sig requestFinished"})
        QCOMPARE(int(messages.count(QLatin1String(message))), count * atOnce);
}

QTEST_GUILESS_MAIN(BusCostTest)
#include "buscosttest.moc"
