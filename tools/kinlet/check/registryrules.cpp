// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/probe.h"
#include "language.h"

#include <Kinlet/SocialServiceAccount>

#include <QRegularExpression>

namespace {

// What a bus name and an object path take, behind the longest that stands before it.
constexpr int LongestName = 255 - int(sizeof("com.orvane.kinlet.") - 1);

// Ids that are missing or come twice.
void requireOwnIds(const QList<SocialGenericData> &records, const QString &kind)
{
    QStringList ids;
    for (const SocialGenericData &record : records) {
        const QString id = record.id();
        if (id.isEmpty())
            broken(Tool::tr("one of its %1 has no \"Id\"").arg(Kind::text(kind)));
        if (ids.contains(id))
            broken(Tool::tr("two of its %1 have the \"Id\" \"%2\"").arg(Kind::text(kind), id));
        ids.append(id);
    }
}

// The registry requests cannot be refused.
QList<SocialGenericData> registered(Probe &probe, const QString &kind)
{
    const std::shared_ptr<Reports> reports = probe.ask(plainInquiry(kind)).reports;
    for (const KinletError &error : std::as_const(reports->errors)) {
        if (error.type() == KinletError::UnsupportedRequest)
            broken(Tool::tr("it refuses the request for its %1").arg(Kind::text(kind)));
        if (reports->results.isEmpty())
            notChecked(Tool::tr("asked for its %1, it gave the error %2")
                           .arg(Kind::text(kind), errorText(error)));
    }
    if (reports->results.isEmpty())
        notChecked(Tool::tr("it has no %1").arg(Kind::text(kind)));
    return reports->results;
}

}

void checkLoads(Probe &)
{
    // To get here it must have.
}

void checkName(Probe &probe)
{
    static const QRegularExpression valid(QStringLiteral("\\A[A-Za-z_][A-Za-z0-9_]*\\z"));
    const Probe::Names &names = probe.names();
    const QString name = names.before.toString();
    const int type = names.before.userType();
    if ((type != QMetaType::QString && type != QMetaType::QByteArray) || name.isEmpty())
        broken(Tool::tr("metaData() has no text under \"name\""));
    if (!valid.match(name).hasMatch() || name.size() > LongestName)
        broken(Tool::tr("the name \"%1\" cannot be part of a bus name").arg(name));
    if (names.after.toString() != name)
        broken(Tool::tr("the name was \"%1\" before init() and is \"%2\" after it")
                   .arg(name, names.after.toString()));
    for (const QString &other : names.inErrors) {
        if (other != name)
            broken(Tool::tr("error() came with the name \"%1\", but it is called \"%2\"")
                       .arg(other, name));
    }
}

void checkServices(Probe &probe)
{
    requireOwnIds(registered(probe, Kind::Services), Kind::Services);
}

void checkAccounts(Probe &probe)
{
    QStringList services;
    const QList<SocialGenericData> offered = probe.records(plainInquiry(Kind::Services));
    for (const SocialGenericData &service : offered)
        services.append(service.id());
    const QList<SocialGenericData> accounts = registered(probe, Kind::Accounts);
    requireOwnIds(accounts, Kind::Accounts);
    for (const SocialGenericData &account : accounts) {
        const QString service = account.property(SocialServiceAccount::SocialServiceId);
        if (!services.contains(service))
            broken(Tool::tr("the account \"%1\" is on the service \"%2\", which it does not "
                            "report")
                       .arg(account.id(), service));
    }
}
