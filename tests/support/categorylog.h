// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QLoggingCategory>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <initializer_list>
#include <utility>

/// Collects what the categories kinlet.* say during its life-time, as far as the rules let them;
/// other messages go on.
class CategoryLog {
public:
    explicit CategoryLog(const char *rules = "kinlet.*=true")
    {
        taken.clear();
        QLoggingCategory::setFilterRules(QString::fromLatin1(rules));
        before = qInstallMessageHandler(&CategoryLog::handle);
    }
    ~CategoryLog()
    {
        qInstallMessageHandler(before);
        QLoggingCategory::setFilterRules(QString());
    }
    CategoryLog(const CategoryLog &) = delete;
    CategoryLog &operator=(const CategoryLog &) = delete;

    /// What was said since the last call: category and level as in rules, then the text, in which
    /// every address is "0x".
    static QStringList take() { return std::exchange(taken, {}); }

    /// Whether one of the lines is this one.
    static bool has(const char *line) { return taken.contains(QString::fromLatin1(line)); }

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        const auto category = QString::fromLatin1(context.category);
        if (!category.startsWith(QLatin1String("kinlet."))) {
            before(type, context, text);
            return;
        }
        static const QRegularExpression address(QStringLiteral("0x[0-9a-f]+"));
        taken.append(category + QLatin1String(levelOf(type)) + QLatin1String(": ")
                     + QString(text).replace(address, QStringLiteral("0x")));
    }

    static const char *levelOf(QtMsgType type)
    {
        switch (type) {
        case QtDebugMsg:
            return ".debug";
        case QtInfoMsg:
            return ".info";
        case QtWarningMsg:
            return ".warning";
        default:
            return ".critical";
        }
    }

    static inline QStringList taken;
    static inline QtMessageHandler before = nullptr;
};

/// Lines as a test writes them.
inline QStringList lines(std::initializer_list<const char *> texts)
{
    QStringList result;
    for (const char *text : texts)
        result.append(QString::fromLatin1(text));
    return result;
}
