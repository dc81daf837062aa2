// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/patternguard.h"
#include "dbus/streamed.h"

#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"

#include <QRegExp>
#include <QTest>

namespace {

QString latin(const char *text)
{
    return QString::fromLatin1(text);
}

QString repeated(const char *text, int times)
{
    return latin(text).repeated(times);
}

// A persons request with that many patterns: the number of each and then the text.
QByteArray requestWithPatterns(int count, const QString &pattern, int syntax)
{
    SocialGetPersonsRequest request;
    QByteArray bytes = Payload::write(request).chopped(4) + streamed(quint32(count));
    for (int i = 0; i < count; ++i)
        bytes += streamed(QString::number(i), pattern, quint8(1), quint8(syntax), quint8(0));
    return bytes;
}

}

/// Which patterns reach QRegExp.
class PatternGuardTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void limits_data();
    void limits();
    void costs_data();
    void costs();
    void numberOfPatterns_data();
    void numberOfPatterns();
    void payloadEndsAtAnUnsafePattern();
    void patternsOfLikers();
};

void PatternGuardTest::limits_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("syntax");
    QTest::addColumn<bool>("safe");
    const auto row = [](const char *name, const QString &pattern, bool safe,
                        int syntax = QRegExp::RegExp) {
        QTest::newRow(name) << pattern << syntax << safe;
    };
    row("empty", QString(), true);
    row("1000 characters", repeated("a", 1000), true);
    row("1001 characters", repeated("a", 1001), false);
    row("wildcard of 1000", repeated("*", 1000), true, QRegExp::Wildcard);
    row("wildcard of 1001", repeated("*", 1001), false, QRegExp::Wildcard);
    row("plain text of 1000", repeated("(", 1000), true, QRegExp::FixedString);
    row("plain text of 1001", repeated("(", 1001), false, QRegExp::FixedString);
    row("20 groups", repeated("(", 20) + repeated(")", 20), true);
    row("21 groups", repeated("(", 21) + repeated(")", 21), false);
    row("21 open groups", repeated("(", 21), false);
    row("groups beside each other", repeated("(a)", 300), true);
    row("closed before they are open", repeated(")", 30) + repeated("(", 21), false);
    row("in another syntax", repeated("(", 21), false, QRegExp::RegExp2);
    row("in XML Schema", repeated("(", 21), false, QRegExp::W3CXmlSchema11);
    row("in an unknown syntax", repeated("(", 21), false, 200);
    row("no groups in a wildcard", repeated("(", 21), true, QRegExp::Wildcard);
    row("no groups in a Unix wildcard", repeated("\\(", 21), true, QRegExp::WildcardUnix);
    row("groups that are escaped", repeated("\\(", 21), true);
    row("escapes that are escaped", repeated("\\\\(", 21), false);
    row("groups in a set", latin("[") + repeated("(", 21) + latin("]"), true);
    row("groups in a negative set", latin("[^]") + repeated("(", 21) + latin("]"), true);
    row("groups after an escape in a set", latin("[\\]") + repeated("(", 21) + latin("]"), true);
    row("groups after a set", latin("[]]") + repeated("(", 21), false);
    row("13 look-aheads", repeated("(?=)", 13), true);
    row("14 look-aheads", repeated("(?=)", 14), false);
    row("14 look-aheads of both kinds", repeated("(?=a)(?!b)", 7), false);
    row("look-ahead 13 times", latin("(?=){13}"), true);
    row("look-ahead 14 times", latin("(?=){14}"), false);
    row("group with a look-ahead 14 times", latin("(a((?!b)c){7}){2}"), false);
    row("group 14 times, then a look-ahead", latin("(a){14}(?=b)"), false);
    row("character 14 times after a look-ahead", latin("(?=a)b{14}"), true);
    row("repetition in a look-ahead", latin("(?=a{13})"), true);
    row("repetition in a look-ahead that is wrong", latin("(?!a{14}b{x"), false);
    row("groups without look-ahead", repeated("(?:a)", 14), true);
    row("repetition of 1000", latin("a{1000}"), true);
    row("repetition of 1001", latin("a{1001}"), false);
    row("of up to 1000", latin("a{0,1000}"), true);
    row("of up to 1001", latin("a{0,1001}"), false);
    row("of at least 1000", latin("a{1000,}"), true);
    row("of at least 1001", latin("a{1001,}"), false);
    row("of at most 1001", latin("a{,1001}"), false);
    row("of too many digits", latin("a{99999999999999999999}"), false);
    row("of zero times", latin("a{0}b{1000}"), true);
    row("that multiplies to 1000", latin("((a{10}){10}){10}"), true);
    row("that multiplies to 1001", latin("((a{7}){11}){13}"), false);
    row("in a set", latin("[{1001}]"), true);
    row("that is escaped", latin("a\\{1001}"), true);
    row("in a wildcard", latin("a{1001}"), true, QRegExp::Wildcard);

    // The parser goes on after an error, and past the character that was one.
    row("repetition that swallows a parenthesis", latin("(a{200(){200}"), false);
    row("repetition that swallows a closing one", repeated("(a{1)", 21), false);
    row("repetition that swallows a set", latin("(a{1[){200}{200}"), false);
    row("group that swallows a closing one", repeated("(?)", 21), false);
    row("group that swallows a set", latin("(?[((a{999}){999}){9}"), false);
    row("group that swallows an escape", latin("(?\\") + repeated("(", 20), false);
    row("property that hides a set", latin("\\p{[}((a{999}){999}){9}"), false,
        QRegExp::W3CXmlSchema11);
    row("property that hides groups", latin("(?=\\p{") + repeated("(", 21) + latin("})"), false,
        QRegExp::W3CXmlSchema11);
    row("property", latin("\\p{Lu}\\P{IsLatin-1Supplement}"), true, QRegExp::W3CXmlSchema11);
    row("ends in an escape", latin("a\\"), true);
    row("ends in a set", latin("a["), true);
    row("ends in an escape in a set", latin("a[\\"), true);
    row("ends in a group", latin("a(?"), true);
    row("ends in a repetition", latin("a{1,"), true);
}

void PatternGuardTest::limits()
{
    QFETCH(QString, pattern);
    QFETCH(int, syntax);
    QFETCH(bool, safe);
    QCOMPARE(patternCost(pattern, syntax).has_value(), safe);
    SocialGetPersonsRequest request;
    const QByteArray bytes = requestWithPatterns(1, pattern, syntax);
    QCOMPARE(Payload::read(bytes, request), safe);
    QCOMPARE(request.propertyFilter().size(), safe ? 1 : 0);
    if (safe)
        QCOMPARE(request.propertyFilter().value(latin("0")).pattern(), pattern);
}

void PatternGuardTest::costs_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("syntax");
    QTest::addColumn<int>("mostOfThem");
    const auto row = [](const char *name, const QString &pattern, int mostOfThem,
                        int syntax = QRegExp::RegExp) {
        QTest::newRow(name) << pattern << syntax << mostOfThem;
    };
    row("short", latin("^A.*"), 1000);
    row("long", repeated("a", 1000), 1000);
    row("repeated", latin("a{1000}"), 1000);
    row("long and repeated", latin("(") + repeated("a", 900) + latin("){1000}"), 0);
    row("many optional parts", repeated("a?", 500), 4);
    row("many optional parts, repeated", latin("(") + repeated("a?", 100) + latin("){100}"), 0);
    row("many alternatives", repeated("a|", 500), 4);
    row("many repetitions", repeated("a*", 500), 4);
    row("long wildcard", repeated("*", 1000), 2, QRegExp::Wildcard);
    row("long plain text", repeated("*", 1000), 1000, QRegExp::FixedString);
    row("nested look-aheads", repeated("(?=", 19) + latin("a"), 0);
    row("some look-aheads", latin("(?=.*[a-z])(?!.*[0-9]).*"), 1000);
    row("look-ahead in a look-ahead", latin("(?=.*(?=.*b))"), 1000);
    row("one more inside", latin("(?=.*(?=.*(?=.*b)))"), 1);
    row("many optional parts in a look-ahead", latin("(?=") + repeated("a?", 400) + latin(")"), 3);
    row("many optional parts in an inner look-ahead",
        latin("(?=(?=") + repeated("a?", 400) + latin("))"), 0);
    row("look-aheads beside each other", latin("(?=a)(?!b)") + repeated("a?", 100) + latin("(?=c)"),
        11);
    row("too much to count",
        repeated("(?=a)", 13) + repeated("\\9999", 70) + repeated("a", 400) + latin("{1000}"), 0,
        QRegExp::RegExp2);
    row("reference to a group that is not there", latin("a\\65535"), 15);
    row("greedy", latin("(a+){1000}"), 0, QRegExp::RegExp2);
}

// So many can be in one payload, and not one more.
void PatternGuardTest::costs()
{
    QFETCH(QString, pattern);
    QFETCH(int, syntax);
    QFETCH(int, mostOfThem);
    for (const int count : {mostOfThem, mostOfThem + 1}) {
        SocialGetPersonsRequest request;
        const QByteArray bytes = requestWithPatterns(count, pattern, syntax);
        QCOMPARE(Payload::read(bytes, request), count <= mostOfThem);
        QCOMPARE(request.propertyFilter().size(), count <= mostOfThem ? count : 0);
    }
}

void PatternGuardTest::numberOfPatterns_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("safe");
    QTest::newRow("1000") << 1000 << true;
    QTest::newRow("1001") << 1001 << false;
}

void PatternGuardTest::numberOfPatterns()
{
    QFETCH(int, count);
    QFETCH(bool, safe);
    SocialGetPersonsRequest request;
    QCOMPARE(Payload::read(requestWithPatterns(count, latin("a"), QRegExp::RegExp), request), safe);
    QCOMPARE(request.propertyFilter().size(), safe ? count : 0);
}

void PatternGuardTest::payloadEndsAtAnUnsafePattern()
{
    SocialGetPersonsRequest filled;
    filled.setPerformOnAccountsFilter({latin("a1")});
    filled.setPropertyFilter(latin("k"), QRegExp(latin("((a{9}){9}){9}")));
    filled.setRequestProgress(SocialDataRequest::Finished, {});
    QByteArray bytes = Payload::write(filled);
    bytes.replace(streamed(latin("((a{9}){9}){9}")), streamed(latin("((a{999}){999}){9}")));
    SocialGetPersonsRequest request;
    QVERIFY(!Payload::read(bytes, request));
    QCOMPARE(request.status(), SocialDataRequest::Finished);
    QCOMPARE(request.performOnAccountsFilter(), filled.performOnAccountsFilter());
    QVERIFY(request.propertyFilter().isEmpty());
}

void PatternGuardTest::patternsOfLikers()
{
    for (const int size : {1000, 1001}) {
        SocialGetLikersRequest filled(latin("i"));
        filled.setPropertyFilter(latin("k"), QRegExp(repeated("a", size)));
        SocialGetLikersRequest request;
        QCOMPARE(Payload::read(Payload::write(filled), request), size == 1000);
        QCOMPARE(int(request.propertyFilter().size()), size == 1000 ? 1 : 0);
    }
}

QTEST_GUILESS_MAIN(PatternGuardTest)
#include "patternguardtest.moc"
