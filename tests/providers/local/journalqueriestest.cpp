// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// How SQLite finds what the provider asks it for, in every statement that it is really given: a
// large journal is as fast as a small one only if there is an index for each.

#include "journalimportfixture.h"

#include "journal.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QDateTime>
#include <QRegularExpression>

#include <sqlite3.h>

using Prepare = void (*)(SocialGetActivitiesRequest &);
Q_DECLARE_METATYPE(Prepare)

namespace {

QStringList statements;

int onStatement(unsigned, void *, void *statement, void *)
{
    const QString sql = QString::fromUtf8(sqlite3_sql(static_cast<sqlite3_stmt *>(statement)));
    if (!statements.contains(sql))
        statements.append(sql);
    return 0;
}

int onConnection(sqlite3 *database, char **, const sqlite3_api_routines *)
{
    return sqlite3_trace_v2(database, SQLITE_TRACE_STMT, onStatement, nullptr);
}

QStringList stepsOf(sqlite3 *database, const QString &sql)
{
    QStringList steps;
    sqlite3_stmt *plan = nullptr;
    if (sqlite3_prepare_v2(database, QByteArray("EXPLAIN QUERY PLAN " + sql.toUtf8()).constData(),
                           -1, &plan, nullptr)
        != SQLITE_OK)
        qFatal("%s: %s", qPrintable(sql), sqlite3_errmsg(database));
    while (sqlite3_step(plan) == SQLITE_ROW)
        steps.append(
            QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(plan, 3))));
    sqlite3_finalize(plan);
    return steps;
}

}

class JournalQueriesTest : public JournalImportFixture {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void activities_data();
    void activities();
    void everythingElse();

private:
    sqlite3 *database = nullptr;
};

void JournalQueriesTest::initTestCase()
{
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(onConnection));
}

void JournalQueriesTest::init()
{
    statements.clear();
    startAnew();
    listen();
    QCOMPARE(sqlite3_open(QFile::encodeName(sandbox->databasePath()).constData(), &database),
             SQLITE_OK);
}

void JournalQueriesTest::cleanup()
{
    sqlite3_close(database);
    sandbox.reset();
}

void JournalQueriesTest::activities_data()
{
    QTest::addColumn<Prepare>("prepare");
    // How the activities are found, and whether they have to be sorted then.
    QTest::addColumn<QString>("way");
    QTest::addColumn<bool>("sorted");

    const auto row = [](const char *name, const char *way, bool sorted, Prepare prepare) {
        QTest::newRow(name) << prepare << QString::fromLatin1(way) << sorted;
    };
    // In their order, up to the limit.
    row("all", "SCAN a USING INDEX activitiesByTime", false, [](SocialGetActivitiesRequest &) {});
    row("before", "SEARCH a USING INDEX activitiesByTime (time<?)", false,
        [](SocialGetActivitiesRequest &request) {
            request.setBefore(QDateTime::currentDateTimeUtc());
        });
    row("after", "SEARCH a USING INDEX activitiesByTime (time>?)", false,
        [](SocialGetActivitiesRequest &request) {
            request.setAfter(QDateTime::currentDateTimeUtc());
        });
    row("of a person", "SEARCH a USING INDEX activitiesByOwner (owner=?)", false,
        [](SocialGetActivitiesRequest &request) {
            request.setPersonsFilter({QStringLiteral("a")});
        });
    row("of persons", "SEARCH a USING COVERING INDEX activitiesByOwner (owner=?)", true,
        [](SocialGetActivitiesRequest &request) {
            request.setPersonsFilter({QStringLiteral("a"), QStringLiteral("b")});
        });
    row("one's own", "SEARCH a USING INDEX activitiesByOwner (owner=?)", false,
        [](SocialGetActivitiesRequest &request) {
            request.setTimelineType(KinletTimeline::Personal);
        });
    row("what one likes", "SEARCH a USING INDEX sqlite_autoindex_activities_1 (id=?)", true,
        [](SocialGetActivitiesRequest &request) {
            request.setTimelineType(KinletTimeline::Favorites);
        });
    row("messages", "SEARCH a USING INDEX activitiesByType (type=?)", false,
        [](SocialGetActivitiesRequest &request) {
            request.setTimelineType(KinletTimeline::Private);
        });
    row("by their ids", "SEARCH a USING INDEX sqlite_autoindex_activities_1 (id=?)", true,
        [](SocialGetActivitiesRequest &request) {
            request.setActivityIdsFilter({QStringLiteral("a"), QStringLiteral("b")});
        });
    row("comments", "SEARCH a USING INDEX activitiesByParent (parent=?)", false,
        [](SocialGetActivitiesRequest &request) {
            request.setParentActivityIdFilter(QStringLiteral("a"));
        });
    row("of a type", "SEARCH a USING INDEX activitiesByType (type=?)", false,
        [](SocialGetActivitiesRequest &request) {
            request.setActivityFilter(SocialActivity::Status);
        });
}

void JournalQueriesTest::activities()
{
    QFETCH(Prepare, prepare);
    QFETCH(QString, way);
    QFETCH(bool, sorted);

    statements.clear();
    SocialGetActivitiesRequest request;
    prepare(request);
    QVERIFY(perform(request));
    QCOMPARE(statements.size(), 1);
    const QStringList steps = stepsOf(database, statements.constFirst());
    const QString all = steps.join(QLatin1Char('\n'));
    QVERIFY2(steps.contains(way), qPrintable(all));
    QCOMPARE(steps.contains(QStringLiteral("USE TEMP B-TREE FOR ORDER BY")), sorted);
    const QRegularExpression scan(QStringLiteral("^SCAN (a|b|c|l|o|p|likes)\\b|AUTOMATIC"));
    for (const QString &step : steps)
        QVERIFY2(step == way || !scan.match(step).hasMatch(), qPrintable(all));
}

void JournalQueriesTest::everythingElse()
{
    SocialPostActivitiesRequest status(SocialActivity::Status, QStringLiteral("text"));
    QVERIFY(perform(status));
    const QString id = status.results().constFirst().id();
    SocialPostActivitiesRequest comment(SocialActivity::Comment, QStringLiteral("text"), id);
    QVERIFY(perform(comment));
    for (const bool liked : {true, false}) {
        SocialLikeActivityRequest like(id, liked);
        QVERIFY(perform(like));
    }
    SocialGetLikersRequest likers(id);
    QVERIFY(perform(likers));
    SocialGetPersonsRequest persons;
    QVERIFY(perform(persons));
    sandbox->drop(QStringLiteral("1.json"),
                  collection({note("http://x/1", "http://x/a", "text"),
                              like("http://x/a", "http://x/1"), actor("http://x/a", "Ada")}));
    QVERIFY(importsEnd(1));
    KinletManager::cleanupInstance();
    QVERIFY2(statements.size() > 20, qPrintable(statements.join(QLatin1Char('\n'))));

    int plans = 0;
    for (const QString &sql : std::as_const(statements)) {
        if (!QRegularExpression(QStringLiteral("^(SELECT|INSERT|UPDATE|DELETE)"))
                 .match(sql)
                 .hasMatch())
            continue;
        ++plans;
        const QStringList steps = stepsOf(database, sql);
        const QRegularExpression scan(
            QStringLiteral("^SCAN (a|b|c|l|o|p|activities|likes|persons)\\b|AUTOMATIC"));
        // All persons are in their order in the table.
        const bool takesAll = sql.endsWith(QLatin1String("FROM persons p ORDER BY p.number"));
        for (const QString &step : steps)
            QVERIFY2((takesAll && step == QLatin1String("SCAN p")) || !scan.match(step).hasMatch(),
                     qPrintable(sql + QLatin1Char('\n') + step));
    }
    QVERIFY(plans > 15);
}

QTEST_GUILESS_MAIN(JournalQueriesTest)

#include "journalqueriestest.moc"
