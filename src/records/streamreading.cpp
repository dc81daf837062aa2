// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/streamreading_p.h"

#include "records/plainreading_p.h"

#include <QHash>
#include <QIODevice>
#include <QMultiHash>
#include <QMultiMap>
#include <QPair>
#include <QStringList>
#include <QtEndian>

#include <limits>

namespace {

// Far more than people nest, and far less than the stack holds.
constexpr int DeepestNesting = 500;

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
// Qt 5 keeps every value of a repeated key, Qt 6 the last one.
using ValueMap = QMultiMap<QString, QVariant>;
using ValueHash = QMultiHash<QString, QVariant>;
// Qt 5 has no type for pairs of values and trusts no length of bits.
constexpr int VariantPair = -1;
constexpr int LongBitArrays = QDataStream::Qt_DefaultCompiledVersion + 1;

int typeNamed(const char *name)
{
    return QMetaType::type(name);
}
#else
using ValueMap = QVariantMap;
using ValueHash = QVariantHash;
constexpr int VariantPair = QMetaType::QVariantPair;
// Since this version lengths of bit arrays have 64 bits, and Qt reads to nowhere when their bytes
// overflow.
constexpr int LongBitArrays = QDataStream::Qt_6_0;

int typeNamed(const char *name)
{
    return QMetaType::fromName(name).id();
}
#endif

// Counts the levels of values inside values, those inside an application's own types included.
class Nesting {
public:
    Nesting() { ++depth; }
    ~Nesting() { --depth; }
    Q_DISABLE_COPY(Nesting)

    bool isTooDeep() const { return depth > DeepestNesting; }
    static bool leavesRoom() { return depth < DeepestNesting; }

private:
    static thread_local int depth;
};

thread_local int Nesting::depth = 0;

// Starts with the same settings as another stream.
class StreamOf : public QDataStream {
public:
    StreamOf(const QByteArray &bytes, const QDataStream &other) : QDataStream(bytes)
    {
        setByteOrder(other.byteOrder());
        setVersion(other.version());
    }
};

void readVariant(QDataStream &in, QVariant &value);

// Kinlet writes maps from the last key to the first.
void insert(ValueMap &map, const QString &key, const QVariant &value)
{
    map.insert(map.cbegin(), key, value);
}

void insert(ValueHash &hash, const QString &key, const QVariant &value)
{
    hash.insert(key, value);
}

template <typename Map>
void readMap(QDataStream &in, Map &map)
{
    const QtPrivate::StreamStateSaver earlierError(&in);
    map.clear();
    quint32 count = 0;
    in >> count;
    PlainReader plain(in);
    const bool leavesRoom = Nesting::leavesRoom();
    for (quint32 i = 0; i < count; ++i) {
        QString key;
        QVariant value;
        if (!leavesRoom || !plain.readProperty(key, value)) {
            plain.end();
            readElement(in, key);
            readVariant(in, value);
            plain.begin();
        }
        if (in.status() != QDataStream::Ok) {
            map.clear();
            return;
        }
        insert(map, key, value);
    }
    plain.end();
}

/// What stands before the contents of a value.
struct Header {
    /// The type as Qt numbers it today; 0 when the stream is too short for a container.
    int type = 0;
    /// Bytes of the type, of the flag of a null value, and of a type that is told by its name.
    int size = 0;
    /// Whether it is surely a value of a user's type that is not null.
    bool isUserValue = false;
};

constexpr quint32 UserTypeInQt4 = 127;
constexpr quint32 UserTypeInQt5 = 1024;
constexpr quint32 UserTypeInQt6 = 65536;

quint32 userTypeIn(int version)
{
    if (version < QDataStream::Qt_5_0)
        return UserTypeInQt4;
    return version <= QDataStream::Qt_5_15 ? UserTypeInQt5 : UserTypeInQt6;
}

quint32 numberAt(const QDataStream &in, const char *bytes)
{
    return in.byteOrder() == QDataStream::BigEndian ? qFromBigEndian<quint32>(bytes)
                                                    : qFromLittleEndian<quint32>(bytes);
}

// Whether the text or the array of bytes at this offset claims to be longer than all that is left.
// Qt takes two megabytes of memory before it finds out.
bool isOversized(QDataStream &in, int offset, quint32 unit)
{
    QIODevice *device = in.device();
    if (!device || device->isSequential())
        return false;
    const QByteArray start = device->peek(offset + 4);
    if (start.size() < offset + 4)
        return false;
    const quint32 size = numberAt(in, start.constData() + offset);
    // The two highest sizes have a meaning of their own, the second one since Qt 6.7.
    return size < 0xfffffffe && size % unit == 0
        && size > quint64(device->bytesAvailable() - offset - 4);
}

void failAtEnd(QDataStream &in)
{
    in.skipRawData(int(in.device()->bytesAvailable()));
    in.setStatus(QDataStream::ReadPastEnd);
}

template <typename T>
void readUnlessOversized(QDataStream &in, T &text, quint32 unit)
{
    if (isOversized(in, 0, unit)) {
        text.clear();
        failAtEnd(in);
    } else {
        in >> text;
    }
}

// Type and flag of a null value.
constexpr int PlainSize = 5;

Header peekHeader(QDataStream &in)
{
    constexpr int NameOffset = PlainSize + 4;
    char start[NameOffset];
    if (in.version() < QDataStream::Qt_4_2 || in.device()->peek(start, NameOffset) != NameOffset)
        return {};
    const quint32 type = numberAt(in, start);
    if (type == UserTypeInQt4 || type == UserTypeInQt5 || type == UserTypeInQt6) {
        const quint32 length = numberAt(in, start + PlainSize);
        if (length > in.device()->bytesAvailable())
            return {};
        const QByteArray name = in.device()->peek(NameOffset + length).mid(NameOffset);
        const int named = typeNamed(name.constData());
        const bool isNull = start[PlainSize - 1] != 0;
        const bool isUserType = named >= QMetaType::User && type == userTypeIn(in.version());
        return {named, NameOffset + int(length), isUserType && !isNull};
    }
    const bool isMoved = in.version() < QDataStream::Qt_5_0 && type >= 128;
    return {int(isMoved ? type - 97 : type), PlainSize};
}

bool isOverflowingBitArray(QDataStream &in, const Header &header)
{
    if (header.type != QMetaType::QBitArray || in.version() < LongBitArrays)
        return false;
    StreamOf stream(in.device()->peek(header.size + 8), in);
    stream.skipRawData(header.size);
    qint64 bits = 0;
    stream >> bits;
    return bits < 0 || bits > std::numeric_limits<qint64>::max() - 7;
}

// Easing curves end with two lists that Qt reserves memory for. That nobody keeps them in a record
// does not keep a stream from holding them.
bool isOversizedCurve(QDataStream &in, const Header &header)
{
    if (header.type != QMetaType::QEasingCurve || in.version() <= QDataStream::Qt_5_12)
        return false;
    const int number = in.floatingPointPrecision() == QDataStream::SinglePrecision ? 4 : 8;
    const int settings = header.size + 1 + 8; // after type and function
    qint64 end = settings + 1 + 3 * number;
    for (const int pointSize : {2 * number, 5 * number}) {
        // No more than the curve: a stream of many would be copied for each.
        StreamOf stream(in.device()->peek(end + 4), in);
        bool hasSettings = false;
        quint32 count = 0;
        stream.skipRawData(settings);
        stream >> hasSettings;
        stream.skipRawData(int(end) - settings - 1);
        stream >> count;
        end += 4 + qint64(count) * pointSize;
        if (end > in.device()->bytesAvailable())
            return hasSettings;
    }
    return false;
}

// Whether it is none in streams of Qt 4, which have a text without meaning after those. A type told
// by a name that nobody knows is an error instead.
bool isNoValue(const QDataStream &in, const Header &header)
{
    // In older streams, and in those of applications with a window, these numbers mean others.
    constexpr int FirstUnusedType = 256;
    const bool isUnknown = header.type < 0
        || (header.type >= FirstUnusedType && !QMetaType::isRegistered(header.type));
    return in.version() < QDataStream::Qt_5_0 && header.size == PlainSize
        && (header.type == QMetaType::UnknownType || isUnknown);
}

bool isOversizedText(QDataStream &in, const Header &header)
{
    if (isNoValue(in, header))
        return isOversized(in, header.size, 2);
    switch (header.type) {
    case QMetaType::QString:
        return isOversized(in, header.size, 2);
    case QMetaType::QByteArray:
    case QMetaType::QUrl:
        return isOversized(in, header.size, 1);
    default:
        return false;
    }
}

template <typename Container, typename Read>
void readContents(QDataStream &in, const Header &header, QVariant &value, Read read)
{
    // Qt makes the empty container: it alone can set the flag of a null value, and it knows which
    // numbers mean a named type in this version.
    const QByteArray noContents(16, '\0');
    StreamOf emptyOne(in.device()->peek(header.size) + noContents, in);
    emptyOne >> value;
    if (value.userType() != header.type) {
        in >> value;
        return;
    }
    in.skipRawData(header.size);
    Container contents;
    read(in, contents);
    // Not through data(), with which Qt 6 takes the flag back.
    *static_cast<Container *>(const_cast<void *>(value.constData())) = contents;
}

// As Qt does, which would read and look for the type's name once more.
void readUserValue(QDataStream &in, const Header &header, QVariant &value)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    value = QVariant(header.type, nullptr);
#else
    value = QVariant(QMetaType(header.type));
#endif
    // A type whose values cannot be made.
    if (!value.isValid()) {
        in >> value;
        return;
    }
    in.skipRawData(header.size);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    const bool isRead = QMetaType::load(in, header.type, value.data());
#else
    const bool isRead = value.metaType().load(in, value.data());
#endif
    if (!isRead)
        in.setStatus(QDataStream::ReadCorruptData);
}

void readVariant(QDataStream &in, QVariant &value)
{
    const Nesting nesting;
    const Header header = peekHeader(in);
    if (nesting.isTooDeep() || isOverflowingBitArray(in, header)) {
        in.setStatus(QDataStream::ReadCorruptData);
        return;
    }
    if (isOversizedCurve(in, header) || isOversizedText(in, header)) {
        failAtEnd(in);
        return;
    }
    switch (header.type) {
    case QMetaType::QVariantList:
        readContents<QVariantList>(in, header, value, [](QDataStream &stream, QVariantList &list) {
            readList(stream, list, readVariant);
        });
        break;
    case QMetaType::QVariantMap:
        readContents<QVariantMap>(in, header, value, readVariantMap);
        break;
    case QMetaType::QVariantHash:
        readContents<QVariantHash>(in, header, value, [](QDataStream &stream, QVariantHash &hash) {
            ValueHash values;
            readMap(stream, values);
            hash = values;
        });
        break;
    case QMetaType::QStringList:
        readContents<QStringList>(in, header, value, [](QDataStream &stream, QStringList &list) {
            readList(stream, list);
        });
        break;
    case QMetaType::QByteArrayList:
        readContents<QByteArrayList>(
            in, header, value,
            [](QDataStream &stream, QByteArrayList &list) { readList(stream, list); });
        break;
    case QMetaType::QVariant:
        readContents<QVariant>(in, header, value, readVariant);
        break;
    case VariantPair:
        readContents<QPair<QVariant, QVariant>>(
            in, header, value, [](QDataStream &stream, QPair<QVariant, QVariant> &pair) {
                readVariant(stream, pair.first);
                readVariant(stream, pair.second);
            });
        break;
    default:
        if (header.isUserValue)
            readUserValue(in, header, value);
        else
            in >> value;
    }
}

}

void readElement(QDataStream &in, QString &text)
{
    PlainReader plain(in);
    if (plain.readText(text))
        plain.end();
    else
        readUnlessOversized(in, text, 2);
}

void readElement(QDataStream &in, QByteArray &bytes)
{
    readUnlessOversized(in, bytes, 1);
}

void readVariantMap(QDataStream &in, QMap<QString, QVariant> &map)
{
    ValueMap values;
    readMap(in, values);
    map = values;
}
