// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "benchmarkpersons.h"
#include "benchmarkprovider.h"
#include "busexchange.h"
#include "busprocess.h"
#include "dbus/payload.h"
#include "requests/socialgetpersonsrequest.h"

#include <vector>

namespace {

QString providerFor(int records)
{
    return QStringLiteral("persons%1").arg(records);
}

QString accountFor(int records)
{
    return BenchmarkProvider::account(providerFor(records), QByteArray::number(records));
}

}

/// Its copies have this class, too. They live for a minute after the end, many thousands in a run,
/// whose records would fill the memory.
class BusRequest : public SocialGetPersonsRequest {
    Q_OBJECT

public:
    Q_INVOKABLE BusRequest() { all.append(this); }

    static void dropRecords()
    {
        for (BusRequest *request : std::as_const(all))
            request->setResults({});
        all.clear();
    }

private:
    static QList<BusRequest *> all;
};

QList<BusRequest *> BusRequest::all;

namespace {

class KinletExchange : public Exchange {
public:
    explicit KinletExchange(int records) : m_records(records), m_runner(providerFor(records))
    {
        // The next one finds this runner.
        KinletManager::cleanupInstance();
        m_account = readyManager()->account(accountFor(records));
    }

    void perform(int requests) override
    {
        QEventLoop loop;
        int open = requests;
        std::vector<std::unique_ptr<BusRequest>> asked;
        for (int i = 0; i < requests; ++i) {
            asked.push_back(std::make_unique<BusRequest>());
            QObject::connect(asked.back().get(), &SocialDataRequest::finished, &loop, [&] {
                if (--open == 0)
                    loop.quit();
            });
            KinletManager::instance()->performRequest(asked.back().get(), {m_account});
        }
        loop.exec();
        for (const auto &request : asked) {
            if (request->results().size() != m_records)
                qFatal("An answer is incomplete");
        }
        BusRequest::dropRecords();
    }

private:
    const int m_records;
    const BenchmarkRunner m_runner;
    SocialServiceAccount m_account;
};

}

ExchangedBytes::ExchangedBytes(int records)
{
    SocialGetPersonsRequest asked;
    asked.setPerformOnAccountsFilter({accountFor(records)});
    asked.setRequestProgress(SocialDataRequest::Started, {});
    request = Payload::write(asked);
    asked.setPersons(persons(records));
    asked.setRequestProgress(SocialDataRequest::Finished, {});
    answer = Payload::write(asked);
}

std::unique_ptr<Exchange> makeKinletExchange(int records)
{
    return std::make_unique<KinletExchange>(records);
}

#include "buskinlet.moc"
