// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QObject>

class QSocketNotifier;

/// Ctrl-C and a request to terminate, brought into the event loop. A second one ends the process at
/// once: a provider may block the loop.
class Interrupt : public QObject {
    Q_OBJECT

public:
    /// There can be only one.
    explicit Interrupt(QObject *parent = nullptr);

    /// Also before the event loop has heard of it.
    bool happened() const;

    /// Waits until the descriptor has something to read, or its end. False if interrupted first.
    bool waitToRead(int descriptor) const;

Q_SIGNALS:
    void occurred();

private:
    void onSignal();

    QSocketNotifier *notifier = nullptr;
};
