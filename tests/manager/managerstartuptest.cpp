// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/socialdbuspluginrepository.h"
#include "managerinternals.h"
#include "plugins/socialpluginloader.h"
#include "requests/socialdatarequest.h"
#include "support/pluginfolder.h"
#include "support/scriptedprovider.h"

#include <QPointer>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

namespace {

constexpr int services = SocialDataRequest::GetAggregatedServices;
constexpr int accounts = SocialDataRequest::GetAccounts;

/// Lets a provider that holds its requests answer one.
bool answer(const QString &name, int type)
{
    return QMetaObject::invokeMethod(manager()->provider(name).data(), "answer", Q_ARG(int, type));
}

QSet<QString> providerNames()
{
    const QList<QString> names = manager()->allProviderNames();
    return {names.begin(), names.end()};
}

}

class ManagerStartupTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        KinletManager::cleanupInstance();
        qputenv("KINLET_USE_DBUS", "0");
    }

    void environmentChoosesTheRepository_data();
    void environmentChoosesTheRepository();
    void withoutPluginsItIsInitializedAtOnce();
    void withoutProvidersItWaitsForOneThatComesLater();
    void everyOrderOfAnswers_data();
    void everyOrderOfAnswers();
    void servicesAnswerDoesNotCount();
    void statusOfTheAnswerDoesNotMatter_data();
    void statusOfTheAnswerDoesNotMatter();
    void eachProviderIsAskedDirectlyForServicesThenAccounts();
    void collectorsAmongProvidersAreSkipped();
    void secondProviderOfANameIsReleased();
    void providerThatAnswersAtOnceThenOneOfItsName();
    void pluginCanAskForTheManagerWhileItIsBuilt();
    void startupThatEndsInTheConstructorIsNotAnnounced();
};

void ManagerStartupTest::environmentChoosesTheRepository_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("inProcess");

    QTest::newRow("unset") << QByteArray() << false;
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("1") << QByteArray("1") << false;
    QTest::newRow("false") << QByteArray("false") << false;
    QTest::newRow("no") << QByteArray("no") << false;
    QTest::newRow("0") << QByteArray("0") << true;
    QTest::newRow("10") << QByteArray("10") << true;
    QTest::newRow("x0y") << QByteArray("x0y") << true;
}

void ManagerStartupTest::environmentChoosesTheRepository()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, inProcess);
    const PluginFolder folder;
    folder.providers({QStringLiteral("a")});
    if (value.isNull())
        qunsetenv("KINLET_USE_DBUS");
    else
        qputenv("KINLET_USE_DBUS", value);

    const SocialPluginRepository *repository = internalsOf(manager())->pluginRepository;
    QCOMPARE(qobject_cast<const SocialPluginLoader *>(repository) != nullptr, inProcess);
    QCOMPARE(qobject_cast<const SocialDBusPluginRepository *>(repository) != nullptr, !inProcess);
    QVERIFY(!repository->parent());
    QCOMPARE(manager()->hasProvider(QStringLiteral("a")), inProcess);
    QVERIFY(manager()->isInitialized());
}

void ManagerStartupTest::withoutPluginsItIsInitializedAtOnce()
{
    const PluginFolder folder;
    QVERIFY(manager()->isInitialized());
    QCOMPARE(manager()->allProviderNames(), QList<QString>());
    QVERIFY(manager()->allProviders().isEmpty());

    const QSignalSpy initialized(manager(), SIGNAL(initialized()));
    QVERIFY(ScriptedProvider::add(QStringLiteral("later"), {QStringLiteral("account")}));
    QCoreApplication::processEvents();
    QCOMPARE(manager()->accounts().size(), 1);
    QCOMPARE(initialized.count(), 0);
}

void ManagerStartupTest::withoutProvidersItWaitsForOneThatComesLater()
{
    const PluginFolder folder;
    folder.copy("testcollector", QStringLiteral("a.so"));
    folder.copy("testcollector", QStringLiteral("b.so"));
    QVERIFY(!manager()->isInitialized());
    QVERIFY(internalsOf(manager())->pendingProviders.isEmpty());
    const QSignalSpy initialized(manager(), SIGNAL(initialized()));

    auto *provider = new ScriptedProvider(QStringLiteral("later"));
    provider->answersRegistry = false;
    QVERIFY(ScriptedProvider::add(provider));
    QCOMPARE(provider->received.size(), 2);
    provider->received.at(0)->setRequestProgress(SocialDataRequest::Finished, {});
    QVERIFY(!manager()->isInitialized());
    QCOMPARE(initialized.count(), 0);
    provider->received.at(1)->setRequestProgress(SocialDataRequest::Finished, {});
    QVERIFY(manager()->isInitialized());
    QCOMPARE(initialized.count(), 1);
}

void ManagerStartupTest::everyOrderOfAnswers_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("pending");
    QTest::addColumn<QStringList>("answers");
    // Providers are added in the order of their names.
    const auto row = [](const char *name, const QStringList &names, const QStringList &pending,
                        const QStringList &answers) {
        QTest::newRow(name) << names << pending << answers;
    };
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    const QString c = QStringLiteral("c");
    const QString aHeld = QStringLiteral("a-held");
    const QString bHeld = QStringLiteral("b-held");
    const QString cHeld = QStringLiteral("c-held");

    row("one at once", {a}, {}, {});
    row("one later", {aHeld}, {aHeld}, {aHeld});
    row("both at once", {a, b}, {}, {});
    row("at once, later", {a, bHeld}, {bHeld}, {bHeld});
    row("later, at once", {aHeld, b}, {aHeld}, {aHeld});
    row("both later, in order", {aHeld, bHeld}, {aHeld, bHeld}, {aHeld, bHeld});
    row("both later, the other way", {aHeld, bHeld}, {aHeld, bHeld}, {bHeld, aHeld});
    row("later, at once, later", {aHeld, b, cHeld}, {aHeld, cHeld}, {cHeld, aHeld});
    row("at once, later, at once", {a, bHeld, c}, {bHeld}, {bHeld});
    row("at once, never", {a, bHeld}, {bHeld}, {});
    row("never, at once", {aHeld, b}, {aHeld}, {});
    row("never, later", {aHeld, bHeld}, {aHeld, bHeld}, {bHeld});
    row("later, never", {aHeld, bHeld}, {aHeld, bHeld}, {aHeld});
}

void ManagerStartupTest::everyOrderOfAnswers()
{
    QFETCH(QStringList, names);
    QFETCH(QStringList, pending);
    QFETCH(QStringList, answers);
    const PluginFolder folder;
    folder.providers(names);

    QCOMPARE(internalsOf(manager())->pendingProviders, pending);
    QCOMPARE(providerNames(), QSet<QString>(names.begin(), names.end()));
    QCOMPARE(manager()->isInitialized(), pending.isEmpty());
    const QSignalSpy initialized(manager(), SIGNAL(initialized()));
    for (const QString &name : answers) {
        QVERIFY(!manager()->isInitialized());
        QCOMPARE(initialized.count(), 0);
        QVERIFY(answer(name, accounts));
        QCOMPARE(manager()->providerNameFromAccountId(name + QStringLiteral("-account")), name);
        pending.removeAll(name);
        QCOMPARE(internalsOf(manager())->pendingProviders, pending);
    }
    // A second end of the same request counts for nothing.
    for (const QString &name : answers)
        QVERIFY(answer(name, accounts));
    QCOMPARE(manager()->isInitialized(), pending.isEmpty());
    QCOMPARE(initialized.count(), pending.isEmpty() && !answers.isEmpty() ? 1 : 0);
}

void ManagerStartupTest::servicesAnswerDoesNotCount()
{
    const PluginFolder folder;
    const QString name = QStringLiteral("a-held");
    folder.providers({name});
    const QSignalSpy initialized(manager(), SIGNAL(initialized()));
    QVERIFY(answer(name, services));
    QCOMPARE(manager()->services().size(), 1);
    QVERIFY(!manager()->isInitialized());
    QCOMPARE(initialized.count(), 0);
    QVERIFY(answer(name, accounts));
    QCOMPARE(initialized.count(), 1);
}

void ManagerStartupTest::statusOfTheAnswerDoesNotMatter_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("failed");

    QTest::newRow("finished with an error") << int(SocialDataRequest::Finished) << true;
    QTest::newRow("stopped") << int(SocialDataRequest::Stopped) << false;
    QTest::newRow("stopped with an error") << int(SocialDataRequest::Stopped) << true;
}

void ManagerStartupTest::statusOfTheAnswerDoesNotMatter()
{
    QFETCH(int, status);
    QFETCH(bool, failed);
    const PluginFolder folder;
    folder.providers({QStringLiteral("a-held")});
    const QSignalSpy initialized(manager(), SIGNAL(initialized()));
    const auto requests = internalsOf(manager())->initRequests;
    const auto isAccounts = [](const SocialDataRequest *request) {
        return request->type() == accounts;
    };
    const QList<SocialDataRequest *> issued = requests.keys();
    SocialDataRequest *request = *std::find_if(issued.begin(), issued.end(), isAccounts);

    request->setRequestProgress(SocialDataRequest::Progressing, {});
    QCOMPARE(initialized.count(), 0);
    const QList<KinletError> errors{KinletError(KinletError::NetworkFailed)};
    request->setRequestProgress(SocialDataRequest::Status(status),
                                failed ? errors : QList<KinletError>());
    QVERIFY(manager()->isInitialized());
    QCOMPARE(initialized.count(), 1);
    QVERIFY(manager()->accounts().isEmpty());
}

void ManagerStartupTest::eachProviderIsAskedDirectlyForServicesThenAccounts()
{
    const PluginFolder folder;
    folder.providers({QStringLiteral("a"), QStringLiteral("b-held")});
    for (const auto &provider : manager()->allProviders()) {
        QCOMPARE(provider->property("asked").toList(), QVariantList({services, accounts}));
        // The worker would have marked them as started, or made copies of such.
        QCOMPARE(
            provider->property("statusWhenAsked").toList(),
            QVariantList({int(SocialDataRequest::Inactive), int(SocialDataRequest::Inactive)}));
    }
    const auto issued = internalsOf(manager())->initRequests;
    QCOMPARE(issued.size(), 2);
    for (auto it = issued.begin(); it != issued.end(); ++it) {
        QCOMPARE(it.value(), QStringLiteral("b-held"));
        QVERIFY(!it.key()->parent());
        QCOMPARE(it.key()->performOnAccountsFilter(), QStringList());
    }
}

void ManagerStartupTest::collectorsAmongProvidersAreSkipped()
{
    const PluginFolder folder;
    folder.copy("testcollector", QStringLiteral("a.so"));
    folder.provider(QStringLiteral("b.so"));
    folder.copy("undeclaredprovider", QStringLiteral("c.so"));
    QVERIFY(manager()->isInitialized());
    QCOMPARE(providerNames(), QSet<QString>({QStringLiteral("b")}));
}

void ManagerStartupTest::secondProviderOfANameIsReleased()
{
    const PluginFolder folder;
    folder.providers({QStringLiteral("a-renamed-held"), QStringLiteral("b-renamed-held")});
    const QString same = QStringLiteral("same");
    auto *repository = internalsOf(manager())->pluginRepository;
    const QPointer<QObject> first(repository->kinletPlugin(QStringLiteral("a-renamed-held")));
    const QPointer<QObject> second(repository->kinletPlugin(QStringLiteral("b-renamed-held")));
    QVERIFY(first && second);

    QCOMPARE(manager()->allProviderNames(), QList<QString>({same}));
    QCOMPARE(internalsOf(manager())->pendingProviders, QStringList(same));
    QCOMPARE(static_cast<QObject *>(manager()->provider(same).data()), first.data());
    QCOMPARE(second->property("asked").toList(), QVariantList());
    runDeferredDeletes();
    QVERIFY(first);
    QVERIFY(!second);

    QVERIFY(answer(same, accounts));
    QVERIFY(manager()->isInitialized());
}

void ManagerStartupTest::providerThatAnswersAtOnceThenOneOfItsName()
{
    const PluginFolder folder;
    folder.providers({QStringLiteral("a-renamed"), QStringLiteral("b-renamed")});
    QVERIFY(manager()->isInitialized());
    QCOMPARE(internalsOf(manager())->pendingProviders, QStringList());
    QCOMPARE(idsOf({manager()->accounts().first()}),
             QStringList(QStringLiteral("a-renamed-account")));
}

void ManagerStartupTest::pluginCanAskForTheManagerWhileItIsBuilt()
{
    const PluginFolder folder;
    const QString name = QStringLiteral("curious-held");
    folder.providers({name});
    const QSharedPointer<KinletInterface> plugin = manager()->provider(name);
    const QVariantList met = plugin->property("managers").toList();
    // In init() and in two requests.
    QCOMPARE(met.size(), 3);
    for (const QVariant &other : met)
        QCOMPARE(other.value<QObject *>(), static_cast<QObject *>(manager()));
    QVERIFY(answer(name, accounts));
    QVERIFY(manager()->isInitialized());
    QCOMPARE(plugin->property("initializedHeard").toInt(), 1);
}

void ManagerStartupTest::startupThatEndsInTheConstructorIsNotAnnounced()
{
    const PluginFolder folder;
    const QString name = QStringLiteral("curious");
    folder.providers({name});
    QVERIFY(manager()->isInitialized());
    const QSharedPointer<KinletInterface> plugin = manager()->provider(name);
    QCOMPARE(plugin->property("managers").toList().size(), 3);
    QCOMPARE(plugin->property("initializedHeard").toInt(), 0);
}

QTEST_GUILESS_MAIN(ManagerStartupTest)
#include "managerstartuptest.moc"
