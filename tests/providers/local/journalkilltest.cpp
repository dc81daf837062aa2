// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Processes that are killed while they write and import. KINLET_JOURNAL_KILLS says how often (a few
// times if it is not set), KINLET_TEST_SEED begins another row of chances.

#include "journalapplication.h"
#include "journalimportfixture.h"

#include "journal.h"
#include "store.h"

#include <QHash>
#include <QRandomGenerator>
#include <QSet>

#include <memory>
#include <vector>

namespace {

int number(const char *variable, int otherwise)
{
    bool valid = false;
    const int value = qEnvironmentVariableIntValue(variable, &valid);
    return valid ? value : otherwise;
}

QByteArray authorOf(const QString &document)
{
    return "http://x/" + document.toUtf8();
}

// Of a person of its own that many statuses, each commented on and liked by that person.
QByteArray archive(const QString &name, int statuses)
{
    const QByteArray author = authorOf(name);
    QByteArrayList items{"{\"type\": \"Person\", \"id\": \"" + author + "\", \"name\": \"N\"}"};
    for (int i = 0; i < statuses; ++i) {
        const QByteArray id = author + '/' + QByteArray::number(i);
        items << note(id, author, "text") << like(author, id)
              << note(id + "/comment", author, "answer").chopped(1) + ", \"inReplyTo\": \"" + id
                + "\"}";
    }
    return collection(items);
}

}

class JournalKillTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingIsLost();

private:
    using Applications = std::vector<std::unique_ptr<Application>>;

    void dropDocuments();
    void killOneByOne(Applications &applications);
    void hear(Application &application);
    void checkPosts(Database &journal);
    void checkDocuments(Database &journal);
    void check();

    QScopedPointer<JournalSandbox> sandbox;
    QRandomGenerator chance;
    int killed = 0;
    int killedInImport = 0;
    // What the processes have said that they have stored.
    QHash<QString, QString> texts;
    QSet<QString> liked;
    // What they may have been at when they were killed.
    QSet<QString> uncertain;
    QHash<QString, int> documents;
};

void JournalKillTest::dropDocuments()
{
    while (filesIn(sandbox->importPath()).size() < 3) {
        const QString name = QStringLiteral("%1.json").arg(documents.size());
        documents.insert(name, int(chance.bounded(1, 600)));
        sandbox->drop(name, archive(name, documents.value(name)));
    }
}

void JournalKillTest::killOneByOne(Applications &applications)
{
    // Every fourth time while they start, otherwise while they write or import.
    if (chance.bounded(4) != 0) {
        for (const auto &application : applications)
            QVERIFY(application->says(QStringLiteral("stored ")));
    }
    for (const auto &application : applications) {
        QTest::qWait(int(chance.bounded(500)));
        application->process.kill();
        QVERIFY(application->process.waitForFinished(60000));
        QCOMPARE(application->process.exitStatus(), QProcess::CrashExit);
        ++killed;
        hear(*application);
    }
}

void JournalKillTest::hear(Application &application)
{
    QStringList lines = application.lines();
    // Behind the last line break there is nothing, or half a line.
    lines.removeLast();
    QString last;
    bool importing = false;
    for (const QString &line : std::as_const(lines)) {
        if (line.startsWith(QLatin1String("import"))) {
            importing = line == QLatin1String("importing");
            continue;
        }
        const QStringList words = line.split(QLatin1Char(' '));
        if (words.constFirst() == QLatin1String("stored"))
            texts.insert(words.value(1), words.value(2));
        else if (words.constFirst() == QLatin1String("liked"))
            liked.insert(words.value(1));
        else if (words.constFirst() == QLatin1String("unliked"))
            liked.remove(words.value(1));
        else
            QFAIL(qPrintable(line));
        last = words.value(1);
    }
    uncertain.insert(last);
    killedInImport += importing ? 1 : 0;
}

void JournalKillTest::checkPosts(Database &journal)
{
    QHash<QString, QString> found;
    QSet<QString> foundLiked;
    QSqlQuery rows = journal.run(
        QStringLiteral("SELECT a.id, a.text, l.activity IS NOT NULL FROM activities a LEFT JOIN "
                       "likes l ON l.activity = a.id AND l.person = a.owner WHERE a.owner = ?"),
        {Journal::Me});
    while (journal.next(rows)) {
        found.insert(rows.value(0).toString(), rows.value(1).toString());
        if (rows.value(2).toBool())
            foundLiked.insert(rows.value(0).toString());
    }
    for (auto it = texts.cbegin(); it != texts.cend(); ++it) {
        QCOMPARE(found.value(it.key()), it.value());
        if (!uncertain.contains(it.key()))
            QCOMPARE(foundLiked.contains(it.key()), liked.contains(it.key()));
    }
    // Each process that was killed may have stored one thing more than it could say.
    QVERIFY(found.size() <= texts.size() + killed);
    const QStringList all = found.values();
    QCOMPARE(QSet<QString>(all.begin(), all.end()).size(), all.size());
}

// All of a document is there, once, or nothing of it.
void JournalKillTest::checkDocuments(Database &journal)
{
    for (auto it = documents.cbegin(); it != documents.cend(); ++it) {
        const QString author = QString::fromUtf8(authorOf(it.key()));
        const auto count = [&](const char *sql) {
            return journal.value(QString::fromLatin1(sql), {author}).toInt();
        };
        const int persons = count("SELECT COUNT(*) FROM persons WHERE id = ?");
        const int complete = persons * it.value();
        QCOMPARE(count("SELECT COUNT(*) FROM activities WHERE owner = ?"), 2 * complete);
        QCOMPARE(count("SELECT COUNT(*) FROM likes WHERE person = ?"), complete);
        const bool done = QFile::exists(sandbox->importPath(QStringLiteral("done/") + it.key()));
        QCOMPARE(QFile::exists(sandbox->importPath(it.key())), !done);
        QVERIFY(persons == 1 || !done);
    }
    QVERIFY(!QFile::exists(sandbox->importPath(QStringLiteral("failed"))));
}

void JournalKillTest::check()
{
    try {
        Store store;
        QCOMPARE(store.database().value(QStringLiteral("PRAGMA integrity_check")).toString(),
                 QStringLiteral("ok"));
        checkPosts(store.database());
        checkDocuments(store.database());
    } catch (const StoreError &error) {
        QFAIL(qPrintable(error.text));
    }
}

void JournalKillTest::nothingIsLost()
{
    const int kills = number("KINLET_JOURNAL_KILLS", 6);
    const int seed = number("KINLET_TEST_SEED", 1);
    qInfo("%d kills, seed %d", kills, seed);
    chance.seed(quint32(seed));
    sandbox.reset(new JournalSandbox);
    for (int round = 0; killed < kills; ++round) {
        dropDocuments();
        Applications applications;
        const int processes = int(chance.bounded(1, 3));
        for (int i = 0; i < processes; ++i)
            applications.push_back(std::make_unique<Application>(QStringList{
                QStringLiteral("keep-writing"), QStringLiteral("%1-%2").arg(round).arg(i)}));
        killOneByOne(applications);
        check();
        if (QTest::currentTestFailed())
            return;
    }
    // Whoever comes next ends what the others have begun.
    {
        Application last({QStringLiteral("watch")});
        QTRY_COMPARE_WITH_TIMEOUT(filesIn(sandbox->importPath()), QStringList(), 120000);
    }
    check();
    QVERIFY(!texts.isEmpty());
    QVERIFY(kills < 50 || killedInImport > 0);
    qInfo("%d killed, %d of them in an import; %d posts and %d documents are there", killed,
          killedInImport, int(texts.size()), int(documents.size()));
}

QTEST_GUILESS_MAIN(JournalKillTest)

#include "journalkilltest.moc"
