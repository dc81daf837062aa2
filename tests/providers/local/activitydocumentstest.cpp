// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "importrecorder.h"

#include <QDir>
#include <QTest>

class ActivityDocumentsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reportsBadDocuments_data();
    void reportsBadDocuments();
    void acceptsDocuments_data();
    void acceptsDocuments();
    void skipsBadItems();
};

void ActivityDocumentsTest::reportsBadDocuments_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const QByteArray &document, const char *reason) {
        QTest::newRow(name) << document << QString::fromLatin1(reason);
    };

    row("empty", "", "it is empty");
    row("only space", " \n", "it is empty");
    row("text at the top", "\"a\"", "it is a text, not an object");
    row("number at the top", "-42", "it is a number, not an object");
    row("array at the top", "[{}]", "it is an array: several objects belong into a collection");
    row("no JSON", "<html>", "it is not JSON: it does not begin with an object");
    row("two documents", "{}{}", "it is not JSON: something follows its end");
    row("zero byte behind", QByteArray("{}\0", 3), "it is not JSON: something follows its end");
    row("cut", "{\"a\":[1,", "it is not JSON: it ends in the middle");
    row("cut before a member", "{", "it is not JSON: it ends in the middle");
    row("cut in a text", "{\"a\":\"b\\\"", "it is not JSON: it ends in the middle");
    row("no value", "{\"a\":}", "it is not JSON: no value after byte 5");
    row("no colon", "{\"a\" 1}", "it is not JSON: no value after byte 1");
    row("no name", "{1:1}", "it is not JSON: the name of a member is missing");
    row("no comma", "{\"a\":1 \"b\":2}", "it is not JSON: no value after byte 5");
    row("comma at the end", "{\"a\":1,}", "it is not JSON: no value after byte 7");
    row("brackets that do not match", "{\"a\":[1}}", "it is not JSON: no value after byte 5");
    row("bracket too many", "{\"a\":1]}", "it is not JSON: a comma or its end is missing");
    row("item without a comma", "{\"items\":[1}]}",
        "it is not JSON: a comma between items is missing");
    row("comma behind the last item", "{\"items\":[1,]}", "it is not JSON: no value after byte 12");
    row("number that is none", "{\"a\":01}", "it is not JSON: no value after byte 5");
    row("number too large", "{\"a\":1e999}", "it is not JSON: no value after byte 5");
    row("UTF-8 broken", "{\"a\":\"\xC6iuj\"}", "it is not in UTF-8, near byte 5");
    row("UTF-8 broken in an item", "{\"items\":[\"\xC6\"]}", "it is not in UTF-8, near byte 10");
    row("UTF-16", QByteArray("\xFF\xFE{\0}\0", 6),
        "it is not JSON: it does not begin with an object");

    const char context[] = "its \"@context\" is not that of ActivityStreams";
    row("other context", R"({"@context":"http://schema.org"})", context);
    row("other contexts", R"({"@context":["http://schema.org",{"a":"b"}]})", context);
    row("number as a context", R"({"@context":3})",
        "\"@context\" is a number, not a URL or an object");
    row("number as a type", with("\"type\":[\"Note\",1]"), "\"type\" is a number, not a text");
    row("number as an id", with("\"id\":4"), "\"id\" is a number, not a text");
    row("number as a name", with("\"name\":1"), "\"name\" is a number, not a text");
    row("array as a content", with("\"content\":[]"), "\"content\" is an array, not a text");
    row("object as a name", with("\"name\":{}"), "\"name\" is an object, not a text");
    row("map of no language as a name", with("\"name\":{\"sp\":\"a\"}"),
        "\"name\" is an object, not a text (\"sp\" is no language)");
    row("text as a map", with("\"nameMap\":\"a\""),
        "\"nameMap\" is a text, not a map of languages");
    row("region twice in a tag", with("\"contentMap\":{\"de-419-DE\":\"a\"}"),
        "\"contentMap\" has \"de-419-DE\", which is no language tag");
    row("number in a map", with("\"summaryMap\":{\"en\":1}"), "\"en\" is a number, not a text");
    row("relative URL", with("\"url\":\"images/a.jpg\""), "\"url\" is relative: \"images/a.jpg\"");
    row("relative URL among others", with("\"url\":[\"x:y\",\"/a\"]"),
        "\"url\" is relative: \"/a\"");
    row("number as a URL", with("\"url\":1"), "\"url\" is a number, not a URL or a link");
    row("number as an actor", with("\"actor\":90"),
        "\"actor\" is a number, not an object or its URL");
    row("truth as an object", with("\"object\":[true]"),
        "\"object\" is true or false, not an object or its URL");
    row("number as a target", with("\"target\":1"),
        "\"target\" is a number, not an object or its URL");
    row("number in the object", with("\"object\":{\"id\":1}"),
        "in its \"object\": \"id\" is a number, not a text");
    row("items of an ordered collection", with("\"type\":\"OrderedCollection\",\"items\":[]"),
        "an ordered collection has \"items\", not \"orderedItems\"");
    row("ordered items of a collection", with("\"type\":\"Collection\",\"orderedItems\":[{}]"),
        "\"orderedItems\" in what is no ordered collection");
    row("items of a note", with("\"type\":\"Note\",\"items\":[{}]"),
        "\"items\" in what is no collection");
    row("first that is no page", with("\"type\":\"Collection\",\"first\":{\"type\":\"Create\"}"),
        "\"first\" is an object, not a page of a collection");
    row("next that is no page", with("\"type\":\"CollectionPage\",\"next\":7"),
        "\"next\" is a number, not a page of a collection");
    row("context that comes after the items",
        "{\"items\":[{" + note + "}],\"type\":\"Collection\",\"@context\":\"http://schema.org\"}",
        context);

    // The W3C's test documents, where they are at hand.
    const QString folder = qEnvironmentVariable("KINLET_AS2_DOCUMENTS");
    if (folder.isEmpty()) {
        return;
    }
    const auto file = [&](const char *name, const char *reason) {
        row(name, fileBytes(folder + QLatin1String("/fail/") + QString::fromLatin1(name)), reason);
    };
    file("array-at-top.json", "it is an array: several objects belong into a collection");
    file("bad-character-set.json", "it is not in UTF-8, near byte 115");
    file("collection-with-non-page-first.json",
         "\"first\" is an object, not a page of a collection");
    file("content-map-with-invalid-language-tag.json",
         "\"contentMap\" has \"de-419-DE\", which is no language tag");
    file("name-as-namemap.json", "\"nameMap\" is a text, not a map of languages");
    file("namemap-as-name.json", "\"name\" is an object, not a text (\"sp\" is no language)");
    file("number-as-actor.json", "\"actor\" is a number, not an object or its URL");
    file("number-as-content.json", "\"content\" is a number, not a text");
    file("number-as-context.json", "\"@context\" is a number, not a URL or an object");
    file("number-as-id.json", "\"id\" is a number, not a text");
    file("number-as-name.json", "\"name\" is a number, not a text");
    file("number-as-object.json", "\"object\" is a number, not an object or its URL");
    file("number-as-type.json", "\"type\" is a number, not a text");
    file("number-at-top.json", "it is a number, not an object");
    file("ordered-collection-with-items.json",
         "an ordered collection has \"items\", not \"orderedItems\"");
    file("ordered-collection-with-non-page-first.json",
         "\"first\" is an object, not a page of a collection");
    file("other-context.json", context);
    file("relative-uri-for-url.json", "\"url\" is relative: \"images/sally.jpg\"");
    file("string-at-top.json", "it is a text, not an object");
    file("unordered-collection-with-ordered-items.json",
         "\"orderedItems\" in what is no ordered collection");
    const QStringList all = QDir(folder + QLatin1String("/fail")).entryList(QDir::Files);
    QCOMPARE(all.size(), 20);
}

void ActivityDocumentsTest::reportsBadDocuments()
{
    QFETCH(QByteArray, document);
    Recorder recorder;
    QString reason;
    QCOMPARE(read(document, recorder, &reason), ActivityStreamsReader::Bad);
    QTEST(reason, "reason");
}

void ActivityDocumentsTest::acceptsDocuments_data()
{
    QTest::addColumn<QByteArray>("document");

    QTest::newRow("no members") << QByteArray("{}");
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF { } \r\n\t ");
    QTest::newRow("no context") << QByteArray(R"({"id":"x:y"})");
    QTest::newRow("context of old")
        << QByteArray(R"({"@context":"http://www.w3.org/ns/activitystreams#"})");
    QTest::newRow("several contexts")
        << QByteArray(R"({"@context":[{},"https://www.w3.org/ns/activitystreams",{"a":"b"}]})");
    QTest::newRow("context as a vocabulary")
        << QByteArray(R"({"@context":{"@vocab":"https://www.w3.org/ns/activitystreams#"}})");
    QTest::newRow("null everywhere") << QByteArray(
        R"({"@context":null,"id":null,"type":null,"name":null,"nameMap":null,"url":null,"actor":null})");
    QTest::newRow("language tags") << QByteArray(
        R"({"nameMap":{"en":"","und":"","zh-Hans":"","zh-cmn-Hans-CN":"","es-419":"","sl-rozaj-biske":"",
           "de-CH-1996":"","en-u-co-phonebk":"","de-DE-x-goethe":"","x-whatever":"","i-klingon":"",
           "tlh":"","en-GB-oed":"","sgn-BE-FR":"","DE-de":""}})");
    QTest::newRow("link to a page")
        << with(R"("type":"Collection","first":{"type":"Link","href":"x:y"})");
    QTest::newRow("huge numbers") << QByteArray(
        R"({"latitude":123456789012345678901234567890,"a":-1e-300,"b":1e300})");

    const QDir folder(qEnvironmentVariable("KINLET_AS2_DOCUMENTS", QStringLiteral("/nowhere")));
    const QStringList names = folder.entryList({QStringLiteral("*.json")}, QDir::Files);
    for (const QString &name : names) {
        QTest::newRow(qPrintable(name)) << fileBytes(folder.filePath(name));
    }
}

void ActivityDocumentsTest::acceptsDocuments()
{
    QFETCH(QByteArray, document);
    Recorder recorder;
    QString reason;
    QCOMPARE(read(document, recorder, &reason), ActivityStreamsReader::Finished);
    QCOMPARE(reason, QString());
    // Nothing goes without a word.
    QVERIFY(!recorder.lines.isEmpty());
}

void ActivityDocumentsTest::skipsBadItems()
{
    const QStringList lines =
        linesOf(with("\"type\":\"Collection\",\"items\":[1,null,[],{\"id\":2},"
                     "{\"id\":\"x:y\",\"type\":\"Create\",\"actor\":5},{"
                     + note + "}]"));
    const QString none = QStringLiteral("skipped|something without a type|");
    QCOMPARE(lines,
             QStringList({none + QStringLiteral("it is neither an object nor a URL"),
                          none + QStringLiteral("it is neither an object nor a URL"),
                          none + QStringLiteral("it is neither an object nor a URL"),
                          none + QStringLiteral("\"id\" is a number, not a text"),
                          QStringLiteral("skipped|x:y|\"actor\" is a number, not an object "
                                         "or its URL"),
                          QString::fromLatin1(noteLine)}));
}

QTEST_GUILESS_MAIN(ActivityDocumentsTest)

#include "activitydocumentstest.moc"
