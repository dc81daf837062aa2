// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "importrecorder.h"

#include <QTest>

namespace {

const QByteArray id = "\"id\":\"https://e.org/n\"";
const QByteArray published = "\"published\":\"2026-11-21T00:37:04Z\"";
const QByteArray bare = "\"type\":\"Note\"," + id + ',' + published;
const QByteArray create = "\"type\":\"Create\",\"id\":\"https://e.org/c\","
                          "\"actor\":\"https://e.org/ada\",";

void addColumns()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<QStringList>("lines");
}

void row(const char *name, const QByteArray &members, std::initializer_list<const char *> lines)
{
    QStringList expected;
    for (const char *line : lines) {
        expected << QString::fromUtf8(line);
    }
    QTest::newRow(name) << members << expected;
}

void compareLines()
{
    QFETCH(QByteArray, members);
    QTEST(linesOf(with(members)), "lines");
}

} // namespace

class ActivityObjectsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsPersons_data();
    void readsPersons();
    void readsPosts_data();
    void readsPosts();
    void readsTexts_data();
    void readsTexts();
    void readsMedia_data();
    void readsMedia();
    void readsBoostsAndLikes_data();
    void readsBoostsAndLikes();
    void skipsTheRest_data();
    void skipsTheRest();
    void readsCollections_data();
    void readsCollections();
};

void ActivityObjectsTest::readsPersons_data()
{
    addColumns();
    row("person",
        "\"type\":\"Person\",\"id\":\"https://e.org/ada\",\"preferredUsername\":\"ada\","
        "\"name\":\"<Ada>\",\"summary\":\"<p>a &amp; b</p>\",\"url\":[{\"type\":\"Link\",\"href\":"
        "\"https://e.org/@ada\"}],\"icon\":[{\"type\":\"Image\",\"url\":\"https://e.org/a.png\"}]",
        {"person|https://e.org/ada|ada|<Ada>|a & b|https://e.org/@ada|https://e.org/a.png"});
    row("person without an id", "\"type\":\"Person\",\"name\":\"Sally\"",
        {"skipped|Person|it has no id"});
    row("service as a person", "\"type\":\"Service\",\"id\":\"https://e.org/bot\"",
        {"person|https://e.org/bot|||||"});
    row("person of several types", "\"type\":[\"vcard:Individual\",\"Person\"],\"id\":\"x:y\"",
        {"person|x:y|||||"});
    row("person with a script for a page",
        "\"type\":\"Person\",\"id\":\"x:y\",\"url\":\"javascript:alert(1)\"", {"person|x:y|||||"});
}

void ActivityObjectsTest::readsPersons()
{
    compareLines();
}

void ActivityObjectsTest::readsPosts_data()
{
    addColumns();
    row("note", note, {noteLine});
    row("created note", create + "\"object\":{" + note + '}',
        {"status|https://e.org/n|https://e.org/ada||hello|2026-11-21T00:37:04.000Z|"});
    row("author of the note before who created it",
        create + "\"object\":{" + note + ",\"attributedTo\":\"https://e.org/ben\"}",
        {"status|https://e.org/n|https://e.org/ben||hello|2026-11-21T00:37:04.000Z|"});
    row("id and time of the creation",
        create + published + ",\"object\":{\"type\":\"Note\",\"content\":\"a\"}",
        {"status|https://e.org/c|https://e.org/ada||a|2026-11-21T00:37:04.000Z|"});
    row("time of the last change",
        "\"type\":\"Note\"," + id + ",\"content\":\"a\",\"updated\":\"2026-11-21T00:37:05Z\"",
        {"status|https://e.org/n|||a|2026-11-21T00:37:05.000Z|"});
    row("first time before the last change", note + ",\"updated\":\"2026-11-22T00:00:00Z\"",
        {noteLine});
    row("time of the note before that of its creation",
        "\"type\":\"Create\",\"published\":\"2026-11-22T00:00:00Z\",\"object\":{" + note + '}',
        {noteLine});
    row("creator inside",
        "\"type\":\"Create\",\"actor\":{\"id\":\"https://e.org/ada\","
        "\"preferredUsername\":\"ada\"},\"object\":{"
            + note + '}',
        {"person|https://e.org/ada|ada||||",
         "status|https://e.org/n|https://e.org/ada||hello|2026-11-21T00:37:04.000Z|"});
    row("several notes created at once", create + "\"object\":[{" + note + "},{" + note + "}]",
        {"status|https://e.org/n|https://e.org/ada||hello|2026-11-21T00:37:04.000Z|",
         "status|https://e.org/n|https://e.org/ada||hello|2026-11-21T00:37:04.000Z|"});
    row("comment", note + ",\"inReplyTo\":\"https://e.org/p\"",
        {"comment|https://e.org/n||https://e.org/p|hello|2026-11-21T00:37:04.000Z|"});
    row("comment on an object", note + ",\"inReplyTo\":[{\"id\":\"https://e.org/p\"}]",
        {"comment|https://e.org/n||https://e.org/p|hello|2026-11-21T00:37:04.000Z|"});
    row("comment on something without an id", note + ",\"inReplyTo\":{\"type\":\"Note\"}",
        {noteLine});
    row("null members",
        note
            + ",\"inReplyTo\":null,\"attributedTo\":null,\"url\":null,"
              "\"summary\":null,\"attachment\":null,\"updated\":null",
        {noteLine});
    row("author inside",
        note
            + ",\"attributedTo\":[{\"type\":\"Person\",\"id\":\"https://e.org/ada\","
              "\"name\":\"Ada\"}]",
        {"person|https://e.org/ada||Ada|||",
         "status|https://e.org/n|https://e.org/ada||hello|2026-11-21T00:37:04.000Z|"});
    row("page of a note", note + ",\"url\":{\"type\":\"Link\",\"href\":\"https://e.org/n.html\"}",
        {"status|https://e.org/n|||hello|2026-11-21T00:37:04.000Z|https://e.org/n.html"});
    row("note that says nothing", bare + ",\"content\":\"<br>\"",
        {"skipped|https://e.org/n|it has neither text nor media"});
    row("note without an id", "\"type\":\"Note\",\"content\":\"a\"," + published,
        {"skipped|Note|it has no id"});
    row("note without a time", "\"type\":\"Note\",\"content\":\"a\"," + id,
        {"skipped|https://e.org/n|it has no time that can be read"});
    row("created note that is only a URL", create + "\"object\":\"https://e.org/n\"",
        {"skipped|https://e.org/c|of what was created it has only a reference"});
    row("created person", create + "\"object\":{\"type\":\"Person\"}",
        {"skipped|https://e.org/c|Person was created"});
    row("nothing created", "\"type\":\"Create\"",
        {"skipped|Create|it does not say what was created"});
}

void ActivityObjectsTest::readsPosts()
{
    compareLines();
}

void ActivityObjectsTest::readsTexts_data()
{
    addColumns();
    row("title, warning and content",
        bare + ",\"name\":\"A < B\",\"summary\":\"<i>c</i>\",\"content\":\"<p>d</p><p>e</p>\"",
        {"status|https://e.org/n|||A < B\n\nc\n\nd\n\ne|2026-11-21T00:37:04.000Z|"});
    row("the same said twice", bare + ",\"summary\":\"a\",\"content\":\"<b>a</b>\"",
        {"status|https://e.org/n|||a|2026-11-21T00:37:04.000Z|"});
    row("content in Markdown", bare + ",\"mediaType\":\"text/markdown\",\"content\":\"*a* <b>\"",
        {"status|https://e.org/n|||*a* <b>|2026-11-21T00:37:04.000Z|"});
    row("content said to be HTML", bare + ",\"mediaType\":\"text/html\",\"content\":\"<b>a</b>\"",
        {"status|https://e.org/n|||a|2026-11-21T00:37:04.000Z|"});
    row("what was typed, in plain text",
        bare + ",\"content\":\"x\",\"source\":{\"mediaType\":\"text/plain\",\"content\":\"<a>\"}",
        {"status|https://e.org/n|||<a>|2026-11-21T00:37:04.000Z|"});
    row("what was typed, in another form",
        bare + ",\"content\":\"x\",\"source\":{\"mediaType\":\"text/bbcode\",\"content\":\"[a]\"}",
        {"status|https://e.org/n|||x|2026-11-21T00:37:04.000Z|"});
    row("question",
        "\"type\":\"Question\"," + id + ',' + published
            + ",\"content\":\"a?\",\"oneOf\":[{\"type\":\"Note\",\"name\":\"b\"},"
              "{\"type\":\"Note\",\"name\":\"c\"}]",
        {"status|https://e.org/n|||a?\n\n- b\n- c|2026-11-21T00:37:04.000Z|"});
    row("question with several answers",
        "\"type\":\"Question\"," + id + ',' + published + ",\"anyOf\":[{\"name\":\"b\"}]",
        {"status|https://e.org/n|||- b|2026-11-21T00:37:04.000Z|"});
    row("escapes of JSON", bare + ",\"content\":\"\\u00e9\\ud83d\\udc76 \\ud83d \\\"\\\\\"",
        {"status|https://e.org/n|||é👶 \uFFFD \"\\|2026-11-21T00:37:04.000Z|"});
    row("line break inside a text of JSON", bare + ",\"content\":\"a\nb\"",
        {"status|https://e.org/n|||a b|2026-11-21T00:37:04.000Z|"});
    row("the last of two members", bare + ",\"content\":\"a\",\"content\":\"b\"",
        {"status|https://e.org/n|||b|2026-11-21T00:37:04.000Z|"});
}

void ActivityObjectsTest::readsTexts()
{
    compareLines();
}

void ActivityObjectsTest::readsMedia_data()
{
    addColumns();
    row("attachments",
        note
            + ",\"attachment\":["
              "{\"type\":\"Document\",\"mediaType\":\"image/png\",\"url\":\"https://e.org/1\","
              "\"name\":\"a swan\"},"
              "{\"type\":\"Video\",\"url\":[{\"type\":\"Link\",\"href\":\"https://e.org/2\"}],"
              "\"icon\":{\"type\":\"Image\",\"url\":\"https://e.org/2.png\"}},"
              "{\"type\":\"Document\",\"url\":{\"href\":\"https://e.org/3\","
              "\"mediaType\":\"audio/ogg\"},\"summary\":\"<b>birds</b>\"},"
              "{\"type\":\"Link\",\"href\":\"https://e.org/4\"},"
              "\"https://e.org/5\","
              "{\"type\":\"Image\",\"url\":\"/media/6.png\"},"
              "{\"type\":\"Image\",\"url\":\"javascript:alert(7)\"},"
              "{\"type\":\"PropertyValue\",\"name\":\"x\"}, 8]",
        {noteLine, "media|1|https://e.org/1||a swan",
         "media|2|https://e.org/2|https://e.org/2.png|", "media|3|https://e.org/3||birds",
         "media|4|https://e.org/4||", "media|4|https://e.org/5||", "media|1|/media/6.png||"});
    row("preview and content of an attachment",
        note
            + ",\"attachment\":{\"type\":\"Image\",\"url\":\"https://e.org/1\","
              "\"preview\":{\"type\":\"Link\",\"href\":\"https://e.org/small\"},"
              "\"content\":\"<p>a &amp; b</p>\"}",
        {noteLine, "media|1|https://e.org/1|https://e.org/small|a & b"});
    row("attachment whose URL is none",
        note + ",\"attachment\":{\"type\":\"Image\",\"url\":\"http://e .org/\"}", {noteLine});
    row("document as a post",
        "\"type\":\"Document\"," + id + ',' + published + ",\"url\":\"https://e.org/1\"",
        {"status|https://e.org/n||||2026-11-21T00:37:04.000Z|https://e.org/1",
         "media|4|https://e.org/1||"});
    row("picture of a note", note + ",\"image\":{\"type\":\"Image\",\"url\":\"https://e.org/1\"}",
        {noteLine, "media|1|https://e.org/1||"});
    row("picture as a post",
        "\"type\":\"Image\"," + id + ',' + published + ",\"url\":\"https://e.org/1\"",
        {"status|https://e.org/n||||2026-11-21T00:37:04.000Z|https://e.org/1",
         "media|1|https://e.org/1||"});
}

void ActivityObjectsTest::readsMedia()
{
    compareLines();
}

void ActivityObjectsTest::readsBoostsAndLikes_data()
{
    addColumns();
    row("boost",
        "\"type\":\"Announce\"," + id + ',' + published
            + ",\"actor\":\"https://e.org/ada\",\"object\":\"https://e.org/p\"",
        {"boost|https://e.org/n|https://e.org/ada|https://e.org/p||2026-11-21T00:37:04.000Z|"});
    row("boost with what was boosted",
        "\"type\":\"Announce\",\"id\":\"https://e.org/b\"," + published
            + ",\"actor\":\"https://e.org/ada\",\"object\":{" + note + '}',
        {noteLine,
         "boost|https://e.org/b|https://e.org/ada|https://e.org/n||"
         "2026-11-21T00:37:04.000Z|"});
    row("boost of a link, from a known person",
        "\"type\":\"Announce\"," + id + ',' + published
            + ",\"actor\":{\"id\":\"https://e.org/ada\",\"name\":\"Ada\"},"
              "\"object\":{\"type\":\"Link\",\"href\":\"https://e.org/p\"}",
        {"person|https://e.org/ada||Ada|||",
         "boost|https://e.org/n|https://e.org/ada|https://e.org/p||2026-11-21T00:37:04.000Z|"});
    row("boost without a time", "\"type\":\"Announce\"," + id + ",\"object\":\"https://e.org/p\"",
        {"skipped|https://e.org/n|its id, its time or the id of what was boosted is missing"});
    row("like",
        "\"type\":\"Like\"," + published
            + ",\"actor\":\"https://e.org/ada\","
              "\"object\":\"https://e.org/p\"",
        {"like|https://e.org/ada|https://e.org/p|2026-11-21T00:37:04.000Z"});
    row("like without a time",
        "\"type\":[\"Like\",\"http://schema.org/LikeAction\"],\"actor\":\"https://e.org/ada\","
        "\"object\":\"https://e.org/p\"",
        {"like|https://e.org/ada|https://e.org/p|"});
    row("like of several things, from a known person",
        "\"type\":\"Like\",\"actor\":{\"type\":\"Person\",\"id\":\"https://e.org/ada\",\"name\":"
        "\"Ada\"},\"object\":[\"https://e.org/p\",{\"type\":\"Note\"},{"
            + note + "}]",
        {"person|https://e.org/ada||Ada|||", noteLine, "like|https://e.org/ada|https://e.org/p|",
         "like|https://e.org/ada|https://e.org/n|"});
    row("like of something without an id",
        "\"type\":\"Like\",\"actor\":\"https://e.org/ada\",\"object\":{\"type\":\"Note\"}",
        {"skipped|Like|the id of who likes or of what is liked is missing"});
}

void ActivityObjectsTest::readsBoostsAndLikes()
{
    compareLines();
}

void ActivityObjectsTest::skipsTheRest_data()
{
    addColumns();
    for (const char *type :
         {"Undo", "Update", "Delete", "Follow", "Dislike", "Tombstone", "Link"}) {
        QTest::newRow(type) << QByteArray("\"type\":\"") + type + "\"," + id
                            << QStringList{QStringLiteral("skipped|https://e.org/n|%1 has no place "
                                                          "in a journal")
                                               .arg(QString::fromLatin1(type))};
    }
    row("no type", id,
        {"skipped|https://e.org/n|something without a type has no place in a "
         "journal"});
}

void ActivityObjectsTest::skipsTheRest()
{
    compareLines();
}

void ActivityObjectsTest::readsCollections_data()
{
    addColumns();
    const QByteArray item = '{' + note + '}';
    row("ordered", "\"type\":\"OrderedCollection\",\"orderedItems\":[" + item + "]", {noteLine});
    row("unordered", "\"type\":\"Collection\",\"items\":[" + item + ", " + item + " ]",
        {noteLine, noteLine});
    row("pages", "\"type\":\"OrderedCollectionPage\",\"orderedItems\":[" + item + "]", {noteLine});
    row("type behind the items", "\"items\":[" + item + "],\"type\":\"CollectionPage\"",
        {noteLine});
    row("one item without an array", "\"type\":\"Collection\",\"items\":" + item, {noteLine});
    row("items of the first page",
        "\"type\":\"Collection\",\"first\":{\"type\":\"CollectionPage\",\"items\":[" + item + "]}",
        {noteLine});
    row("items that are only URLs", "\"type\":\"Collection\",\"items\":[\"https://e.org/n\"]",
        {"skipped|https://e.org/n|it is only a reference"});
    row("empty", "\"type\":\"OrderedCollection\",\"id\":\"https://e.org/o\",\"orderedItems\":[]",
        {"skipped|https://e.org/o|it holds no items"});
    row("pages elsewhere", "\"type\":\"Collection\",\"first\":\"https://e.org/1\"",
        {"skipped|Collection|it holds no items"});
}

void ActivityObjectsTest::readsCollections()
{
    compareLines();
}

QTEST_GUILESS_MAIN(ActivityObjectsTest)

#include "activityobjectstest.moc"
