// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "importrecorder.h"

#include <QRegularExpression>
#include <QTest>

class ActivityStreamsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsArchives_data();
    void readsArchives();
    void readsTextsOfArchives_data();
    void readsTextsOfArchives();
    void readsTimes_data();
    void readsTimes();
    void choosesLanguage_data();
    void choosesLanguage();
};

void ActivityStreamsTest::readsArchives_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("statuses");
    QTest::addColumn<int>("comments");
    QTest::addColumn<QStringList>("others");

    QTest::newRow("ada\'s actor")
        << archive("ada/actor.json") << 0 << 0
        << QStringList{QStringLiteral("person|http://localhost:8001/ada|ada|Ada L|hi|"
                                      "http://localhost:8001/ada|http://localhost:8001/susie.png")};
    QTest::newRow("ben's actor")
        << archive("ben/actor.json") << 0 << 0
        << QStringList{QStringLiteral("person|http://localhost:8001/ben|ben|ben||"
                                      "http://localhost:8001/ben|http://localhost:8001/susie.png")};
    QTest::newRow("ada's outbox") << archive("ada/outbox.json") << 17 << 3 << QStringList();
    QTest::newRow("ben's outbox") << archive("ben/outbox.json") << 19 << 0
                                  << QStringList{QStringLiteral(
                                         "skipped|http://localhost:8001/ben/p/1795219928.143713/"
                                         "Create|it has neither text nor media")};
}

void ActivityStreamsTest::readsArchives()
{
    QFETCH(QByteArray, document);
    const QStringList lines = linesOf(document);
    const QStringList statuses = lines.filter(QRegularExpression(QStringLiteral("^status\\|")));
    const QStringList comments = lines.filter(QRegularExpression(QStringLiteral("^comment\\|")));
    QTEST(int(statuses.size()), "statuses");
    QTEST(int(comments.size()), "comments");
    QTEST(
        lines.filter(QRegularExpression(QStringLiteral("^(person|skipped|boost|like|media|bad)"))),
        "others");
}

void ActivityStreamsTest::readsTextsOfArchives_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("line");

    const QByteArray ada = archive("ada/outbox.json");
    const auto row = [&ada](const char *name, int index, const char *parts) {
        QString line = QString::fromUtf8(parts);
        line.replace(QLatin1Char('~'), QStringLiteral("http://localhost:8001/ada"));
        QTest::newRow(name) << ada << index << line;
    };
    row("status", 0,
        "status|~/p/1795221424.222237|~||Day three: the starter lives!|"
        "2026-11-21T00:37:04.000Z|~/p/1795221424.222237");
    row("reply", 2,
        "comment|~/p/1795221423.829152|~|~/p/1795221423.526579|A note on the last one: Does anyone "
        "want plum jam?|2026-11-21T00:37:03.000Z|~/p/1795221423.829152");
    row("hashtags", 4,
        "status|~/p/1795221423.226943|~||Plum jam, batch two. #jam #regret|"
        "2026-11-21T00:37:03.000Z|~/p/1795221423.226943");
    row("mention", 9,
        "status|~/p/1795221421.815541|~||@ben did you see the herons?|"
        "2026-11-21T00:37:01.000Z|~/p/1795221421.815541");
    row("link", 12,
        "status|~/p/1795221403.779004|~||Link of the day: https://example.org/a?b=1&c=2 "
        "#linkoftheday|2026-11-21T00:36:43.000Z|~/p/1795221403.779004");
    row("text that looks like HTML", 13,
        "status|~/p/1795221403.463634|~||<script>alert(\"not today\")</script> & \"quotes\" & "
        "'apostrophes'|2026-11-21T00:36:43.000Z|~/p/1795221403.463634");
    row("emoji", 14,
        "status|~/p/1795221403.147006|~||Emoji day: 🎉🦢🍞🚂 and a family "
        "👩‍👩‍👧‍👦|"
        "2026-11-21T00:36:43.000Z|~/p/1795221403.147006");
    row("from right to left", 15,
        "status|~/p/1795221402.840002|~||مرحبا بالعالم، هذا اختبار للكتابة من اليمين إلى اليسار|"
        "2026-11-21T00:36:42.000Z|~/p/1795221402.840002");
    row("wide", 16,
        "status|~/p/1795221402.519764|~||今日はいい天気ですね。散歩に行きます。|"
        "2026-11-21T00:36:42.000Z|~/p/1795221402.519764");
    row("accents", 17,
        "status|~/p/1795221402.205669|~||Zażółć gęślą jaźń — testing every accent I know. "
        "ąęćłńóśźż|2026-11-21T00:36:42.000Z|~/p/1795221402.205669");
}

void ActivityStreamsTest::readsTextsOfArchives()
{
    QFETCH(QByteArray, document);
    QFETCH(int, index);
    QTEST(linesOf(document).value(index), "line");
}

void ActivityStreamsTest::readsTimes_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("read");
    const auto row = [](const char *written, const char *read) {
        QTest::newRow(written) << QString::fromLatin1(written) << QString::fromLatin1(read);
    };
    row("2026-11-21T00:37:04Z", "2026-11-21T00:37:04.000Z");
    row("2026-11-21t00:37:04z", "2026-11-21T00:37:04.000Z");
    row("2026-11-21T00:37Z", "2026-11-21T00:37:00.000Z");
    row("2014-12-31T23:00:00-08:00", "2015-01-01T07:00:00.000Z");
    row("2026-11-21T00:37:04+05:30", "2026-11-20T19:07:04.000Z");
    row("2026-11-21T00:37:04+0530", "2026-11-20T19:07:04.000Z");
    row("2026-11-21T00:37:04.5Z", "2026-11-21T00:37:04.500Z");
    row("2026-11-21T00:37:04.123456789+00:00", "2026-11-21T00:37:04.123Z");
    row("2026-11-21T00:37:04.999999Z", "2026-11-21T00:37:04.999Z");
    row("2026-11-21T00:37:04", "2026-11-21T00:37:04.000Z");
    row("2026-11-21 00:37:04Z", "2026-11-21T00:37:04.000Z");
    row("2026-11-21", "2026-11-21T00:00:00.000Z");
    row("1969-12-31T23:59:59Z", "1969-12-31T23:59:59.000Z");
    row("2024-02-29T12:00:00Z", "2024-02-29T12:00:00.000Z");
    row("", "");
    row("yesterday", "");
    row("2026-11-21T", "");
    row("2026-13-21T00:37:04Z", "");
    row("2025-02-29T12:00:00Z", "");
    row("2026-11-21T25:00:00Z", "");
    row("2026-11-21T00:37:04Zulu", "");
    row("2026-11-21T00:37:04+5", "");
    row("2026-11-21T00:37:04Z\\n", "");
    row("Sat, 21 Nov 2026 00:37:04 GMT", "");
}

void ActivityStreamsTest::readsTimes()
{
    QFETCH(QString, written);
    QFETCH(QString, read);
    const QByteArray document = with("\"type\":\"Note\",\"id\":\"x:y\",\"content\":\"a\","
                                     "\"published\":\""
                                     + written.toUtf8() + '"');
    const QString expected = read.isEmpty()
        ? QStringLiteral("skipped|x:y|it has no time that can be read")
        : QStringLiteral("status|x:y|||a|%1|").arg(read);
    // The machine's own time zone must not matter.
    for (const char *zone : {"UTC", "Asia/Kolkata", "America/New_York"}) {
        qputenv("TZ", zone);
        tzset();
        QCOMPARE(linesOf(document), QStringList{expected});
    }
    qputenv("TZ", "UTC");
    tzset();
}

void ActivityStreamsTest::choosesLanguage_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<QString>("text");

    QTest::newRow("only one") << QByteArray(R"("contentMap":{"ga":"<b>a</b>"})")
                              << QStringLiteral("a");
    // The test's user reads Canadian French.
    QTest::newRow("the user's own")
        << QByteArray(R"("contentMap":{"af":"a","en":"b","fr":"c","fr-CA":"d"})")
        << QStringLiteral("d");
    QTest::newRow("the user's own from elsewhere")
        << QByteArray(R"("contentMap":{"af":"a","en":"b","fr":"c"})") << QStringLiteral("c");
    QTest::newRow("English if the user's own is missing")
        << QByteArray(R"("contentMap":{"af":"a","en":"b","ga":"c"})") << QStringLiteral("b");
    QTest::newRow("the text before the map")
        << QByteArray(R"("content":"a","contentMap":{"en":"b"})") << QStringLiteral("a");
    QTest::newRow("every text") << QByteArray(R"("nameMap":{"und":"a"},"summaryMap":{"en":"b"})")
                                << QStringLiteral("a\n\nb");
    QTest::newRow("map under the plain name")
        << QByteArray(R"("name":{"en":"a < b","ga":"c"})") << QStringLiteral("a < b");
}

void ActivityStreamsTest::choosesLanguage()
{
    QFETCH(QByteArray, members);
    QFETCH(QString, text);
    const QStringList lines =
        linesOf(with("\"type\":\"Note\",\"id\":\"x:y\",\"published\":\"2026-11-21\"," + members));
    QCOMPARE(lines,
             QStringList{QStringLiteral("status|x:y|||%1|2026-11-21T00:00:00.000Z|").arg(text)});
}

QTEST_GUILESS_MAIN(ActivityStreamsTest)

#include "activitystreamstest.moc"
