// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "benchmarkprovider.h"

#include "benchmarkpersons.h"
#include "requests/socialdatarequest.h"

BenchmarkProvider::BenchmarkProvider(const QString &name) : m_name(name)
{
    for (const int count : {10, 1000}) {
        QList<SocialGenericData> &answer = m_answers[account(name, QByteArray::number(count))];
        const QList<SocialNetworkPerson> records = persons(count);
        for (const SocialNetworkPerson &person : records)
            answer.append(person);
    }
}

QString BenchmarkProvider::account(const QString &provider, const QByteArray &behaviour)
{
    return provider + QLatin1Char('-') + QLatin1String(behaviour);
}

void BenchmarkProvider::init() { }

QVariantMap BenchmarkProvider::metaData()
{
    return {{QStringLiteral("name"), m_name}};
}

QList<SocialServiceAccount> BenchmarkProvider::accounts()
{
    QList<SocialServiceAccount> accounts;
    for (const char *behaviour : {"10", "1000", "never"}) {
        SocialServiceAccount account;
        account.setProperty(SocialServiceAccount::Id,
                            BenchmarkProvider::account(m_name, behaviour));
        accounts.append(account);
    }
    return accounts;
}

void BenchmarkProvider::performRequest(SocialDataRequest *request)
{
    const QString account = request->performOnAccountsFilter().value(0);
    if (account.endsWith(QLatin1String("never")))
        return;
    switch (request->type()) {
    case SocialDataRequest::GetPersons:
        request->setResults(m_answers.value(account));
        break;
    case SocialDataRequest::PostActivities:
        break;
    default:
        KinletInterface::performRequest(request);
        return;
    }
    request->setRequestProgress(SocialDataRequest::Finished, {});
}
