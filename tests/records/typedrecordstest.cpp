// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/typedrecords.h"
#include "support/streambytes.h"

#include <type_traits>

namespace {

// Made before main(), as by an application's own constants.
const QStringList keysAtLoad{SocialNetworkPerson::FirstName, SocialActivity::StartTime,
                             SocialService::ProviderName, SocialServiceAccount::State,
                             SocialGenericData::Id};
const SocialActivity recordAtLoad;

template <typename T>
constexpr bool
    addsNoData = std::is_base_of_v<SocialGenericData, T> &&
                     std::has_virtual_destructor_v<T> && sizeof(T) == sizeof(SocialGenericData);
static_assert(addsNoData<SocialNetworkPerson>);
static_assert(addsNoData<SocialActivity>);
static_assert(addsNoData<SocialService>);
static_assert(addsNoData<SocialServiceAccount>);

// The meta-object system does not know it; on the wire it is a number.
static_assert(!QtPrivate::IsQEnumHelper<SocialActivity::Type>::Value);
static_assert(std::is_convertible_v<SocialActivity::Type, int>);

template <typename T>
SocialGenericData emptyOne()
{
    return T();
}

template <typename T>
SocialGenericData viewedAs(const SocialGenericData &record)
{
    return T(record);
}

}

using MakeEmpty = SocialGenericData (*)();
using View = SocialGenericData (*)(const SocialGenericData &);
Q_DECLARE_METATYPE(MakeEmpty)
Q_DECLARE_METATYPE(View)

class TypedRecordsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void haveTheirKeysWhenTheLibraryIsLoaded();
    void spellTheirKeys_data();
    void spellTheirKeys();
    void startWithTheirClassName_data();
    void startWithTheirClassName();
    void viewOtherRecords_data();
    void viewOtherRecords();
    void writeApartFromTheirSource();
    void areAssignedFromOtherRecords();
    void takeTheClassNameOfWhatIsCopiedIntoThem();
    void areStreamedAsPlainRecords();
    void numberTheTypesOfActivities();
};

void TypedRecordsTest::haveTheirKeysWhenTheLibraryIsLoaded()
{
    QCOMPARE(keysAtLoad,
             QStringList({QStringLiteral("FirstName"), QStringLiteral("StartTime"),
                          QStringLiteral("ProviderName"), QStringLiteral("State"),
                          QStringLiteral("Id")}));
    QCOMPARE(recordAtLoad.className(), QStringLiteral("SocialActivity"));
}

void TypedRecordsTest::spellTheirKeys_data()
{
    QTest::addColumn<QString>("key");
#define KEY(class, name) QTest::newRow(#class "::" #name) << class ::name
    KEY(SocialNetworkPerson, ScreenName);
    KEY(SocialNetworkPerson, FirstName);
    KEY(SocialNetworkPerson, LastName);
    KEY(SocialNetworkPerson, AvatarList);
    KEY(SocialNetworkPerson, Status);
    KEY(SocialNetworkPerson, StatusChangeTime);
    KEY(SocialNetworkPerson, AboutMe);
    KEY(SocialNetworkPerson, Relationship);
    KEY(SocialNetworkPerson, ProfileLink);
    KEY(SocialNetworkPerson, PhoneNumber);
    KEY(SocialNetworkPerson, EmailAddresses);
    KEY(SocialNetworkPerson, Websites);
    KEY(SocialNetworkPerson, Birthday);
    KEY(SocialActivity, StartTime);
    KEY(SocialActivity, EndTime);
    KEY(SocialActivity, OwnerPersonId);
    KEY(SocialActivity, ReceiverPersonId);
    KEY(SocialActivity, ActivityType);
    KEY(SocialActivity, CommentCount);
    KEY(SocialActivity, ParentActivityId);
    KEY(SocialActivity, LikeCount);
    KEY(SocialActivity, IsLikedByMe);
    KEY(SocialActivity, Attachment);
    KEY(SocialService, ProviderName);
    KEY(SocialService, Icon);
    KEY(SocialService, Website);
    KEY(SocialService, CanDataBeCached);
    KEY(SocialService, SocialActions);
    KEY(SocialService, ActionIconTexts);
    KEY(SocialService, ForceAutomerged);
    KEY(SocialServiceAccount, SocialServiceId);
    KEY(SocialServiceAccount, ProfileId);
    KEY(SocialServiceAccount, AccountName);
    KEY(SocialServiceAccount, UserName);
    KEY(SocialServiceAccount, Avatar);
    KEY(SocialServiceAccount, State);
    KEY(SocialServiceAccount, ImportProgress);
#undef KEY
}

void TypedRecordsTest::spellTheirKeys()
{
    QFETCH(QString, key);
    const QString member = QString::fromLatin1(QTest::currentDataTag());
    QCOMPARE(key, member.section(QStringLiteral("::"), 1));
}

void TypedRecordsTest::startWithTheirClassName_data()
{
    QTest::addColumn<MakeEmpty>("make");
    QTest::addColumn<QString>("constant");
    QTest::newRow("SocialNetworkPerson")
        << MakeEmpty(emptyOne<SocialNetworkPerson>) << SocialNetworkPerson::ClassName;
    QTest::newRow("SocialActivity")
        << MakeEmpty(emptyOne<SocialActivity>) << SocialActivity::ClassName;
    QTest::newRow("SocialService")
        << MakeEmpty(emptyOne<SocialService>) << SocialService::ClassName;
    QTest::newRow("SocialServiceAccount")
        << MakeEmpty(emptyOne<SocialServiceAccount>) << SocialServiceAccount::ClassName;
}

void TypedRecordsTest::startWithTheirClassName()
{
    QFETCH(MakeEmpty, make);
    QFETCH(QString, constant);
    const SocialGenericData record = make();
    QCOMPARE(record.className(), QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(constant, record.className());
    QVERIFY(record.properties().isEmpty());
}

void TypedRecordsTest::viewOtherRecords_data()
{
    QTest::addColumn<View>("view");
    QTest::newRow("SocialNetworkPerson") << View(viewedAs<SocialNetworkPerson>);
    QTest::newRow("SocialActivity") << View(viewedAs<SocialActivity>);
    QTest::newRow("SocialService") << View(viewedAs<SocialService>);
    QTest::newRow("SocialServiceAccount") << View(viewedAs<SocialServiceAccount>);
}

void TypedRecordsTest::viewOtherRecords()
{
    QFETCH(View, view);
    SocialActivity activity;
    SocialGenericData plain;
    SocialGenericData foreign(QStringLiteral("Foreign"));
    for (SocialGenericData source : {SocialGenericData(activity), plain, foreign}) {
        source.setProperty(SocialGenericData::Id, QStringLiteral("a1"));
        source.setProperty(QStringLiteral("Extra"), 7);
        const QString sourceName = source.className();
        const SocialGenericData seen = view(source);
        QCOMPARE(seen.className(), QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(source.className(), sourceName);
        QCOMPARE(seen.properties(), source.properties());
        QCOMPARE(seen.properties().size(), 2);
        QVERIFY(seen.properties().isSharedWith(source.properties()));
    }
}

void TypedRecordsTest::writeApartFromTheirSource()
{
    SocialActivity activity;
    activity.setProperty(SocialActivity::LikeCount, 1);
    SocialNetworkPerson person(activity);
    person.setProperty(SocialActivity::LikeCount, 2);
    QCOMPARE(activity.variantProperty(SocialActivity::LikeCount), QVariant(1));
    activity.removeProperty(SocialActivity::LikeCount);
    QCOMPARE(person.variantProperty(SocialActivity::LikeCount), QVariant(2));
}

void TypedRecordsTest::areAssignedFromOtherRecords()
{
    SocialGenericData source(QStringLiteral("Foreign"));
    source.setProperty(SocialGenericData::Id, QStringLiteral("a1"));
    SocialActivity activity;
    activity = source;
    QCOMPARE(activity.className(), QStringLiteral("SocialActivity"));
    QCOMPARE(activity.id(), QStringLiteral("a1"));
    const SocialActivity copy = activity;
    activity.setProperty(SocialGenericData::Id, QStringLiteral("a2"));
    QCOMPARE(copy.id(), QStringLiteral("a1"));
}

void TypedRecordsTest::takeTheClassNameOfWhatIsCopiedIntoThem()
{
    SocialNetworkPerson person;
    person.copyFrom(SocialActivity());
    QCOMPARE(person.className(), QStringLiteral("SocialActivity"));
}

void TypedRecordsTest::areStreamedAsPlainRecords()
{
    SocialActivity activity;
    activity.setProperty(SocialGenericData::Id, QStringLiteral("a1"));
    const QByteArray bytes = written(activity);
    QCOMPARE(bytes, written(SocialGenericData(activity)));

    SocialNetworkPerson person;
    person.setProperty(SocialNetworkPerson::FirstName, QStringLiteral("old"));
    ByteReader in(bytes);
    in >> person;
    QCOMPARE(in.status(), QDataStream::Ok);
    QCOMPARE(person.className(), QStringLiteral("SocialActivity"));
    QCOMPARE(person.properties(), activity.properties());
}

void TypedRecordsTest::numberTheTypesOfActivities()
{
    QCOMPARE(int(SocialActivity::UnknownType), 0);
    QCOMPARE(int(SocialActivity::Status), 1);
    QCOMPARE(int(SocialActivity::Comment), 2);
    QCOMPARE(int(SocialActivity::Message), 3);
    QCOMPARE(int(SocialActivity::AnyType), 4);
}

QTEST_GUILESS_MAIN(TypedRecordsTest)

#include "typedrecordstest.moc"
