// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "fuzzing.h"

#include "records/valuetypes.h"
#include "requests/kinleterror.h"

#include <QIODevice>

/*
 * The stream form of one value of the type FUZZ_VALUE: one byte for the form of the stream, then
 * the value.
 */

namespace {

QByteArray written(const FUZZ_VALUE &value, const StreamForm &form)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    form.applyTo(out);
    out << value;
    return bytes;
}

template <typename T>
[[maybe_unused]] int elements(const T &)
{
    return 0;
}

[[maybe_unused]] int elements(const SocialActivityAttachment &attachment)
{
    return int(attachment.media.size());
}

}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const StreamForm form(data[0]);
    const QByteArray bytes = inputBytes(data + 1, size - 1);
    QDataStream in(bytes);
    form.applyTo(in);
    FUZZ_VALUE value;
    in >> value;
    check(elements(value) <= bytes.size(), "no more elements than bytes");

    const QByteArray once = written(value, form);
    QDataStream inAgain(once);
    form.applyTo(inAgain);
    FUZZ_VALUE again;
    inAgain >> again;
    check(inAgain.status() == QDataStream::Ok && inAgain.atEnd(), "readable once written");
    check(written(again, form) == once, "the same once written and read");
    return 0;
}
