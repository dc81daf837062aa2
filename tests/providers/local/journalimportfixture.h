// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "journalsandbox.h"

#include "records/valuetypes.h"
#include "requests/socialgetactivitiesrequest.h"

#include <QTest>

inline QByteArray collection(const QByteArrayList &items)
{
    return "{\"@context\": \"https://www.w3.org/ns/activitystreams\", \"id\": \"http://x/outbox\", "
           "\"type\": \"OrderedCollection\", \"orderedItems\": ["
        + items.join(",\n") + "]}";
}

inline QByteArray note(const QByteArray &id, const QByteArray &author, const QByteArray &text)
{
    return "{\"type\": \"Note\", \"id\": \"" + id + "\", \"attributedTo\": \"" + author
        + "\", \"content\": \"" + text + "\", \"published\": \"2026-01-02T03:04:05Z\"}";
}

inline QByteArray actor(const QByteArray &id, const QByteArray &name)
{
    return "{\"@context\": \"https://www.w3.org/ns/activitystreams\", \"type\": \"Person\", "
           "\"id\": \""
        + id + "\", \"name\": \"" + name + "\"}";
}

inline QByteArray like(const QByteArray &person, const QByteArray &activity)
{
    return "{\"type\": \"Like\", \"id\": \"" + activity + "#" + person + "\", \"actor\": \""
        + person + "\", \"object\": \"" + activity + "\"}";
}

inline QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

/// What the tests of imports start from.
class JournalImportFixture : public QObject {
protected:
    void startAnew()
    {
        sandbox.reset(new JournalSandbox);
        heard.clear();
        ended = 0;
    }
    void listen();
    bool importsEnd(int count)
    {
        // Some of the tests have clocks that run fast.
        constexpr int patience = 3000000;
        return QTest::qWaitFor([this, count] { return ended >= count; }, patience);
    }
    static QStringList allTexts()
    {
        SocialGetActivitiesRequest request;
        request.setLimit(0);
        return perform(request) ? textsOf(request.results()) : QStringList();
    }

    QScopedPointer<JournalSandbox> sandbox;
    // Everything that applications hear, in order.
    QStringList heard;
    int ended = 0;
};

inline void JournalImportFixture::listen()
{
    KinletManager *const manager = KinletManager::instance();
    connect(manager, &KinletManager::importStarted, this,
            [this](const QString &service, const QString &account) {
                heard.append(QStringLiteral("started %1 %2").arg(service, account));
            });
    connect(
        manager, &KinletManager::importEnded, this,
        [this](const QString &service, const QString &account, int added, int removed, int merged) {
            heard.append(QStringLiteral("ended %1 %2 %3 %4 %5")
                             .arg(service, account)
                             .arg(added)
                             .arg(removed)
                             .arg(merged));
            ++ended;
        });
    connect(manager, &KinletManager::personsUpdate, this,
            [this](const QList<SocialNetworkPerson> &persons, const QList<QString> &properties) {
                for (const SocialNetworkPerson &person : persons)
                    heard.append(QStringLiteral("person ") + person.description());
                QVERIFY(properties.contains(SocialNetworkPerson::ScreenName));
            });
    connect(manager, &KinletManager::dataUpdate, this,
            [this](const QList<SocialGenericData> &data, const QList<QString> &properties) {
                const bool counted = !properties.contains(SocialActivity::Description);
                for (const SocialGenericData &record : data)
                    heard.append(
                        (counted ? QStringLiteral("counted ") : QStringLiteral("activity "))
                        + record.description());
            });
    auto *provider = manager->provider(QStringLiteral("local")).data();
    connect(provider, &KinletInterface::error, this,
            [this](const QString &name, const QString &error, const QString &message) {
                heard.append(QStringLiteral("error %1 %2 %3").arg(name, error, message));
            });
}
