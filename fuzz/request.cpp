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
// QRegExp compiles any pattern while it is read, for hours if it must.
constexpr bool hasPatterns =
    Kind == SocialDataRequest::GetPersons || Kind == SocialDataRequest::GetLikers;

}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const StreamForm form(data[0]);
    const QByteArray bytes = inputBytes(data + 1, size - 1);

    if (!hasPatterns) {
        const Request request(makeRequest(Kind));
        QDataStream in(bytes);
        form.applyTo(in);
        request->unserialize(in);
        checkRequest(*request, Kind, bytes.size());
    }
    if (!form.isOfBus())
        return 0;
    Allowance allowance;
    const QByteArray safe = bytes.left(safeRequestBytes(bytes, form.version, Kind, allowance));
    const Request request(makeRequest(Kind));
    QDataStream in(safe);
    form.applyTo(in);
    request->unserialize(in);
    checkRequest(*request, Kind, safe.size());
    const Reading byQt = readByQt(safe, Kind, form);
    const QByteArray fields = fieldsOf(*request);
    check(fields == byQt.fields, "what Qt's own readers store");
    check(in.status() == byQt.status, "the status after Qt's own readers");
    check(in.device()->pos() == byQt.position, "the place where Qt's own readers end");

    const Request again(makeRequest(Kind));
    check(Payload::read(Payload::write(*request), *again), "readable once written");
    check(fieldsOf(*again) == fields, "the same once written and read");
    return 0;
}
