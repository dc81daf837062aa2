// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/socialgenericdata.h"
#include "records/valuetypes.h"

#include <benchmark/benchmark.h>

#include <QCborMap>
#include <QCborValue>
#include <QDataStream>
#include <QDateTime>
#include <QIODevice>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include <malloc.h>

/*
 * One record from its properties to bytes and back, in the form that goes over the bus, and what it
 * takes in memory.
 */

namespace {

const QString className = QStringLiteral("SocialNetworkPerson");

QVariant text(int i)
{
    return QStringLiteral("What a person writes here, %1").arg(i);
}

QVariant number(int i)
{
    return 1'000'000 + i;
}

QVariant time(int i)
{
    return QDateTime::fromSecsSinceEpoch(1'700'000'000 + 3600LL * i, Qt::UTC);
}

Media media(int i)
{
    return {Media::Image, QStringLiteral("https://example.org/pictures/%1.jpeg").arg(i),
            QStringLiteral("https://example.org/previews/%1.jpeg").arg(i),
            QStringLiteral("A lighthouse in the evening")};
}

QVariant customValue(int i)
{
    return QVariant::fromValue(media(i));
}

// CBOR and JSON cannot hold a type of one's own: they get its fields.
QVariant fields(int i)
{
    const Media value = media(i);
    return QVariantList{value.kind, value.firstText, value.secondText, value.thirdText};
}

QVariantMap properties(int count, QVariant (*value)(int))
{
    QVariantMap map;
    for (int i = 0; i < count; ++i)
        map.insert(QStringLiteral("PropertyName%1").arg(i), value(i));
    return map;
}

template <typename Write>
QByteArray written(Write write)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    write(out);
    return bytes;
}

struct Kinlet {
    using Held = SocialGenericData;

    static Held make(const QVariantMap &map)
    {
        Held record(className);
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            record.setProperty(it.key(), it.value());
        return record;
    }
    static QByteArray encode(const Held &record)
    {
        return written([&](QDataStream &out) { out << record; });
    }
    static Held decode(const QByteArray &bytes)
    {
        QDataStream in(bytes);
        in.setVersion(QDataStream::Qt_5_15);
        Held record;
        in >> record;
        return record;
    }
};

struct Operators {
    using Held = QVariantMap;

    static Held make(const QVariantMap &map) { return map; }
    static QByteArray encode(const Held &map)
    {
        return written([&](QDataStream &out) { out << className << map; });
    }
    static Held decode(const QByteArray &bytes)
    {
        QDataStream in(bytes);
        in.setVersion(QDataStream::Qt_5_15);
        QString name;
        QVariantMap map;
        in >> name >> map;
        return map;
    }
};

struct Cbor {
    using Held = QVariantMap;

    static Held make(const QVariantMap &map) { return map; }
    static QByteArray encode(const Held &map)
    {
        return QCborValue(QCborMap::fromVariantMap(map)).toCbor();
    }
    static Held decode(const QByteArray &bytes)
    {
        return QCborValue::fromCbor(bytes).toMap().toVariantMap();
    }
};

// Times come back as texts.
struct Json {
    using Held = QVariantMap;

    static Held make(const QVariantMap &map) { return map; }
    static QByteArray encode(const Held &map)
    {
        return QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Compact);
    }
    static Held decode(const QByteArray &bytes)
    {
        return QJsonDocument::fromJson(bytes).object().toVariantMap();
    }
};

struct Memcpy {
    using Held = QByteArray;

    static Held make(const QVariantMap &map) { return Operators::encode(map); }
    static QByteArray encode(const Held &bytes)
    {
        QByteArray copy(bytes.size(), Qt::Uninitialized);
        std::memcpy(copy.data(), bytes.constData(), size_t(bytes.size()));
        return copy;
    }
    static Held decode(const QByteArray &bytes) { return encode(bytes); }
};

// Bytes of memory for each of many that were read.
template <typename Read>
double bytesHeld(const QByteArray &bytes, Read read)
{
    constexpr size_t count = 1000;
    std::vector<decltype(read(bytes))> held;
    held.reserve(count);
    const size_t before = mallinfo2().uordblks;
    for (size_t i = 0; i < count; ++i)
        held.push_back(read(bytes));
    const size_t after = mallinfo2().uordblks;
    return double(after - before) / count + sizeof(held[0]);
}

template <typename Contender>
void encode(benchmark::State &state, const QVariantMap &map)
{
    const auto held = Contender::make(map);
    for (auto _ : state) {
        const QByteArray bytes = Contender::encode(held);
        benchmark::DoNotOptimize(bytes.constData());
    }
}

template <typename Contender>
void decode(benchmark::State &state, const QVariantMap &map, bool countsMemory)
{
    const QByteArray bytes = Contender::encode(Contender::make(map));
    for (auto _ : state) {
        const auto held = Contender::decode(bytes);
        benchmark::DoNotOptimize(&held);
    }
    if (countsMemory)
        state.counters["bytes held"] = bytesHeld(bytes, Contender::decode);
    if constexpr (std::is_same_v<Contender, Kinlet>)
        state.counters["of them in its map"] = bytesHeld(
            bytes, [](const QByteArray &bytes) { return Contender::decode(bytes).properties(); });
}

template <typename Contender>
void add(const std::string &what, const char *contender, const QVariantMap &map,
         bool countsMemory = false)
{
    benchmark::RegisterBenchmark(("encode " + what + '/' + contender).c_str(),
                                 [map](benchmark::State &state) { encode<Contender>(state, map); });
    benchmark::RegisterBenchmark(
        ("decode " + what + '/' + contender).c_str(),
        [=](benchmark::State &state) { decode<Contender>(state, map, countsMemory); });
}

}

int main(int argc, char **argv)
{
    KinletInitializer::init();
    const struct {
        const char *name;
        QVariant (*value)(int);
        QVariant (*plainValue)(int);
    } kinds[] = {{"texts", text, text},
                 {"numbers", number, number},
                 {"times", time, time},
                 {"media", customValue, fields}};
    for (const int count : {10, 50}) {
        for (const auto &kind : kinds) {
            const std::string what = std::to_string(count) + ' ' + kind.name;
            const QVariantMap map = properties(count, kind.value);
            const QVariantMap plainMap = properties(count, kind.plainValue);
            add<Kinlet>(what, "kinlet", map, true);
            add<Operators>(what, "Qt's operators", map, true);
            add<Cbor>(what, "QCborValue", plainMap);
            add<Json>(what, "QJsonDocument", plainMap);
            add<Memcpy>(what, "memcpy", map);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
