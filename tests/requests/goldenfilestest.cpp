// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/valuetypes.h"
#include "requests/goldenrequests.h"
#include "support/requesthelpers.h"

#include <QDir>

/// Files that each Qt version wrote are read by both.
class GoldenFilesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KinletInitializer::init(); }
    void readBack_data();
    void readBack();
    void areWrittenAgain_data();
    void areWrittenAgain();
    void coverEveryKind();
    void holdNothingElse();
};

namespace {

using Request = QSharedPointer<SocialDataRequest>;

QByteArray fileContents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void addFiles(const QStringList &writers)
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<Request>("expected");
    QTest::addColumn<int>("version");
    for (const QString &writer : writers) {
        for (const GoldenRequest &golden : goldenRequests()) {
            for (const GoldenVersion &version : goldenVersions()) {
                const QString name = writer + QLatin1Char('/') + golden.name + QLatin1Char('-')
                    + version.name + QLatin1String(".bin");
                QTest::newRow(qPrintable(name))
                    << QStringLiteral(GOLDEN_FILES "/") + name << golden.request << version.version;
            }
        }
    }
}

}

Q_DECLARE_METATYPE(Request)

void GoldenFilesTest::readBack_data()
{
    addFiles({QStringLiteral("qt5"), QStringLiteral("qt6")});
}

// Maps inside values come in each Qt's own order, so what was read is compared, written anew.
void GoldenFilesTest::readBack()
{
    QFETCH(QString, path);
    QFETCH(Request, expected);
    QFETCH(int, version);
    const QByteArray bytes = fileContents(path);
    QVERIFY2(!bytes.isEmpty(), qPrintable(path));
    const QScopedPointer<QObject> object(expected->metaObject()->newInstance());
    auto *request = qobject_cast<SocialDataRequest *>(object.data());
    QVERIFY(request);
    ByteReader in(bytes, version);
    request->unserialize(in);
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(in.atEnd());
    QCOMPARE(serialized(*request), serialized(*expected));
    QCOMPARE(request->status(), SocialDataRequest::Finished);
    QCOMPARE(request->performOnAccountsFilter(), expected->performOnAccountsFilter());
    const QList<SocialGenericData> results = request->results();
    QCOMPARE(results.size(), expected->results().size());
    for (int i = 0; i < results.size(); ++i) {
        QCOMPARE(results.at(i).className(), expected->results().at(i).className());
        QCOMPARE(results.at(i).properties().keys(), expected->results().at(i).properties().keys());
    }
}

void GoldenFilesTest::areWrittenAgain_data()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    addFiles({QStringLiteral("qt5")});
#else
    addFiles({QStringLiteral("qt6")});
#endif
}

void GoldenFilesTest::areWrittenAgain()
{
    QFETCH(QString, path);
    QFETCH(Request, expected);
    QFETCH(int, version);
    QCOMPARE(serialized(*expected, version).toHex(), fileContents(path).toHex());
}

void GoldenFilesTest::coverEveryKind()
{
    QList<int> kinds;
    for (const GoldenRequest &golden : goldenRequests())
        kinds.append(golden.request->type());
    for (const int kind : {0, 1, 3, 5, 7, 9, 10, 11})
        QVERIFY2(kinds.contains(kind), qPrintable(QString::number(kind)));
}

void GoldenFilesTest::holdNothingElse()
{
    const int count = int(goldenRequests().size() * goldenVersions().size());
    for (const char *writer : {"qt5", "qt6"}) {
        const QDir folder(QStringLiteral(GOLDEN_FILES "/") + QLatin1String(writer));
        QCOMPARE(folder.entryList(QDir::Files).size(), count);
    }
}

QTEST_GUILESS_MAIN(GoldenFilesTest)

#include "goldenfilestest.moc"
