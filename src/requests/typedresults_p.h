// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "records/socialgenericdata.h"

#include <QList>

/// Every record of \a results seen as a \a Typed, in the same order.
template <typename Typed>
QList<Typed> typedResults(const QList<SocialGenericData> &results)
{
    QList<Typed> list;
    list.reserve(results.size());
    for (const SocialGenericData &record : results)
        list.append(Typed(record));
    return list;
}

/// The records of \a typed as plain records, in the same order, sharing their data.
template <typename Typed>
QList<SocialGenericData> plainResults(const QList<Typed> &typed)
{
    QList<SocialGenericData> list;
    list.reserve(typed.size());
    for (const Typed &record : typed)
        list.append(record);
    return list;
}
