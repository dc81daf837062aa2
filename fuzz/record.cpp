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

// By Kinlet; compared with Qt's own readers if the bytes are safe for them. So are those that
// Kinlet reads to their end without an error: all that they claim to hold is there.
SocialGenericData read(const QByteArray &bytes, const StreamForm &form, bool isSafe)
{
    QDataStream in(bytes);
    form.applyTo(in);
    SocialGenericData record;
    in >> record;
    check(countValues({record}) <= bytes.size() + 1, "no more values than bytes");

    const bool isClean = in.status() == QDataStream::Ok && in.atEnd();
    if (!isClean && !(isSafe && isCompared(bytes, in.status())))
        return record;
    const Reading byQt = readByQt(bytes, form);
    check(sorted(record) == byQt.record, "what Qt's own readers store");
    check(in.status() == byQt.status, "the status after Qt's own readers");
    check(in.device()->pos() == byQt.position, "the place where Qt's own readers end");
    return record;
}

}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const StreamForm form(data[0]);
    const QByteArray bytes = inputBytes(data + 1, size - 1);
    if (!form.isOfBus()) {
        if (canBeRead(bytes))
            read(bytes, form, false);
        return 0;
    }
    Allowance allowance;
    const QByteArray safe = bytes.left(safeRecordBytes(bytes, form.version, allowance));
    if (safe.size() < bytes.size() && canBeRead(bytes))
        read(bytes, form, false);
    const SocialGenericData record = read(safe, form, true);
    // Nothing is left of properties that are cut short.
    if (record.properties().isEmpty())
        return 0;
    SocialGenericData again;
    check(Payload::read(Payload::write(record), again), "readable once written");
    check(sorted(again) == sorted(record), "the same once written and read");
    return 0;
}
