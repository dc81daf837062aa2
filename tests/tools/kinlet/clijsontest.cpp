// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "json.h"

#include <Kinlet/Media>
#include <Kinlet/SocialActivity>

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPoint>
#include <QRegExp>
#include <QRegularExpression>
#include <QTest>
#include <QUrl>
#include <QUuid>

#include <limits>

namespace {

// In an array, since a value alone is no document.
QByteArray written(const QJsonValue &value)
{
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

}

class CliJsonTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void values_data();
    void values();
    void record();
    void keysAreInOrder();
    void lineHoldsNothingThatSteers();
    void lineCanBeReadBack();
};

void CliJsonTest::values_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("json");
    const auto row = [](const char *name, const QVariant &value, const char *json) {
        QTest::newRow(name) << value << QByteArray(json);
    };
    row("invalid", QVariant(), "null");
    row("true", true, "true");
    row("int", -7, "-7");
    row("unsigned int", 4000000000u, "4000000000");
    row("the largest number", qint64(9007199254740991), "9007199254740991");
    row("the least number", qint64(-9007199254740991), "-9007199254740991");
    row("larger", qint64(9007199254740992), "\"9007199254740992\"");
    row("less", qint64(-9007199254740992), "\"-9007199254740992\"");
    row("the largest that there is", QVariant::fromValue(std::numeric_limits<quint64>::max()),
        "\"18446744073709551615\"");
    row("short", QVariant::fromValue(short(-3)), "-3");
    row("byte", QVariant::fromValue(uchar(200)), "200");
    row("double", 0.5, "0.5");
    row("infinity", std::numeric_limits<double>::infinity(), "null");
    row("text", QStringLiteral("a\"\n"), "\"a\\\"\\n\"");
    row("empty text", QString(), "\"\"");
    row("character", QChar(u'x'), "\"x\"");
    row("byte array", QByteArray("\0\xff\xfe>", 4), "\"AP/+Pg==\"");
    row("date and time", QDateTime(QDate(2026, 3, 12), QTime(14, 30, 0, 5), Qt::UTC),
        "\"2026-03-12T14:30:00.005Z\"");
    row("of another zone", QDateTime(QDate(2026, 3, 12), QTime(14, 30), Qt::OffsetFromUTC, 3600),
        "\"2026-03-12T13:30:00.000Z\"");
    row("no date and time", QDateTime(), "null");
    row("date", QDate(2026, 3, 12), "\"2026-03-12\"");
    row("no date", QDate(), "null");
    row("time", QTime(4, 5, 6), "\"04:05:06.000\"");
    row("no time", QTime(), "null");
    row("URL", QUrl(QStringLiteral("https://example.org/a b")), "\"https://example.org/a%20b\"");
    row("UUID", QUuid(QStringLiteral("{01234567-89ab-cdef-0123-456789abcdef}")),
        "\"01234567-89ab-cdef-0123-456789abcdef\"");
    row("regular expression", QRegularExpression(QStringLiteral("a+")), "\"a+\"");
    row("older regular expression", QVariant::fromValue(QRegExp(QStringLiteral("b+"))), "\"b+\"");
    row("texts", QStringList{QStringLiteral("a"), QStringLiteral("b")}, "[\"a\",\"b\"]");
    row("list", QVariantList{1, QStringLiteral("x"), QVariantList{true}}, "[1,\"x\",[true]]");
    row("map", QVariantMap{{QStringLiteral("b"), 1}, {QStringLiteral("a"), QByteArray("x")}},
        "{\"a\":\"eA==\",\"b\":1}");
    row("hash", QVariantHash{{QStringLiteral("a"), 1}}, "{\"a\":1}");
    const Media media{Media::Image, QStringLiteral("u"), QStringLiteral("p"), QStringLiteral("d")};
    const char *mediaJson = R"({"description":"d","kind":1,"preview":"p","url":"u"})";
    row("media", QVariant::fromValue(media), mediaJson);
    row("list of media", QVariant::fromValue(QList<Media>{media}),
        QByteArray('[' + QByteArray(mediaJson) + ']').constData());
    row("list of media as values", QVariantList{QVariant::fromValue(media)},
        QByteArray('[' + QByteArray(mediaJson) + ']').constData());
    row("attachment",
        QVariant::fromValue(SocialActivityAttachment{QStringLiteral("1"),
                                                     QStringLiteral("2"),
                                                     QStringLiteral("3"),
                                                     QStringLiteral("4"),
                                                     {media}}),
        QByteArray("{\"media\":[" + QByteArray(mediaJson)
                   + R"(],"subtitle":"2","summary":"3","title":"1","url":"4"})")
            .constData());
    row("icon texts",
        QVariant::fromValue(SocialActionIconTexts{2, QStringLiteral("i"), QStringLiteral("l"),
                                                  QStringLiteral("u")}),
        R"({"action":2,"icon":"i","label":"l","undoLabel":"u"})");
    row("import progress", QVariant::fromValue(SocialImportProgress{true, 1, 2, 3}),
        R"({"added":1,"merged":3,"removed":2,"running":true})");
    SocialActivity inner;
    inner.setProperty(SocialGenericData::Id, 5);
    row("record", QVariant::fromValue(static_cast<SocialGenericData>(inner)),
        R"({"class":"SocialActivity","properties":{"Id":5}})");
    row("activity", QVariant::fromValue(inner),
        R"({"class":"SocialActivity","properties":{"Id":5}})");
    row("enumerator", QVariant::fromValue(KinletTimeline::Homepage), "\"Homepage\"");
    row("something else", QPoint(1, 2), R"({"type":"QPoint"})");
}

void CliJsonTest::values()
{
    QFETCH(QVariant, value);
    QTEST(written(jsonValue(value)), "json");
}

void CliJsonTest::record()
{
    SocialGenericData record(QStringLiteral("Anything"));
    record.setProperty(QStringLiteral("class"), 1);
    record.setProperty(QStringLiteral("provider"), QStringLiteral("mine"));
    QCOMPARE(jsonLine(jsonRecord(record, QStringLiteral("alder"))),
             QStringLiteral(R"({"class":"Anything","properties":{"class":1,"provider":"mine"},)"
                            R"("provider":"alder"})"));
    QCOMPARE(jsonLine(jsonRecord(SocialGenericData())),
             QStringLiteral(R"({"class":"","properties":{}})"));
}

void CliJsonTest::keysAreInOrder()
{
    SocialGenericData record;
    for (const char *key : {"b", "C", "a", "B"})
        record.setProperty(QLatin1String(key), true);
    QCOMPARE(jsonLine(jsonRecord(record)),
             QStringLiteral(R"({"class":"","properties":{"B":true,"C":true,"a":true,"b":true}})"));
}

void CliJsonTest::lineHoldsNothingThatSteers()
{
    SocialGenericData record;
    QString text;
    for (ushort unit = 0; unit < 0x3000; ++unit)
        text += QChar(unit);
    record.setProperty(text, text);
    const QString line = jsonLine(jsonRecord(record));
    for (const QChar unit : line) {
        QVERIFY2(unit.category() != QChar::Other_Control,
                 qPrintable(QString::number(unit.unicode(), 16)));
        QVERIFY(unit.unicode() < 0x2028 || unit.unicode() > 0x202e);
        QVERIFY(unit.unicode() < 0x2066 || unit.unicode() > 0x2069);
    }
}

void CliJsonTest::lineCanBeReadBack()
{
    const QString text = QString::fromUtf8("\033[31m\u009b\u202e\n\u4f60 \U0001F600");
    SocialGenericData record;
    record.setProperty(QStringLiteral("Text"), text);
    const QJsonObject read =
        QJsonDocument::fromJson(jsonLine(jsonRecord(record)).toUtf8()).object();
    QCOMPARE(read[QLatin1String("properties")][QLatin1String("Text")].toString(), text);
}

QTEST_GUILESS_MAIN(CliJsonTest)
#include "clijsontest.moc"
