// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "requests/kinleterror.h"

#include "records/streamreading_p.h"

#include <QDataStream>

class KinletErrorPrivate {
public:
    KinletError::Type type;
    QString description;
};

KinletError::KinletError(Type type, const QString &description)
    : d(new KinletErrorPrivate{type, description})
{
}

KinletError::KinletError(const KinletError &other) : d(new KinletErrorPrivate(*other.d)) { }

KinletError &KinletError::operator=(const KinletError &other)
{
    *d = *other.d;
    return *this;
}

KinletError::~KinletError() = default;

KinletError::Type KinletError::type() const
{
    return d->type;
}

QString KinletError::description() const
{
    return d->description;
}

QDataStream &operator<<(QDataStream &out, const KinletError &error)
{
    return out << error.description() << qint32(error.type());
}

QDataStream &operator>>(QDataStream &in, KinletError &error)
{
    qint32 type = 0;
    readTexts(in, error.d->description);
    in >> type;
    error.d->type = KinletError::Type(type);
    return in;
}
