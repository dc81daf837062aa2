// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "commands.h"
#include "names.h"

/// Prints records as JSON if that is wanted; false if it is not.
bool printJson(Context &context, const QList<Entry> &entries);

/// Prints persons in order of their names.
void printPersons(Context &context, QList<Entry> persons);

/// Sorts activities from the newest to the oldest; those without a time come last.
void sortNewestFirst(QList<Entry> &activities);

/// Prints an activity with a blank line after it.
void printActivity(Context &context, const Names &names, const Entry &activity);

/// Cuts the list to the limit of the command line, or to \a usual if there is none; 0 is no limit.
void cut(QList<Entry> &entries, const CommandLine &line, int usual);

/// Reports the errors of all answers.
void reportErrors(Context &context, const QList<Answer> &answers);
