// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "nearest.h"

#include "language.h"

#include <QVector>

#include <algorithm>

namespace {

// Inserting, removing, replacing a letter and swapping two neighbours cost one each.
int distance(const QString &a, const QString &b)
{
    const int rows = int(a.size()) + 1;
    const int columns = int(b.size()) + 1;
    QVector<QVector<int>> cost(rows, QVector<int>(columns));
    for (int i = 0; i < rows; ++i)
        cost[i][0] = i;
    for (int j = 0; j < columns; ++j)
        cost[0][j] = j;
    for (int i = 1; i < rows; ++i) {
        for (int j = 1; j < columns; ++j) {
            const int replaced = cost[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            cost[i][j] = std::min({replaced, cost[i - 1][j] + 1, cost[i][j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
        }
    }
    return cost[rows - 1][columns - 1];
}

}

QString nearest(const QString &wrong, const QStringList &right)
{
    // Nobody types a name that long, and the table above would grow with it.
    if (wrong.size() > 200)
        return QString();
    const QString typed = wrong.toLower();
    QString best;
    int least = std::max(2, int(wrong.size()) / 3) + 1;
    for (const QString &candidate : right) {
        const QString lower = candidate.toLower();
        const bool begun = typed.size() > 1 && lower.startsWith(typed);
        const int steps = begun ? 1 : distance(typed, lower.left(300));
        if (steps < least && steps < candidate.size()) {
            least = steps;
            best = candidate;
        }
    }
    return best;
}

QString didYouMean(const QString &wrong, const QStringList &right, const QString &otherwise)
{
    const QString meant = nearest(wrong, right);
    return meant.isNull() ? otherwise : Tool::tr("; did you mean \"%1\"?").arg(meant);
}
