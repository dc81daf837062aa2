// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "text.h"

#include <QTest>

class CliTextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void width_data();
    void width();
    void cleaning_data();
    void cleaning();
    void onOneLine();
    void wrapping_data();
    void wrapping();
    void noLineIsTooWide();
    void isolation_data();
    void isolation();
};

void CliTextTest::width_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("columns");
    const auto row = [](const char *name, const char *text, int columns) {
        QTest::newRow(name) << QString::fromUtf8(text) << columns;
    };
    row("empty", "", 0);
    row("Latin", "Gr\u00fc\u00dfe", 5);
    row("combining accent", "e\u0301a", 2);
    row("many accents", "e\u0301\u0302\u0303\u0304", 1);
    row("Chinese", "\u4f60\u597d", 4);
    row("Hangul syllable", "\ud55c", 2);
    row("Hangul letters", "\u1112\u1161\u11ab", 2);
    row("halfwidth katakana", "\uff76", 1);
    row("fullwidth Latin", "\uff21", 2);
    row("emoji", "\U0001F600", 2);
    row("emoji with a skin tone", "\U0001F44D\U0001F3FD", 2);
    row("family joined by ZWJ", "\U0001F468\u200d\U0001F469\u200d\U0001F467", 2);
    row("two emoji that are not joined", "\U0001F468\U0001F469", 4);
    row("text symbol", "\u2764", 1);
    row("the same as an emoji", "\u2764\ufe0f", 2);
    row("flag", "\U0001F1E9\U0001F1EA", 2);
    row("two flags", "\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7", 4);
    row("zero width space", "a\u200bb", 2);
    row("Hebrew", "\u05e9\u05dc\u05d5\u05dd", 4);
    row("Hebrew with points", "\u05e9\u05b8", 1);
    row("isolates", "\u2068ab\u2069", 2);
    row("letters around ZWJ stay two", "\u0915\u200d\u0937", 2);
}

void CliTextTest::width()
{
    QFETCH(QString, text);
    QTEST(displayWidth(text), "columns");
}

void CliTextTest::cleaning_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("clean");
    const auto row = [](const char *name, const QString &text, const char *clean) {
        QTest::newRow(name) << text << QString::fromUtf8(clean);
    };
    const auto utf8 = [](const char *text) { return QString::fromUtf8(text); };
    row("plain text stays", utf8("Gr\u00fc\u00dfe \U0001F600 \u05d0"),
        "Gr\u00fc\u00dfe \U0001F600 \u05d0");
    row("escape sequence", utf8("\033[31mred"), "\u241b[31mred");
    row("title sequence", utf8("\033]0;x\007"), "\u241b]0;x\u2407");
    row("null", QString(QChar(0)), "\u2400");
    row("backspace, delete", utf8("\b\177"), "\u2408\u2421");
    row("control sequence introducer of eight bits", utf8("\u009b31m"), "\ufffd31m");
    row("line ends", utf8("a\nb\r\nc\rd\u2028e\u2029f"), "a\nb\nc\nd\ne\nf");
    row("tab", utf8("a\tb"), "a    b");
    row("override without end", utf8("\u202eevil"), "evil");
    row("end of an isolate", utf8("a\u2069b\u2066c\u2067\u2068"), "abc");
    row("embeddings", utf8("\u202aa\u202bb\u202cc\u202d"), "abc");
    row("soft hyphen", utf8("a\u00adb"), "ab");
    row("half a surrogate pair", QString(QChar(0xd83d)) + QLatin1Char('x'), "\ufffdx");
    row("no character", QString(QChar(0xffff)), "\ufffd");
    row("marks of direction stay", utf8("a\u200fb\u200e"), "a\u200fb\u200e");
}

void CliTextTest::cleaning()
{
    QFETCH(QString, text);
    QTEST(cleaned(text), "clean");
}

void CliTextTest::onOneLine()
{
    QCOMPARE(oneLine(QStringLiteral("\n a\r\nb\nc \n")), QStringLiteral("a b c"));
}

void CliTextTest::wrapping_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QStringList>("lines");
    const auto row = [](const char *name, const char *text, int columns, const QStringList &lines) {
        QTest::newRow(name) << QString::fromUtf8(text) << columns << lines;
    };
    const auto list = [](std::initializer_list<const char *> texts) {
        QStringList lines;
        for (const char *text : texts)
            lines.append(QString::fromUtf8(text));
        return lines;
    };
    row("empty", "", 10, list({""}));
    row("it fits exactly", "ab cd", 5, list({"ab cd"}));
    row("between words", "one two three", 8, list({"one two", "three"}));
    row("blanks at the edge", "one two   three", 7, list({"one two", "three"}));
    row("lines of its own", "a\n\nb", 10, list({"a", "", "b"}));
    row("a long word", "abcdefgh", 3, list({"abc", "def", "gh"}));
    row("a long word after a short one", "ab cdefgh", 4, list({"ab", "cdef", "gh"}));
    row("wide characters", "\u4f60\u597d\u4f60\u597d", 5, list({"\u4f60\u597d", "\u4f60\u597d"}));
    row("an accent stays with its letter", "aae\u0301", 2, list({"aa", "e\u0301"}));
    row("joined emoji stay together", "a\U0001F468\u200d\U0001F469\u200d\U0001F467", 2,
        list({"a", "\U0001F468\u200d\U0001F469\u200d\U0001F467"}));
    row("a character wider than the line", "\u4f60\u597d", 1, list({"\u4f60", "\u597d"}));
    row("no limit", "one two three", 0, list({"one two three"}));
    row("leading blanks stay", "  a b", 10, list({"  a b"}));
}

void CliTextTest::wrapping()
{
    QFETCH(QString, text);
    QFETCH(int, columns);
    QTEST(wrapped(text, columns), "lines");
}

void CliTextTest::noLineIsTooWide()
{
    const QString text = QString::fromUtf8(
        "The quick \U0001F98A jumps https://example.org/a/very/long/path?with=a&query over "
        "\u4f60\u597d\u4e16\u754c, \u05e9\u05dc\u05d5\u05dd \u05e2\u05d5\u05dc\u05dd, "
        "e\u0301tude, \U0001F468\u200d\U0001F469\u200d\U0001F467 and \U0001F1E9\U0001F1EA.");
    for (int columns = 2; columns < 90; ++columns) {
        const QStringList lines = wrapped(text, columns);
        for (const QString &line : lines)
            QVERIFY2(displayWidth(line) <= columns, qPrintable(line));
        // Nothing but blanks is lost.
        QString joined = lines.join(QString());
        QString original = text;
        QCOMPARE(joined.remove(QLatin1Char(' ')), original.remove(QLatin1Char(' ')));
    }
}

void CliTextTest::isolation_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isolates");
    const auto row = [](const char *name, const char *text, bool isolates) {
        QTest::newRow(name) << QString::fromUtf8(text) << isolates;
    };
    row("empty", "", false);
    row("Latin", "abc", false);
    row("Chinese and emoji", "\u4f60\U0001F600", false);
    row("Hebrew", "\u05d0", true);
    row("Arabic after Latin", "abc \u0627", true);
    row("beyond the first plane", "\U00010800", true);
}

void CliTextTest::isolation()
{
    QFETCH(QString, text);
    QFETCH(bool, isolates);
    const QString expected = isolates ? QChar(0x2068) + text + QChar(0x2069) : text;
    QCOMPARE(isolated(text), expected);
}

QTEST_GUILESS_MAIN(CliTextTest)
#include "clitexttest.moc"
