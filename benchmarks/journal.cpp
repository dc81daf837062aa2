// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// The local provider with large journals, against plain SQLite with the same tables.

#include "activitystreams.h"
#include "importwriter.h"
#include "plainjournal.h"
#include "store.h"

#include <Kinlet/KinletManager>
#include <Kinlet/SocialGetActivitiesRequest>
#include <Kinlet/SocialGetPersonsRequest>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

constexpr int Imported = 100000;
constexpr int Newest = 20;

// A data folder of one's own, as long as it lives.
class Home {
public:
    Home() { use(); }
    ~Home() { KinletManager::cleanupInstance(); }
    Home(const Home &) = delete;
    Home &operator=(const Home &) = delete;

    void use() const { qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path())); }
    QString path(const char *name) const { return folder.filePath(QLatin1String(name)); }

private:
    const QTemporaryDir folder;
};

// As servers write them, in the order in which people's archives have them.
QByteArray item(int number)
{
    const QByteArray id = "https://social.example/ada/" + QByteArray::number(number);
    const QByteArray time =
        QDateTime::fromSecsSinceEpoch(1500000000 + number * qint64(600), Qt::UTC)
            .toString(Qt::ISODate)
            .toLatin1();
    const QByteArray answered =
        number % 4 == 0 ? "\"https://elsewhere.example/ben/" + id.right(3) + '"' : "null";
    const QByteArray readers = "\"to\": [\"https://www.w3.org/ns/activitystreams#Public\"], "
                               "\"cc\": [\"https://social.example/ada/followers\"]";
    return "{\"id\": \"" + id
        + "/activity\", \"type\": \"Create\", \"actor\": "
          "\"https://social.example/ada\", \"published\": \""
        + time + "\", " + readers + ", \"object\": {\"id\": \"" + id
        + "\", \"type\": \"Note\", \"summary\": null, "
          "\"inReplyTo\": "
        + answered + ", \"published\": \"" + time + "\", \"url\": \"" + id
        + "\", \"attributedTo\": \"https://social.example/ada\", " + readers
        + ", \"sensitive\": false, \"content\": \"<p>The starter of day "
        + QByteArray::number(number)
        + " lives!</p><p>Flour &amp; water, and a look into <a href=\\\"https://bread.example/\\\" "
          "rel=\\\"nofollow\\\">the book about bread</a>.</p>\", \"attachment\": [], \"tag\": []}}";
}

const QByteArray &archive()
{
    static const QByteArray document = [] {
        QByteArray text = "{\"@context\": \"https://www.w3.org/ns/activitystreams\", \"id\": "
                          "\"outbox.json\", \"type\": \"OrderedCollection\", \"orderedItems\": [";
        for (int i = 0; i < Imported; ++i)
            text += (i > 0 ? "," : "") + item(i);
        return text + "]}";
    }();
    return document;
}

// Remembers the activities.
class Memory : public ImportSink {
public:
    void person(const ImportedPerson &) override { }
    void activity(const ImportedActivity &activity) override { activities.append(activity); }
    void like(const ImportedLike &) override { }
    void skipped(const QString &, const QString &) override { }

    QList<ImportedActivity> activities;
};

QList<ImportedActivity> readByKinlet()
{
    QBuffer device;
    device.setData(archive());
    device.open(QIODevice::ReadOnly);
    Memory memory;
    ActivityStreamsReader reader(device, memory);
    while (reader.readNext() == ActivityStreamsReader::Unfinished) { }
    return memory.activities;
}

void check(benchmark::State &state, qint64 found, qint64 expected)
{
    if (found != expected)
        state.SkipWithError("the number of results is wrong");
}

void kinletReads(benchmark::State &state)
{
    archive();
    for (auto _ : state)
        check(state, readByKinlet().size(), Imported);
}

void jsonDocumentReads(benchmark::State &state)
{
    archive();
    for (auto _ : state)
        check(state, PlainJournal::read(archive()).size(), Imported);
}

void kinletStores(benchmark::State &state)
{
    static const QList<ImportedActivity> activities = readByKinlet();
    for (auto _ : state) {
        state.PauseTiming();
        const Home home;
        Store store;
        state.ResumeTiming();
        Transaction transaction(store.database());
        ImportWriter writer(store.database());
        for (const ImportedActivity &activity : activities)
            writer.activity(activity);
        transaction.commit();
        state.PauseTiming();
        check(state, writer.failure() ? 0 : 1, 1);
        state.ResumeTiming();
    }
}

void sqliteStores(benchmark::State &state)
{
    static const QList<PlainJournal::Activity> activities = PlainJournal::read(archive());
    for (auto _ : state) {
        state.PauseTiming();
        const Home home;
        PlainJournal journal(home.path("plain.db"));
        state.ResumeTiming();
        journal.store(activities);
    }
}

// From a file in the import folder to the end, with all that is told about it.
void kinletImports(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        const Home home;
        KinletManager *const manager = KinletManager::instance();
        bool ended = false;
        qint64 told = 0;
        QObject::connect(manager, &KinletManager::importEnded, [&ended] { ended = true; });
        QObject::connect(manager, &KinletManager::dataUpdate,
                         [&told](const QList<SocialGenericData> &data) { told += data.size(); });
        QFile file(Store::folder() + QStringLiteral("/import/outbox.json"));
        if (!file.open(QFile::WriteOnly) || file.write(archive()) != archive().size())
            qFatal("Cannot write the archive");
        file.close();
        state.ResumeTiming();
        while (!ended)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        state.PauseTiming();
        check(state, told, Imported);
        KinletManager::cleanupInstance();
        state.ResumeTiming();
    }
}

void sqliteImports(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        const Home home;
        PlainJournal journal(home.path("plain.db"));
        QFile file(home.path("outbox.json"));
        if (!file.open(QFile::ReadWrite) || file.write(archive()) != archive().size())
            qFatal("Cannot write the archive");
        file.seek(0);
        state.ResumeTiming();
        journal.store(PlainJournal::read(file.readAll()));
    }
}

// 1,000,000 activities of 100 persons, and 100,000 persons; made once.
const Home &library()
{
    static Home *const home = [] {
        auto *made = new Home;
        const Store store;
        PlainJournal journal(Store::folder() + QStringLiteral("/local.db"));
        journal.run("PRAGMA synchronous = OFF");
        journal.run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 1000000) "
                    "INSERT INTO activities (id, type, owner, parent, boosted, text, time, url, "
                    "media, edited, change) SELECT printf('https://social.example/%08d', i), 1, "
                    "printf('https://social.example/person%05d', i % 100), '', '', "
                    "printf('The starter of day %d lives! Flour and water, and a look into the "
                    "book about bread.', i), i * 1000, '', '', i, i FROM n");
        journal.run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 100000) "
                    "INSERT INTO persons (id, screenName, name, summary, url, avatarUrl, change) "
                    "SELECT printf('https://social.example/person%05d', i), "
                    "printf('person%05d', i), printf('Person No. %d', i), 'Bakes bread.', "
                    "printf('https://social.example/@person%05d', i), "
                    "'https://social.example/face.png', i + 10 FROM n");
        return made;
    }();
    home->use();
    return *home;
}

template <typename Request, typename Prepare>
void ask(benchmark::State &state, qint64 expected, Prepare prepare)
{
    library();
    KinletManager::instance();
    for (auto _ : state) {
        Request request;
        prepare(request);
        KinletManager::instance()->performRequest(&request, {});
        check(state, request.results().size(), expected);
    }
    KinletManager::cleanupInstance();
}

template <typename Ask>
void askPlain(benchmark::State &state, qint64 expected, Ask ask)
{
    library();
    PlainJournal journal(Store::folder() + QStringLiteral("/local.db"));
    for (auto _ : state)
        check(state, ask(journal).size(), expected);
}

const QStringList threePersons{QStringLiteral("https://social.example/person00003"),
                               QStringLiteral("https://social.example/person00005"),
                               QStringLiteral("https://social.example/person00007")};
const QRegExp pattern(QStringLiteral("^person..42"));
constexpr int Matching = 1000;

void registerImports()
{
    using Measure = void (*)(benchmark::State &);
    const std::pair<const char *, Measure> all[] = {
        {"read 100,000 activities/kinlet", kinletReads},
        {"read 100,000 activities/QJsonDocument", jsonDocumentReads},
        {"store 100,000 activities/kinlet", kinletStores},
        {"store 100,000 activities/sqlite", sqliteStores},
        {"import 100,000 activities, told/kinlet", kinletImports},
        {"import 100,000 activities, told/QJsonDocument and sqlite", sqliteImports}};
    for (const auto &[name, measure] : all)
        // Each takes seconds: that is exact enough.
        benchmark::RegisterBenchmark(name, measure)
            ->Iterations(1)
            ->Repetitions(3)
            ->Unit(benchmark::kMillisecond);
}

void registerQuestions()
{
    const auto add = [](const char *name, auto measure) {
        benchmark::RegisterBenchmark(name, measure)->Unit(benchmark::kMicrosecond);
    };
    add("newest 20 of 1,000,000/kinlet", [](benchmark::State &state) {
        ask<SocialGetActivitiesRequest>(
            state, Newest, [](SocialGetActivitiesRequest &request) { request.setLimit(Newest); });
    });
    add("newest 20 of 1,000,000/sqlite", [](benchmark::State &state) {
        askPlain(state, Newest, [](PlainJournal &journal) { return journal.newest(Newest); });
    });
    add("newest 20 of 30,000 of three persons/kinlet", [](benchmark::State &state) {
        ask<SocialGetActivitiesRequest>(state, Newest, [](SocialGetActivitiesRequest &request) {
            request.setPersonsFilter(threePersons);
            request.setLimit(Newest);
        });
    });
    add("newest 20 of 30,000 of three persons/sqlite", [](benchmark::State &state) {
        askPlain(state, Newest,
                 [](PlainJournal &journal) { return journal.newestOf(threePersons, Newest); });
    });
    add("1,000 of 100,000 persons by a pattern/kinlet", [](benchmark::State &state) {
        ask<SocialGetPersonsRequest>(state, Matching, [](SocialGetPersonsRequest &request) {
            request.setPropertyFilter(SocialNetworkPerson::ScreenName, pattern);
        });
    });
    add("1,000 of 100,000 persons by a pattern/sqlite", [](benchmark::State &state) {
        askPlain(state, Matching, [](PlainJournal &journal) { return journal.persons(pattern); });
    });
}

}

int main(int argc, char *argv[])
{
    qputenv("KINLET_USE_DBUS", "0");
    qputenv("KINLET_PLUGIN_PATH", KINLET_LOCAL_PLUGIN_DIR);
    QCoreApplication application(argc, argv);
    registerImports();
    registerQuestions();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
