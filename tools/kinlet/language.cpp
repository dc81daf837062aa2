// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "language.h"

#include <QTranslator>

#include <clocale>

namespace {

// What Qt says of itself on reading a command line; it is translated with the rest.
[[maybe_unused]] constexpr const char *textsOfQt[] = {
    QT_TRANSLATE_NOOP("QCommandLineParser", "Arguments:"),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Displays help including Qt specific options."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Displays help on commandline options."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Displays version information."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Missing value after '%1'."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Options:"),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Unexpected value after '%1'."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Unknown option '%1'."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Unknown options: %1."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Usage: %1"),
    QT_TRANSLATE_NOOP("QCommandLineParser", "[options]"),
};

QString spoken;

}

QStringList wantedLanguages()
{
    QByteArray locale;
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (locale.isEmpty())
            locale = qgetenv(variable);
    }
    QByteArray languages = qgetenv("LANGUAGE");
    // Who asks for this locale wants what programs say without any, whatever else is set.
    if (languages.isEmpty() || locale == "C" || locale == "POSIX")
        languages = locale;
    // So that "de_AT.UTF-8@euro" can be shortened part by part.
    languages.replace('.', '_').replace('@', '_');
    return QString::fromLatin1(languages).split(QLatin1Char(':'), Qt::SkipEmptyParts);
}

void speak(const QStringList &languages)
{
    static const QStringList english{QStringLiteral("en"), QStringLiteral("C"),
                                     QStringLiteral("POSIX")};
    static QTranslator translator;
    QCoreApplication::removeTranslator(&translator);
    spoken.clear();
    // The system's own messages, which stand inside those of the tools.
    std::setlocale(LC_MESSAGES, "C");
    for (const QString &language : languages) {
        if (english.contains(language.section(QLatin1Char('_'), 0, 0)))
            return;
        if (translator.load(QStringLiteral("kinlet_") + language,
                            QStringLiteral(":/translations"))) {
            QCoreApplication::installTranslator(&translator);
            std::setlocale(LC_MESSAGES, "");
            spoken = language;
            return;
        }
    }
}

QString spokenLanguage()
{
    return spoken;
}
