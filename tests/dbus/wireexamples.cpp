// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/wireexamples.h"

#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QFile>

namespace {

SocialDataRequest *persons()
{
    auto *request = new SocialGetPersonsRequest;
    request->setPropertyFilter(QStringLiteral("FirstName"),
                               QRegExp(QStringLiteral("^A"), Qt::CaseInsensitive));
    return request;
}

SocialDataRequest *activities()
{
    auto *request = new SocialGetActivitiesRequest;
    request->setPersonsFilter({QStringLiteral("p1")});
    request->setLimit(5);
    request->setAfter(QDateTime(QDate(2026, 1, 5), QTime(9, 5, 7, 250), Qt::UTC));
    request->setTimelineType(KinletTimeline::Homepage);
    return request;
}

SocialDataRequest *post()
{
    return new SocialPostActivitiesRequest(SocialActivity::Comment, QStringLiteral("Hi"),
                                           QStringLiteral("7"));
}

}

QMap<QString, QByteArray> documentedExamples()
{
    QMap<QString, QByteArray> examples;
    QFile document(QStringLiteral(KINLET_WIRE_FORMAT));
    if (!document.open(QIODevice::ReadOnly | QIODevice::Text))
        return examples;
    QString name;
    const QString begin = QStringLiteral("```hex ");
    while (!document.atEnd()) {
        const QString line = QString::fromUtf8(document.readLine()).trimmed();
        if (line.startsWith(begin))
            name = line.mid(begin.size());
        else if (line == QLatin1String("```"))
            name.clear();
        else if (!name.isEmpty())
            examples[name] +=
                QByteArray::fromHex(line.section(QStringLiteral("  "), 0, 0).toLatin1());
    }
    return examples;
}

QList<RequestExample> requestExamples()
{
    const QStringList account{QStringLiteral("a1")};
    const QString activity = QStringLiteral("7");
    return {
        {QStringLiteral("services-request"), {}, [] { return new GetAggregatedServicesRequest; }},
        {QStringLiteral("accounts-request"), {}, [] { return new SocialGetAccountsRequest; }},
        {QStringLiteral("persons-request"), account, persons},
        {QStringLiteral("activities-request"), account, activities},
        {QStringLiteral("post-request"), account, post},
        {QStringLiteral("like-request"), account,
         [=] { return new SocialLikeActivityRequest(activity); }},
        {QStringLiteral("likers-request"), account,
         [=] { return new SocialGetLikersRequest(activity); }},
    };
}
