// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "table.h"

#include "output.h"
#include "text.h"

#include <algorithm>

namespace {

constexpr int Gap = 2;
constexpr int Narrowest = 6;

void printRow(Output &out, const QStringList &cells, const QList<int> &widths, bool title)
{
    const int last = int(cells.size()) - 1;
    QList<QStringList> lines;
    int height = 1;
    for (int i = 0; i <= last; ++i) {
        lines.append(i == last ? QStringList(cells[i]) : wrapped(cells[i], widths[i]));
        height = std::max(height, int(lines[i].size()));
    }
    for (int row = 0; row < height; ++row) {
        QString text;
        int missing = 0;
        for (int i = 0; i <= last; ++i) {
            const QString part = lines[i].value(row);
            if (!part.isEmpty()) {
                text += QString(missing, QLatin1Char(' '));
                text += title   ? out.strong(part)
                    : i == last ? out.faint(isolated(part))
                                : isolated(part);
                missing = 0;
            }
            missing += widths[i] - displayWidth(part) + Gap;
        }
        out.line(text);
    }
}

}

Table::Table(const QStringList &titles) : titles(titles) { }

void Table::addRow(const QStringList &cells)
{
    QStringList row;
    for (const QString &cell : cells)
        row.append(oneLine(cell));
    rows.append(row);
}

QList<int> Table::columnWidths(int limit) const
{
    QList<int> widths;
    for (int i = 0; i < titles.size(); ++i) {
        int width = displayWidth(titles[i]);
        for (const QStringList &row : rows)
            width = std::max(width, displayWidth(row[i]));
        widths.append(width);
    }
    const auto total = [&] {
        int sum = Gap * (int(widths.size()) - 1);
        for (const int width : widths)
            sum += width;
        return sum;
    };
    const auto wrappable = widths.end() - 1;
    while (limit > 0 && total() > limit) {
        const auto widest = std::max_element(widths.begin(), wrappable);
        if (widest == wrappable || *widest <= Narrowest)
            break;
        --*widest;
    }
    return widths;
}

void Table::print(Output &out) const
{
    const QList<int> widths = columnWidths(out.width());
    printRow(out, titles, widths, true);
    for (const QStringList &row : rows)
        printRow(out, row, widths, false);
}
