// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "busexchange.h"
#include "busprocess.h"
#include "bussdbus.h"

#include <QCoreApplication>

namespace {

QByteArray serviceName(int records)
{
    return EXCHANGE_SERVICE ".sd" + QByteArray::number(records);
}

class SdBusExchange : public Exchange {
public:
    explicit SdBusExchange(int records)
        : m_service(serviceName(records))
        , m_request(ExchangedBytes(records).request)
        , m_server(QLatin1String(m_service), QCoreApplication::applicationFilePath(),
                   {QStringLiteral("--serve"), QStringLiteral("sd"), QString::number(records)})
        , m_client(sd_exchange_new(m_service.constData()), sd_exchange_free)
    {
    }

    void perform(int requests) override
    {
        const int r = sd_exchange_perform(m_client.get(), requests, m_request.constData(),
                                          size_t(m_request.size()));
        if (r < 0)
            qFatal("sd-bus cannot go on: %d", r);
    }

private:
    const QByteArray m_service;
    const QByteArray m_request;
    const BusProcess m_server;
    const std::unique_ptr<sd_exchange, void (*)(sd_exchange *)> m_client;
};

}

std::unique_ptr<Exchange> makeSdBusExchange(int records)
{
    return std::make_unique<SdBusExchange>(records);
}

int serveSdBus(int records)
{
    const QByteArray answer = ExchangedBytes(records).answer;
    return sd_exchange_serve(serviceName(records).constData(), answer.constData(),
                             size_t(answer.size()));
}
