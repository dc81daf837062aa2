// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "patternsearch.h"

#include <QTest>

namespace {

QString repeated(const char *text, int times)
{
    return QString::fromLatin1(text).repeated(times);
}

}

/// In which texts a pattern is looked for.
class PatternSearchTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void longEnough_data();
    void longEnough();
    void notTooLong_data();
    void notTooLong();
    void findsWhatIsThere_data();
    void findsWhatIsThere();
};

void PatternSearchTest::longEnough_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("syntax");
    QTest::addColumn<int>("length");
    const auto row = [](const char *name, const QString &pattern, int length,
                        int syntax = QRegExp::RegExp) {
        QTest::newRow(name) << pattern << syntax << length;
    };
    row("empty", QString(), 10000000);
    row("word", QStringLiteral("lovelace"), 10000000);
    row("whole text", QStringLiteral("^ada$"), 10000000);
    row("plain text", repeated("a*", 500), 10000000, QRegExp::FixedString);
    row("any of 200 words", repeated("lovelace|", 200) + QStringLiteral("ada"), 500);
    row("numbers", QStringLiteral("\\b\\d{4}-\\d\\d-\\d\\d\\b"), 1000000);
    row("words in order", QStringLiteral(".*ada.*lovelace.*"), 5000);
    row("address", QStringLiteral("[a-z0-9._]+@[a-z0-9.-]+\\.(com|org|net)"), 5000);
    row("address, greedy", QStringLiteral("[a-z0-9._]+@[a-z0-9.-]+\\.(com|org|net)"), 5000,
        QRegExp::RegExp2);
    row("wildcard", QStringLiteral("*ada*love?ace*"), 5000, QRegExp::Wildcard);
    row("optional parts", QStringLiteral("(Dr\\.? )?Ada( King)?(-| )Lovelace"), 100000);
    row("look-ahead", QStringLiteral("(?=.*[a-z])(?!.*[0-9]).*"), 400);
}

void PatternSearchTest::longEnough()
{
    QFETCH(QString, pattern);
    QFETCH(int, syntax);
    QFETCH(int, length);
    const PatternSearch search(QRegExp(pattern, Qt::CaseSensitive, QRegExp::PatternSyntax(syntax)));
    QVERIFY(search.pattern().isValid());
    QVERIFY2(search.longestText() >= length, qPrintable(QString::number(search.longestText())));
}

void PatternSearchTest::notTooLong_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("syntax");
    QTest::addColumn<int>("length");
    const auto row = [](const char *name, const QString &pattern, int length,
                        int syntax = QRegExp::RegExp) {
        QTest::newRow(name) << pattern << syntax << length;
    };
    row("anything, then a letter", QStringLiteral(".*b"), 100000);
    row("once or more", QStringLiteral("a+b"), 100000);
    row("at least", QStringLiteral("a{2,}b"), 100000);
    row("many optional parts", repeated("a?", 500) + QLatin1Char('b'), 1000);
    row("many repetitions", repeated("a*", 500) + QLatin1Char('b'), 1000);
    row("optional parts, repeated", QStringLiteral("(a?b?c?){100}d"), 2000);
    row("many groups", repeated("(a*)", 100) + QLatin1Char('b'), 1000);
    row("captured often", QStringLiteral("(a+){100}b"), 1000, QRegExp::RegExp2);
    row("many alternatives, repeated",
        QStringLiteral("(a") + repeated("|a", 300) + QStringLiteral(")*b"), 1000);
    row("reference to a group", QStringLiteral("(a*)\\1b"), 2000);
    row("look-ahead in a repetition", QStringLiteral("(a(?=.*b))*c"), 1000);
    row("look-ahead in a look-ahead", QStringLiteral("a(?=.*a(?=.*b))"), 200);
    row("wildcard", repeated("*a", 300), 1000, QRegExp::Wildcard);
}

void PatternSearchTest::notTooLong()
{
    QFETCH(QString, pattern);
    QFETCH(int, syntax);
    QFETCH(int, length);
    const PatternSearch search(QRegExp(pattern, Qt::CaseSensitive, QRegExp::PatternSyntax(syntax)));
    QVERIFY(search.pattern().isValid());
    QVERIFY2(search.longestText() <= length, qPrintable(QString::number(search.longestText())));
}

void PatternSearchTest::findsWhatIsThere_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<bool>("isThere");
    QTest::newRow("empty") << QString() << true;
    QTest::newRow("in the middle") << QStringLiteral("L[aeo]ve+lac") << true;
    QTest::newRow("at the end") << QStringLiteral("ace$") << true;
    QTest::newRow("not there") << QStringLiteral("ada") << false;
}

void PatternSearchTest::findsWhatIsThere()
{
    QFETCH(QString, pattern);
    QFETCH(bool, isThere);
    QCOMPARE(PatternSearch(QRegExp(pattern)).isFoundIn(QStringLiteral("Ada Lovelace")), isThere);
}

QTEST_GUILESS_MAIN(PatternSearchTest)

#include "patternsearchtest.moc"
