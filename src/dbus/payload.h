// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "requests/kinleterror.h"

#include <QByteArray>
#include <QList>

struct Allowance;
class SocialDataRequest;
class SocialGenericData;

/**
 * The byte arrays that requests and records become on the bus. Nothing else knows their version.
 *
 * Written big-endian with QDataStream::Qt_5_15 by every Qt. Read with that version first; a payload
 * that does not end cleanly so (status Ok, all bytes used) is read once more with Qt_4_8, for peers
 * on older streams; if that does not end cleanly either, the result of the first reading stands.
 *
 * Bytes from the bus are hostile: they are examined before Qt reads them (dbus/payloadguard.h), and
 * a payload is read as if it ended where it becomes unsafe. A failed allocation drops what had been
 * read.
 */
namespace Payload {

QByteArray write(SocialDataRequest &request);
QByteArray write(const SocialGenericData &record);
QByteArray write(const QList<KinletError> &errors);

/// Reads into \a request, as its unserialize() does. False if the payload did not end cleanly.
bool read(const QByteArray &bytes, SocialDataRequest &request);
/// Reads into \a record. False if the payload did not end cleanly.
bool read(const QByteArray &bytes, SocialGenericData &record);
/// The same for one of several payloads that came in one message and share \a allowance.
bool read(const QByteArray &bytes, SocialGenericData &record, Allowance &allowance);

}
