// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "manager/kinletmanager.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSharedPointer>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr int Patience = 60000;
const QString runnerFile = QStringLiteral(KINLET_BUILD "/bin/kinlet-runner");
const QString plugins = QStringLiteral(KINLET_BUILD "/tests/tools/kinlet-runner/plugins");

using Request = QSharedPointer<SocialDataRequest>;

SocialServiceAccount account(const QString &id)
{
    SocialServiceAccount account;
    account.setProperty(SocialGenericData::Id, id);
    return account;
}

// Which providers answered, in no order that means anything.
QStringList answeredBy(const SocialDataRequest &request)
{
    QStringList ids;
    const QList<SocialGenericData> results = request.results();
    for (const SocialGenericData &result : results)
        ids.append(result.id());
    ids.sort();
    return ids;
}

}

/**
 * What an application sees of two providers. Run with the plug-ins in this process, with each in
 * a process of its own behind kinlet-runner, and with those processes of the other Qt. The results
 * are the same, save that errors do not come back over the bus, a status is always Finished there,
 * and partial answers stay behind.
 */
class TransportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void providers();
    void registry();
    void everyKind_data();
    void everyKind();
    void filterReachesItsProviderOnly();
    void behaviours_data();
    void behaviours();
    void customValuesSurvive();
    void manyRequests();
    void pushes();
    void requestDeletedBeforeTheAnswer();
    void oneHangingProviderAmongTwo();

private:
    const bool m_onBus = qEnvironmentVariableIsEmpty("KINLET_USE_DBUS");
    std::vector<std::unique_ptr<QProcess>> m_runners;
    KinletManager *m_manager = nullptr;
};

void TransportTest::initTestCase()
{
    if (!QFile::exists(runnerFile))
        QSKIP(qPrintable(runnerFile + QStringLiteral(" has not been built")));
    if (m_onBus) {
        for (const char *name : {"probe", "second"}) {
            auto runner = std::make_unique<QProcess>();
            runner->setProcessChannelMode(QProcess::ForwardedErrorChannel);
            runner->start(runnerFile,
                          {QStringLiteral("%1/%2.so").arg(plugins, QLatin1String(name))});
            m_runners.push_back(std::move(runner));
            QTRY_VERIFY_WITH_TIMEOUT(
                QDBusConnection::sessionBus().interface()->isServiceRegistered(
                    QStringLiteral("com.orvane.kinlet.") + QString::fromLatin1(name)),
                Patience);
        }
    } else {
        qputenv("KINLET_PLUGIN_PATH", plugins.toLocal8Bit());
    }
    m_manager = KinletManager::instance();
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->isInitialized(), Patience);
}

void TransportTest::cleanupTestCase()
{
    KinletManager::cleanupInstance();
    for (const auto &runner : m_runners) {
        runner->terminate();
        QVERIFY(runner->waitForFinished(Patience));
        QCOMPARE(runner->exitCode(), 0);
    }
}

void TransportTest::providers()
{
    QStringList names = m_manager->allProviderNames();
    names.sort();
    QCOMPARE(names, QStringList({QStringLiteral("probe"), QStringLiteral("second")}));
}

void TransportTest::registry()
{
    QTRY_COMPARE_WITH_TIMEOUT(int(m_manager->services().size()), 2, Patience);
    QCOMPARE(m_manager->services().at(0).id(), QStringLiteral("probe-service"));
    QCOMPARE(m_manager->services().at(1).id(), QStringLiteral("second-service"));
    QCOMPARE(int(m_manager->accounts().size()), 20);
    QCOMPARE(m_manager->accounts().at(0).id(), QStringLiteral("probe-now"));
    QCOMPARE(m_manager->providerNameFromAccountId(QStringLiteral("second-never")),
             QStringLiteral("second"));
    QCOMPARE(m_manager->serviceFromAccountId(QStringLiteral("second-never")).id(),
             QStringLiteral("second-service"));
}

void TransportTest::everyKind_data()
{
    QTest::addColumn<Request>("request");
    QTest::addColumn<QVariantMap>("echo");

    const auto text = [](const char *text) { return QString::fromLatin1(text); };
    auto *persons = new SocialGetPersonsRequest;
    persons->setPropertyFilter(text("ScreenName"), QRegExp(text("a.*")));
    QTest::newRow("persons") << Request(persons)
                             << QVariantMap({{text("Kind"), 5}, {text("Filter"), 1}});
    auto *activities = new SocialGetActivitiesRequest;
    const QDateTime before(QDate(2026, 1, 2), QTime(3, 4), Qt::UTC);
    activities->setLimit(7);
    activities->setBefore(before);
    activities->setPersonsFilter({text("x"), text("y")});
    QTest::newRow("activities") << Request(activities)
                                << QVariantMap(
                                       {{text("Kind"), 7},
                                        {text("Limit"), 7},
                                        {text("Before"), before},
                                        {text("Persons"), QStringList({text("x"), text("y")})}});
    QTest::newRow("post") << Request(
        new SocialPostActivitiesRequest(SocialActivity::Status, text("hello")))
                          << QVariantMap({{text("Kind"), 9}, {text("Text"), text("hello")}});
    QTest::newRow("unlike") << Request(new SocialLikeActivityRequest(text("i"), false))
                            << QVariantMap({{text("Kind"), 10}, {text("Like"), false}});
    QTest::newRow("likers") << Request(new SocialGetLikersRequest(text("i")))
                            << QVariantMap({{text("Kind"), 11}, {text("Activity"), text("i")}});
    QTest::newRow("bare") << Request(new SocialDataRequest) << QVariantMap({{text("Kind"), 0}});
}

void TransportTest::everyKind()
{
    QFETCH(Request, request);
    QFETCH(QVariantMap, echo);

    QSignalSpy finished(request.data(), SIGNAL(finished(SocialDataRequest *)));
    m_manager->performRequest(request.data(), {});
    QTRY_COMPARE_WITH_TIMEOUT(int(request->status()), 4, Patience);
    QCOMPARE(finished.count(), 1);
    QVERIFY(request->errors().isEmpty());
    QCOMPARE(answeredBy(*request),
             QStringList({QStringLiteral("probe"), QStringLiteral("second")}));
    const QList<SocialGenericData> results = request->results();
    for (const SocialGenericData &result : results) {
        QCOMPARE(result.className(), QStringLiteral("Echo"));
        for (auto it = echo.cbegin(); it != echo.cend(); ++it)
            QCOMPARE(result.variantProperty(it.key()), it.value());
    }
}

void TransportTest::filterReachesItsProviderOnly()
{
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    m_manager->performRequest(
        &request, {account(QStringLiteral("second-now")), account(QStringLiteral("unknown"))});
    QVERIFY(finished.count() == 1 || finished.wait(Patience));
    QCOMPARE(answeredBy(request), QStringList(QStringLiteral("second")));
    QCOMPARE(request.results().at(0).variantProperty(QStringLiteral("Accounts")).toStringList(),
             QStringList(QStringLiteral("second-now")));
}

void TransportTest::behaviours_data()
{
    QTest::addColumn<QString>("behaviour");
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("errorType");

    const auto row = [](const char *behaviour, int status, int errorType) {
        QTest::newRow(behaviour) << QString::fromLatin1(behaviour) << status << errorType;
    };
    row("now", 4, -1);
    row("later", 4, -1);
    row("twice", 4, -1);
    row("partial", 4, -1);
    row("stopped", m_onBus ? 4 : 3, -1);
    row("failing", 4, m_onBus ? -1 : KinletError::NetworkFailed);
}

void TransportTest::behaviours()
{
    QFETCH(QString, behaviour);
    QFETCH(int, status);
    QFETCH(int, errorType);

    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    m_manager->performRequest(&request, {account(QStringLiteral("probe-") + behaviour)});
    QVERIFY(finished.count() > 0 || finished.wait(Patience));
    QCOMPARE(int(request.status()), status);
    QCOMPARE(answeredBy(request), QStringList(QStringLiteral("probe")));
    QCOMPARE(int(request.errors().size()), errorType < 0 ? 0 : 1);
    if (errorType >= 0)
        QCOMPARE(int(request.errors().at(0).type()), errorType);
}

void TransportTest::customValuesSurvive()
{
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    m_manager->performRequest(&request, {account(QStringLiteral("probe-now"))});
    QVERIFY(finished.count() == 1 || finished.wait(Patience));
    const SocialGenericData record = request.results().at(0);
    const auto attachment =
        record.variantProperty(SocialActivity::Attachment).value<SocialActivityAttachment>();
    QCOMPARE(attachment.firstText, QStringLiteral("title"));
    QCOMPARE(int(attachment.media.size()), 2);
    QCOMPARE(int(attachment.media.at(1).kind), int(Media::Video));
    QCOMPARE(attachment.media.at(1).firstText, QStringLiteral("url"));
    const auto texts =
        record.variantProperty(QStringLiteral("Texts")).value<SocialActionIconTexts>();
    QCOMPARE(texts.firstText, QStringLiteral("one"));
    const auto progress =
        record.variantProperty(SocialServiceAccount::ImportProgress).value<SocialImportProgress>();
    QVERIFY(progress.running);
    QCOMPARE(progress.contactsMerged, 3);
}

void TransportTest::manyRequests()
{
    std::vector<std::unique_ptr<SocialGetPersonsRequest>> requests;
    for (int i = 0; i < 300; ++i) {
        requests.push_back(std::make_unique<SocialGetPersonsRequest>());
        m_manager->performRequest(requests.back().get(), {});
    }
    for (const auto &request : requests) {
        QTRY_COMPARE_WITH_TIMEOUT(int(request->status()), 4, Patience);
        QCOMPARE(int(request->results().size()), 2);
    }
}

void TransportTest::pushes()
{
    QSignalSpy persons(m_manager,
                       SIGNAL(personsUpdate(QList<SocialNetworkPerson>, QList<QString>)));
    QSignalSpy data(m_manager, SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    SocialGetPersonsRequest request;
    m_manager->performRequest(&request, {account(QStringLiteral("probe-pushing"))});
    QTRY_COMPARE_WITH_TIMEOUT(data.count(), 1, Patience);
    QCOMPARE(persons.count(), 1);
    QCOMPARE(persons.at(0).at(0).value<QList<SocialNetworkPerson>>().at(0).id(),
             QStringLiteral("pushed"));
    QCOMPARE(data.at(0).at(0).value<QList<SocialGenericData>>().at(0).description(),
             QStringLiteral("pushed"));
    QCOMPARE(data.at(0).at(1).value<QList<QString>>(),
             QList<QString>({SocialGenericData::Description}));
    QTRY_COMPARE_WITH_TIMEOUT(int(request.status()), 4, Patience);
}

void TransportTest::requestDeletedBeforeTheAnswer()
{
    auto request = std::make_unique<SocialGetPersonsRequest>();
    m_manager->performRequest(request.get(), {account(QStringLiteral("probe-later"))});
    request.reset();
    SocialGetPersonsRequest next;
    QSignalSpy finished(&next, SIGNAL(finished(SocialDataRequest *)));
    m_manager->performRequest(&next, {account(QStringLiteral("probe-later"))});
    QVERIFY(finished.wait(Patience));
    QCOMPARE(answeredBy(next), QStringList(QStringLiteral("probe")));
}

void TransportTest::oneHangingProviderAmongTwo()
{
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    m_manager->performRequest(
        &request, {account(QStringLiteral("probe-never")), account(QStringLiteral("second-now"))});
    // The other's answer is there at once; the request stays open.
    QTRY_COMPARE_WITH_TIMEOUT(answeredBy(request), QStringList(QStringLiteral("second")), Patience);
    QCOMPARE(finished.count(), 0);
    QVERIFY(request.isActive());
}

QTEST_GUILESS_MAIN(TransportTest)
#include "transporttest.moc"
