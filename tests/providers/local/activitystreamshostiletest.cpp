// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "importrecorder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace {

using State = ActivityStreamsReader::State;

// A collection of 100,000 notes that is made while it is read, and knows how much of it was.
class LongDocument : public QIODevice {
public:
    static constexpr int Notes = 100000;

    int made = 0;

protected:
    qint64 readData(char *data, qint64 size) override
    {
        while (m_ready.size() < size && made <= Notes) {
            m_ready += made == Notes
                ? QByteArray("],\"type\":\"Collection\"}")
                : QByteArray(made == 0 ? "{\"items\":[" : ",") + '{' + note + '}';
            ++made;
        }
        const QByteArray part = m_ready.left(int(size));
        m_ready.remove(0, part.size());
        memcpy(data, part.constData(), size_t(part.size()));
        return part.size();
    }

    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_ready;
};

class LagMeter : public ImportSink {
public:
    explicit LagMeter(const LongDocument &document) : m_document(document) { }

    void person(const ImportedPerson &) override { }
    void activity(const ImportedActivity &) override
    {
        ++delivered;
        lag = std::max(lag, m_document.made - delivered);
    }
    void like(const ImportedLike &) override { }
    void skipped(const QString &, const QString &) override { }

    int delivered = 0;
    int lag = 0;

private:
    const LongDocument &m_document;
};

} // namespace

class ActivityStreamsHostileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void deliversBeforeTheEnd();
    void staysAtItsEnd();
    void survivesCutsAnywhere_data();
    void survivesCutsAnywhere();
    void survivesFlippedBytes();
    void boundsItems_data();
    void boundsItems();
};

void ActivityStreamsHostileTest::deliversBeforeTheEnd()
{
    LongDocument document;
    document.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    LagMeter sink(document);
    ActivityStreamsReader reader(document, sink);
    int before = 0;
    State state = ActivityStreamsReader::Unfinished;
    while (state == ActivityStreamsReader::Unfinished) {
        state = reader.readNext();
        QVERIFY(sink.delivered - before <= 1);
        before = sink.delivered;
    }
    QCOMPARE(state, ActivityStreamsReader::Finished);
    QCOMPARE(sink.delivered, int(LongDocument::Notes));
    // What is read ahead is a buffer, here of less than a thousand notes.
    QVERIFY2(sink.lag < 1000, qPrintable(QString::number(sink.lag)));
}

void ActivityStreamsHostileTest::staysAtItsEnd()
{
    Recorder recorder;
    for (const char *bytes : {"{}", "["}) {
        QBuffer device;
        device.setData(bytes);
        device.open(QIODevice::ReadOnly);
        ActivityStreamsReader reader(device, recorder);
        State end = ActivityStreamsReader::Unfinished;
        while (end == ActivityStreamsReader::Unfinished) {
            end = reader.readNext();
        }
        const QString reason = reader.reason();
        const QStringList lines = recorder.lines;
        QCOMPARE(reader.readNext(), end);
        QCOMPARE(reader.reason(), reason);
        QCOMPARE(recorder.lines, lines);
    }
}

void ActivityStreamsHostileTest::survivesCutsAnywhere_data()
{
    QTest::addColumn<QByteArray>("document");

    QTest::newRow("actor") << archive("ada/actor.json");
    QJsonObject outbox = QJsonDocument::fromJson(archive("ada/outbox.json")).object();
    const QJsonArray items = outbox.value(QLatin1String("orderedItems")).toArray();
    outbox.insert(QStringLiteral("orderedItems"), QJsonArray{items.at(2), items.at(13)});
    QTest::newRow("outbox with a reply and a status") << QJsonDocument(outbox).toJson();
}

void ActivityStreamsHostileTest::survivesCutsAnywhere()
{
    QFETCH(QByteArray, document);
    Recorder whole;
    QString reason;
    QCOMPARE(read(document, whole, &reason), ActivityStreamsReader::Finished);
    const QByteArray body = document.trimmed();
    for (int length = 0; length < body.size(); ++length) {
        Recorder recorder;
        QCOMPARE(read(body.left(length), recorder, &reason), ActivityStreamsReader::Bad);
        QVERIFY(!reason.isEmpty());
        QCOMPARE(recorder.lines, QStringList(whole.lines.mid(0, recorder.lines.size())));
    }
}

void ActivityStreamsHostileTest::survivesFlippedBytes()
{
    const QByteArray document =
        with("\"type\":\"Collection\",\"items\":[{" + note
             + "},{\"type\":\"Like\",\"actor\":{\"id\":\"x:y\",\"name\":\"\xC3\xA9\"},"
               "\"object\":[\"x:z\"],\"published\":\"2026-11-21T00:37:04+05:30\"}]");
    // Each bit, and all of them.
    const QByteArray bytes("\x01\x02\x04\x08\x10\x20\x40\x80\xFF");
    for (int at = 0; at < document.size(); ++at) {
        for (const char byte : bytes) {
            QByteArray flipped = document;
            flipped[at] = char(flipped.at(at) ^ byte);
            Recorder recorder;
            QString reason;
            const State state = read(flipped, recorder, &reason);
            QCOMPARE(state == ActivityStreamsReader::Bad, !reason.isEmpty());
            QVERIFY(state == ActivityStreamsReader::Bad || !recorder.lines.isEmpty());
            for (const ImportedActivity &activity : std::as_const(recorder.activities)) {
                QVERIFY(!activity.id.isEmpty() && activity.published.isValid());
            }
        }
    }
}

void ActivityStreamsHostileTest::boundsItems_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("reason");

    const QByteArray large(17 * 1024 * 1024, 'a');
    QTest::newRow("as deep as allowed")
        << "{\"a\":" + QByteArray(500, '[') + QByteArray(500, ']') + '}' << QString();
    QTest::newRow("arrays too deep")
        << "{\"a\":" + QByteArray(1000000, '[') << QStringLiteral("it is nested too deeply");
    QTest::newRow("objects too deep")
        << "{\"items\":[" + QByteArray("{\"object\":").repeated(100000)
        << QStringLiteral("it is nested too deeply");
    QTest::newRow("objects as deep as allowed") << "{\"object\":"
            + QByteArray("{\"object\":").repeated(499) + "{\"id\":\"x:y\"}"
            + QByteArray("}").repeated(500) << QString();
    QTest::newRow("large member") << "{\"a\":\"" + large
            + "\"}" << QStringLiteral("it is too large: one value is more than 16 MiB");
    QTest::newRow("large name") << "{\"" + large + "\":1}"
                                << QStringLiteral("it is too large: one value is more than 16 MiB");
    QTest::newRow("large item") << "{\"items\":[\"" + large + "\"]}"
                                << QStringLiteral("it is too large: one value is more than 16 MiB");
    QTest::newRow("many members") << '{'
            + QByteArray("\"a\":\"" + large.left(1024 * 1024) + "\",").repeated(17)
            + '}' << QStringLiteral("it is too large: its members are more than 16 MiB");
}

void ActivityStreamsHostileTest::boundsItems()
{
    QFETCH(QByteArray, document);
    Recorder recorder;
    QString reason;
    const State state = read(document, recorder, &reason);
    QTEST(reason, "reason");
    QCOMPARE(state == ActivityStreamsReader::Finished, reason.isEmpty());
}

QTEST_GUILESS_MAIN(ActivityStreamsHostileTest)

#include "activitystreamshostiletest.moc"
