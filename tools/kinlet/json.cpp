// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "json.h"

#include <Kinlet/Media>
#include <Kinlet/SocialActivity>
#include <Kinlet/SocialNetworkPerson>
#include <Kinlet/SocialService>
#include <Kinlet/SocialServiceAccount>

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegExp>
#include <QRegularExpression>
#include <QUrl>
#include <QUuid>

#include <cmath>
#include <type_traits>

namespace {

QJsonObject mediaObject(const Media &media)
{
    return {{QStringLiteral("kind"), media.kind},
            {QStringLiteral("url"), media.firstText},
            {QStringLiteral("preview"), media.secondText},
            {QStringLiteral("description"), media.thirdText}};
}

QJsonObject attachmentObject(const SocialActivityAttachment &attachment)
{
    QJsonArray media;
    for (const Media &one : attachment.media)
        media.append(mediaObject(one));
    return {{QStringLiteral("title"), attachment.firstText},
            {QStringLiteral("subtitle"), attachment.secondText},
            {QStringLiteral("summary"), attachment.thirdText},
            {QStringLiteral("url"), attachment.fourthText},
            {QStringLiteral("media"), media}};
}

QJsonObject iconTextsObject(const SocialActionIconTexts &texts)
{
    return {{QStringLiteral("action"), texts.kind},
            {QStringLiteral("icon"), texts.firstText},
            {QStringLiteral("label"), texts.secondText},
            {QStringLiteral("undoLabel"), texts.thirdText}};
}

QJsonObject progressObject(const SocialImportProgress &progress)
{
    return {{QStringLiteral("running"), progress.running},
            {QStringLiteral("added"), progress.contactsAdded},
            {QStringLiteral("removed"), progress.contactsRemoved},
            {QStringLiteral("merged"), progress.contactsMerged}};
}

template <typename T>
bool holds(const QVariant &value)
{
    return value.userType() == qMetaTypeId<T>();
}

QJsonValue containerOrText(const QVariant &value)
{
    if (value.canConvert<QVariantList>()) {
        QJsonArray array;
        const auto list = value.value<QVariantList>();
        for (const QVariant &element : list)
            array.append(jsonValue(element));
        return array;
    }
    if (value.canConvert<QVariantMap>()) {
        QJsonObject object;
        const auto map = value.value<QVariantMap>();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            object.insert(it.key(), jsonValue(it.value()));
        return object;
    }
    if (value.canConvert<QString>())
        return value.toString();
    return QJsonObject{{QStringLiteral("type"), QString::fromLatin1(value.typeName())}};
}

QJsonValue userValue(const QVariant &value)
{
    if (holds<Media>(value))
        return mediaObject(value.value<Media>());
    if (holds<SocialActivityAttachment>(value))
        return attachmentObject(value.value<SocialActivityAttachment>());
    if (holds<SocialActionIconTexts>(value))
        return iconTextsObject(value.value<SocialActionIconTexts>());
    if (holds<SocialImportProgress>(value))
        return progressObject(value.value<SocialImportProgress>());
    if (holds<SocialGenericData>(value))
        return jsonRecord(value.value<SocialGenericData>());
    if (holds<SocialNetworkPerson>(value))
        return jsonRecord(value.value<SocialNetworkPerson>());
    if (holds<SocialActivity>(value))
        return jsonRecord(value.value<SocialActivity>());
    if (holds<SocialService>(value))
        return jsonRecord(value.value<SocialService>());
    if (holds<SocialServiceAccount>(value))
        return jsonRecord(value.value<SocialServiceAccount>());
    if (holds<QRegExp>(value))
        return value.value<QRegExp>().pattern();
    return containerOrText(value);
}

template <typename Integer>
QJsonValue wholeNumber(Integer number)
{
    constexpr qint64 exact = (qint64(1) << 53) - 1;
    const bool low = std::is_signed_v<Integer> && qint64(number) < -exact;
    const bool high = number > Integer(0) && quint64(number) > quint64(exact);
    return low || high ? QJsonValue(QString::number(number)) : QJsonValue(qint64(number));
}

QJsonValue textOrNull(bool valid, const QString &text)
{
    return valid ? QJsonValue(text) : QJsonValue();
}

}

QJsonValue jsonValue(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return QJsonValue();
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::Short:
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return wholeNumber(value.toLongLong());
    case QMetaType::UChar:
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return wholeNumber(value.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return std::isfinite(value.toDouble()) ? QJsonValue(value.toDouble()) : QJsonValue();
    case QMetaType::QByteArray:
        return QString::fromLatin1(value.toByteArray().toBase64());
    case QMetaType::QDateTime:
        return textOrNull(value.toDateTime().isValid(),
                          value.toDateTime().toUTC().toString(Qt::ISODateWithMs));
    case QMetaType::QDate:
        return textOrNull(value.toDate().isValid(), value.toDate().toString(Qt::ISODate));
    case QMetaType::QTime:
        return textOrNull(value.toTime().isValid(), value.toTime().toString(Qt::ISODateWithMs));
    case QMetaType::QUrl:
        return QString::fromLatin1(value.toUrl().toEncoded());
    case QMetaType::QUuid:
        return value.toUuid().toString(QUuid::WithoutBraces);
    case QMetaType::QRegularExpression:
        return value.toRegularExpression().pattern();
    case QMetaType::QString:
    case QMetaType::QChar:
        return value.toString();
    default:
        return userValue(value);
    }
}

QJsonObject jsonRecord(const SocialGenericData &record)
{
    QJsonObject properties;
    const QMap<QString, QVariant> values = record.properties();
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        properties.insert(it.key(), jsonValue(it.value()));
    return {{QStringLiteral("class"), record.className()},
            {QStringLiteral("properties"), properties}};
}

QJsonObject jsonRecord(const SocialGenericData &record, const QString &provider)
{
    QJsonObject object = jsonRecord(record);
    object.insert(QStringLiteral("provider"), provider);
    return object;
}

QString jsonLine(const QJsonObject &object)
{
    const QString plain = QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
    QString line;
    line.reserve(plain.size());
    for (const QChar unit : plain) {
        const ushort code = unit.unicode();
        // JSON allows these as they are, but a terminal or a line reader may act on them.
        const bool steering = (code >= 0x7f && code < 0xa0) || (code >= 0x2028 && code <= 0x202e)
            || (code >= 0x2066 && code <= 0x2069);
        if (steering)
            line += QStringLiteral("\\u%1").arg(code, 4, 16, QLatin1Char('0'));
        else
            line += unit;
    }
    return line;
}
