// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "nearest.h"

#include <QTest>

class CliNearestTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nearestName_data();
    void nearestName();
    void suggestion();
};

void CliNearestTest::nearestName_data()
{
    QTest::addColumn<QString>("wrong");
    QTest::addColumn<QString>("nearest");
    const auto row = [](const char *name, const char *wrong, const char *right) {
        QTest::newRow(name) << QString::fromLatin1(wrong) << QString::fromLatin1(right);
    };
    row("a letter missing", "timelin", "timeline");
    row("a letter too many", "posst", "post");
    row("another letter", "pist", "post");
    row("two letters swapped", "psot", "post");
    row("only the beginning", "ti", "timeline");
    row("another case", "TIMELINE", "timeline");
    row("the nearer of two", "unlke", "unlike");
    row("nothing near", "zebra-crossing", "");
    row("empty", "", "");
    row("not everything short is near", "xy", "");
}

void CliNearestTest::nearestName()
{
    QFETCH(QString, wrong);
    QTEST(nearest(wrong,
                  {QStringLiteral("timeline"), QStringLiteral("post"), QStringLiteral("like"),
                   QStringLiteral("unlike")}),
          "nearest");
}

void CliNearestTest::suggestion()
{
    const QStringList right{QStringLiteral("post")};
    QCOMPARE(didYouMean(QStringLiteral("pots"), right, QStringLiteral("; no")),
             QStringLiteral("; did you mean \"post\"?"));
    QCOMPARE(didYouMean(QStringLiteral("zebra"), right, QStringLiteral("; no")),
             QStringLiteral("; no"));
    QCOMPARE(nearest(QString(100000, QLatin1Char('p')), right), QString());
}

QTEST_GUILESS_MAIN(CliNearestTest)
#include "clinearesttest.moc"
