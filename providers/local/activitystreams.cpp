// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "activitystreams.h"

#include "itemreader.h"
#include "jsonmembers.h"
#include "validity.h"
#include "vocabulary.h"

struct ActivityStreamsReader::Private {
    Private(QIODevice &device, ImportSink &sink) : members(device), items(sink) { }

    State fail(const QString &why);
    State finish();

    JsonMembers members;
    ItemReader items;
    /// The document's members; those that hold items stay empty.
    QJsonObject document;
    State state = Unfinished;
    QString reason;
};

ActivityStreamsReader::ActivityStreamsReader(QIODevice &device, ImportSink &sink)
    : d(std::make_unique<Private>(device, sink))
{
}

ActivityStreamsReader::~ActivityStreamsReader() = default;

QString ActivityStreamsReader::reason() const
{
    return d->reason;
}

ActivityStreamsReader::State ActivityStreamsReader::Private::fail(const QString &why)
{
    reason = why;
    return Bad;
}

ActivityStreamsReader::State ActivityStreamsReader::readNext()
{
    if (d->state != Unfinished) {
        return d->state;
    }
    switch (d->members.next()) {
    case JsonMembers::Item:
        d->items.readUnchecked(d->members.value());
        break;
    case JsonMembers::Member:
        d->document.insert(d->members.key(), d->members.value());
        break;
    case JsonMembers::End:
        d->state = d->finish();
        break;
    case JsonMembers::Error:
        d->state = d->fail(d->members.error());
        break;
    }
    return d->state;
}

ActivityStreamsReader::State ActivityStreamsReader::Private::finish()
{
    const QString problem = ActivityStreams::problem(document);
    if (!problem.isEmpty()) {
        return fail(problem);
    }
    if (!ActivityStreams::isCollection(document)) {
        items.read(document);
        return Finished;
    }
    const QJsonObject firstPage = document.value(QLatin1String("first")).toObject();
    for (const QJsonObject &list : {document, firstPage}) {
        for (const char *key : {"items", "orderedItems"}) {
            const QVector<QJsonValue> all = ActivityStreams::values(list, QString::fromLatin1(key));
            for (const QJsonValue &item : all) {
                items.readUnchecked(item);
            }
        }
    }
    if (!items.hasDelivered()) {
        items.skip(document, QStringLiteral("it holds no items"));
    }
    return Finished;
}
