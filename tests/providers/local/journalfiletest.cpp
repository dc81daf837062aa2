// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// The journal's file: what becomes of one that cannot be used, and how versions follow each other.

#include "journalsandbox.h"

#include "journal.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"
#include "schema.h"
#include "store.h"

#include <QPluginLoader>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>

using Prepare = std::function<void(const JournalSandbox &)>;
Q_DECLARE_METATYPE(Prepare)

class JournalFileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { sandbox.reset(new JournalSandbox); }
    void cleanup() { sandbox.reset(); }

    void unusable_data();
    void unusable();
    void folderIsAFile();
    void notWritable_data();
    void notWritable();
    void errorSignal();
    void repaired();
    void damagedWhileOpen();
    void emptyFile();
    void newFile();
    void migration();
    void migrationThatFails();

private:
    QScopedPointer<JournalSandbox> sandbox;
};

namespace {

void makeJournal(const JournalSandbox &, int activities)
{
    Store store;
    Transaction transaction(store.database());
    for (int i = 0; i < activities; ++i)
        store.addActivity(SocialActivity::Status, QString(500, QLatin1Char('x')), QString());
    transaction.commit();
}

bool fails(const std::function<void()> &work)
{
    try {
        work();
    } catch (const StoreError &) {
        return true;
    }
    return false;
}

// One request of each kind.
std::vector<std::unique_ptr<SocialDataRequest>> requests()
{
    std::vector<std::unique_ptr<SocialDataRequest>> all;
    all.push_back(std::make_unique<GetAggregatedServicesRequest>());
    all.push_back(std::make_unique<SocialGetAccountsRequest>());
    all.push_back(std::make_unique<SocialGetPersonsRequest>());
    all.push_back(std::make_unique<SocialGetActivitiesRequest>());
    all.push_back(std::make_unique<SocialGetLikersRequest>(QStringLiteral("id")));
    all.push_back(std::make_unique<SocialPostActivitiesRequest>(SocialActivity::Status,
                                                                QStringLiteral("text")));
    all.push_back(std::make_unique<SocialLikeActivityRequest>(QStringLiteral("id")));
    return all;
}

// Performs every kind of request; those that ended without an error about the journal.
QStringList withoutError(const QString &mention)
{
    QStringList kinds;
    for (const auto &request : requests()) {
        const bool ended = perform(*request);
        const bool told = request->errors().size() == 1
            && request->errors().constFirst().description().contains(mention);
        if (!ended || !told)
            kinds.append(QString::number(request->type()));
    }
    return kinds;
}

}

void JournalFileTest::unusable_data()
{
    QTest::addColumn<Prepare>("prepare");
    QTest::addColumn<QString>("mention");

    const auto row = [](const char *name, const QString &mention, const Prepare &prepare) {
        QTest::newRow(name) << prepare << mention;
    };
    row("text", QStringLiteral("not a database"), [](const JournalSandbox &sandbox) {
        JournalSandbox::write(sandbox.databasePath(),
                              QByteArray("This is my diary. Do not touch!\n").repeated(200));
    });
    row("another program's database", QStringLiteral("another program"),
        [](const JournalSandbox &sandbox) {
            Database other(sandbox.databasePath());
            other.run(QStringLiteral("CREATE TABLE tracks (title TEXT)"));
        });
    row("another program's application id", QStringLiteral("another program"),
        [](const JournalSandbox &sandbox) {
            Database other(sandbox.databasePath());
            other.run(QStringLiteral("PRAGMA application_id = 77"));
        });
    row("newer version", QStringLiteral("newer"), [](const JournalSandbox &sandbox) {
        makeJournal(sandbox, 1);
        Database(sandbox.databasePath())
            .run(QStringLiteral("PRAGMA user_version = %1").arg(journalMigrations().size() + 1));
    });
    row("damaged in the middle", QStringLiteral("damaged"), [](const JournalSandbox &sandbox) {
        makeJournal(sandbox, 100);
        QByteArray content = JournalSandbox::read(sandbox.databasePath());
        const auto middle = content.size() / 2;
        std::fill(content.begin() + middle, content.begin() + middle + 8192, '\x55');
        JournalSandbox::write(sandbox.databasePath(), content);
    });
    row("cut off", QStringLiteral("malformed"), [](const JournalSandbox &sandbox) {
        makeJournal(sandbox, 100);
        const QByteArray content = JournalSandbox::read(sandbox.databasePath());
        JournalSandbox::write(sandbox.databasePath(), content.left(content.size() / 2));
    });
    row("a folder", QStringLiteral("unable to open"),
        [](const JournalSandbox &sandbox) { QDir().mkpath(sandbox.databasePath()); });
}

void JournalFileTest::unusable()
{
    QFETCH(Prepare, prepare);
    QFETCH(QString, mention);

    prepare(*sandbox);
    const QByteArray before = JournalSandbox::read(sandbox->databasePath());

    QVERIFY(KinletManager::instance()->isInitialized());
    auto *provider = KinletManager::instance()->provider(QStringLiteral("local")).data();
    QSignalSpy errors(provider, SIGNAL(error(QString, QString, QString)));
    // It was told at start-up, and is not told again.
    QCOMPARE(withoutError(mention), QStringList());
    QCOMPARE(withoutError(mention), QStringList());
    QCOMPARE(errors.count(), 0);
    QCOMPARE(JournalSandbox::read(sandbox->databasePath()), before);
    // The account is there, so that applications can find out what is wrong with it.
    QCOMPARE(KinletManager::instance()->services().size(), 1);
    QCOMPARE(KinletManager::instance()->accounts().size(), 1);
    KinletManager::cleanupInstance();
    QCOMPARE(JournalSandbox::read(sandbox->databasePath()), before);
}

void JournalFileTest::folderIsAFile()
{
    JournalSandbox::write(sandbox->folder(), "not a folder");
    QCOMPARE(withoutError(QStringLiteral("unable to open")), QStringList());
    QCOMPARE(JournalSandbox::read(sandbox->folder()), QByteArray("not a folder"));
}

void JournalFileTest::notWritable_data()
{
    QTest::addColumn<bool>("folder");
    QTest::addColumn<QByteArray>("advice");

    QTest::newRow("file") << false << QByteArray("Make the file and its folder writable");
    QTest::newRow("folder") << true << QByteArray("See that it and its folder can be written");
}

// In a process to which permissions apply: those of the super-user do not know them.
void JournalFileTest::notWritable()
{
    QFETCH(bool, folder);
    QFETCH(QByteArray, advice);

    makeJournal(*sandbox, 3);
    const QString path = folder ? sandbox->folder() : sandbox->databasePath();
    const QByteArray before = JournalSandbox::read(sandbox->databasePath());
    const QFile::Permissions permissions = QFile::permissions(path);
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner));
    QProcess process;
    process.start(QStringLiteral(KINLET_JOURNAL_PROCESS), {QStringLiteral("unprivileged")});
    const bool ended = process.waitForFinished(60000);
    QVERIFY(QFile::setPermissions(path, permissions));
    QVERIFY(ended);
    // All four requests have failed, and each has said why.
    QCOMPARE(process.exitCode(), 4);
    const QByteArray said = process.readAllStandardOutput();
    QCOMPARE(said.count("error "), 4);
    QCOMPARE(said.count(QFile::encodeName(sandbox->databasePath())), 4);
    QCOMPARE(said.count(advice), 4);
    QCOMPARE(JournalSandbox::read(sandbox->databasePath()), before);
}

// The loader calls init() again after each error.
void JournalFileTest::errorSignal()
{
    JournalSandbox::write(sandbox->databasePath(), QByteArray(5000, 'x'));
    QPluginLoader loader(QStringLiteral(KINLET_LOCAL_PLUGIN_DIR "/local.so"));
    auto *provider = qobject_cast<KinletInterface *>(loader.instance());
    QVERIFY(provider);
    QSignalSpy errors(provider, SIGNAL(error(QString, QString, QString)));
    connect(provider, &KinletInterface::error, provider, &KinletInterface::init);
    provider->init();
    provider->init();
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toString(), QStringLiteral("local"));
    QVERIFY(errors.at(0).at(2).toString().contains(sandbox->databasePath()));
    loader.unload();
}

void JournalFileTest::repaired()
{
    JournalSandbox::write(sandbox->databasePath(), QByteArray(5000, 'x'));
    QCOMPARE(withoutError(QStringLiteral("not a database")), QStringList());
    auto *provider = KinletManager::instance()->provider(QStringLiteral("local")).data();
    QSignalSpy errors(provider, SIGNAL(error(QString, QString, QString)));

    // Something else is wrong now: that is news.
    QVERIFY(QFile::remove(sandbox->databasePath()));
    {
        Database other(sandbox->databasePath());
        other.run(QStringLiteral("CREATE TABLE tracks (title TEXT)"));
    }
    QCOMPARE(withoutError(QStringLiteral("another program")), QStringList());
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toString(), QStringLiteral("local"));
    QCOMPARE(errors.at(0).at(1).toString(), QStringLiteral("store"));
    QVERIFY(errors.at(0).at(2).toString().contains(QLatin1String("another program")));

    QVERIFY(QFile::remove(sandbox->databasePath()));
    SocialPostActivitiesRequest post(SocialActivity::Status, QStringLiteral("text"));
    QVERIFY(perform(post));
    QCOMPARE(post.errors().size(), 0);
    QCOMPARE(errors.count(), 1);
}

// Damage that comes while the journal is open shows when it is met, and nothing is written then.
void JournalFileTest::damagedWhileOpen()
{
    // More than what SQLite remembers of it.
    makeJournal(*sandbox, 6000);
    auto *provider = KinletManager::instance()->provider(QStringLiteral("local")).data();
    QSignalSpy errors(provider, SIGNAL(error(QString, QString, QString)));
    QByteArray content = JournalSandbox::read(sandbox->databasePath());
    std::fill(content.begin() + 4096, content.end(), '\x55');
    JournalSandbox::write(sandbox->databasePath(), content);

    SocialGetActivitiesRequest first;
    first.setLimit(0);
    QVERIFY(perform(first));
    QCOMPARE(first.errors().size(), 1);
    QCOMPARE(errors.count(), 1);
    QCOMPARE(withoutError(sandbox->databasePath()), QStringList());
    QCOMPARE(errors.count(), 1);
    KinletManager::cleanupInstance();
    QCOMPARE(JournalSandbox::read(sandbox->databasePath()), content);
}

// What a process leaves that dies while it makes the file.
void JournalFileTest::emptyFile()
{
    JournalSandbox::write(sandbox->databasePath(), QByteArray());
    SocialPostActivitiesRequest post(SocialActivity::Status, QStringLiteral("text"));
    QVERIFY(perform(post));
    QCOMPARE(post.errors().size(), 0);
}

void JournalFileTest::newFile()
{
    makeJournal(*sandbox, 0);
    Database file(sandbox->databasePath());
    QCOMPARE(file.value(QStringLiteral("PRAGMA user_version")).toInt(), 1);
    // "Knlt", at its place in the header, so that it tells the file from others.
    QCOMPARE(JournalSandbox::read(sandbox->databasePath()).mid(68, 4), QByteArray("Knlt"));
    QCOMPARE(file.value(QStringLiteral("PRAGMA journal_mode")).toString(), QStringLiteral("wal"));
}

void JournalFileTest::migration()
{
    makeJournal(*sandbox, 2);
    Migrations next = journalMigrations();
    next.append({QStringLiteral("ALTER TABLE activities ADD COLUMN mood TEXT DEFAULT 'calm'"),
                 QStringLiteral("CREATE TABLE moods (name TEXT)")});
    next.append({QStringLiteral("INSERT INTO moods VALUES ('calm')")});
    Database file(sandbox->databasePath());
    // The second time there is nothing to do.
    for (int i = 0; i < 2; ++i) {
        prepareSchema(file, next);
        QCOMPARE(file.value(QStringLiteral("PRAGMA user_version")).toInt(), 3);
        QCOMPARE(file.value(QStringLiteral("SELECT COUNT(*) FROM moods")).toInt(), 1);
        QCOMPARE(file.value(QStringLiteral("SELECT COUNT(*) FROM activities WHERE mood = 'calm'"))
                     .toInt(),
                 2);
    }
    // The older program keeps off what it does not know.
    QVERIFY(fails([] { Store store; }));
}

void JournalFileTest::migrationThatFails()
{
    makeJournal(*sandbox, 2);
    Migrations next = journalMigrations();
    next.append({QStringLiteral("CREATE TABLE moods (name TEXT)"),
                 QStringLiteral("INSERT INTO nowhere VALUES (1)")});
    Database file(sandbox->databasePath());
    QVERIFY(fails([&] { prepareSchema(file, next); }));
    QCOMPARE(file.value(QStringLiteral("PRAGMA user_version")).toInt(), 1);
    QCOMPARE(file.value(QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE name = 'moods'"))
                 .toInt(),
             0);
}

QTEST_GUILESS_MAIN(JournalFileTest)

#include "journalfiletest.moc"
