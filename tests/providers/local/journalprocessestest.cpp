// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// Several processes with one journal.

#include "journalapplication.h"
#include "journalsandbox.h"

#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QElapsedTimer>
#include <QSet>
#include <QTest>

#include <memory>
#include <vector>

namespace {

QByteArray archive(int activities)
{
    QByteArrayList items;
    for (int i = 0; i < activities; ++i)
        items.append("{\"type\": \"Note\", \"id\": \"http://x/" + QByteArray::number(i)
                     + "\", \"attributedTo\": \"http://x/a\", \"content\": \"text\", "
                       "\"published\": \"2026-01-02T03:04:05Z\"}");
    return "{\"@context\": \"https://www.w3.org/ns/activitystreams\", \"id\": \"http://x/outbox\", "
           "\"type\": \"OrderedCollection\", \"orderedItems\": ["
        + items.join(",\n") + "]}";
}

}

class JournalProcessesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { sandbox.reset(new JournalSandbox); }
    void cleanup() { sandbox.reset(); }

    void writersLoseNothing();
    void pushesCome();
    void pushesComeFromSlowDisk();
    void personsPushed();
    void writerWaits();
    void cancelledWriterIsForgotten();
    void killedDuringImport();
    void memoryOfImport();
    void onlyOneImports();
    void unreadableDocument();
    void documentThatCannotBeMoved();

private:
    QStringList allTexts();
    void post(const QString &text);

    QScopedPointer<JournalSandbox> sandbox;
};

QStringList JournalProcessesTest::allTexts()
{
    SocialGetActivitiesRequest request;
    request.setLimit(0);
    return perform(request) ? textsOf(request.results()) : QStringList();
}

void JournalProcessesTest::post(const QString &text)
{
    SocialPostActivitiesRequest request(SocialActivity::Status, text);
    QVERIFY(perform(request));
    QCOMPARE(request.errors().size(), 0);
}

// They also make the journal all at once.
void JournalProcessesTest::writersLoseNothing()
{
    const int writers = 6;
    const int posts = 50;
    std::vector<std::unique_ptr<Application>> applications;
    for (int i = 0; i < writers; ++i)
        applications.push_back(std::make_unique<Application>(
            QStringList{QStringLiteral("post"), QString::number(posts), QString::number(i)}));
    for (const auto &application : applications) {
        QVERIFY(application->ends());
        QVERIFY2(application->process.exitCode() == 0,
                 qPrintable(application->lines().join(QLatin1Char('\n'))));
    }
    const QStringList texts = allTexts();
    QCOMPARE(texts.size(), writers * posts);
    QCOMPARE(QSet<QString>(texts.begin(), texts.end()).size(), writers * posts);
    SocialGetPersonsRequest persons;
    QVERIFY(perform(persons));
    QCOMPARE(persons.persons().size(), 1);
}

void JournalProcessesTest::pushesCome()
{
    Application watcher({QStringLiteral("watch")});
    QVERIFY(watcher.says(QStringLiteral("ready")));
    QElapsedTimer time;
    time.start();
    // Each is told before the next is written, so a watcher that only looks now and then would need
    // that interval for each.
    for (int i = 0; i < 12; ++i) {
        const QString text = QStringLiteral("text %1").arg(i);
        post(text);
        QVERIFY(watcher.says(QStringLiteral("data %1 likes 0 ").arg(text)));
    }
    QVERIFY(time.elapsed() < 40000);

    SocialGetActivitiesRequest newest;
    newest.setLimit(1);
    QVERIFY(perform(newest));
    SocialLikeActivityRequest like(newest.results().constFirst().id());
    QVERIFY(perform(like));
    QVERIFY(watcher.says(QStringLiteral("data text 11 likes 1 ")));
    for (int i = 0; i < 12; ++i)
        QCOMPARE(watcher.count(QStringLiteral("data text %1 likes 0 ").arg(i)), 1);
    QCOMPARE(watcher.count(QStringLiteral("data ")), 13);
    QCOMPARE(watcher.count(QStringLiteral("data text 11 likes 1 properties 3")), 1);
}

// Others can see a change only once it has reached the disk, long after the log file has changed.
void JournalProcessesTest::pushesComeFromSlowDisk()
{
    QSignalSpy told(KinletManager::instance(),
                    SIGNAL(dataUpdate(QList<SocialGenericData>, QList<QString>)));
    QElapsedTimer waiting;
    qint64 waited = 0;
    const int posts = 10;
    for (int i = 0; i < posts; ++i) {
        Application writer({QStringLiteral("slow-disk"), QStringLiteral("post"),
                            QStringLiteral("1"), QStringLiteral("text")});
        // The event loop has to run meanwhile.
        QTRY_COMPARE_WITH_TIMEOUT(writer.process.state(), QProcess::NotRunning, 60000);
        waiting.start();
        QTRY_COMPARE_WITH_TIMEOUT(told.count(), i + 1, 60000);
        waited += waiting.elapsed();
    }
    QVERIFY2(waited < posts * 1000, qPrintable(QString::number(waited)));
}

// What one process imports, all others hear; the import itself only the one.
void JournalProcessesTest::personsPushed()
{
    Application one({QStringLiteral("watch")});
    Application two({QStringLiteral("watch")});
    QVERIFY(one.says(QStringLiteral("ready")));
    QVERIFY(two.says(QStringLiteral("ready")));
    sandbox->drop(QStringLiteral("a.json"), JournalSandbox::sample("ada/actor.json"));
    for (Application *application : {&one, &two})
        QVERIFY(application->says(QStringLiteral("person http://localhost:8001/ada")));
    QTRY_COMPARE_WITH_TIMEOUT(
        one.count(QStringLiteral("ended")) + two.count(QStringLiteral("ended")), 1, 60000);
    for (Application *application : {&one, &two})
        QCOMPARE(application->count(QStringLiteral("person")), 1);
}

void JournalProcessesTest::writerWaits()
{
    post(QStringLiteral("before"));
    Application holder({QStringLiteral("hold"), sandbox->databasePath()});
    QVERIFY(holder.says(QStringLiteral("ready")));
    SocialPostActivitiesRequest first(SocialActivity::Status, QStringLiteral("first"));
    SocialPostActivitiesRequest second(SocialActivity::Status, QStringLiteral("second"));
    KinletManager::instance()->performRequest(&first, {});
    KinletManager::instance()->performRequest(&second, {});
    QVERIFY(!first.isFinished());
    // Questions do not wait.
    QCOMPARE(allTexts(), QStringList{QStringLiteral("before")});
    QVERIFY(!first.isFinished());
    holder.process.closeWriteChannel();
    QTRY_VERIFY_WITH_TIMEOUT(first.isFinished() && second.isFinished(), 60000);
    QCOMPARE(first.errors().size(), 0);
    QCOMPARE(second.errors().size(), 0);
    QCOMPARE(allTexts(),
             QStringList() << QStringLiteral("second") << QStringLiteral("first")
                           << QStringLiteral("before"));
}

void JournalProcessesTest::cancelledWriterIsForgotten()
{
    post(QStringLiteral("before"));
    Application holder({QStringLiteral("hold"), sandbox->databasePath()});
    QVERIFY(holder.says(QStringLiteral("ready")));
    const auto provider = KinletManager::instance()->provider(QStringLiteral("local"));
    SocialPostActivitiesRequest cancelled(SocialActivity::Status, QStringLiteral("cancelled"));
    auto *deleted = new SocialPostActivitiesRequest(SocialActivity::Status, QStringLiteral("gone"));
    provider->performRequest(&cancelled);
    provider->performRequest(deleted);
    provider->cancelRequest(&cancelled);
    provider->cancelRequest(deleted);
    delete deleted;
    SocialPostActivitiesRequest last(SocialActivity::Status, QStringLiteral("last"));
    KinletManager::instance()->performRequest(&last, {});
    holder.process.closeWriteChannel();
    QTRY_VERIFY_WITH_TIMEOUT(last.isFinished(), 60000);
    QCOMPARE(cancelled.status(), SocialDataRequest::Inactive);
    QCOMPARE(allTexts(), QStringList() << QStringLiteral("last") << QStringLiteral("before"));
}

// Nothing of the document stays, and the next process reads it anew.
void JournalProcessesTest::killedDuringImport()
{
    const int count = 20000;
    sandbox->drop(QStringLiteral("a.json"), archive(count));
    {
        Application application({QStringLiteral("watch")});
        QVERIFY(application.says(QStringLiteral("started")));
        application.process.kill();
        QVERIFY(application.ends());
        QCOMPARE(application.count(QStringLiteral("ended")), 0);
    }
    QVERIFY(QFile::exists(sandbox->importPath(QStringLiteral("a.json"))));
    QSignalSpy ended(KinletManager::instance(),
                     SIGNAL(importEnded(QString, QString, int, int, int)));
    QCOMPARE(allTexts(), QStringList());
    QVERIFY(ended.wait(120000));
    QCOMPARE(allTexts().size(), count);
    QVERIFY(QFile::exists(sandbox->importPath(QStringLiteral("done/a.json"))));
}

// It does not grow with the number of activities.
void JournalProcessesTest::memoryOfImport()
{
    // What is freed has to be used again, also where memory is being checked.
    qputenv("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":quarantine_size_mb=1");
    Application application({QStringLiteral("watch")});
    QVERIFY(application.says(QStringLiteral("ready")));
    sandbox->drop(QStringLiteral("few.json"), archive(1000));
    QVERIFY(application.says(QStringLiteral("ended")));
    const int before = application.peakMemory();
    QVERIFY(before > 0);
    sandbox->drop(QStringLiteral("many.json"), archive(50000));
    QVERIFY(
        QTest::qWaitFor([&] { return application.count(QStringLiteral("ended")) == 2; }, 600000));
    const int grown = application.peakMemory() - before;
    QVERIFY2(grown < 10 * 1024, qPrintable(QString::number(grown)));
}

void JournalProcessesTest::onlyOneImports()
{
    std::vector<std::unique_ptr<Application>> applications;
    for (int i = 0; i < 3; ++i)
        applications.push_back(std::make_unique<Application>(QStringList{QStringLiteral("watch")}));
    for (const auto &application : applications)
        QVERIFY(application->says(QStringLiteral("ready")));
    const auto total = [&applications](const QString &what) {
        int count = 0;
        for (const auto &application : applications)
            count += application->count(what);
        return count;
    };
    const int documents = 8;
    for (int i = 0; i < documents; ++i)
        sandbox->drop(QStringLiteral("%1.json").arg(i), archive(50 * (i + 1)));
    QTRY_COMPARE_WITH_TIMEOUT(total(QStringLiteral("ended")), documents, 120000);
    QCOMPARE(total(QStringLiteral("started")), documents);
    QCOMPARE(allTexts().size(), 50 * documents);
    for (const auto &application : applications)
        QTRY_COMPARE_WITH_TIMEOUT(application->count(QStringLiteral("data")), 50 * documents,
                                  60000);
}

void JournalProcessesTest::unreadableDocument()
{
    sandbox->drop(QStringLiteral("a.json"), archive(1));
    QVERIFY(QFile::setPermissions(sandbox->importPath(QStringLiteral("a.json")), {}));
    Application application({QStringLiteral("unprivileged"), QStringLiteral("watch")});
    QVERIFY(application.says(QStringLiteral("ended 0 0 0")));
    const QByteArray reason =
        JournalSandbox::read(sandbox->importPath(QStringLiteral("failed/a.json.reason.txt")));
    QVERIFY2(reason.contains("cannot be read"), reason.constData());
}

// It is not read again and again.
void JournalProcessesTest::documentThatCannotBeMoved()
{
    QVERIFY(QDir().mkpath(sandbox->importPath()));
    QVERIFY(QFile::setPermissions(sandbox->importPath(), QFile::ReadOwner | QFile::ExeOwner));
    Application application({QStringLiteral("unprivileged"), QStringLiteral("watch")});
    QVERIFY(application.says(QStringLiteral("ready")));
    for (int i = 1; i <= 3; ++i) {
        sandbox->drop(QStringLiteral("%1.json").arg(i), archive(i));
        QTRY_COMPARE_WITH_TIMEOUT(application.count(QStringLiteral("ended")), i, 60000);
    }
    QCOMPARE(application.count(QStringLiteral("started")), 3);
    for (int i = 1; i <= 3; ++i)
        QCOMPARE(
            application.count(QStringLiteral("problem %1.json: It cannot be moved away").arg(i)),
            1);
    QVERIFY(QFile::exists(sandbox->importPath(QStringLiteral("1.json"))));
    QCOMPARE(allTexts().size(), 3);
}

QTEST_GUILESS_MAIN(JournalProcessesTest)

#include "journalprocessestest.moc"
