// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "provider/kinletinterface.h"
#include "requests/socialdatarequest.h"
#include "requests/socialgetactivitiesrequest.h"
#include "requests/socialgetlikersrequest.h"
#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QPointer>
#include <QTimer>

#include <unistd.h>

#ifndef PROBE_NAME
#define PROBE_NAME "probe"
#endif

/**
 * A provider that does with a request what its first account says: the accounts are named after
 * what they do. It pushes what it is told by cancelRequest(), so that it shows outside its process.
 */
class ProbePlugin : public KinletInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0")
    Q_INTERFACES(KinletInterface)

public:
    void init() override
    {
        ++m_initialised;
        if (qEnvironmentVariableIsSet("PROBE_FAILS"))
            Q_EMIT error(QStringLiteral(PROBE_NAME), QStringLiteral("broken"),
                         QStringLiteral("from the start"));
    }

    QVariantMap metaData() override
    {
        return {{QStringLiteral("name"), QStringLiteral(PROBE_NAME)},
                {QStringLiteral("version"), QStringLiteral("1.2.3")},
                {QStringLiteral("initialised"), m_initialised}};
    }

    QList<SocialService> services() override
    {
        SocialService service;
        service.setProperty(SocialGenericData::Id, QStringLiteral(PROBE_NAME "-service"));
        return {service};
    }

    QList<SocialServiceAccount> accounts() override
    {
        QList<SocialServiceAccount> accounts;
        for (const char *behaviour : {"now", "later", "never", "twice", "stopped", "failing",
                                      "partial", "pushing", "broken", "large"}) {
            SocialServiceAccount account;
            account.setProperty(SocialGenericData::Id,
                                QStringLiteral(PROBE_NAME "-") + QString::fromLatin1(behaviour));
            account.setProperty(SocialServiceAccount::SocialServiceId,
                                QStringLiteral(PROBE_NAME "-service"));
            accounts.append(account);
        }
        return accounts;
    }

    void performRequest(SocialDataRequest *request) override
    {
        const QString behaviour =
            request->performOnAccountsFilter().value(0).section(QLatin1Char('-'), 1);
        if (request->type() == SocialDataRequest::GetAggregatedServices
            || request->type() == SocialDataRequest::GetAccounts)
            KinletInterface::performRequest(request);
        else if (behaviour == QLatin1String("later"))
            QTimer::singleShot(50, this, [guard = QPointer<SocialDataRequest>(request)] {
                if (guard)
                    answer(guard);
            });
        else if (behaviour == QLatin1String("stopped"))
            answer(request, SocialDataRequest::Stopped);
        else if (behaviour == QLatin1String("failing"))
            answer(request, SocialDataRequest::Finished,
                   {KinletError(KinletError::NetworkFailed, QStringLiteral("no network"))});
        else if (behaviour == QLatin1String("partial"))
            answerInParts(request);
        else if (behaviour == QLatin1String("blocking"))
            block();
        else if (behaviour == QLatin1String("large"))
            answerLargely(request);
        else if (behaviour != QLatin1String("never"))
            answer(request);
        if (behaviour == QLatin1String("twice"))
            request->setRequestProgress(SocialDataRequest::Finished, {});
        if (behaviour == QLatin1String("pushing"))
            push();
        if (behaviour == QLatin1String("flooding"))
            flood();
        if (behaviour == QLatin1String("broken"))
            Q_EMIT error(QStringLiteral(PROBE_NAME), QStringLiteral("broken"),
                         QStringLiteral("as asked"));
    }

    void cancelRequest(SocialDataRequest *request) override
    {
        tell(QStringLiteral("cancelled %1").arg(request->type()));
        // What a provider must not do, and does.
        request->setRequestProgress(SocialDataRequest::Finished, {});
    }

private:
    // One record that shows the request as it arrived.
    static void answer(SocialDataRequest *request,
                       SocialDataRequest::Status status = SocialDataRequest::Finished,
                       const QList<KinletError> &errors = {})
    {
        SocialGenericData record(QStringLiteral("Echo"));
        record.setProperty(SocialGenericData::Id, QStringLiteral(PROBE_NAME));
        record.setProperty(QStringLiteral("Kind"), request->type());
        record.setProperty(QStringLiteral("Accounts"), request->performOnAccountsFilter());
        if (auto *persons = qobject_cast<SocialGetPersonsRequest *>(request))
            record.setProperty(QStringLiteral("Filter"), persons->propertyFilter().size());
        if (auto *likers = qobject_cast<SocialGetLikersRequest *>(request))
            record.setProperty(QStringLiteral("Activity"), likers->activityId());
        if (auto *activities = qobject_cast<SocialGetActivitiesRequest *>(request)) {
            record.setProperty(QStringLiteral("Limit"), activities->limit());
            record.setProperty(QStringLiteral("Before"), activities->before());
            record.setProperty(QStringLiteral("Persons"), activities->personsFilter());
        }
        if (auto *post = qobject_cast<SocialPostActivitiesRequest *>(request))
            record.setProperty(QStringLiteral("Text"), post->statusText());
        if (auto *like = qobject_cast<SocialLikeActivityRequest *>(request))
            record.setProperty(QStringLiteral("Like"), like->like());
        record.setProperty(SocialActivity::Attachment,
                           QVariant::fromValue(SocialActivityAttachment{
                               QStringLiteral("title"),
                               {},
                               {},
                               {},
                               {Media(), Media{Media::Video, QStringLiteral("url"), {}, {}}}}));
        record.setProperty(
            QStringLiteral("Texts"),
            QVariant::fromValue(SocialActionIconTexts{0, QStringLiteral("one"), {}, {}}));
        record.setProperty(SocialServiceAccount::ImportProgress,
                           QVariant::fromValue(SocialImportProgress{true, 1, 2, 3}));
        request->setResults({record});
        request->setRequestProgress(status, errors);
    }

    void answerInParts(SocialDataRequest *request)
    {
        request->setResults({SocialGenericData(QStringLiteral("Part"))});
        request->setRequestProgress(SocialDataRequest::Progressing, {});
        QTimer::singleShot(0, this, [guard = QPointer<SocialDataRequest>(request)] {
            if (guard)
                answer(guard);
        });
    }

    [[noreturn]] void block()
    {
        tell(QStringLiteral("blocking"));
        for (;;)
            ::pause();
    }

    static void answerLargely(SocialDataRequest *request)
    {
        // Four bytes a letter: more than the 64 MiB that an array on the bus may have.
        SocialGenericData record;
        record.setProperty(SocialGenericData::Description,
                           QString(40 * 1024 * 1024, QLatin1Char('x')));
        request->setResults({record});
        request->setRequestProgress(SocialDataRequest::Finished, {});
    }

    void push()
    {
        SocialNetworkPerson person;
        person.setProperty(SocialGenericData::Id, QStringLiteral("pushed"));
        Q_EMIT personsUpdate({person}, {SocialNetworkPerson::Status});
        tell(QStringLiteral("pushed"));
    }

    void flood()
    {
        // Two bytes a letter.
        SocialGenericData record;
        record.setProperty(SocialGenericData::Description,
                           QString(5 * 1024 * 1024, QLatin1Char('x')));
        Q_EMIT dataUpdate({record, record, record}, {SocialGenericData::Description});
    }

    void tell(const QString &text)
    {
        SocialGenericData record(QStringLiteral("Told"));
        record.setProperty(SocialGenericData::Description, text);
        Q_EMIT dataUpdate({record}, {SocialGenericData::Description});
    }

    int m_initialised = 0;
};

#include "probeplugin.moc"
