// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QByteArray>

#include <memory>

/// One way to ask a process on the bus for persons.
class Exchange {
public:
    virtual ~Exchange() = default;
    /// Sends that many requests at once and returns when all have been answered.
    virtual void perform(int requests) = 0;
};

/// The bytes of a request for persons and of its answer, as Kinlet sends them.
struct ExchangedBytes {
    explicit ExchangedBytes(int records);

    QByteArray request;
    QByteArray answer;
};

/// Through the manager to kinlet-runner.
std::unique_ptr<Exchange> makeKinletExchange(int records);
/// The same bytes, sent and answered by QtDBus alone.
std::unique_ptr<Exchange> makeQtExchange(int records);
/// That, with the records written by the one side and read by the other as QDataStream does it.
std::unique_ptr<Exchange> makeQtRecordsExchange(int records);
/// The same bytes, sent and answered by sd-bus.
std::unique_ptr<Exchange> makeSdBusExchange(int records);

/// The other ends; they return when the bus goes away.
int serveQt(int records);
int serveQtRecords(int records);
int serveSdBus(int records);
