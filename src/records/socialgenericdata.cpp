// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/socialgenericdata.h"

#include "records/streamreading_p.h"

#include <QDataStream>

#include <utility>

class SocialGenericDataPrivate : public QSharedData {
public:
    QString className;
    QMap<QString, QVariant> properties;
};

const QString SocialGenericData::Id = QStringLiteral("Id");
const QString SocialGenericData::Description = QStringLiteral("Description");
const QString SocialGenericData::ParentAccount = QStringLiteral("ParentAccount");

SocialGenericData::SocialGenericData() : d(new SocialGenericDataPrivate) { }

SocialGenericData::SocialGenericData(const QString &className) : SocialGenericData()
{
    d->className = className;
}

SocialGenericData::SocialGenericData(const SocialGenericData &other) = default;

SocialGenericData &SocialGenericData::operator=(const SocialGenericData &other)
{
    return copyFrom(other);
}

SocialGenericData::~SocialGenericData() = default;

SocialGenericData &SocialGenericData::copyFrom(const SocialGenericData &other)
{
    d = other.d;
    return *this;
}

QString SocialGenericData::className() const
{
    return d->className;
}

void SocialGenericData::setClassName(const QString &name)
{
    // A list of persons seen as a list of persons is to cost no copies.
    const QString &current = std::as_const(d)->className;
    if (name == current && name.isNull() == current.isNull())
        return;
    d->className = name;
}

QString SocialGenericData::property(const QString &name) const
{
    return variantProperty(name).toString();
}

QVariant SocialGenericData::variantProperty(const QString &name) const
{
    return d->properties.value(name);
}

bool SocialGenericData::hasProperty(const QString &name) const
{
    return d->properties.contains(name);
}

QMap<QString, QVariant> SocialGenericData::properties() const
{
    return d->properties;
}

QString SocialGenericData::id() const
{
    return property(Id);
}

QString SocialGenericData::description() const
{
    return property(Description);
}

QString SocialGenericData::parentAccount() const
{
    return property(ParentAccount);
}

bool SocialGenericData::setProperty(const QString &name, const QVariant &value)
{
    if (!value.isValid())
        return removeProperty(name);
    d->properties.insert(name, value);
    return true;
}

bool SocialGenericData::removeProperty(const QString &name)
{
    return d->properties.remove(name) > 0;
}

void SocialGenericData::setParentAccount(const QString &accountId)
{
    setProperty(ParentAccount, accountId);
}

QDataStream &operator<<(QDataStream &out, const SocialGenericData &record)
{
    const QMap<QString, QVariant> properties = record.properties();
    out << record.className() << quint32(properties.size());
    // From the last key to the first: Qt 5 writes maps so by itself, Qt 6 the other way round.
    for (auto it = properties.cend(); it != properties.cbegin();) {
        --it;
        out << it.key() << it.value();
    }
    return out;
}

QDataStream &operator>>(QDataStream &in, SocialGenericData &record)
{
    QString className;
    readTexts(in, className);
    QMap<QString, QVariant> properties;
    readVariantMap(in, properties);
    record.d->className = className;
    record.d->properties = properties;
    return in;
}
