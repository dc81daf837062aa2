// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <QString>

/// Decodes the character reference that begins with the ampersand at the position: the named ones
/// of HTML 4 and XML, and the numeric ones. Empty if there is none; else the length is set to that
/// of the reference.
QString decodeHtmlEntity(const QString &html, qsizetype position, qsizetype *length);

/// The text with every reference in it decoded.
QString decodeHtmlEntities(const QString &html);
