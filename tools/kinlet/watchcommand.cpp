// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "commands.h"

#include "json.h"
#include "language.h"
#include "listing.h"
#include "output.h"
#include "session.h"
#include "text.h"

#include <Kinlet/KinletManager>
#include <Kinlet/SocialActivity>
#include <Kinlet/SocialNetworkPerson>

#include <QEventLoop>
#include <QJsonArray>
#include <QQueue>

namespace {

struct Event {
    QString name;
    QList<SocialGenericData> records;
    QStringList updatedProperties;
    /// What the event says beyond records.
    QJsonObject details;
    QString text;
};

// Keeps what the manager tells until it is printed: printing asks for names, and must not be done
// inside a provider's signal.
class Recorder : public QObject {
public:
    explicit Recorder(KinletManager *manager);

    QQueue<Event> events;
    QEventLoop loop;

private:
    void add(const Event &event)
    {
        events.enqueue(event);
        loop.quit();
    }
};

Event recordsEvent(const QString &name, const QList<SocialGenericData> &records,
                   const QStringList &updatedProperties)
{
    return {name, records, updatedProperties, {}, {}};
}

Recorder::Recorder(KinletManager *manager)
{
    connect(manager, &KinletManager::dataUpdate, this,
            [this](const QList<SocialGenericData> &data, const QList<QString> &properties) {
                add(recordsEvent(QStringLiteral("dataUpdate"), data, QStringList(properties)));
            });
    connect(
        manager, &KinletManager::personsUpdate, this,
        [this](const QList<SocialNetworkPerson> &data, const QList<QString> &properties) {
            QList<SocialGenericData> records;
            for (const SocialNetworkPerson &person : data)
                records.append(person);
            add(recordsEvent(QStringLiteral("personsUpdate"), records, QStringList(properties)));
        });
    connect(manager, &KinletManager::accountsRemoved, this, [this](const QStringList &ids) {
        add({QStringLiteral("accountsRemoved"),
             {},
             {},
             {{QStringLiteral("accounts"), QJsonArray::fromStringList(ids)}},
             Tool::tr("Accounts removed: %1").arg(ids.join(QStringLiteral(", ")))});
    });
    connect(manager, &KinletManager::importStarted, this,
            [this](const QString &service, const QString &account) {
                add({QStringLiteral("importStarted"),
                     {},
                     {},
                     {{QStringLiteral("service"), service}, {QStringLiteral("account"), account}},
                     Tool::tr("Import started: %1, account %2").arg(service, account)});
            });
    connect(
        manager, &KinletManager::importEnded, this,
        [this](const QString &service, const QString &account, int added, int removed, int merged) {
            add({QStringLiteral("importEnded"),
                 {},
                 {},
                 {{QStringLiteral("service"), service},
                  {QStringLiteral("account"), account},
                  {QStringLiteral("added"), added},
                  {QStringLiteral("removed"), removed},
                  {QStringLiteral("merged"), merged}},
                 Tool::tr("Import ended: %1, account %2: persons added %3, removed %4, "
                          "merged %5")
                     .arg(service, account, QString::number(added), QString::number(removed),
                          QString::number(merged))});
        });
}

QList<Entry> entriesOf(const Context &context, const Event &event)
{
    QList<Entry> entries;
    for (const SocialGenericData &record : event.records)
        entries.append(
            {context.session.manager()->providerNameFromAccountId(record.parentAccount()), record});
    return entries;
}

void printJsonEvent(Context &context, const Event &event)
{
    const auto named = [&](QJsonObject object) {
        object.insert(QStringLiteral("event"), event.name);
        return jsonLine(object);
    };
    if (event.records.isEmpty() && !event.details.isEmpty())
        context.out.line(named(event.details));
    const QList<Entry> entries = entriesOf(context, event);
    for (const Entry &entry : entries) {
        QJsonObject object = jsonRecord(entry.record, entry.provider);
        object.insert(QStringLiteral("updatedProperties"),
                      QJsonArray::fromStringList(event.updatedProperties));
        context.out.line(named(object));
    }
}

void printEvent(Context &context, Names &names, const Event &event)
{
    if (!event.text.isEmpty())
        context.out.line(isolated(oneLine(event.text)));
    const QList<Entry> entries = entriesOf(context, event);
    names.lookUp(entries);
    for (const Entry &entry : entries) {
        const SocialGenericData &record = entry.record;
        if (record.className() == SocialActivity::ClassName) {
            printActivity(context, names, entry);
            continue;
        }
        const bool person = record.className() == SocialNetworkPerson::ClassName;
        const QString what = person ? Tool::tr("Person") : record.className();
        const QString name = person ? personName(record) : record.description();
        context.out.line(isolated(oneLine(what + QStringLiteral(": ") + name))
                         + QStringLiteral("  ")
                         + context.out.faint(isolated(oneLine(record.id()))));
    }
}

}

ExitCode runWatch(Context &context)
{
    // Before the providers have started: what they push meanwhile is not lost.
    Recorder recorder(context.session.manager());
    if (!context.session.start())
        return context.report.exitCode();
    Names names(context.session);
    context.report.note(Tool::tr("watching"));
    while (!context.session.interrupted()) {
        if (recorder.events.isEmpty())
            context.session.run(recorder.loop, -1);
        while (!recorder.events.isEmpty()) {
            const Event event = recorder.events.dequeue();
            if (context.line.json)
                printJsonEvent(context, event);
            else
                printEvent(context, names, event);
        }
        if (!context.out.flush())
            break;
    }
    return context.report.exitCode();
}
