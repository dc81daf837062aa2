// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/socialgenericdata.h"

#include <QDate>
#include <QTest>

#include <type_traits>

namespace {

static_assert(std::has_virtual_destructor_v<SocialGenericData>);
// The pointer to the shared data, behind the one to the virtual destructor.
static_assert(sizeof(SocialGenericData) == 2 * sizeof(void *));

// Compiles only while none of these is virtual: an override cannot change the type of a result.
struct [[maybe_unused]] NothingToOverride : SocialGenericData {
    struct Other { };
    Other copyFrom(const SocialGenericData &other);
    Other className() const;
    Other setClassName(const QString &name);
    Other property(const QString &name) const;
    Other variantProperty(const QString &name) const;
    Other hasProperty(const QString &name) const;
    Other properties() const;
    Other id() const;
    Other description() const;
    Other parentAccount() const;
    Other setProperty(const QString &name, const QVariant &value);
    Other removeProperty(const QString &name);
    Other setParentAccount(const QString &accountId);
};

template <typename T, typename = void>
constexpr bool canBeCompared = false;
template <typename T>
constexpr bool canBeCompared<T, std::void_t<decltype(std::declval<T>() == std::declval<T>())>> =
    true;
static_assert(canBeCompared<QVariant> && !canBeCompared<SocialGenericData>);

// The keys are there before any code of a program that links the library runs.
const QString keysAtStart =
    SocialGenericData::Id + SocialGenericData::Description + SocialGenericData::ParentAccount;

}

class GenericDataTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void spellsTheFixedKeys();
    void startsEmpty();
    void takesAClassName();
    void storesProperties_data();
    void storesProperties();
    void replacesProperties();
    void readsAbsentProperties();
    void readsTextFromOtherTypes_data();
    void readsTextFromOtherTypes();
    void keepsEmptyTexts();
    void removesThroughInvalidValues();
    void removesProperties();
    void readsTheFixedKeys();
    void storesTheParentAccount_data();
    void storesTheParentAccount();
    void listsAllProperties();
    void copiesOnWrite_data();
    void copiesOnWrite();
    void copiesFromAnother();
    void copiesFromItself();
    void outlivesItsSource();
};

void GenericDataTest::spellsTheFixedKeys()
{
    QCOMPARE(SocialGenericData::Id, QStringLiteral("Id"));
    QCOMPARE(SocialGenericData::Description, QStringLiteral("Description"));
    QCOMPARE(SocialGenericData::ParentAccount, QStringLiteral("ParentAccount"));
    QCOMPARE(keysAtStart, QStringLiteral("IdDescriptionParentAccount"));
}

void GenericDataTest::startsEmpty()
{
    const SocialGenericData record;
    QVERIFY(record.className().isNull());
    QVERIFY(record.properties().isEmpty());
}

void GenericDataTest::takesAClassName()
{
    SocialGenericData record(QStringLiteral("Thing"));
    QCOMPARE(record.className(), QStringLiteral("Thing"));
    QVERIFY(record.properties().isEmpty());

    record.setProperty(QStringLiteral("X"), 1);
    record.setClassName(QStringLiteral("Other"));
    QCOMPARE(record.className(), QStringLiteral("Other"));
    QVERIFY(record.hasProperty(QStringLiteral("X")));
}

void GenericDataTest::storesProperties_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("text") << QVariant(QStringLiteral("text"));
    QTest::newRow("number") << QVariant(7);
    QTest::newRow("zero") << QVariant(0);
    QTest::newRow("false") << QVariant(false);
    QTest::newRow("list") << QVariant(QVariantList{1, QStringLiteral("two")});
    QTest::newRow("empty list") << QVariant(QVariantList());
    QTest::newRow("null date") << QVariant(QDate());
}

void GenericDataTest::storesProperties()
{
    QFETCH(QVariant, value);
    SocialGenericData record;
    QVERIFY(record.setProperty(QStringLiteral("X"), value));
    QVERIFY(record.hasProperty(QStringLiteral("X")));
    QCOMPARE(record.variantProperty(QStringLiteral("X")), value);
    QCOMPARE(record.properties().size(), 1);
}

void GenericDataTest::replacesProperties()
{
    SocialGenericData record;
    record.setProperty(QStringLiteral("X"), 1);
    QVERIFY(record.setProperty(QStringLiteral("X"), QStringLiteral("two")));
    QCOMPARE(record.variantProperty(QStringLiteral("X")), QVariant(QStringLiteral("two")));
    QCOMPARE(record.properties().size(), 1);
}

void GenericDataTest::readsAbsentProperties()
{
    SocialGenericData source;
    source.setProperty(QStringLiteral("x"), 1);
    const SocialGenericData record = source;
    QVERIFY(!record.hasProperty(QStringLiteral("X")));
    QVERIFY(record.property(QStringLiteral("X")).isNull());
    QVERIFY(!record.variantProperty(QStringLiteral("X")).isValid());
    QVERIFY(record.id().isNull());
    QVERIFY(record.description().isNull());
    QVERIFY(record.parentAccount().isNull());
    QCOMPARE(record.properties().size(), 1);
}

void GenericDataTest::readsTextFromOtherTypes_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("text") << QVariant(QStringLiteral("a")) << QStringLiteral("a");
    QTest::newRow("number") << QVariant(42) << QStringLiteral("42");
    QTest::newRow("boolean") << QVariant(true) << QStringLiteral("true");
    QTest::newRow("list") << QVariant(QVariantList{1, 2}) << QString();
    QTest::newRow("map") << QVariant(QVariantMap{{QStringLiteral("k"), 1}}) << QString();
    QTest::newRow("own type") << QVariant::fromValue(SocialGenericData()) << QString();
    QTest::newRow("list of one text")
        << QVariant(QStringList{QStringLiteral("a")}) << QStringLiteral("a");
}

void GenericDataTest::readsTextFromOtherTypes()
{
    QFETCH(QVariant, value);
    SocialGenericData record;
    record.setProperty(QStringLiteral("X"), value);
    QTEST(record.property(QStringLiteral("X")), "text");
}

void GenericDataTest::keepsEmptyTexts()
{
    SocialGenericData record;
    QVERIFY(record.setProperty(QStringLiteral("X"), QVariant(QString())));
    QVERIFY(record.hasProperty(QStringLiteral("X")));
    QVERIFY(record.property(QStringLiteral("X")).isEmpty());
    QVERIFY(record.variantProperty(QStringLiteral("X")).isValid());
}

void GenericDataTest::removesThroughInvalidValues()
{
    SocialGenericData record;
    record.setProperty(QStringLiteral("Y"), 1);
    const QVariantMap before = record.properties();
    QVERIFY(!record.setProperty(QStringLiteral("X"), QVariant()));
    QCOMPARE(record.properties(), before);

    record.setProperty(QStringLiteral("X"), 1);
    QVERIFY(record.setProperty(QStringLiteral("X"), QVariant()));
    QVERIFY(!record.hasProperty(QStringLiteral("X")));
    QCOMPARE(record.properties(), before);
}

void GenericDataTest::removesProperties()
{
    SocialGenericData record;
    record.setProperty(QStringLiteral("X"), 1);
    record.setProperty(QStringLiteral("Y"), 2);
    QVERIFY(record.removeProperty(QStringLiteral("X")));
    QVERIFY(!record.hasProperty(QStringLiteral("X")));
    QVERIFY(record.hasProperty(QStringLiteral("Y")));
    QVERIFY(!record.removeProperty(QStringLiteral("X")));
    QCOMPARE(record.properties().size(), 1);
}

void GenericDataTest::readsTheFixedKeys()
{
    SocialGenericData record;
    record.setProperty(QStringLiteral("Id"), 42);
    record.setProperty(QStringLiteral("Description"), QStringLiteral("words"));
    record.setProperty(QStringLiteral("ParentAccount"), QStringLiteral("home"));
    QCOMPARE(record.id(), QStringLiteral("42"));
    QCOMPARE(record.description(), QStringLiteral("words"));
    QCOMPARE(record.parentAccount(), QStringLiteral("home"));
}

void GenericDataTest::storesTheParentAccount_data()
{
    QTest::addColumn<QString>("account");
    QTest::newRow("id") << QStringLiteral("home");
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("null") << QString();
}

void GenericDataTest::storesTheParentAccount()
{
    QFETCH(QString, account);
    SocialGenericData record;
    record.setParentAccount(QStringLiteral("earlier"));
    record.setParentAccount(account);
    QCOMPARE(record.parentAccount(), account);
    QVERIFY(record.hasProperty(QStringLiteral("ParentAccount")));
    QCOMPARE(record.variantProperty(QStringLiteral("ParentAccount")), QVariant(account));
}

void GenericDataTest::listsAllProperties()
{
    SocialGenericData record;
    record.setParentAccount(QStringLiteral("home"));
    record.setProperty(SocialGenericData::Id, QStringLiteral("1"));
    record.setProperty(QStringLiteral("X"), 7);
    QVariantMap properties = record.properties();
    QCOMPARE(
        properties.keys(),
        QStringList({QStringLiteral("Id"), QStringLiteral("ParentAccount"), QStringLiteral("X")}));

    properties.remove(QStringLiteral("X"));
    QVERIFY(record.hasProperty(QStringLiteral("X")));
}

using Change = void (*)(SocialGenericData &);
Q_DECLARE_METATYPE(Change)

void GenericDataTest::copiesOnWrite_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("setClassName") << Change(
        [](SocialGenericData &record) { record.setClassName(QStringLiteral("Other")); });
    QTest::newRow("setProperty, replacing")
        << Change([](SocialGenericData &record) { record.setProperty(QStringLiteral("X"), 2); });
    QTest::newRow("setProperty, new")
        << Change([](SocialGenericData &record) { record.setProperty(QStringLiteral("Y"), 2); });
    QTest::newRow("setProperty, removing") << Change(
        [](SocialGenericData &record) { record.setProperty(QStringLiteral("X"), QVariant()); });
    QTest::newRow("removeProperty")
        << Change([](SocialGenericData &record) { record.removeProperty(QStringLiteral("X")); });
    QTest::newRow("setParentAccount") << Change(
        [](SocialGenericData &record) { record.setParentAccount(QStringLiteral("work")); });
    QTest::newRow("copyFrom") << Change(
        [](SocialGenericData &record) { record.copyFrom(SocialGenericData()); });
}

void GenericDataTest::copiesOnWrite()
{
    QFETCH(Change, change);
    SocialGenericData original(QStringLiteral("Thing"));
    original.setProperty(QStringLiteral("X"), 1);
    original.setParentAccount(QStringLiteral("home"));
    const QVariantMap before = original.properties();

    SocialGenericData constructed(original);
    SocialGenericData assigned;
    assigned = original;
    change(original);
    QVERIFY(original.className() != QStringLiteral("Thing") || original.properties() != before);
    for (const SocialGenericData &copy : {constructed, assigned}) {
        QCOMPARE(copy.className(), QStringLiteral("Thing"));
        QCOMPARE(copy.properties(), before);
    }

    change(constructed);
    QCOMPARE(constructed.className(), original.className());
    QCOMPARE(constructed.properties(), original.properties());
    QCOMPARE(assigned.properties(), before);
}

void GenericDataTest::copiesFromAnother()
{
    SocialGenericData source(QStringLiteral("Thing"));
    source.setProperty(QStringLiteral("X"), 1);
    SocialGenericData record(QStringLiteral("Earlier"));
    record.setProperty(QStringLiteral("Y"), 2);
    QCOMPARE(&record.copyFrom(source), &record);
    QCOMPARE(record.className(), QStringLiteral("Thing"));
    QCOMPARE(record.properties(), source.properties());

    record.copyFrom(source);
    QCOMPARE(record.properties(), source.properties());
    QCOMPARE(&(record = source), &record);
    QCOMPARE(record.properties(), source.properties());
}

void GenericDataTest::copiesFromItself()
{
    SocialGenericData record(QStringLiteral("Thing"));
    record.setProperty(QStringLiteral("X"), 1);
    QCOMPARE(&record.copyFrom(record), &record);
    const SocialGenericData &same = record;
    record = same;
    QCOMPARE(record.className(), QStringLiteral("Thing"));
    QCOMPARE(record.variantProperty(QStringLiteral("X")), QVariant(1));
}

void GenericDataTest::outlivesItsSource()
{
    auto source = std::make_unique<SocialGenericData>(QStringLiteral("Thing"));
    source->setProperty(QStringLiteral("X"), 1);
    const SocialGenericData copy(*source);
    const QVariantMap properties = source->properties();
    source.reset();
    QCOMPARE(copy.className(), QStringLiteral("Thing"));
    QCOMPARE(copy.properties(), properties);
}

QTEST_GUILESS_MAIN(GenericDataTest)

#include "genericdatatest.moc"
