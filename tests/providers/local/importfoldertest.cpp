// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Which files of the import folder are read, when, and where they go.

#include "journalimportfixture.h"

#include "importfolder.h"
#include "requests/socialpostactivitiesrequest.h"
#include "store.h"

class ImportFolderTest : public JournalImportFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { startAnew(); }
    void cleanup() { sandbox.reset(); }

    void waitingDocuments();
    void badAmongGood();
    void onlyVisibleFiles();
    void takenNames();
    void documentBeingWritten();
    void waitsForAnotherWriter();
    void staysWhenTheJournalIsDamaged_data();
    void staysWhenTheJournalIsDamaged();
};

// Dropped while nobody was there to read them.
void ImportFolderTest::waitingDocuments()
{
    sandbox->drop(QStringLiteral("2.json"), JournalSandbox::sample("ben/actor.json"));
    sandbox->drop(QStringLiteral("1.json"), JournalSandbox::sample("ada/actor.json"));
    listen();
    QVERIFY(importsEnd(2));
    const QStringList expected{QStringLiteral("started local local"),
                               QStringLiteral("person Ada L"),
                               QStringLiteral("ended local local 1 0 0"),
                               QStringLiteral("started local local"),
                               QStringLiteral("person ben"),
                               QStringLiteral("ended local local 1 0 0")};
    QCOMPARE(heard, expected);
}

void ImportFolderTest::badAmongGood()
{
    sandbox->drop(QStringLiteral("1.json"), JournalSandbox::sample("ada/actor.json"));
    sandbox->drop(QStringLiteral("2.json"), "bad");
    sandbox->drop(QStringLiteral("3.json"), JournalSandbox::sample("ben/actor.json"));
    listen();
    QVERIFY(importsEnd(3));
    QCOMPARE(heard.filter(QStringLiteral("person")).size(), 2);
    QCOMPARE(heard.filter(QStringLiteral("error")).size(), 1);
    SocialPostActivitiesRequest post(SocialActivity::Status, QStringLiteral("text"));
    QVERIFY(perform(post));
    QCOMPARE(post.errors().size(), 0);
}

void ImportFolderTest::onlyVisibleFiles()
{
    const QByteArray content = JournalSandbox::sample("ben/actor.json");
    JournalSandbox::write(sandbox->importPath(QStringLiteral(".hidden.json")), content);
    JournalSandbox::write(sandbox->importPath(QStringLiteral("folder/inside.json")), content);
    JournalSandbox::write(sandbox->dataHome() + QStringLiteral("/elsewhere.json"), content);
    QVERIFY(QFile::link(sandbox->dataHome() + QStringLiteral("/elsewhere.json"),
                        sandbox->importPath(QStringLiteral("a-link.json"))));
    sandbox->drop(QStringLiteral("z.json"), JournalSandbox::sample("ada/actor.json"));
    listen();
    QVERIFY(importsEnd(1));
    QCOMPARE(heard.filter(QStringLiteral("person")), QStringList{QStringLiteral("person Ada L")});
    QVERIFY(QFile::exists(sandbox->importPath(QStringLiteral(".hidden.json"))));
    QVERIFY(QFile::exists(sandbox->importPath(QStringLiteral("folder/inside.json"))));
    QVERIFY(QFile::exists(sandbox->importPath(QStringLiteral("a-link.json"))));
}

void ImportFolderTest::takenNames()
{
    listen();
    int count = 0;
    for (const char *content : {"bad", "bad", "bad"}) {
        sandbox->drop(QStringLiteral("a.b.json"), content);
        QVERIFY(importsEnd(++count));
        sandbox->drop(QStringLiteral("plain"), JournalSandbox::sample("ada/actor.json"));
        QVERIFY(importsEnd(++count));
    }
    const QStringList failed{QStringLiteral("a.b-2.json"), QStringLiteral("a.b-2.json.reason.txt"),
                             QStringLiteral("a.b-3.json"), QStringLiteral("a.b-3.json.reason.txt"),
                             QStringLiteral("a.b.json"),   QStringLiteral("a.b.json.reason.txt")};
    QCOMPARE(filesIn(sandbox->importPath(QStringLiteral("failed"))), failed);
    const QStringList done{QStringLiteral("plain"), QStringLiteral("plain-2"),
                           QStringLiteral("plain-3")};
    QCOMPARE(filesIn(sandbox->importPath(QStringLiteral("done"))), done);
}

// A copy that is under way is not taken for a document that ends too early, nor does it hold up
// others.
void ImportFolderTest::documentBeingWritten()
{
    listen();
    const QByteArray content = JournalSandbox::sample("ada/actor.json");
    QFile copy(sandbox->importPath(QStringLiteral("1.json")));
    QVERIFY(copy.open(QFile::WriteOnly));
    QCOMPARE(copy.write(content.left(100)), qint64(100));
    QVERIFY(copy.flush());
    sandbox->drop(QStringLiteral("2.json"), JournalSandbox::sample("ben/actor.json"));
    QVERIFY(importsEnd(1));
    QCOMPARE(heard.filter(QStringLiteral("person")), QStringList{QStringLiteral("person ben")});
    copy.write(content.mid(100));
    copy.close();
    QVERIFY(importsEnd(2));
    QCOMPARE(heard.filter(QStringLiteral("error")), QStringList());
    QCOMPARE(heard.filter(QStringLiteral("person")).value(1), QStringLiteral("person Ada L"));
}

void ImportFolderTest::waitsForAnotherWriter()
{
    listen();
    Store store;
    {
        const Transaction other(store.database(), Transaction::Soon);
        sandbox->drop(QStringLiteral("1.json"), JournalSandbox::sample("ada/actor.json"));
        // Whoever imports has claimed the folder.
        QTRY_VERIFY_WITH_TIMEOUT(!ImportFolder(sandbox->importPath()).claim(), 60000);
        QCOMPARE(heard, QStringList());
    }
    QVERIFY(importsEnd(1));
    QCOMPARE(heard.filter(QStringLiteral("error")), QStringList());
    QCOMPARE(heard.filter(QStringLiteral("person")), QStringList{QStringLiteral("person Ada L")});
}

void ImportFolderTest::staysWhenTheJournalIsDamaged_data()
{
    QTest::addColumn<bool>("byRequest");

    QTest::newRow("found by a request") << true;
    QTest::newRow("found by an import") << false;
}

// A document that would fit into what is left of the journal is not written there either.
void ImportFolderTest::staysWhenTheJournalIsDamaged()
{
    QFETCH(bool, byRequest);

    {
        Store store;
        Transaction transaction(store.database());
        for (int i = 0; i < 6000; ++i)
            store.addActivity(SocialActivity::Status, QString(500, QLatin1Char('x')), QString());
        transaction.commit();
    }
    listen();
    QByteArray damaged = JournalSandbox::read(sandbox->databasePath());
    // The table of the persons and its indexes are at the beginning.
    std::fill(damaged.begin() + 4 * 4096, damaged.end(), '\x55');
    JournalSandbox::write(sandbox->databasePath(), damaged);
    if (byRequest) {
        QCOMPARE(allTexts(), QStringList());
    } else {
        sandbox->drop(QStringLiteral("1.json"), collection({note("x:1", "x:a", "text")}));
        QVERIFY(importsEnd(1));
        QCOMPARE(heard.filter(QStringLiteral("error local import 1.json: ")).size(), 1);
        QCOMPARE(heard.filter(QStringLiteral("error local store ")).size(), 1);
        QCOMPARE(heard.constLast(), QStringLiteral("ended local local 0 0 0"));
    }
    heard.clear();
    sandbox->drop(QStringLiteral("2.json"), JournalSandbox::sample("ada/actor.json"));
    // It would begin in one of the next turns of the event loop.
    for (int turn = 0; turn < 1000; ++turn)
        QCoreApplication::processEvents();
    QCOMPARE(heard, QStringList());
    SocialPostActivitiesRequest post(SocialActivity::Status, QStringLiteral("text"));
    QVERIFY(perform(post));
    QCOMPARE(post.errors().size(), 1);
    KinletManager::cleanupInstance();
    QVERIFY(QFile::exists(sandbox->importPath(QStringLiteral("2.json"))));
    QCOMPARE(JournalSandbox::read(sandbox->databasePath()), damaged);
}

QTEST_GUILESS_MAIN(ImportFolderTest)

#include "importfoldertest.moc"
