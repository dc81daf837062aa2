// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QByteArray>
#include <QString>

/// Standard output. Nothing written is lost unnoticed: see flush().
class Output {
public:
    Output();

    /// Columns to wrap at: COLUMNS, or what the terminal says; 0 when there is no limit.
    int width() const { return columns; }

    void line(const QString &text = QString());
    /// As it is.
    void text(const QString &text);

    /// For names and titles; plain where colours are not wanted.
    QString strong(const QString &text) const;
    /// For what is read last; plain where colours are not wanted.
    QString faint(const QString &text) const;

    /// Hands over what was written so far. False if that failed, now or earlier.
    bool flush();
    /// Why flush() failed.
    QString errorText() const;

private:
    int columns = 0;
    bool colours = false;
    QByteArray pending;
    int error = 0;
};

/// Whether the file descriptor is a terminal that understands control sequences.
bool isTerminal(int descriptor);
/// The number of columns of the terminal, 0 if it is unknown.
int terminalWidth(int descriptor);
