// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "times.h"

#include <QTest>

class CliTimesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { setZone("UTC"); }
    void relative_data();
    void relative();
    void absolute_data();
    void absolute();
    void parsed_data();
    void parsed();

private:
    static void setZone(const QByteArray &zone)
    {
        qputenv("TZ", zone);
        tzset();
    }
};

void CliTimesTest::relative_data()
{
    QTest::addColumn<int>("secondsAgo");
    QTest::addColumn<QString>("text");
    const auto row = [](int secondsAgo, const char *text) {
        QTest::addRow("%d", secondsAgo) << secondsAgo << QString::fromLatin1(text);
    };
    constexpr int minute = 60, hour = 3600, day = 86400;
    row(0, "just now");
    row(59, "just now");
    row(-59, "just now");
    row(minute, "1 minute ago");
    row(2 * minute - 1, "1 minute ago");
    row(2 * minute, "2 minutes ago");
    row(hour - 1, "59 minutes ago");
    row(hour, "1 hour ago");
    row(day - 1, "23 hours ago");
    row(day, "1 day ago");
    row(30 * day - 1, "29 days ago");
    row(30 * day, "2026-01-29");
    row(-minute, "in 1 minute");
    row(-3 * hour, "in 3 hours");
    row(-30 * day, "2026-03-30");
}

void CliTimesTest::relative()
{
    QFETCH(int, secondsAgo);
    const QDateTime now(QDate(2026, 2, 28), QTime(12, 0), Qt::UTC);
    QTEST(relativeTime(now.addSecs(-secondsAgo), now), "text");
    QCOMPARE(relativeTime(QDateTime(), now), QString());
}

void CliTimesTest::absolute_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("text");
    QTest::newRow("UTC") << QByteArray("UTC") << QStringLiteral("2026-02-28 23:05:09 +00:00");
    QTest::newRow("east, next day")
        << QByteArray("XXX-5:30") << QStringLiteral("2026-03-01 04:35:09 +05:30");
    QTest::newRow("west") << QByteArray("XXX3:30") << QStringLiteral("2026-02-28 19:35:09 -03:30");
}

void CliTimesTest::absolute()
{
    QFETCH(QByteArray, zone);
    setZone(zone);
    QTEST(absoluteTime(QDateTime(QDate(2026, 2, 28), QTime(23, 5, 9), Qt::UTC)), "text");
    QCOMPARE(absoluteTime(QDateTime()), QString());
}

void CliTimesTest::parsed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDateTime>("time");
    const auto at = [](int hour, int minute) {
        return QDateTime(QDate(2026, 3, 12), QTime(hour, minute), Qt::UTC);
    };
    QTest::newRow("a day begins at midnight, here") << QStringLiteral("2026-03-12") << at(3, 0);
    QTest::newRow("local time") << QStringLiteral("2026-03-12T14:30") << at(17, 30);
    QTest::newRow("UTC") << QStringLiteral("2026-03-12T14:30:00Z") << at(14, 30);
    QTest::newRow("offset") << QStringLiteral("2026-03-12T14:30+01:00") << at(13, 30);
    QTest::newRow("no time") << QStringLiteral("yesterday") << QDateTime();
    QTest::newRow("no such day") << QStringLiteral("2026-02-30") << QDateTime();
    QTest::newRow("empty") << QString() << QDateTime();
}

void CliTimesTest::parsed()
{
    setZone("XXX3");
    QFETCH(QString, text);
    QFETCH(QDateTime, time);
    QCOMPARE(parsedTime(text).toUTC(), time.toUTC());
    QCOMPARE(parsedTime(text).isValid(), time.isValid());
}

QTEST_GUILESS_MAIN(CliTimesTest)
#include "clitimestest.moc"
