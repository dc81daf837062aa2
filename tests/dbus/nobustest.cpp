// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/socialdbuspluginrepository.h"
#include "manager/kinletmanager.h"
#include "requests/socialgetpersonsrequest.h"

#include <QSignalSpy>
#include <QTest>

namespace {

QStringList criticals;

void collectCriticals(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtCriticalMsg)
        criticals.append(text);
}

}

/// What there is without a session bus.
class NoBusTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void repositoryIsEmptyAndSaysWhy();
    void managerHasNoProviders();
};

void NoBusTest::repositoryIsEmptyAndSaysWhy()
{
    criticals.clear();
    const QtMessageHandler usual = qInstallMessageHandler(collectCriticals);
    const SocialDBusPluginRepository repository(nullptr);
    qInstallMessageHandler(usual);
    QVERIFY(repository.validPlugins().isEmpty());
    QCOMPARE(criticals.size(), 1);
    // The second text is a literal, and so without quotes.
    QCOMPARE(criticals.at(0).trimmed(),
             QStringLiteral("void SocialDBusPluginRepository::collectPlugins() D-Bus not running? "
                            "Not able to connect to social networks."));
    QVERIFY(criticals.at(0).contains(QLatin1Char('\n')));
}

void NoBusTest::managerHasNoProviders()
{
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(QStringLiteral("D-Bus not running\\?")));
    KinletManager *manager = KinletManager::instance();
    QVERIFY(manager->isInitialized());
    QVERIFY(manager->allProviderNames().isEmpty());
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    manager->performRequest(&request, {});
    QCOMPARE(finished.count(), 1);
    QCOMPARE(int(request.status()), 4);
    KinletManager::cleanupInstance();
}

QTEST_GUILESS_MAIN(NoBusTest)
#include "nobustest.moc"
