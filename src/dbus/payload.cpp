// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/payload.h"

#include "dbus/payloadguard.h"
#include "records/socialgenericdata.h"
#include "requests/socialdatarequest.h"

#include <QDataStream>
#include <QIODevice>

#include <new>

namespace {

template <typename Write>
QByteArray written(Write write)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    write(out);
    return bytes;
}

template <typename Guard, typename Read>
bool readAs(int version, const QByteArray &bytes, Guard safeBytes, Read read)
{
    const int safe = safeBytes(version);
    QDataStream in(QByteArray::fromRawData(bytes.constData(), safe));
    in.setVersion(version);
    read(in);
    return in.status() == QDataStream::Ok && in.atEnd() && safe == bytes.size();
}

template <typename Guard, typename Read, typename Drop>
bool readPayload(const QByteArray &bytes, Guard safeBytes, Read read, Drop drop)
{
    try {
        if (readAs(QDataStream::Qt_5_15, bytes, safeBytes, read)
            || readAs(QDataStream::Qt_4_8, bytes, safeBytes, read))
            return true;
        readAs(QDataStream::Qt_5_15, bytes, safeBytes, read);
    } catch (const std::bad_alloc &) {
        drop();
    }
    return false;
}

}

QByteArray Payload::write(SocialDataRequest &request)
{
    return written([&](QDataStream &out) { request.serialize(out); });
}

QByteArray Payload::write(const SocialGenericData &record)
{
    return written([&](QDataStream &out) { out << record; });
}

QByteArray Payload::write(const QList<KinletError> &errors)
{
    return written([&](QDataStream &out) { out << errors; });
}

bool Payload::read(const QByteArray &bytes, SocialDataRequest &request)
{
    return readPayload(
        bytes, [&](int version) { return safeRequestBytes(bytes, version, request.type()); },
        [&](QDataStream &in) { request.unserialize(in); }, [&] { request.setResults({}); });
}

bool Payload::read(const QByteArray &bytes, SocialGenericData &record)
{
    return readPayload(
        bytes, [&](int version) { return safeRecordBytes(bytes, version); },
        [&](QDataStream &in) { in >> record; }, [&] { record = SocialGenericData(); });
}
