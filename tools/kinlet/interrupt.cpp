// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "interrupt.h"

#include <QSocketNotifier>

#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

int signalPipe[2] = {-1, -1};
volatile std::sig_atomic_t interrupted = 0;

extern "C" void passOn(int)
{
    interrupted = 1;
    const char byte = 0;
    const ssize_t written = ::write(signalPipe[1], &byte, 1);
    // Nothing can be done about a full pipe here, and one byte is enough.
    static_cast<void>(written);
}

}

Interrupt::Interrupt(QObject *parent) : QObject(parent)
{
    if (::pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        qFatal("No pipe for signals");
    notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &Interrupt::onSignal);

    struct sigaction action = {};
    action.sa_handler = passOn;
    action.sa_flags = int(SA_RESTART | SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

void Interrupt::onSignal()
{
    notifier->setEnabled(false);
    Q_EMIT occurred();
}

bool Interrupt::happened() const
{
    return interrupted != 0;
}

bool Interrupt::waitToRead(int descriptor) const
{
    pollfd watched[] = {{descriptor, POLLIN, 0}, {signalPipe[0], POLLIN, 0}};
    while (!happened() && watched[0].revents == 0)
        ::poll(watched, 2, -1);
    return !happened();
}
