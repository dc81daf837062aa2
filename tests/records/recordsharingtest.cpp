// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/typedrecords.h"

#include <QTest>
#include <QThread>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

namespace {

// Whether copies share their data cannot be seen from outside, but a copy of the data costs memory.
std::atomic<int> allocations = 0;

}

void *operator new(std::size_t size)
{
    ++allocations;
    if (void *memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

Q_DECLARE_METATYPE(std::shared_ptr<int>)

class RecordSharingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sharesDataBetweenCopies();
    void readsWithoutCopying();
    void copiesDataForTheFirstWriteOnly();
    void copiesNoDataForTheSameClassName();
    void freesDataWithItsLastCopy();
    void freesDataThatIsReplaced();
    void letsThreadsUseCopies();
};

namespace {

SocialGenericData recordOfTwo()
{
    SocialGenericData record(QStringLiteral("Thing"));
    record.setProperty(SocialGenericData::Id, QStringLiteral("1"));
    record.setParentAccount(QStringLiteral("home"));
    return record;
}

// The property "X" is a value that dies with the last copy of the record's data.
std::weak_ptr<int> addWatchedValue(SocialGenericData &record)
{
    const auto value = std::make_shared<int>(7);
    record.setProperty(QStringLiteral("X"), QVariant::fromValue(value));
    return value;
}

template <typename Action>
int allocationsDuring(Action action)
{
    const int before = allocations;
    action();
    return allocations - before;
}

}

void RecordSharingTest::sharesDataBetweenCopies()
{
    const SocialGenericData record = recordOfTwo();
    SocialGenericData assigned;
    SocialGenericData copied;
    const int count = allocationsDuring([&] {
        const SocialGenericData constructed(record);
        assigned = constructed;
        copied.copyFrom(assigned);
        copied.copyFrom(record);
        copied.copyFrom(copied);
    });
    QCOMPARE(count, 0);
    QCOMPARE(copied.properties(), record.properties());
    QVERIFY(allocationsDuring([] { SocialGenericData(); }) > 0);
}

void RecordSharingTest::readsWithoutCopying()
{
    const SocialGenericData record = recordOfTwo();
    SocialGenericData copy = record;
    const int count = allocationsDuring([&] {
        copy.className();
        copy.property(SocialGenericData::Id);
        copy.variantProperty(SocialGenericData::Id);
        copy.hasProperty(SocialGenericData::Id);
        copy.id();
        copy.description();
        copy.parentAccount();
        copy.properties();
    });
    QCOMPARE(count, 0);
}

void RecordSharingTest::copiesDataForTheFirstWriteOnly()
{
    const SocialGenericData record = recordOfTwo();
    SocialGenericData copy = record;
    const QString name = QStringLiteral("Other");
    QVERIFY(allocationsDuring([&] { copy.setClassName(name); }) > 0);
    QCOMPARE(allocationsDuring([&] { copy.setClassName(name); }), 0);
}

void RecordSharingTest::copiesNoDataForTheSameClassName()
{
    const SocialNetworkPerson person;
    QCOMPARE(allocationsDuring([&] { SocialNetworkPerson{SocialGenericData(person)}; }), 0);
    QVERIFY(allocationsDuring([&] { SocialActivity{SocialGenericData(person)}; }) > 0);
    // Null and empty are two names: they are written as different bytes.
    SocialGenericData record;
    record.setClassName(QStringLiteral(""));
    QVERIFY(!record.className().isNull());
    record.setClassName(QString());
    QVERIFY(record.className().isNull());
}

void RecordSharingTest::freesDataWithItsLastCopy()
{
    auto record = std::make_unique<SocialGenericData>();
    const auto watch = addWatchedValue(*record);
    auto copy = std::make_unique<SocialGenericData>(*record);
    record.reset();
    QVERIFY(!watch.expired());
    copy.reset();
    QVERIFY(watch.expired());
}

void RecordSharingTest::freesDataThatIsReplaced()
{
    SocialGenericData record;
    const auto watch = addWatchedValue(record);
    SocialGenericData copy = record;
    record.copyFrom(SocialGenericData());
    QVERIFY(!watch.expired());
    copy = record;
    QVERIFY(watch.expired());
}

void RecordSharingTest::letsThreadsUseCopies()
{
    auto record = std::make_unique<SocialGenericData>(recordOfTwo());
    const auto watch = addWatchedValue(*record);
    std::atomic<int> mistakes = 0;
    std::atomic<int> waiting = 4;
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back(QThread::create([&mistakes, &waiting, mine = *record, i] {
            // All begin together: a thread that runs alone meets nobody.
            for (--waiting; waiting > 0;)
                QThread::yieldCurrentThread();
            for (int round = 0; round < 500'000; ++round) {
                SocialGenericData copy = mine;
                if (round % 100 != 0)
                    continue;
                if (copy.id() != QStringLiteral("1"))
                    ++mistakes;
                copy.setProperty(SocialGenericData::Id, i);
            }
        }));
    }
    for (const auto &thread : threads)
        thread->start();
    for (const auto &thread : threads)
        QVERIFY(thread->wait(60'000));
    threads.clear();
    QCOMPARE(int(mistakes), 0);
    QCOMPARE(record->properties().size(), 3);
    QCOMPARE(record->id(), QStringLiteral("1"));
    record.reset();
    QVERIFY(watch.expired());
}

QTEST_GUILESS_MAIN(RecordSharingTest)

#include "recordsharingtest.moc"
