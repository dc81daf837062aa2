// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QDebug>
#include <QString>
#include <QStringList>

/// Collects the critical messages of its life-time instead of printing them; others go on.
class MessageLog {
public:
    MessageLog()
    {
        texts.clear();
        before = qInstallMessageHandler(&MessageLog::handle);
    }
    ~MessageLog() { qInstallMessageHandler(before); }
    MessageLog(const MessageLog &) = delete;
    MessageLog &operator=(const MessageLog &) = delete;

    QStringList critical() const { return texts; }

    /// As a debug stream writes it.
    static QString quoted(const QString &text)
    {
        QString result;
        QDebug(&result).nospace() << text;
        return result;
    }

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type == QtCriticalMsg)
            texts.append(text);
        else
            before(type, context, text);
    }

    static inline QStringList texts;
    static inline QtMessageHandler before = nullptr;
};
