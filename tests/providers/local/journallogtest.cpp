// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "journalsandbox.h"

#include "requests/socialpostactivitiesrequest.h"
#include "support/categorylog.h"

#include <QTest>

namespace {

constexpr int Patience = 60000;
const QString secret = QStringLiteral("SECRET");

bool isTold(const char *line)
{
    return QTest::qWaitFor([&] { return CategoryLog::has(line); }, Patience);
}

}

/// What is told of the journal.
class JournalLogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { sandbox.reset(new JournalSandbox); }
    void cleanup() { sandbox.reset(); }

    void openingAndChanges();
    void fileThatIsNoJournal();
    void imports();
    void nothingIsToldUnlessAskedFor();

private:
    QScopedPointer<JournalSandbox> sandbox;
};

void JournalLogTest::openingAndChanges()
{
    const CategoryLog log;
    KinletManager::instance();
    const QString opened = QStringLiteral("kinlet.local.info: The journal \"%1\" is open")
                               .arg(sandbox->databasePath());
    QVERIFY(log.has(opened.toLatin1().constData()));
    SocialPostActivitiesRequest request(SocialActivity::Status, secret);
    QVERIFY(perform(request));
    QVERIFY(isTold("kinlet.local.debug: 1 activities have changed"));
    QVERIFY(!log.take().join(QChar()).contains(secret));
}

void JournalLogTest::fileThatIsNoJournal()
{
    JournalSandbox::write(sandbox->databasePath(), QByteArray(10000, 'x'));
    const CategoryLog log("kinlet.local.warning=true");
    KinletManager::instance();
    const QStringList told = log.take();
    QVERIFY(!told.isEmpty());
    QVERIFY2(told.constFirst().startsWith(
                 QLatin1String("kinlet.local.warning: The journal cannot be opened: "))
                 && told.constFirst().contains(sandbox->databasePath()),
             qPrintable(told.constFirst()));
}

void JournalLogTest::imports()
{
    const CategoryLog log;
    KinletManager::instance();
    sandbox->drop(QStringLiteral("actor.json"), JournalSandbox::sample("ada/actor.json"));
    QVERIFY(isTold("kinlet.local.info: The import of \"actor.json\" ends with 0 problems and 1 new "
                   "persons"));
    QVERIFY(log.has("kinlet.local.info: The import of \"actor.json\" begins"));
    QVERIFY(isTold("kinlet.local.debug: 1 persons have changed"));

    sandbox->drop(QStringLiteral("bad.json"), secret.toUtf8());
    QVERIFY(isTold("kinlet.local.info: The import of \"bad.json\" ends with 1 problems and 0 new "
                   "persons"));
    const QString all = log.take().join(QLatin1Char('\n'));
    QVERIFY2(!all.contains(secret) && !all.contains(QLatin1String("Ada")), qPrintable(all));
}

void JournalLogTest::nothingIsToldUnlessAskedFor()
{
    const CategoryLog log("");
    SocialPostActivitiesRequest request(SocialActivity::Status, secret);
    QVERIFY(perform(request));
    QCOMPARE(log.take(), QStringList());
}

QTEST_GUILESS_MAIN(JournalLogTest)
#include "journallogtest.moc"
