// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/proxiedrunner.h"
#include "dbus/socialdbuspluginrepository.h"
#include "dbus/testbus.h"
#include "records/valuetypes.h"
#include "requests/socialpostactivitiesrequest.h"
#include "support/categorylog.h"

#include <QSignalSpy>
#include <QTest>

namespace {

const QString secret = QStringLiteral("SECRET");

// Texts in which request ids and numbers of bytes are left out.
QStringList taken()
{
    static const QRegularExpression varying(QStringLiteral("\"\\{[0-9a-f-]+\\}\"|\\d+(?= bytes)"));
    return CategoryLog::take().replaceInStrings(varying, QStringLiteral("#"));
}

// Waits until that, and nothing else, is told.
bool tells(std::initializer_list<const char *> expected)
{
    QStringList told;
    const auto isAllThere = [&] {
        told += taken();
        return told.size() >= int(expected.size());
    };
    return QTest::qWaitFor(isAllThere, Patience) && told == lines(expected);
}

}

/// What is told of runners and of what goes over the bus.
class BusLogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KinletInitializer::init(); }
    void runnersComeAndGo();
    void requestsAndAnswers();
    void refusals();
    void updates();
    void nothingIsToldUnlessAskedFor();
};

void BusLogTest::runnersComeAndGo()
{
    const QString busName = FakeRunner::busName(QStringLiteral("a"));
    FakeRunner runner({busName});
    TestBus::makeActivatable(busName, KINLET_FAKE_RUNNER " " + busName.toUtf8());
    const CategoryLog log("kinlet.dbus=true");
    SocialDBusPluginRepository repository(nullptr);
    const std::unique_ptr<KinletInterface> proxy(repository.kinletPlugin(QStringLiteral("a")));
    QCOMPARE(log.take(),
             lines({"kinlet.dbus.debug: \"com.orvane.kinlet.a\" is watched: the bus can start it",
                    "kinlet.dbus.info: The runner \"a\" has appeared"}));
    QSignalSpy removed(&repository, SIGNAL(pluginRemoved(QString)));
    runner.release(busName);
    QVERIFY(removed.count() > 0 || removed.wait(Patience));
    QCOMPARE(log.take(), lines({"kinlet.dbus.info: The runner \"a\" has vanished"}));
    TestBus::removeActivatable();
}

void BusLogTest::requestsAndAnswers()
{
    ProxiedRunner served;
    const CategoryLog log;
    SocialPostActivitiesRequest request(SocialActivity::Status, secret);
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    const QString id = served.perform(request);
    QCOMPARE(taken(),
             lines({"kinlet.dbus.debug: SocialPostActivitiesRequest(0x) goes to "
                    "\"com.orvane.kinlet.fake\" as # in # bytes"}));

    SocialPostActivitiesRequest answer(SocialActivity::Status, secret);
    SocialGenericData record;
    record.setProperty(SocialGenericData::Description, secret);
    answer.setResults({record});
    const QByteArray bytes = Payload::write(answer);
    served.answer(id, bytes, secret.toUtf8());
    QVERIFY(finished.wait(Patience));
    QCOMPARE(taken(),
             lines({"kinlet.dbus.debug: \"com.orvane.kinlet.fake\" answers # in # bytes",
                    "kinlet.requests.debug: SocialPostActivitiesRequest(0x) has status 4 with 1 "
                    "results and 0 errors"}));

    served.answer(id, bytes);
    QVERIFY(tells({"kinlet.dbus.debug: \"com.orvane.kinlet.fake\" answers # that nobody waits "
                   "for"}));
    served.answer(served.perform(request), bytes.chopped(3));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(taken().at(2),
             QStringLiteral("kinlet.dbus.warning: A payload of # bytes is bad from byte %1 on; %1 "
                            "of them are safe")
                 .arg(bytes.size() - 3));
}

void BusLogTest::refusals()
{
    ProxiedRunner served;
    served.runner.refuse();
    const CategoryLog log("kinlet.dbus.warning=true");
    SocialPostActivitiesRequest request(SocialActivity::Status, secret);
    served.perform(request);
    QVERIFY(tells({"kinlet.dbus.warning: # is refused with \"org.example.Error.Refused\""}));
}

void BusLogTest::updates()
{
    ProxiedRunner served;
    const CategoryLog log;
    SocialGenericData record;
    record.setProperty(SocialGenericData::Description, secret);
    const QVariantList data{Payload::write(record), Payload::write(record)};
    for (const char *kind : {"dataUpdate", "personsUpdate"}) {
        QSignalSpy updated(served.proxy.get(),
                           *kind == 'd'
                               ? SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>))
                               : SIGNAL(personsUpdate(QList<SocialNetworkPerson>, QList<QString>)));
        served.push(kind, data);
        QVERIFY(updated.count() > 0 || updated.wait(Patience));
    }
    const QStringList told = taken();
    QCOMPARE(told.size(), 2);
    const QString begin =
        QStringLiteral("kinlet.dbus.debug: \"com.orvane.kinlet.fake\" has news of 2 ");
    QVERIFY2(told.at(0).startsWith(begin + QLatin1String("records")), qPrintable(told.at(0)));
    QVERIFY2(told.at(1).startsWith(begin + QLatin1String("persons")), qPrintable(told.at(1)));
    QVERIFY(!told.join(QChar()).contains(secret));
}

void BusLogTest::nothingIsToldUnlessAskedFor()
{
    ProxiedRunner served;
    served.runner.refuse();
    const CategoryLog log("");
    SocialDBusPluginRepository repository(nullptr);
    const std::unique_ptr<KinletInterface> proxy(repository.kinletPlugin(served.id));
    QVERIFY(proxy);
    SocialPostActivitiesRequest request(SocialActivity::Status, secret);
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    proxy->performRequest(&request);
    served.answer(served.runner.nextCall().requestId(), QByteArray(3, 'x'));
    QVERIFY(finished.wait(Patience));
    TestBus::deliverAll();
    QCOMPARE(log.take(), QStringList());
}

QTEST_GUILESS_MAIN(BusLogTest)
#include "buslogtest.moc"
