// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requestfields.h"

#include "dbus/payload.h"
#include "dbus/payloadguard.h"
#include "requestkinds.h"

#include <Kinlet/SocialDataRequest>

#include <QIODevice>

/*
 * The stream form of a request of the kind FUZZ_KIND: one byte for the form of the stream, then the
 * request.
 */

namespace {

constexpr int Kind = SocialDataRequest::FUZZ_KIND;
// QRegExp compiles any pattern while it is read, for hours if it must, and Qt 5 trusts times.
constexpr bool onlySafeBytes = Kind == SocialDataRequest::GetPersons
    || Kind == SocialDataRequest::GetLikers
    || (QT_VERSION < QT_VERSION_CHECK(6, 0, 0) && Kind == SocialDataRequest::GetActivities);

// By Kinlet; compared with Qt's own readers if the bytes are safe for them. So are those that
// Kinlet reads to their end without an error: all that they claim to hold is there.
Request read(const QByteArray &bytes, const StreamForm &form, bool isSafe)
{
    Request request(makeRequest(Kind));
    QDataStream in(bytes);
    form.applyTo(in);
    request->unserialize(in);
    checkRequest(*request, Kind, bytes.size());

    const bool isClean = in.status() == QDataStream::Ok && in.atEnd();
    if (!isClean && !(isSafe && isCompared(bytes, in.status())))
        return request;
    const Reading byQt = readByQt(bytes, Kind, form);
    check(fieldsOf(*request) == byQt.fields, "what Qt's own readers store");
    check(in.status() == byQt.status, "the status after Qt's own readers");
    check(in.device()->pos() == byQt.position, "the place where Qt's own readers end");
    return request;
}

}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const StreamForm form(onlySafeBytes ? data[0] % 2 : data[0]);
    const QByteArray bytes = inputBytes(data + 1, size - 1);
    const bool isReadAnyway = !onlySafeBytes && canBeRead(bytes);
    if (!form.isOfBus()) {
        if (isReadAnyway)
            read(bytes, form, false);
        return 0;
    }
    Allowance allowance;
    const QByteArray safe = bytes.left(safeRequestBytes(bytes, form.version, Kind, allowance));
    if (safe.size() < bytes.size() && isReadAnyway)
        read(bytes, form, false);
    const Request request = read(safe, form, true);

    const Request again(makeRequest(Kind));
    check(Payload::read(Payload::write(*request), *again), "readable once written");
    check(fieldsOf(*again) == fieldsOf(*request), "the same once written and read");
    return 0;
}
