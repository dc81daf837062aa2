// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QList>
#include <QStringList>

class Database;

/*
 * The form of the journal's file. Its application id says that it is one; its user version says
 * how many of the migrations have been applied.
 */

/// For each version the statements that make it out of the one before.
using Migrations = QList<QStringList>;

const Migrations &journalMigrations();

/**
 * Brings a new or older file to the newest version. Several processes may do so at once. Throws
 * StoreError, without any change, if the file is another program's, of a newer version or damaged.
 */
void prepareSchema(Database &database, const Migrations &migrations);
