// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/payloadguard.h"

#include "dbus/patternguard.h"
#include "dbus/streamwalk.h"
#include "requests/socialdatarequest.h"

#include <QMetaType>
#include <QVariant>

#include <string>

namespace {

constexpr int DeepestNesting = 64;

// Bytes of the shortest element of each kind.
constexpr int SmallestVariant = 5;
constexpr int SmallestRecord = 8;
constexpr int SmallestPattern = 7;
constexpr int SmallestMedia = 16;

// Type ids as they stand in the stream.
constexpr int RegExpType = 27;
constexpr int UserType = 1024;
constexpr int UserTypeBeforeQt5 = 127;
constexpr int FirstMovedTypeBeforeQt5 = 128;
constexpr int MovedBy = 97;

int typeId(const char *name)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QMetaType::type(name);
#else
    return QMetaType::fromName(name).id();
#endif
}

// The number since Qt 5 of a type that has that one in an older stream; -1 if none had it.
int typeBeforeQt5(int type)
{
    if (type == UserTypeBeforeQt5)
        return UserType;
    if (type >= UserType)
        return -1;
    return type >= FirstMovedTypeBeforeQt5 ? type - MovedBy : type;
}

// Reads a value of that type and drops it; false if the type cannot be streamed.
bool readValue(QDataStream &in, int type)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QVariant value(type, nullptr);
    return QMetaType::load(in, type, value.data());
#else
    QVariant value{QMetaType(type)};
    return QMetaType(type).load(in, value.data());
#endif
}

// A type that is registered may still have no operators.
bool canBeRead(int type)
{
    QDataStream nothing{QByteArray()};
    return readValue(nothing, type);
}

class Walk : public StreamWalk {
public:
    Walk(const QByteArray &bytes, int version, Allowance &allowance)
        : StreamWalk(bytes, version), m_allowance(allowance)
    {
    }

    void request(int kind);
    void record(int depth);

private:
    void pattern();
    void patterns();
    void media();
    void variant(int depth);
    bool value(int type, int depth);
    bool namedValue(std::string_view name, int depth);
    bool ownValue(const QByteArray &name, int depth);

    Allowance &m_allowance;
};

void Walk::pattern()
{
    const int at = position();
    const std::string_view units = text();
    skip(sizeof(quint8));
    const int syntax = number<quint8>();
    skip(sizeof(quint8));
    QString pattern(int(units.size() / 2), Qt::Uninitialized);
    qFromBigEndian<quint16>(units.data(), pattern.size(), pattern.data());
    const auto cost = patternCost(pattern, syntax);
    if (!cost || *cost > m_allowance.patternCost || m_allowance.patterns == 0) {
        unsafe(at);
        return;
    }
    m_allowance.patternCost -= *cost;
    --m_allowance.patterns;
}

void Walk::patterns()
{
    map(SmallestPattern, [this] { pattern(); });
}

void Walk::media()
{
    skip(sizeof(qint32));
    text();
    text();
    text();
}

void Walk::variant(int depth)
{
    const int at = position();
    auto type = int(number<quint32>());
    skip(sizeof(qint8));
    if (version() < QDataStream::Qt_5_0)
        type = typeBeforeQt5(type);
    const bool known = depth <= DeepestNesting
        && (type == UserType ? namedValue(byteArray(), depth) : value(type, depth));
    if (!known)
        unsafe(at);
}

// False for a type that is not known to be safe.
bool Walk::value(int type, int depth)
{
    switch (type) {
    case QMetaType::UnknownType:
        if (version() < QDataStream::Qt_5_0)
            text();
        break;
    case QMetaType::Bool:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        skip(1);
        break;
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::QChar:
        skip(2);
        break;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::QTime:
        skip(4);
        break;
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float: // as a double
    case QMetaType::Double:
        skip(8);
        break;
    case QMetaType::QUuid:
        skip(16);
        break;
    case QMetaType::QString:
        text();
        break;
    case QMetaType::QByteArray:
    case QMetaType::QUrl:
        byteArray();
        break;
    case QMetaType::QStringList:
        texts();
        break;
    case QMetaType::QByteArrayList:
        elements(SmallestText, [this] { byteArray(); });
        break;
    case QMetaType::QDate:
        date();
        break;
    case QMetaType::QDateTime:
        dateTime();
        break;
    case QMetaType::QVariant:
        variant(depth + 1);
        break;
    case QMetaType::QVariantList:
        elements(SmallestVariant, [=] { variant(depth + 1); });
        break;
    case QMetaType::QVariantHash:
        if (m_allowance.hashes == 0)
            return false;
        --m_allowance.hashes;
        Q_FALLTHROUGH();
    case QMetaType::QVariantMap:
        map(SmallestVariant, [=] { variant(depth + 1); });
        break;
    case RegExpType:
        // Qt 6 knows it only once somebody has registered it.
        if (typeId("QRegExp") == QMetaType::UnknownType)
            return false;
        pattern();
        break;
    default:
        return false;
    }
    return true;
}

// A type of Kinlet, which is streamed in a known form; false for any other.
bool Walk::ownValue(const QByteArray &name, int depth)
{
    if (name == "Media" || name == "SocialActionIconTexts") {
        media();
    } else if (name == "SocialActivityAttachment") {
        for (int i = 0; i < 4; ++i)
            text();
        elements(SmallestMedia, [this] { media(); });
    } else if (name == "SocialImportProgress") {
        skip(sizeof(qint8) + 3 * sizeof(qint32));
    } else if (name == "KinletError") {
        text();
        skip(sizeof(qint32));
    } else if (name == "SocialGenericData" || name == "SocialNetworkPerson"
               || name == "SocialActivity" || name == "SocialService"
               || name == "SocialServiceAccount") {
        record(depth + 1);
    } else {
        return false;
    }
    return true;
}

bool Walk::namedValue(std::string_view name, int depth)
{
    // A copy, for the null byte at its end: the stream may have none.
    const int type = typeId(std::string(name).c_str());
    if (type == QMetaType::UnknownType)
        return false;
    if (type < QMetaType::User)
        return value(type, depth);
    if (!canBeRead(type))
        return false;
    // The type may have several names.
    const QByteArray ownName = QMetaType(type).name();
    if (ownName == "QRegExp") {
        pattern();
    } else if (ownName == "QList<Media>") {
        elements(SmallestMedia, [this] { media(); });
    } else if (ownName.contains('<')) {
        // Qt's readers of other containers trust any count.
        return false;
    } else if (!ownValue(ownName, depth)) {
        // Only the type itself knows its form.
        readBy([type](QDataStream &in) { readValue(in, type); });
    }
    return true;
}

void Walk::record(int depth)
{
    text();
    map(SmallestVariant, [=] { variant(depth); });
}

void Walk::request(int kind)
{
    skip(sizeof(qint32)); // kind
    skip(sizeof(qint32)); // status
    elements(SmallestRecord, [this] { record(1); });
    texts();
    switch (kind) {
    case SocialDataRequest::GetPersons:
        patterns();
        break;
    case SocialDataRequest::GetLikers:
        patterns();
        text();
        break;
    case SocialDataRequest::GetActivities:
        texts();
        skip(sizeof(qint32)); // limit
        dateTime();
        dateTime();
        texts();
        text();
        skip(3); // type, timeline, force refresh
        break;
    case SocialDataRequest::PostActivities:
        skip(1); // type
        text();
        text();
        break;
    case SocialDataRequest::LikeActivity:
        text();
        skip(1); // like
        break;
    default:
        break;
    }
}

}

int safeRequestBytes(const QByteArray &bytes, int version, int kind, Allowance &allowance)
{
    Walk walk(bytes, version, allowance);
    walk.request(kind);
    return walk.safeBytes();
}

int safeRecordBytes(const QByteArray &bytes, int version, Allowance &allowance)
{
    Walk walk(bytes, version, allowance);
    walk.record(1);
    return walk.safeBytes();
}
