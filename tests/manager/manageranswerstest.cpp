// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "managerinternals.h"
#include "requests/socialgetaccountsrequest.h"
#include "support/scriptedprovider.h"

#include <QPointer>
#include <QTest>

#include <utility>

namespace {

const QString a = QStringLiteral("a");
const QString x = QStringLiteral("x");

template <typename Record>
QStringList ids(const QList<Record> &records)
{
    QStringList list;
    for (const Record &record : records)
        list.append(record.id());
    return list;
}

/// A provider that has reported one service and two accounts.
ScriptedProvider *addAnswered(const QString &name)
{
    return ScriptedProvider::add(name, {QStringLiteral("a1"), QStringLiteral("a2")});
}

/// A provider that keeps the requests for its services and accounts.
ScriptedProvider *addSilent(const QString &name)
{
    auto *provider = new ScriptedProvider(name);
    provider->answersRegistry = false;
    return ScriptedProvider::add(provider) ? provider : nullptr;
}

}

/// What the manager makes of the providers' answers about their services and accounts.
class ManagerAnswersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { KinletManager::cleanupInstance(); }

    void storedRecordsGetTheClassOfTheirType();
    void resultsAreStoredWhateverTheStatus();
    void firstEndOfARequestCounts();
    void laterAnswerReplacesTheList();
    void otherProvidersAnswersStay();
    void unknownRequestChangesNothing();
    void accountsAreStoredBeforeInitialized();
    void answerClearsEveryOccurrenceOfItsName();
};

void ManagerAnswersTest::storedRecordsGetTheClassOfTheirType()
{
    ScriptedProvider *provider = addSilent(a);
    SocialGenericData odd(QStringLiteral("Odd"));
    odd.setProperty(SocialGenericData::Id, x);
    odd.setProperty(QStringLiteral("Number"), 42);
    odd.setParentAccount(QStringLiteral("parent"));
    const QList<SocialGenericData> results{odd, SocialGenericData()};
    for (const auto &request : std::as_const(provider->received)) {
        request->setResults(results);
        request->setRequestProgress(SocialDataRequest::Finished, {});
    }
    const SocialService service = manager()->service(x);
    QCOMPARE(service.className(), QStringLiteral("SocialService"));
    QCOMPARE(service.properties(), odd.properties());
    QCOMPARE(service.parentAccount(), QStringLiteral("parent"));
    const SocialServiceAccount account = manager()->account(x);
    QCOMPARE(account.className(), QStringLiteral("SocialServiceAccount"));
    QCOMPARE(account.properties(), odd.properties());
    QCOMPARE(manager()->services().size(), 2);
    QCOMPARE(manager()->services().at(1).className(), QStringLiteral("SocialService"));
    QCOMPARE(odd.className(), QStringLiteral("Odd"));
}

void ManagerAnswersTest::resultsAreStoredWhateverTheStatus()
{
    ScriptedProvider *provider = addSilent(a);
    const QList<KinletError> errors{KinletError(KinletError::NetworkFailed)};
    for (const auto &request : std::as_const(provider->received)) {
        request->setResults(recordsWithIds({x}));
        // Not an end: nothing is taken over yet.
        request->setRequestProgress(SocialDataRequest::Progressing, {});
    }
    QVERIFY(manager()->services().isEmpty() && manager()->accounts().isEmpty());
    provider->received.at(0)->setRequestProgress(SocialDataRequest::Stopped, errors);
    provider->received.at(1)->setRequestProgress(SocialDataRequest::Finished, errors);
    QCOMPARE(ids(manager()->services()), QStringList(x));
    QCOMPARE(ids(manager()->accounts()), QStringList(x));
}

void ManagerAnswersTest::firstEndOfARequestCounts()
{
    ScriptedProvider *provider = addSilent(a);
    for (const auto &request : std::as_const(provider->received)) {
        request->setResults(recordsWithIds({x}));
        request->setRequestProgress(SocialDataRequest::Stopped, {});
        request->setResults(recordsWithIds({QStringLiteral("late")}));
        request->setRequestProgress(SocialDataRequest::Finished, {});
    }
    QCOMPARE(ids(manager()->services()), QStringList(x));
    QCOMPARE(ids(manager()->accounts()), QStringList(x));
    runDeferredDeletes();
    QVERIFY(!provider->received.at(0) && !provider->received.at(1));
}

void ManagerAnswersTest::laterAnswerReplacesTheList()
{
    // The answer of a removed provider is still to come when one of its name has answered.
    ScriptedProvider *early = addSilent(a);
    const QSharedPointer<KinletInterface> alive = manager()->provider(a);
    ScriptedProvider::remove(a);
    QVERIFY(addAnswered(a));
    QCOMPARE(manager()->accounts().size(), 2);

    for (const auto &request : std::as_const(early->received)) {
        request->setResults(recordsWithIds({x}));
        request->setRequestProgress(SocialDataRequest::Finished, {});
    }
    QCOMPARE(ids(manager()->services()), QStringList(x));
    QCOMPARE(ids(manager()->accounts()), QStringList(x));
    QVERIFY(manager()->providerNameFromAccountId(QStringLiteral("a1")).isNull());
}

void ManagerAnswersTest::otherProvidersAnswersStay()
{
    QVERIFY(ScriptedProvider::add(QStringLiteral("b"), {QStringLiteral("b1")}));
    ScriptedProvider *provider = addSilent(a);
    provider->received.at(1)->setRequestProgress(SocialDataRequest::Finished, {});
    // An empty answer is an answer.
    QVERIFY(internalsOf(manager())->accountCache.contains(a));
    QVERIFY(!internalsOf(manager())->serviceCache.contains(a));
    QCOMPARE(manager()->providerNameFromAccountId(QStringLiteral("b1")), QStringLiteral("b"));
}

void ManagerAnswersTest::unknownRequestChangesNothing()
{
    QVERIFY(addAnswered(a));
    internalsOf(manager())->initializedFlag = false;
    for (const char *slot : {"onGetServicesFinished", "onGetAccountsFinished"}) {
        const QPointer<SocialDataRequest> request(new SocialGetAccountsRequest);
        request->setResults(recordsWithIds({x}));
        QVERIFY(
            QMetaObject::invokeMethod(manager(), slot, Q_ARG(SocialDataRequest *, request.data())));
        runDeferredDeletes();
        QVERIFY(request);
        delete request;
        QVERIFY(!manager()->isInitialized());
        QCOMPARE(manager()->services().size(), 1);
        QCOMPARE(manager()->accounts().size(), 2);
        QCOMPARE(internalsOf(manager())->serviceCache.size(), 1);
        QCOMPARE(internalsOf(manager())->accountCache.size(), 1);
    }
}

void ManagerAnswersTest::accountsAreStoredBeforeInitialized()
{
    ScriptedProvider *provider = addSilent(a);
    internalsOf(manager())->initializedFlag = false;
    QStringList seen;
    connect(manager(), &KinletManager::initialized, this, [&] {
        QVERIFY(manager()->isInitialized());
        seen = ids(manager()->accounts());
    });
    provider->answer({x});
    QCOMPARE(seen, QStringList(x));
}

void ManagerAnswersTest::answerClearsEveryOccurrenceOfItsName()
{
    ScriptedProvider *provider = addSilent(a);
    internalsOf(manager())->initializedFlag = false;
    internalsOf(manager())->pendingProviders = QStringList({a, x, a});
    provider->answer();
    QCOMPARE(internalsOf(manager())->pendingProviders, QStringList(x));
    QVERIFY(!manager()->isInitialized());
}

QTEST_GUILESS_MAIN(ManagerAnswersTest)
#include "manageranswerstest.moc"
