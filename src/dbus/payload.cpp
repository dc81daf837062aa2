// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/payload.h"

#include "dbus/payloadguard.h"
#include "logging.h"
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

template <typename Guard, typename Read, typename Drop>
bool readPayload(const QByteArray &bytes, Allowance &allowance, Guard safeBytes, Read read,
                 Drop drop)
{
    const Allowance before = allowance;
    int safe = 0;
    qint64 end = 0;
    const auto readAs = [&](int version) {
        // Of several attempts only the last is kept, and counts.
        allowance = before;
        safe = safeBytes(version);
        QDataStream in(QByteArray::fromRawData(bytes.constData(), safe));
        in.setVersion(version);
        read(in);
        end = in.device()->pos();
        return in.status() == QDataStream::Ok && in.atEnd() && safe == bytes.size();
    };
    try {
        if (readAs(QDataStream::Qt_5_15) || readAs(QDataStream::Qt_4_8))
            return true;
        readAs(QDataStream::Qt_5_15);
        qCWarning(Log::dbus) << "A payload of" << bytes.size() << "bytes is bad from byte" << end
                             << "on;" << safe << "of them are safe";
    } catch (const std::bad_alloc &) {
        drop();
        qCWarning(Log::dbus) << "There is no memory for a payload of" << bytes.size() << "bytes";
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
    Allowance allowance;
    return readPayload(
        bytes, allowance,
        [&](int version) { return safeRequestBytes(bytes, version, request.type(), allowance); },
        [&](QDataStream &in) { request.unserialize(in); }, [&] { request.setResults({}); });
}

bool Payload::read(const QByteArray &bytes, SocialGenericData &record)
{
    Allowance allowance;
    return read(bytes, record, allowance);
}

bool Payload::read(const QByteArray &bytes, SocialGenericData &record, Allowance &allowance)
{
    return readPayload(
        bytes, allowance, [&](int version) { return safeRecordBytes(bytes, version, allowance); },
        [&](QDataStream &in) { in >> record; }, [&] { record = SocialGenericData(); });
}
