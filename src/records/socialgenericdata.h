// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "kinletexport.h"

#include <QMap>
#include <QMetaType>
#include <QSharedDataPointer>
#include <QString>
#include <QVariant>

class QDataStream;
class SocialGenericDataPrivate;

/**
 * A record: a class name and a bag of named properties.
 *
 * Persons, activities, services and accounts (records/typedrecords.h) are records with a fixed
 * class name and a vocabulary of property keys. Results of requests and pushed updates are lists of
 * records.
 *
 * Records are implicitly shared: copying one costs a reference count, writing to one leaves its
 * copies as they were. Copies may be read and destroyed on different threads; one object must not
 * be written by two threads at once. There is no comparison: two records are equal when their class
 * names and properties() are.
 */
class KINLET_EXPORT SocialGenericData {
public:
    /// "Id": the record's identifier within its provider. Written through setProperty().
    static const QString Id;
    /// "Description": a text for people. Written through setProperty().
    static const QString Description;
    /// "ParentAccount": the id of the account that the record came from. Written by
    /// setParentAccount().
    static const QString ParentAccount;

    /// A record with a null class name and no properties.
    SocialGenericData();
    /// A record of the kind \a className, without properties.
    explicit SocialGenericData(const QString &className);
    /// A record that shares the data of \a other.
    SocialGenericData(const SocialGenericData &other);
    /// Makes this record share the data of \a other.
    SocialGenericData &operator=(const SocialGenericData &other);
    virtual ~SocialGenericData();

    /// Makes this record share the data of \a other; the same as assignment.
    SocialGenericData &copyFrom(const SocialGenericData &other);

    /// What the record describes, for example "SocialActivity"; empty for a plain record.
    QString className() const;
    /// Replaces the class name.
    void setClassName(const QString &name);

    /// The property as text; a null string when it is absent, an empty one when its value has no
    /// text form (a list, a custom type): use variantProperty() for those. A QStringList of one
    /// text reads as that text.
    QString property(const QString &name) const;
    /// The property as it was stored; an invalid variant when it is absent.
    QVariant variantProperty(const QString &name) const;
    /// Whether the property is present; an empty text is.
    bool hasProperty(const QString &name) const;
    /// All properties, the three fixed keys included. A shared copy, not a deep one.
    QMap<QString, QVariant> properties() const;

    /// property(Id)
    QString id() const;
    /// property(Description)
    QString description() const;
    /// property(ParentAccount)
    QString parentAccount() const;

    /**
     * Stores \a value under \a name, replacing an earlier value, and returns true.
     *
     * An invalid \a value removes the property instead; the result is then that of
     * removeProperty().
     */
    bool setProperty(const QString &name, const QVariant &value);
    /// Removes a property; false if it was absent.
    bool removeProperty(const QString &name);
    /// Stores \a accountId under ParentAccount. An empty id is stored too, not removed.
    void setParentAccount(const QString &accountId);

private:
    friend QDataStream &operator>>(QDataStream &in, SocialGenericData &record);

    QSharedDataPointer<SocialGenericDataPrivate> d;
};

/**
 * Writes the class name, the number of properties (32 bit) and each key with its value, from the
 * last key to the first. Integers are in the stream's byte order, strings and values in the form of
 * the stream's version. Custom value types must have been registered (KinletInitializer::init()).
 */
KINLET_EXPORT QDataStream &operator<<(QDataStream &out, const SocialGenericData &record);

/**
 * Replaces \a record by what the stream holds.
 *
 * A truncated or corrupt stream gives a record without properties and with whatever class name
 * could be read; only the stream's status tells. Memory is never reserved for more values than the
 * remaining bytes could hold.
 */
KINLET_EXPORT QDataStream &operator>>(QDataStream &in, SocialGenericData &record);

// Lists that grow move their records instead of copying them.
Q_DECLARE_TYPEINFO(SocialGenericData, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(SocialGenericData)
