// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QStringList>

class Output;

/// Rows of cells, printed in aligned columns with a title above each. Cells that are too wide for
/// the output are wrapped, except those of the last column: it is for ids, which people copy.
class Table {
public:
    explicit Table(const QStringList &titles);

    /// Takes texts of providers as they are.
    void addRow(const QStringList &cells);
    bool isEmpty() const { return rows.isEmpty(); }
    void print(Output &out) const;

private:
    QList<int> columnWidths(int limit) const;

    QStringList titles;
    QList<QStringList> rows;
};
