// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "load/usage.h"

#include "provider/kinletinterface.h"
#include "requests/socialdatarequest.h"

#include <QPointer>

/// A provider that answers as its name says: now, later or failing. Its meta-data tell what its
/// process holds.
class SoakProvider : public KinletInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0")
    Q_INTERFACES(KinletInterface)

public:
    void init() override { }

    QVariantMap metaData() override
    {
        QVariantMap data = Usage::ofThisProcess().toMap();
        data.insert(QStringLiteral("name"), name);
        return data;
    }

    QList<SocialServiceAccount> accounts() override
    {
        SocialServiceAccount account;
        account.setProperty(SocialGenericData::Id, name);
        return {account};
    }

    void performRequest(SocialDataRequest *request) override
    {
        if (request->type() == SocialDataRequest::GetAggregatedServices
            || request->type() == SocialDataRequest::GetAccounts)
            KinletInterface::performRequest(request);
        else if (name == QLatin1String("failing"))
            request->setRequestProgress(
                SocialDataRequest::Finished,
                {KinletError(KinletError::NetworkFailed, QStringLiteral("It is always down."))});
        else if (name == QLatin1String("now"))
            answer(request);
        else
            QMetaObject::invokeMethod(
                this, [this, guard = QPointer<SocialDataRequest>(request)] { answerPartly(guard); },
                Qt::QueuedConnection);
    }

private:
    static void setRecords(SocialDataRequest *request, int count)
    {
        QList<SocialGenericData> records;
        for (int i = 0; i < count; ++i) {
            SocialActivity record;
            record.setProperty(SocialGenericData::Id, QString::number(i));
            record.setProperty(SocialGenericData::Description, QString(100, QLatin1Char('x')));
            records.append(record);
        }
        request->setResults(records);
    }

    static void answer(SocialDataRequest *request)
    {
        if (!request)
            return;
        setRecords(request, 2);
        request->setRequestProgress(SocialDataRequest::Finished, {});
    }

    void answerPartly(SocialDataRequest *request)
    {
        if (!request)
            return;
        setRecords(request, 1);
        request->setRequestProgress(SocialDataRequest::Progressing, {});
        QMetaObject::invokeMethod(
            this, [guard = QPointer<SocialDataRequest>(request)] { answer(guard); },
            Qt::QueuedConnection);
    }

    const QString name = QStringLiteral(SOAK_NAME);
};

#include "soakprovider.moc"
