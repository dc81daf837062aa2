// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

// A journal on a disk that is full, or that may only be read. The clocks of this test run fast.

#include "journalimportfixture.h"
#include "smalldisk.h"

#include "requests/socialgetpersonsrequest.h"
#include "requests/sociallikeactivityrequest.h"
#include "requests/socialpostactivitiesrequest.h"

#include <QCoreApplication>

namespace {

bool canMount = false;

QStringList errorsOf(SocialDataRequest &request)
{
    if (!perform(request))
        return {QStringLiteral("it has not ended")};
    QStringList texts;
    const QList<KinletError> errors = request.errors();
    for (const KinletError &error : errors)
        texts.append(error.description());
    return texts;
}

QStringList post(const QString &text)
{
    SocialPostActivitiesRequest request(SocialActivity::Status, text);
    return errorsOf(request);
}

QByteArray archive(int activities)
{
    QByteArrayList items;
    for (int i = 0; i < activities; ++i)
        items.append(note("http://x/" + QByteArray::number(i), "http://x/a", QByteArray(300, 'x')));
    return collection(items);
}

}

class JournalDiskTest : public JournalImportFixture {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void fullAtStart();
    void fullDuringPost();
    void fullDuringLike();
    void fullDuringImport();
    void readOnlyAtStart();

private:
    QString fullText() const
    {
        return QStringLiteral("The journal %1 cannot be written: the disk is full. Free some space")
            .arg(sandbox->databasePath());
    }

    QScopedPointer<SmallDisk> disk;
};

void JournalDiskTest::initTestCase()
{
    // Not every system lets users, and not every container lets its super-user.
    if (!canMount)
        QSKIP("The system does not let this process mount a small disk");
}

void JournalDiskTest::init()
{
    startAnew();
    disk.reset(new SmallDisk(sandbox->dataHome()));
}

void JournalDiskTest::cleanup()
{
    KinletManager::cleanupInstance();
    disk.reset();
    sandbox.reset();
}

void JournalDiskTest::fullAtStart()
{
    disk->fill();
    QCOMPARE(post(QStringLiteral("one")), QStringList{fullText()});
    SocialGetPersonsRequest persons;
    QCOMPARE(errorsOf(persons), QStringList{fullText()});
    disk->free();
    QCOMPARE(post(QStringLiteral("two")), QStringList());
    QCOMPARE(allTexts(), QStringList{QStringLiteral("two")});
}

void JournalDiskTest::fullDuringPost()
{
    listen();
    QCOMPARE(post(QStringLiteral("before")), QStringList());
    for (int round = 1; round <= 2; ++round) {
        heard.clear();
        disk->fill();
        // There may be room left in the journal itself for a short one.
        const QString longText(100000, QLatin1Char('x'));
        SocialPostActivitiesRequest request(SocialActivity::Status, longText);
        QCOMPARE(errorsOf(request), QStringList{fullText()});
        QCOMPARE(request.errors().constFirst().type(), KinletError::PostFailed);
        QCOMPARE(request.results().size(), 0);
        QCOMPARE(post(longText), QStringList{fullText()});
        // Questions are answered.
        QCOMPARE(allTexts().size(), round);
        // Each time that it happens it is told once.
        QCOMPARE(heard.filter(QStringLiteral("error")),
                 QStringList{QStringLiteral("error local store ") + fullText()});
        disk->free();
        QCOMPARE(post(longText), QStringList());
        QCOMPARE(allTexts().size(), round + 1);
    }
}

void JournalDiskTest::fullDuringLike()
{
    SocialPostActivitiesRequest status(SocialActivity::Status, QStringLiteral("text"));
    QCOMPARE(errorsOf(status), QStringList());
    const QString id = status.results().constFirst().id();
    disk->fill();
    // Until there is no room left in the journal itself either.
    bool like = true;
    QStringList errors;
    for (; errors.isEmpty(); like = !like) {
        SocialLikeActivityRequest request(id, like);
        errors = errorsOf(request);
        if (!errors.isEmpty())
            QCOMPARE(request.errors().constFirst().type(), KinletError::LikeFailed);
    }
    QCOMPARE(errors, QStringList{fullText()});
    disk->free();
    SocialLikeActivityRequest request(id, !like);
    QCOMPARE(errorsOf(request), QStringList());
}

// Nothing of the document stays. It is read again when there is room.
void JournalDiskTest::fullDuringImport()
{
    const int activities = 3000;
    listen();
    QCOMPARE(post(QStringLiteral("before")), QStringList());
    sandbox->drop(QStringLiteral("1.json"), archive(activities));
    const qint64 rest = 600000;
    disk->fill(rest);
    QVERIFY(importsEnd(1));
    const qint64 space = disk->space();
    QCOMPARE(heard.filter(QStringLiteral("error local import")),
             QStringList{QStringLiteral("error local import 1.json: ") + fullText()});
    QCOMPARE(heard.constLast(), QStringLiteral("ended local local 0 0 0"));
    QVERIFY(QFile::exists(sandbox->importPath(QStringLiteral("1.json"))));
    QCOMPARE(allTexts(), QStringList{QStringLiteral("before")});
    // What has been undone takes no room away from others.
    QVERIFY2(space > rest / 2, qPrintable(QString::number(space)));
    QCOMPARE(post(QStringLiteral("meanwhile")), QStringList());

    disk->free();
    heard.clear();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(sandbox->importPath(QStringLiteral("done/1.json"))),
                             600000);
    QTRY_COMPARE_WITH_TIMEOUT(heard.filter(QStringLiteral("ended")).size(), 1, 600000);
    QCOMPARE(heard.filter(QStringLiteral("error")), QStringList());
    QCOMPARE(allTexts().size(), activities + 2);
}

void JournalDiskTest::readOnlyAtStart()
{
    QCOMPARE(post(QStringLiteral("before")), QStringList());
    KinletManager::cleanupInstance();
    disk->setReadOnly(true);
    const QString text =
        QStringLiteral("The journal %1 may not be written. Make the file and its folder writable")
            .arg(sandbox->databasePath());
    QCOMPARE(post(QStringLiteral("one")), QStringList{text});
    SocialGetPersonsRequest persons;
    QCOMPARE(errorsOf(persons), QStringList{text});
    disk->setReadOnly(false);
    QCOMPARE(post(QStringLiteral("two")), QStringList());
    QCOMPARE(allTexts().size(), 2);
}

int main(int argc, char *argv[])
{
    canMount = SmallDisk::prepare();
    QCoreApplication application(argc, argv);
    JournalDiskTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "journaldisktest.moc"
