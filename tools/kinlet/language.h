// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QCoreApplication>
#include <QStringList>

/// Tool::tr() gives a text of the tools in the language that is spoken: English, until speak()
/// finds another. English needs no translation, so a text with a number has a singular of its own
/// beside the one with %n.
class Tool {
    Q_DECLARE_TR_FUNCTIONS(Tool)
};

/// The languages that the environment asks for, as the names of locales, the best one first.
QStringList wantedLanguages();

/// Speaks the first of these languages that the tools know, or else English.
void speak(const QStringList &languages);

/// What speak() has found; empty for English.
QString spokenLanguage();
