// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "commands.h"

#include "json.h"
#include "language.h"
#include "listing.h"
#include "output.h"
#include "table.h"

#include <Kinlet/GetAggregatedServicesRequest>
#include <Kinlet/KinletAction>
#include <Kinlet/KinletManager>
#include <Kinlet/SocialGetAccountsRequest>
#include <Kinlet/SocialGetPersonsRequest>
#include <Kinlet/SocialService>

#include <QJsonObject>

namespace {

QString actionsText(const SocialGenericData &service)
{
    const int actions = service.variantProperty(SocialService::SocialActions).toInt();
    QStringList words;
    const auto add = [&](KinletAction::Action action, const QString &word) {
        if (actions & action)
            words.append(word);
    };
    add(KinletAction::Like, Tool::tr("like"));
    add(KinletAction::Comment, Tool::tr("comment"));
    add(KinletAction::Post, Tool::tr("post"));
    add(KinletAction::Share, Tool::tr("share"));
    add(KinletAction::SendMessage, Tool::tr("message"));
    return words.join(QStringLiteral(", "));
}

QString metaDataText(QVariantMap metaData)
{
    metaData.remove(QStringLiteral("name"));
    QStringList entries;
    for (auto it = metaData.cbegin(); it != metaData.cend(); ++it) {
        const QString value = it.value().canConvert<QString>()
            ? it.value().toString()
            : jsonLine({{it.key(), jsonValue(it.value())}});
        entries.append(it.key() + QLatin1Char('=') + value);
    }
    return entries.join(QStringLiteral(", "));
}

}

ExitCode runServices(Context &context)
{
    const QList<Answer> answers = context.session.askEach(
        context.session.targets(), [] { return std::make_unique<GetAggregatedServicesRequest>(); });
    reportErrors(context, answers);
    const QList<Entry> services = entriesOf(answers);
    if (printJson(context, services))
        return context.report.exitCode();
    Table table({Tool::tr("NAME"), Tool::tr("ACTIONS"), Tool::tr("PROVIDER"), Tool::tr("ID")});
    for (const Entry &service : services)
        table.addRow({service.record.description(), actionsText(service.record), service.provider,
                      service.record.id()});
    if (table.isEmpty())
        context.report.note(Tool::tr("no services"));
    else
        table.print(context.out);
    return context.report.exitCode();
}

ExitCode runAccounts(Context &context)
{
    // Asked again, since the answers at start-up leave no errors behind.
    const QList<Answer> answers = context.session.askEach(
        context.session.targets(), [] { return std::make_unique<SocialGetAccountsRequest>(); });
    reportErrors(context, answers);
    QStringList wanted = context.line.accounts;
    if (wanted.contains(allAccounts))
        wanted.clear();
    QList<Entry> accounts;
    const QList<Entry> all = entriesOf(answers);
    for (const Entry &account : all) {
        if (wanted.isEmpty() || wanted.contains(account.record.id()))
            accounts.append(account);
    }
    if (printJson(context, accounts))
        return context.report.exitCode();
    Table table({Tool::tr("NAME"), Tool::tr("SERVICE"), Tool::tr("PROVIDER"), Tool::tr("ID")});
    for (const Entry &account : qAsConst(accounts)) {
        const QString serviceId = account.record.property(SocialServiceAccount::SocialServiceId);
        const QString service = context.session.manager()->service(serviceId).description();
        table.addRow({Session::accountName(account.record), service.isEmpty() ? serviceId : service,
                      account.provider, account.record.id()});
    }
    if (table.isEmpty())
        context.report.note(Tool::tr("no accounts"));
    else
        table.print(context.out);
    return context.report.exitCode();
}

ExitCode runProviders(Context &context)
{
    Table table({Tool::tr("NAME"), Tool::tr("DETAILS")});
    const QStringList names = context.session.providers();
    for (const QString &name : names) {
        const QVariantMap metaData = context.session.manager()->provider(name)->metaData();
        if (context.line.json)
            context.out.line(
                jsonLine({{QStringLiteral("class"), QStringLiteral("Provider")},
                          {QStringLiteral("properties"), jsonValue(QVariant(metaData))},
                          {QStringLiteral("provider"), name}}));
        table.addRow({name, metaDataText(metaData)});
    }
    if (!context.line.json)
        table.print(context.out);
    return context.report.exitCode();
}

ExitCode runPersons(Context &context)
{
    const QList<Answer> answers = context.session.askEach(context.session.targets(), [&] {
        auto request = std::make_unique<SocialGetPersonsRequest>();
        for (const auto &filter : context.line.filters)
            request->setPropertyFilter(filter.first, filter.second);
        return request;
    });
    reportErrors(context, answers);
    printPersons(context, entriesOf(answers));
    return context.report.exitCode();
}
