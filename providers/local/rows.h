// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/Media>
#include <Kinlet/SocialActivity>
#include <Kinlet/SocialNetworkPerson>

#include <QSqlQuery>
#include <QStringList>

/// What turns rows of the journal into records.
namespace Rows {

/// A query for persons without its conditions; the table is "p".
QString selectPersons();
SocialNetworkPerson person(const QSqlQuery &row);
/// A property as person() has it; invalid if the person does not have it. Takes less time.
QVariant personProperty(const QSqlQuery &row, const QString &key);
/// The column "change".
qint64 personChange(const QSqlQuery &row);
/// Every property that a person may have.
QStringList personProperties();

/// A query for activities without its conditions; the table is "a".
QString selectActivities();
SocialActivity activity(const QSqlQuery &row);
/// The column "change".
qint64 activityChange(const QSqlQuery &row);
/// The column "edited".
qint64 activityEdited(const QSqlQuery &row);
/// Every property that an activity may have.
QStringList activityProperties();
/// Those of them that change when others comment and like.
QStringList countedProperties();

/// Media as the column "media" holds them.
QString mediaText(const QList<Media> &media);

}
