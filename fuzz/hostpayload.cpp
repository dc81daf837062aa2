// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requestfields.h"

#include "dbus/payload.h"
#include "requestkinds.h"

#include <Kinlet/SocialDataRequest>

/*
 * What an application sends, as the runner host reads it and writes it again: one byte for the
 * kind, then the request.
 */

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes = inputBytes(data + 1, size - 1);
    const int kind = data[0];
    const Request job(makeRequest(kind));
    if (!job)
        return 0;
    // Otherwise the caller is refused.
    if (!Payload::read(bytes, *job))
        return 0;
    checkRequest(*job, kind, bytes.size());

    job->setRequestProgress(SocialDataRequest::Finished, {});
    const Request answered(makeRequest(kind));
    check(Payload::read(Payload::write(*job), *answered), "readable once written");
    check(fieldsOf(*answered) == fieldsOf(*job), "the same once written and read");
    check(answered->isFinished(), "finished once written and read");
    return 0;
}
