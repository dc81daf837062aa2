// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/Media>

#include <QJsonObject>
#include <QList>
#include <QString>

/// What a post says: its title, its content warning and its content, as far as it has them, with a
/// blank line between. The options of a question follow.
QString postText(const QJsonObject &post);

/// What is attached to a post, and the thing itself if the post is a picture or the like.
QList<Media> postMedia(const QJsonObject &post);

/// The URL if it leads to the web or is relative to the document (as in archives that hold the
/// files too), else empty.
QString usableUrl(const QString &url);
