// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "fuzzing.h"

#include "dbus/payload.h"
#include "dbus/payloadguard.h"

#include <QIODevice>

/*
 * The stream form of a record: one byte for the form of the stream, then the record.
 */

namespace {

struct Reading {
    QByteArray record;
    QDataStream::Status status;
    qint64 position;
};

QByteArray sorted(const QString &className, const QMap<QString, QVariant> &properties)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << className;
    writeSorted(out, QVariant(properties));
    return bytes;
}

QByteArray sorted(const SocialGenericData &record)
{
    return sorted(record.className(), record.properties());
}

Reading readByKinlet(const QByteArray &bytes, const StreamForm &form, SocialGenericData &record)
{
    QDataStream in(bytes);
    form.applyTo(in);
    in >> record;
    return {sorted(record), in.status(), in.device()->pos()};
}

// By Qt's own readers, which trust what they read.
Reading readByQt(const QByteArray &bytes, const StreamForm &form)
{
    QDataStream in(bytes);
    form.applyTo(in);
    QString className;
    QMap<QString, QVariant> properties;
    in >> className >> properties;
    return {sorted(className, properties), in.status(), in.device()->pos()};
}

}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const StreamForm form(data[0]);
    const QByteArray bytes = inputBytes(data + 1, size - 1);

    SocialGenericData record;
    readByKinlet(bytes, form, record);
    check(countValues({record}) <= bytes.size() + 1, "no more values than bytes");

    if (!form.isOfBus())
        return 0;
    Allowance allowance;
    const QByteArray safe = bytes.left(safeRecordBytes(bytes, form.version, allowance));
    SocialGenericData safeRecord;
    const Reading byKinlet = readByKinlet(safe, form, safeRecord);
    const Reading byQt = readByQt(safe, form);
    check(byKinlet.record == byQt.record, "what Qt's own readers store");
    check(byKinlet.status == byQt.status, "the status after Qt's own readers");
    check(byKinlet.position == byQt.position, "the place where Qt's own readers end");

    SocialGenericData again;
    check(Payload::read(Payload::write(safeRecord), again), "readable once written");
    check(sorted(again) == sorted(safeRecord), "the same once written and read");
    return 0;
}
