// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/proxiedrunner.h"
#include "requests/socialgetactivitiesrequest.h"

#include <QDataStream>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

/// What the answers of a runner do to the requests that wait for them.
class ProxyAnswersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void answerFinishes();
    void largeAnswer();
    void statusIsAlwaysFinished_data();
    void statusIsAlwaysFinished();
    void errorsStayAsTheyAre();
    void errorsOfTheRunnerAreDropped();
    void kindOfTheAnswerIsNotRead();
    void unknownIdChangesNothing();
    void secondAnswerChangesNothing();
    void answersInAnyOrder();
    void answerAfterTheEnd();
    void requestDeletedBeforeItsAnswer();
    void requestDeletedInsideFinished();
    void proxyDeletedBeforeTheAnswer();
    void proxyDeletedInsideFinished();
    void olderStreamIsUnderstood();
};

void ProxyAnswersTest::answerFinishes()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    request.setResults({record(QStringLiteral("before"))});
    request.setPerformOnAccountsFilter({QStringLiteral("before")});
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    const QString id = served.perform(request);
    SocialGetPersonsRequest answer;
    answer.setPerformOnAccountsFilter({QStringLiteral("a")});
    served.answer(id, answered(answer, ids("p")));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).value<SocialDataRequest *>(), &request);
    QCOMPARE(idsOf(request), ids("p"));
    QCOMPARE(request.performOnAccountsFilter(), ids("a"));
    QCOMPARE(int(request.status()), 4);
    QVERIFY(request.errors().isEmpty());
}

void ProxyAnswersTest::largeAnswer()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    QStringList many;
    for (int i = 0; i < 50000; ++i)
        many.append(QString::number(i));
    served.answer(served.perform(request), personsAnswer(many));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), many);
}

void ProxyAnswersTest::statusIsAlwaysFinished_data()
{
    QTest::addColumn<int>("status");
    for (int status : {0, 1, 2, 3, 4, 77, -1})
        QTest::addRow("%d", status) << status;
}

void ProxyAnswersTest::statusIsAlwaysFinished()
{
    QFETCH(int, status);
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    served.answer(served.perform(request),
                  personsAnswer(ids("p"), SocialDataRequest::Status(status)));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(int(request.status()), 4);
    QCOMPARE(idsOf(request), ids("p"));
}

void ProxyAnswersTest::errorsStayAsTheyAre()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    request.setRequestProgress(SocialDataRequest::Started,
                               {KinletError(KinletError::LikeFailed, QStringLiteral("before"))});
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    const QString first = served.perform(request);
    const QString second = served.perform(request);
    served.answer(first, personsAnswer());
    QVERIFY(finished.wait(Patience));
    QCOMPARE(request.errors().size(), 1);
    QCOMPARE(request.errors().at(0).description(), QStringLiteral("before"));

    request.setRequestProgress(SocialDataRequest::Started,
                               {KinletError(KinletError::PostFailed, QStringLiteral("since"))});
    served.answer(second, personsAnswer());
    QVERIFY(finished.wait(Patience));
    QCOMPARE(request.errors().size(), 1);
    QCOMPARE(request.errors().at(0).description(), QStringLiteral("since"));
}

void ProxyAnswersTest::errorsOfTheRunnerAreDropped()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    const QList<KinletError> errors{KinletError(KinletError::PostFailed, QStringLiteral("no"))};
    served.answer(served.perform(request), personsAnswer(), Payload::write(errors));
    QVERIFY(finished.wait(Patience));
    QVERIFY(request.errors().isEmpty());
}

// Neither the number beside the id nor the one in the bytes: the id alone tells.
void ProxyAnswersTest::kindOfTheAnswerIsNotRead()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    const QString id = served.perform(request);
    QByteArray bytes = personsAnswer(ids("p"));
    bytes[3] = 11;
    QVariantList numbers;
    for (const char byte : qAsConst(bytes))
        numbers.append(int(quint8(byte)));
    served.runner.send(served.id, QStringLiteral("requestFinished"), QStringLiteral("isayay"),
                       {-7, id, numbers, QVariantList()});
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), ids("p"));
    QCOMPARE(request.type(), 5);
}

void ProxyAnswersTest::unknownIdChangesNothing()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    const QString id = served.perform(request);
    const QByteArray wrong = personsAnswer(ids("wrong"));
    served.answer(QStringLiteral("unknown"), wrong, {}, 1000);
    served.answer(QString(), wrong);
    served.answer(id.toUpper(), wrong);
    served.answer(id.mid(1, 36), wrong);
    served.answer(id, personsAnswer(ids("right")));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(idsOf(request), ids("right"));
}

void ProxyAnswersTest::secondAnswerChangesNothing()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    SocialGetPersonsRequest later;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    QSignalSpy laterFinished(&later, SIGNAL(finished(SocialDataRequest *)));
    const QString id = served.perform(request);
    const QString laterId = served.perform(later);
    served.answer(id, personsAnswer(ids("first")));
    served.answer(id, personsAnswer(ids("second")), {}, 3);
    served.answer(laterId, personsAnswer(ids("later")));
    QVERIFY(laterFinished.wait(Patience));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(idsOf(request), ids("first"));
    QCOMPARE(idsOf(later), ids("later"));
}

void ProxyAnswersTest::answersInAnyOrder()
{
    ProxiedRunner served;
    SocialGetPersonsRequest one;
    SocialGetPersonsRequest two;
    QSignalSpy finished(&one, SIGNAL(finished(SocialDataRequest *)));
    const QString first = served.perform(one);
    const QString second = served.perform(two);
    served.answer(second, personsAnswer(ids("2")));
    served.answer(first, personsAnswer(ids("1")));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(one), ids("1"));
    QCOMPARE(idsOf(two), ids("2"));
}

// Whoever made the request has given it up, with an error; the answer ends it once more.
void ProxyAnswersTest::answerAfterTheEnd()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    const QString id = served.perform(request);
    request.setRequestProgress(SocialDataRequest::Finished,
                               {KinletError(KinletError::NetworkFailed, QStringLiteral("late"))});
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    served.answer(id, personsAnswer(ids("p")));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(idsOf(request), ids("p"));
    QCOMPARE(request.errors().size(), 1);
}

void ProxyAnswersTest::requestDeletedBeforeItsAnswer()
{
    ProxiedRunner served;
    auto request = std::make_unique<SocialGetPersonsRequest>();
    SocialGetPersonsRequest later;
    QSignalSpy finished(&later, SIGNAL(finished(SocialDataRequest *)));
    const QString id = served.perform(*request);
    const QString laterId = served.perform(later);
    request.reset();
    served.answer(id, personsAnswer(ids("late")), {}, 2);
    served.answer(laterId, personsAnswer());
    QVERIFY(finished.wait(Patience));
}

void ProxyAnswersTest::requestDeletedInsideFinished()
{
    ProxiedRunner served;
    const QPointer<SocialGetPersonsRequest> request(new SocialGetPersonsRequest);
    connect(request.data(), &SocialDataRequest::finished, this,
            [](SocialDataRequest *self) { delete self; });
    served.answer(served.perform(*request), personsAnswer());
    QTRY_VERIFY_WITH_TIMEOUT(!request, Patience);
}

void ProxyAnswersTest::proxyDeletedBeforeTheAnswer()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    const QString id = served.perform(request);
    served.proxy.reset();
    // Another listener tells that the answer has come.
    const auto listener = clientOf(served.id);
    QSignalSpy heard(listener.get(), &KinletRunnerInterface::requestFinished);
    served.answer(id, personsAnswer());
    QVERIFY(heard.wait(Patience));
    QCOMPARE(finished.count(), 0);
    QCOMPARE(int(request.status()), 0);
}

void ProxyAnswersTest::proxyDeletedInsideFinished()
{
    ProxiedRunner served;
    SocialGetPersonsRequest request;
    SocialGetPersonsRequest other;
    QSignalSpy otherFinished(&other, SIGNAL(finished(SocialDataRequest *)));
    connect(&request, &SocialDataRequest::finished, this, [&] { served.proxy.reset(); });
    const QString id = served.perform(request);
    const QString otherId = served.perform(other);
    const auto listener = clientOf(served.id);
    QSignalSpy heard(listener.get(), &KinletRunnerInterface::requestFinished);
    served.answer(id, personsAnswer(ids("p")));
    served.answer(otherId, personsAnswer());
    QTRY_COMPARE_WITH_TIMEOUT(heard.count(), 2, Patience);
    QVERIFY(!served.proxy);
    QCOMPARE(idsOf(request), ids("p"));
    QCOMPARE(otherFinished.count(), 0);
}

void ProxyAnswersTest::olderStreamIsUnderstood()
{
    SocialGetActivitiesRequest answer;
    const QDateTime time(QDate(2026, 2, 3), QTime(4, 5, 6), Qt::UTC);
    answer.setBefore(time);
    SocialGenericData result = record(QStringLiteral("old"));
    result.setProperty(SocialActivity::StartTime, time);
    answer.setResults({result});
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_4_8);
    answer.serialize(out);

    ProxiedRunner served;
    SocialGetActivitiesRequest request;
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    served.answer(served.perform(request), bytes);
    QVERIFY(finished.wait(Patience));
    QCOMPARE(idsOf(request), ids("old"));
    QCOMPARE(request.results().at(0).variantProperty(SocialActivity::StartTime).toDateTime(), time);
    QCOMPARE(request.before(), time);
}

QTEST_GUILESS_MAIN(ProxyAnswersTest)
#include "proxyanswerstest.moc"
