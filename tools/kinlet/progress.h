// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QElapsedTimer>
#include <QStringList>
#include <QTimer>

#include <functional>

/// A line on standard error that says what is being waited for, from the second second on. Only on
/// a terminal. It is gone when the object is.
class Progress {
public:
    explicit Progress(std::function<QString()> text);
    ~Progress();

private:
    void show();

    const std::function<QString()> text;
    QElapsedTimer elapsed;
    QTimer timer;
    bool shown = false;
};
