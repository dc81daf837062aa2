// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/runnerprocess.h"
#include "dbus/wireexamples.h"

#include "manager/kinletmanager.h"

#include <QRegularExpression>
#include <QSignalSpy>

namespace {

const QString id = QStringLiteral("recorder");
const QString accountId = QStringLiteral("a1");

}

/// What a runner that is not made with Qt receives.
class RequestsOnBusTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void requestsAtTheStart();
    void requestsOfEveryKind_data();
    void requestsOfEveryKind();

private:
    QString nextCall();
    void checkCall(const QString &call, const QByteArray &request);

    RunnerProcess runner;
};

QString RequestsOnBusTest::nextCall()
{
    if (!QTest::qWaitFor([this] { return runner.canReadLine(); }, LongMilliseconds))
        return QString();
    return QString::fromLatin1(runner.readLine()).trimmed();
}

void RequestsOnBusTest::checkCall(const QString &call, const QByteArray &request)
{
    const QRegularExpression form(
        QStringLiteral("^isay (\\d+) (\\{[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\\}) (\\S*)$"));
    const auto match = form.match(call);
    QVERIFY2(match.hasMatch(), qPrintable(call));
    QCOMPARE(match.captured(1).toInt(), int(request.at(3)));
    QCOMPARE(match.captured(2).size(), 38);
    QCOMPARE(match.captured(4), QString::fromLatin1(request.toHex()));
}

void RequestsOnBusTest::initTestCase()
{
    QVERIFY(runner.startAs(id, QStringLiteral(KINLET_RECORDER),
                           {QStringLiteral(KINLET_RUNNER_FOLDER), id, accountId}));
    QSignalSpy initialized(KinletManager::instance(), SIGNAL(initialized()));
    QVERIFY(initialized.wait(LongMilliseconds));
}

void RequestsOnBusTest::cleanupTestCase()
{
    KinletManager::cleanupInstance();
}

// The two that ask for services and accounts are sent without having been started.
void RequestsOnBusTest::requestsAtTheStart()
{
    for (const char *name : {"services-request", "accounts-request"}) {
        QByteArray request = documentedExamples().value(QLatin1String(name));
        QCOMPARE(int(request.at(7)), int(SocialDataRequest::Started));
        request[7] = SocialDataRequest::Inactive;
        checkCall(nextCall(), request);
    }
}

void RequestsOnBusTest::requestsOfEveryKind_data()
{
    QTest::addColumn<int>("index");
    const auto examples = requestExamples();
    for (int i = 0; i < examples.size(); ++i)
        QTest::newRow(qPrintable(examples.at(i).name)) << i;
}

void RequestsOnBusTest::requestsOfEveryKind()
{
    QFETCH(int, index);
    const RequestExample example = requestExamples().at(index);
    KinletManager *manager = KinletManager::instance();
    QList<SocialServiceAccount> accounts;
    if (!example.accounts.isEmpty())
        accounts.append(manager->account(accountId));
    const std::unique_ptr<SocialDataRequest> request(example.make());
    QSignalSpy finished(request.get(), SIGNAL(finished(SocialDataRequest *)));
    manager->performRequest(request.get(), accounts);
    QVERIFY(finished.wait(LongMilliseconds));
    checkCall(nextCall(), documentedExamples().value(example.name));
}

QTEST_GUILESS_MAIN(RequestsOnBusTest)
#include "requestsonbustest.moc"
