// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "htmltext.h"

#include <QTest>

class HtmlTextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void converts_data();
    void converts();
    void cleansPlainText_data();
    void cleansPlainText();
    void survivesCutsAnywhere();
    void takesHostileInput_data();
    void takesHostileInput();
};

void HtmlTextTest::converts_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *html, const char *text) {
        QTest::newRow(name) << QString::fromUtf8(html) << QString::fromUtf8(text);
    };

    row("nothing", "", "");
    row("only a break", "<br>", "");
    row("plain", "Rain. Finally.", "Rain. Finally.");
    row("several scripts", "Zażółć 今日 مرحبا 👩‍👧",
        "Zażółć 今日 مرحبا 👩‍👧");

    row("tags dropped", "a <b>b</b> <i class=\"x\">c</i>d", "a b cd");
    row("tag names in capitals", "a<BR>b<P>c</P>", "a\nb\n\nc");
    row("break", "a<br>b<br/>c<br />d", "a\nb\nc\nd");
    row("two breaks are a blank line", "a<br><br>b", "a\n\nb");
    row("many breaks are one blank line", "a<br><br><br><br>b", "a\n\nb");
    row("paragraphs", "<p>a</p><p>b</p>", "a\n\nb");
    row("paragraphs never closed", "<p>a<p>b", "a\n\nb");
    row("paragraph after text", "a<p>b</p>c", "a\n\nb\n\nc");
    row("empty paragraphs", "<p>a</p><p></p><p> </p><p>b</p>", "a\n\nb");
    row("lines of div", "<div>a</div><div>b</div>", "a\nb");
    row("headings", "<h1>a</h1>b", "a\n\nb");
    row("rule", "a<hr>b", "a\n\nb");
    row("table", "<table><tr><th>a</th><td>b</td></tr><tr><td>c</td></tr></table>", "a b\nc");

    row("white space collapsed", "  a \n\t b\r\n\fc  ", "a b c");
    row("space between tags", "<b>a</b> <b>b</b>", "a b");
    row("spaces across tags", "a <b> b</b>", "a b");
    row("space around a break", "a <br> b", "a\nb");
    row("preformatted", "<pre>a  b\n  c</pre> d   e", "a  b\n  c\n\nd e");

    row("list", "x<ul><li>a</li><li>b</li></ul>y", "x\n\n- a\n- b\n\ny");
    row("list of words", "<ul><li>plum jam</li><li>rain</li></ul>", "- plum jam\n- rain");
    row("list never closed", "<ul><li>a<li>b", "- a\n- b");
    row("numbered list", "<ol><li>a</li><li>b</li></ol><ol><li>c</li></ol>", "1. a\n2. b\n\n1. c");
    row("list inside a list", "<ol><li>a<ul><li>b</li></ul></li><li>c</li></ol>",
        "1. a\n- b\n2. c");
    row("paragraph in an entry", "<ul><li><p>a</p></li></ul>", "- a");
    row("empty entries", "<ul><li></li><li> </li><li></ul>b", "b");
    row("list ends that never began", "</ul></li></ol>a<li>b", "a\n- b");

    row("link whose text is its URL",
        "<a href=\"https://example.org/a?b=1&c=2\" "
        "target=\"_blank\">https://example.org/a?b=1&c=2</a>",
        "https://example.org/a?b=1&c=2");
    row("link with the short form of its URL",
        "<a href=\"https://www.example.org/\">example.org</a>", "example.org");
    row("link with hidden parts",
        "<a href='https://example.org/long/path'><span class='invisible'>https://</span>"
        "<span>example.org/long</span><span class='invisible'>/path</span></a>",
        "https://example.org/long/path");
    row("link with a text of its own", "see <a href=https://example.org/x>this</a>.",
        "see this (https://example.org/x).");
    row("link with an escaped URL", "<a href=\"https://example.org/?a=1&amp;b=2\">x</a>",
        "x (https://example.org/?a=1&b=2)");
    row("link without a text", "a <a href=\"https://example.org/x\"></a>",
        "a https://example.org/x");
    row("link never closed", "<a href=\"https://example.org/x\">a", "a (https://example.org/x)");
    row("link after a link", "<a href=\"https://e.org/1\">a<a href=\"https://e.org/2\">b</a>",
        "a (https://e.org/1)b (https://e.org/2)");
    row("mail link", "<a href=\"mailto:a@example.org\">a@example.org</a>", "a@example.org");
    row("hashtag",
        "<a href=\"http://localhost:8001?t=jam\" class=\"mention hashtag\" rel=\"tag\">#jam</a>",
        "#jam");
    row("mention",
        "<span class=\"h-card\"><a href=\"http://localhost:8001/ben\" "
        "class=\"u-url mention\">@ben@localhost:8001</a></span> hello",
        "@ben@localhost:8001 hello");
    row("script link", "<a href=\"javascript:alert(1)\">a</a>", "a");
    row("relative link", "<a href=\"/x\">a</a>", "a");

    row("script dropped", "a<script>if (a < b) alert('</b>');</script>b", "ab");
    row("style dropped", "<STYLE>p > b { color: red }</Style>a", "a");
    row("script never closed", "a<script>alert(1)", "a");
    row("comment", "a<!-- <b>x</b> -->b<!---->c", "abc");
    row("declarations", "<!DOCTYPE html><?xml version='1.0'?>a", "a");
    row("picture with a description", "a <img src=x alt=\":swan:\"> b <img src=y> c",
        "a :swan: b c");
    row("attributes without a value", "a<img alt src=x>b<a href>c</a>", "abc");

    row("bracket in a quoted value", "<i title=\"a > b\">c</i>", "c");
    row("bracket in a value quoted after a space", "<i title = \"a > b\">c</i>", "c");
    row("attribute inside another's value", "<a title=' href=x ' href=\"https://e.org/\">a</a>",
        "a (https://e.org/)");
    row("brackets that begin no tag", "a < b <3 <> </> 1<2", "a < b <3 <> </> 1<2");
    row("bracket at the end", "a <", "a <");
    row("tag that never ends", "I <love you &amp; rain", "I <love you & rain");
    row("quote that never ends", "<i title=\"a>b</i>", "<i title=\"a>b</i>");

    row("entities", "&lt;b&gt; &amp; &quot;x&quot; &apos;y&apos;", "<b> & \"x\" 'y'");
    row("escaped tag stays text", "&lt;script&gt;alert(1)&lt;/script&gt;",
        "<script>alert(1)</script>");
    row("decoded once", "&amp;lt;", "&lt;");
    row("named", "&eacute;&Uuml;&hellip;&mdash;&euro;&hearts;", "éÜ…—€♥");
    row("names know capitals", "&Eacute;&eacute;", "Éé");
    row("space that does not break", "a&nbsp;&nbsp;b", "a\u00A0\u00A0b");
    row("decimal", "&#65;&#8364;&#128118;", "A€👶");
    row("hexadecimal", "&#x41;&#X20ac;&#x1F476;", "A€👶");
    row("leading zeros", "&#0000000065;", "A");
    row("unknown name", "&nosuch; &copyright;", "&nosuch; &copyright;");
    row("no semicolon", "a&b &amp c", "a&b &amp c");
    row("no number", "&#; &#x; &#xg; &#-1; &#6 5;", "&#; &#x; &#xg; &#-1; &#6 5;");
    row("numbers of no character", "&#0;&#xD800;&#x110000;&#99999999999;",
        "\uFFFD\uFFFD\uFFFD\uFFFD");
    row("control character by number", "a&#1;b&#127;c", "abc");
}

void HtmlTextTest::converts()
{
    QFETCH(QString, html);
    QTEST(htmlToText(html), "text");
}

void HtmlTextTest::cleansPlainText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cleaned");

    QTest::newRow("looks like HTML")
        << QStringLiteral("<b>a</b> &amp; <br>") << QStringLiteral("<b>a</b> &amp; <br>");
    QTest::newRow("lines") << QStringLiteral("a\r\nb\rc\nd\te") << QStringLiteral("a\nb\nc\nd\te");
    QTest::newRow("space around") << QStringLiteral(" \n a b \n") << QStringLiteral("a b");
    QTest::newRow("control characters")
        << QString::fromLatin1("a\0b\x1b[1m\x7f\x9f.", 10) << QStringLiteral("ab[1m.");
    QTest::newRow("whole character")
        << QStringLiteral("\U0001F476") << QStringLiteral("\U0001F476");
    QTest::newRow("first half of a character")
        << QString(QChar(0xD83D)) + QLatin1Char('a') << QStringLiteral("\uFFFDa");
    QTest::newRow("second half of a character")
        << QLatin1Char('a') + QString(QChar(0xDC76)) << QStringLiteral("a\uFFFD");
}

void HtmlTextTest::cleansPlainText()
{
    QFETCH(QString, text);
    QTEST(plainText(text), "cleaned");
}

void HtmlTextTest::survivesCutsAnywhere()
{
    const QString html = QString::fromUtf8(
        "<p>a &eacute; &#x1F476;</p><!-- x --><ul><li>b</li></ul>"
        "<a class='x' href=\"https://e.org/\">c</a><script>d</script><pre>e\nf</pre>👶");
    for (int length = 0; length <= html.size(); ++length) {
        const QString text = htmlToText(html.left(length));
        QVERIFY2(text.size() <= length, qPrintable(html.left(length)));
        QCOMPARE(QString::fromUtf8(text.toUtf8()), text);
    }
    QCOMPARE(htmlToText(html),
             QString::fromUtf8("a é 👶\n\n- b\n\nc (https://e.org/)\n\ne\nf\n\n👶"));
}

void HtmlTextTest::takesHostileInput_data()
{
    QTest::addColumn<QString>("piece");
    QTest::addColumn<QString>("last");

    // Work that grows with the square of the length would not end within the time of the test.
    const auto row = [](const char *piece, const char *last) {
        QTest::newRow(piece) << QString::fromLatin1(piece) << QString::fromLatin1(last);
    };
    row("<div>", "x");
    row("<ul><li>", "x");
    row("</p>", "x");
    row("<", "x");
    row("<a ", "x");
    row("<a b=\"", "x");
    row("<a b='\"", "x");
    row("<a href=\"https://e.org/\">", "x");
    row("<a href='https://e.org/'>y</a>", "x");
    row("<!--", "x");
    row("<script>", "x");
    row("<script></script>", "x");
    row("</script", "x");
    row("<pre>\n", "x");
    row("<img alt=\"y\">", "x");
    row("&", "x");
    row("&#", "x");
    row("&amp", "x");
    row(" ", "x");
    row("\n<br>", "x");
}

void HtmlTextTest::takesHostileInput()
{
    QFETCH(QString, piece);
    QFETCH(QString, last);
    const QString html = piece.repeated(50000) + last;
    const QString text = htmlToText(html);
    QVERIFY(text.size() <= html.size() * 2);
    // A script that never ends is dropped to the end.
    QCOMPARE(text.contains(last), piece != QLatin1String("<script>"));
}

QTEST_GUILESS_MAIN(HtmlTextTest)

#include "htmltexttest.moc"
