// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/goldenrequests.h"

#include "records/valuetypes.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QDataStream>
#include <QUrl>

namespace {

const QDateTime noon = QDateTime(QDate(2026, 2, 3), QTime(12, 0), Qt::UTC);

void addCommonValues(SocialGenericData &record)
{
    record.setProperty(SocialGenericData::Id, QStringLiteral("id-\u00e9\u4e2d"));
    record.setProperty(SocialGenericData::Description, QStringLiteral("First line\nsecond line"));
    record.setParentAccount(QString());
    record.setProperty(QStringLiteral("boolean"), true);
    record.setProperty(QStringLiteral("bytes"), QByteArray("\0raw\xff", 5));
    record.setProperty(QStringLiteral("date"), noon.date());
    record.setProperty(QStringLiteral("double"), 0.1);
    record.setProperty(QStringLiteral("hash"), QVariantHash{{QStringLiteral("only"), 1}});
    record.setProperty(QStringLiteral("int"), -7);
    record.setProperty(QStringLiteral("list"),
                       QVariantList{1, QVariantList{QStringLiteral("two")}, QVariantList()});
    record.setProperty(QStringLiteral("long"), qlonglong(1) << 40);
    record.setProperty(QStringLiteral("map"),
                       QVariantMap{{QStringLiteral("a"), 1}, {QStringLiteral("b"), 2}});
    record.setProperty(QStringLiteral("texts"), QStringList{QStringLiteral("a"), QString()});
    record.setProperty(QStringLiteral("time"), noon);
    record.setProperty(QStringLiteral("url"), QUrl(QStringLiteral("https://example.org/?q=a b")));
}

SocialNetworkPerson person()
{
    SocialNetworkPerson person;
    addCommonValues(person);
    const Media avatar{Media::Image, QStringLiteral("https://example.org/a.png"), QString(),
                       QStringLiteral("A face")};
    person.setProperty(SocialNetworkPerson::AvatarList, QVariantList{QVariant::fromValue(avatar)});
    return person;
}

SocialActivity activity()
{
    SocialActivity activity;
    addCommonValues(activity);
    SocialActivityAttachment attachment;
    attachment.firstText = QStringLiteral("Title");
    attachment.fourthText = QStringLiteral("https://example.org/");
    attachment.media = {Media{Media::Video, QStringLiteral("v"), QString(), QString()}, Media()};
    activity.setProperty(SocialActivity::Attachment, QVariant::fromValue(attachment));
    return activity;
}

SocialServiceAccount account()
{
    SocialServiceAccount account;
    addCommonValues(account);
    account.setProperty(SocialServiceAccount::ImportProgress,
                        QVariant::fromValue(SocialImportProgress{false, 1, 2, 3}));
    return account;
}

SocialService service()
{
    SocialService service;
    addCommonValues(service);
    const SocialActionIconTexts like{KinletAction::Like, QStringLiteral("like"),
                                     QStringLiteral("Like"), QStringLiteral("Unlike")};
    service.setProperty(SocialService::ActionIconTexts, QVariantList{QVariant::fromValue(like)});
    return service;
}

GoldenRequest golden(const char *name, SocialDataRequest *request,
                     const QList<SocialGenericData> &results)
{
    request->setResults(results);
    request->setPerformOnAccountsFilter({QStringLiteral("account one"), QString()});
    request->setRequestProgress(SocialDataRequest::Finished, {});
    return {QString::fromLatin1(name), QSharedPointer<SocialDataRequest>(request)};
}

SocialGetActivitiesRequest *activitiesRequest()
{
    auto *request = new SocialGetActivitiesRequest;
    request->setPersonsFilter({QStringLiteral("p1"), QStringLiteral("p2")});
    request->setLimit(25);
    request->setAfter(noon);
    request->setActivityIdsFilter({QStringLiteral("a1")});
    request->setParentActivityIdFilter(QStringLiteral("a0"));
    request->setActivityFilter(SocialActivity::Comment);
    request->setTimelineType(KinletTimeline::Custom);
    request->setForceRefresh(true);
    return request;
}

}

std::vector<GoldenRequest> goldenRequests()
{
    auto *persons = new SocialGetPersonsRequest;
    persons->setPropertyFilter(QStringLiteral("FirstName"),
                               QRegExp(QStringLiteral("^[A-C].*"), Qt::CaseInsensitive));
    const auto post = new SocialPostActivitiesRequest(SocialActivity::Comment,
                                                      QStringLiteral("text"), QStringLiteral("a1"));
    return {golden("generic", new SocialDataRequest, {SocialGenericData(), person(), activity()}),
            golden("services", new GetAggregatedServicesRequest, {service()}),
            golden("accounts", new SocialGetAccountsRequest, {account()}),
            golden("persons", persons, {person(), SocialNetworkPerson()}),
            golden("activities", activitiesRequest(), {activity()}),
            golden("default-activities", new SocialGetActivitiesRequest, {}),
            golden("post", post, {}),
            golden("like", new SocialLikeActivityRequest(QStringLiteral("a1"), false), {}),
            golden("likers", new SocialGetLikersRequest(QStringLiteral("a1")), {person()})};
}

std::vector<GoldenVersion> goldenVersions()
{
    return {{QStringLiteral("5.15"), QDataStream::Qt_5_15},
            {QStringLiteral("4.8"), QDataStream::Qt_4_8}};
}
