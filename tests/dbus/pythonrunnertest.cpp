// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/runnerprocess.h"
#include "support/scriptedprovider.h"

#include "manager/kinletmanager.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QSignalSpy>

namespace {

const QString id = QStringLiteral("example");

QString own(const char *name)
{
    return id + QLatin1Char(':') + QLatin1String(name);
}

QStringList own(std::initializer_list<const char *> names)
{
    QStringList ids;
    for (const char *name : names)
        ids.append(own(name));
    return ids;
}

QDateTime morning(int hour, int minute)
{
    return QDateTime(QDate(2026, 1, 5), QTime(hour, minute), Qt::UTC);
}

bool perform(SocialDataRequest &request)
{
    QSignalSpy finished(&request, SIGNAL(finished(SocialDataRequest *)));
    KinletManager *manager = KinletManager::instance();
    manager->performRequest(&request, {manager->account(own("account"))});
    return finished.wait(LongMilliseconds) && request.status() == SocialDataRequest::Finished
        && request.errors().isEmpty();
}

QStringList likers(const QString &activityId)
{
    SocialGetLikersRequest request(activityId);
    return perform(request) ? idsOf(request.results()) : QStringList{QStringLiteral("failed")};
}

using Filter = QHash<QString, QRegExp>;
using Setup = std::function<void(SocialGetActivitiesRequest &)>;

}

Q_DECLARE_METATYPE(Filter)
Q_DECLARE_METATYPE(Setup)

/// The Python runner as an application sees it.
class PythonRunnerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void registry();
    void services();
    void accounts();
    void persons_data();
    void persons();
    void activities_data();
    void activities();
    void activityHasItsProperties();
    void postIsPublishedAndPushed();
    void likesComeAndGo();

private:
    RunnerProcess runner;
};

void PythonRunnerTest::initTestCase()
{
    QVERIFY(runner.startAs(id, QStringLiteral(KINLET_PYTHON_RUNNER), {id}));
    QSignalSpy initialized(KinletManager::instance(), SIGNAL(initialized()));
    QVERIFY(initialized.wait(LongMilliseconds));
}

void PythonRunnerTest::cleanupTestCase()
{
    KinletManager::cleanupInstance();
}

void PythonRunnerTest::registry()
{
    const KinletManager *manager = KinletManager::instance();
    QCOMPARE(manager->allProviderNames(), QList<QString>{id});
    QTRY_COMPARE_WITH_TIMEOUT(manager->services().size(), 1, LongMilliseconds);
    QCOMPARE(manager->services().constFirst().id(), id);
    QCOMPARE(manager->accounts().size(), 1);
    QCOMPARE(manager->accounts().constFirst().id(), own("account"));
    QCOMPARE(manager->providerNameFromAccountId(own("account")), id);
    QCOMPARE(manager->serviceFromAccountId(own("account")).property(SocialService::ProviderName),
             QStringLiteral("Example"));
}

void PythonRunnerTest::services()
{
    GetAggregatedServicesRequest request;
    QVERIFY(perform(request));
    QCOMPARE(idsOf(request.results()), QStringList{id});
    QCOMPARE(request.results().constFirst().className(), SocialService::ClassName);
}

void PythonRunnerTest::accounts()
{
    SocialGetAccountsRequest request;
    QVERIFY(perform(request));
    QCOMPARE(idsOf(request.results()), own({"account"}));
    QCOMPARE(request.results().constFirst().className(), SocialServiceAccount::ClassName);
}

void PythonRunnerTest::persons_data()
{
    QTest::addColumn<Filter>("filter");
    QTest::addColumn<QStringList>("found");
    const auto filter = [](const QString &property, const char *pattern,
                           Qt::CaseSensitivity sensitivity = Qt::CaseSensitive,
                           QRegExp::PatternSyntax syntax = QRegExp::RegExp) {
        return Filter{{property, QRegExp(QLatin1String(pattern), sensitivity, syntax)}};
    };
    const QString first = SocialNetworkPerson::FirstName;
    QTest::newRow("everybody") << Filter() << own({"ada", "ben", "cleo"});
    QTest::newRow("beginning") << filter(first, "^[AC]") << own({"ada", "cleo"});
    QTest::newRow("anywhere") << filter(first, "e") << own({"ben", "cleo"});
    QTest::newRow("other case") << filter(first, "ADA") << QStringList();
    QTest::newRow("any case") << filter(first, "ADA", Qt::CaseInsensitive) << own({"ada"});
    QTest::newRow("wildcard") << filter(first, "*e*", Qt::CaseSensitive, QRegExp::Wildcard)
                              << own({"ben", "cleo"});
    QTest::newRow("wildcard, whole text")
        << filter(first, "e*", Qt::CaseSensitive, QRegExp::Wildcard) << QStringList();
    QTest::newRow("plain text") << filter(first, ".", Qt::CaseSensitive, QRegExp::FixedString)
                                << QStringList();
    QTest::newRow("one text of a list")
        << filter(SocialNetworkPerson::EmailAddresses, "net$") << own({"cleo"});
    QTest::newRow("absent property") << filter(SocialNetworkPerson::AboutMe, ".*") << QStringList();
    Filter both = filter(first, "e");
    both.insert(SocialNetworkPerson::LastName, QRegExp(QStringLiteral("^O")));
    QTest::newRow("two properties") << both << own({"ben"});
    QTest::newRow("unknown to Python") << filter(first, "*") << QStringList();
}

void PythonRunnerTest::persons()
{
    QFETCH(Filter, filter);
    QFETCH(QStringList, found);
    SocialGetPersonsRequest request;
    for (auto it = filter.cbegin(); it != filter.cend(); ++it)
        request.setPropertyFilter(it.key(), it.value());
    QVERIFY(perform(request));
    QCOMPARE(idsOf(request.results()), found);
    for (const SocialGenericData &person : request.results()) {
        QCOMPARE(person.className(), SocialNetworkPerson::ClassName);
        QCOMPARE(person.parentAccount(), own("account"));
    }
}

void PythonRunnerTest::activities_data()
{
    using Request = SocialGetActivitiesRequest;
    QTest::addColumn<Setup>("setup");
    QTest::addColumn<QStringList>("found");
    const auto row = [](const char *name, const Setup &setup,
                        std::initializer_list<const char *> found) {
        QTest::newRow(name) << setup << own(found);
    };
    row("all, the newest first", [](Request &) {}, {"3", "2", "1"});
    row("limit", [](Request &request) { request.setLimit(2); }, {"3", "2"});
    row("no limit at 0", [](Request &request) { request.setLimit(0); }, {"3", "2", "1"});
    row("no limit below 0", [](Request &request) { request.setLimit(-1); }, {"3", "2", "1"});
    row("after excludes its moment", [](Request &r) { r.setAfter(morning(9, 0)); }, {"3", "2"});
    row("before excludes its moment", [](Request &r) { r.setBefore(morning(10, 0)); }, {"2", "1"});
    row("between",
        [](Request &request) {
            request.setAfter(morning(9, 0));
            request.setBefore(morning(10, 0));
        },
        {"2"});
    row("after in another zone",
        [](Request &request) { request.setAfter(morning(9, 4).toOffsetFromUtc(3600)); },
        {"3", "2"});
    row("after in local time",
        [](Request &request) { request.setAfter(morning(9, 4).toLocalTime()); }, {"3", "2"});
    row("type", [](Request &r) { r.setActivityFilter(SocialActivity::Comment); }, {"2"});
    row("person", [](Request &r) { r.setPersonsFilter(own({"ben", "cleo"})); }, {"3", "1"});
    row("ids", [](Request &r) { r.setActivityIdsFilter(own({"1", "3"})); }, {"3", "1"});
    row("unknown id", [](Request &r) { r.setActivityIdsFilter(own({"1", "none"})); }, {"1"});
    row("parent", [](Request &r) { r.setParentActivityIdFilter(own("1")); }, {"2"});
    row("personal", [](Request &r) { r.setTimelineType(KinletTimeline::Personal); }, {"2"});
    row("favorites", [](Request &r) { r.setTimelineType(KinletTimeline::Favorites); }, {});
    row("private", [](Request &r) { r.setTimelineType(KinletTimeline::Private); }, {});
}

void PythonRunnerTest::activities()
{
    QFETCH(Setup, setup);
    QFETCH(QStringList, found);
    SocialGetActivitiesRequest request;
    setup(request);
    QVERIFY(perform(request));
    QCOMPARE(idsOf(request.results()), found);
}

void PythonRunnerTest::activityHasItsProperties()
{
    SocialGetActivitiesRequest request;
    QVERIFY(perform(request));
    const SocialGenericData newest = request.results().constFirst();
    QCOMPARE(newest.className(), SocialActivity::ClassName);
    QCOMPARE(newest.description(), QStringLiteral("Look at this"));
    QCOMPARE(newest.variantProperty(SocialActivity::StartTime).toDateTime(), morning(10, 0));
    const auto attachment =
        newest.variantProperty(SocialActivity::Attachment).value<SocialActivityAttachment>();
    QCOMPARE(attachment.firstText, QStringLiteral("A lighthouse"));
    QCOMPARE(attachment.media.size(), 1);
    QCOMPARE(attachment.media.constFirst().kind, qint32(Media::Image));
    const SocialGenericData oldest = request.results().constLast();
    QCOMPARE(oldest.variantProperty(SocialActivity::CommentCount), QVariant(1));
    QCOMPARE(oldest.variantProperty(SocialActivity::LikeCount), QVariant(1));
    QCOMPARE(oldest.variantProperty(SocialActivity::IsLikedByMe), QVariant(false));
}

void PythonRunnerTest::postIsPublishedAndPushed()
{
    QSignalSpy pushed(KinletManager::instance(),
                      SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    SocialPostActivitiesRequest empty(SocialActivity::Status, QString());
    QVERIFY(perform(empty));
    QVERIFY(empty.results().isEmpty());

    const QString text = QString::fromUtf8("Grüße 😀");
    SocialPostActivitiesRequest post(SocialActivity::Comment, text, own("3"));
    QVERIFY(perform(post));
    QCOMPARE(post.results().size(), 1);
    QCOMPARE(post.results().constFirst().description(), text);

    QTRY_COMPARE_WITH_TIMEOUT(pushed.count(), 1, LongMilliseconds);
    const auto records = pushed.constFirst().at(0).value<QList<SocialGenericData>>();
    QCOMPARE(idsOf(records), idsOf(post.results()));
    QVERIFY(
        pushed.constFirst().at(1).value<QList<QString>>().contains(SocialGenericData::Description));

    SocialGetActivitiesRequest timeline;
    timeline.setParentActivityIdFilter(own("3"));
    QVERIFY(perform(timeline));
    QCOMPARE(idsOf(timeline.results()), idsOf(post.results()));
}

void PythonRunnerTest::likesComeAndGo()
{
    QCOMPARE(likers(own("1")), own({"cleo"}));
    SocialLikeActivityRequest like(own("1"));
    QVERIFY(perform(like));
    SocialLikeActivityRequest again(own("1"));
    QVERIFY(perform(again));
    QCOMPARE(likers(own("1")), own({"cleo", "ada"}));
    QCOMPARE(again.results().constFirst().variantProperty(SocialActivity::IsLikedByMe),
             QVariant(true));
    SocialLikeActivityRequest unlike(own("1"), false);
    QVERIFY(perform(unlike));
    QCOMPARE(likers(own("1")), own({"cleo"}));
}

QTEST_GUILESS_MAIN(PythonRunnerTest)
#include "pythonrunnertest.moc"
