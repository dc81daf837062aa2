// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "dbus/wireexamples.h"

#include "dbus/payload.h"
#include "records/valuetypes.h"
#include "requests/getaggregatedservicesrequest.h"
#include "requests/socialgetaccountsrequest.h"

#include <QDataStream>
#include <QRegExp>
#include <QTest>
#include <QTimeZone>
#include <QUrl>

#include <functional>

namespace {

using Writers = QMap<QString, std::function<QByteArray()>>;

template <typename T>
QByteArray streamed(const T &value)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    out << value;
    return bytes;
}

template <typename T>
std::function<QByteArray()> writer(const T &value)
{
    return [value] { return streamed(value); };
}

template <typename T>
std::function<QByteArray()> valueWriter(const T &value)
{
    return writer(QVariant::fromValue(value));
}

template <typename Request>
QByteArray written(Request &&request, const QStringList &accounts,
                   SocialDataRequest::Status status = SocialDataRequest::Started)
{
    request.setPerformOnAccountsFilter(accounts);
    request.setRequestProgress(status, {});
    return Payload::write(request);
}

QDateTime moment(const QTimeZone &zone)
{
    return QDateTime(QDate(2026, 1, 5), QTime(9, 5, 7, 250), zone);
}

QDateTime moment(Qt::TimeSpec spec, int offset = 0)
{
    return QDateTime(QDate(2026, 1, 5), QTime(9, 5, 7, 250), spec, offset);
}

QString latin(const char *text)
{
    return QString::fromLatin1(text);
}

Media media(int kind, const QString &first, const QString &second, const QString &third)
{
    Media made;
    made.kind = kind;
    made.firstText = first;
    made.secondText = second;
    made.thirdText = third;
    return made;
}

Media pictureOfACat()
{
    return media(Media::Image, latin("i.jpg"), QString(), latin("A cat"));
}

SocialActionIconTexts likeTexts()
{
    SocialActionIconTexts texts;
    texts.kind = KinletAction::Like;
    texts.firstText = latin("star");
    texts.secondText = latin("Like");
    texts.thirdText = latin("Unlike");
    return texts;
}

SocialActivityAttachment attachment()
{
    SocialActivityAttachment made;
    made.firstText = latin("Title");
    made.secondText = latin("Site");
    made.fourthText = latin("u");
    made.media = {media(Media::Link, latin("l"), QString(), QString())};
    return made;
}

SocialImportProgress progress()
{
    SocialImportProgress made;
    made.contactsAdded = 3;
    made.contactsRemoved = 2;
    made.contactsMerged = 1;
    return made;
}

Writers plainForms()
{
    return {
        {latin("number"), writer(qint32(10))},
        {latin("text"), writer(latin("Ada"))},
        {latin("text-outside-the-first-plane"), writer(QString::fromUtf8("é😀"))},
        {latin("text-null"), writer(QString())},
        {latin("text-empty"), writer(latin(""))},
        {latin("bytes"), writer(QByteArray("\1\2\3"))},
        {latin("text-list"), writer(QStringList{latin("a"), latin("bc")})},
        {latin("list-of-media"),
         writer(QList<Media>{media(Media::Image, latin("i"), QString(), latin("A"))})},
        {latin("date"), writer(QDate(2026, 1, 5))},
        {latin("date-null"), writer(QDate())},
        {latin("time"), writer(QTime(9, 5, 7, 250))},
        {latin("time-null"), writer(QTime())},
        {latin("date-and-time-utc"), writer(moment(Qt::UTC))},
        {latin("date-and-time-local"), writer(moment(Qt::LocalTime))},
        {latin("date-and-time-offset"), writer(moment(Qt::OffsetFromUTC, 3600))},
        {latin("date-and-time-zone"), writer(moment(QTimeZone("Europe/Berlin")))},
        {latin("date-and-time-null"), writer(QDateTime())},
        {latin("pattern"), writer(QRegExp(latin("^A.*")))},
        {latin("pattern-hash"),
         writer(QHash<QString, QRegExp>{
             {latin("FirstName"), QRegExp(latin("^A"), Qt::CaseInsensitive)}})},
        {latin("media"), writer(pictureOfACat())},
        {latin("icon-texts"), writer(likeTexts())},
        {latin("attachment"), writer(attachment())},
        {latin("import-progress"), writer(progress())},
        {latin("error"), writer(KinletError(KinletError::InvalidRequest, latin("No")))},
    };
}

Writers values()
{
    return {
        {latin("value-invalid"), writer(QVariant())},
        {latin("value-bool"), valueWriter(true)},
        {latin("value-int"), valueWriter(-2)},
        {latin("value-uint"), valueWriter(3000000000u)},
        {latin("value-longlong"), valueWriter(Q_INT64_C(-5000000000))},
        {latin("value-ulonglong"), valueWriter(Q_UINT64_C(9223372036854775808))},
        {latin("value-double"), valueWriter(1.5)},
        {latin("value-float"), valueWriter(1.5f)},
        {latin("value-char"), valueWriter(QChar(0xe9))},
        {latin("value-text"), valueWriter(latin("Ada"))},
        {latin("value-bytes"), valueWriter(QByteArray("\x89P"))},
        {latin("value-text-list"), valueWriter(QStringList{latin("a")})},
        {latin("value-list"), valueWriter(QVariantList{7, latin("a")})},
        {latin("value-map"), valueWriter(QVariantMap{{latin("k"), false}})},
        {latin("value-hash"), valueWriter(QVariantHash{{latin("k"), 7}})},
        {latin("value-date"), valueWriter(QDate(2026, 1, 5))},
        {latin("value-time"), valueWriter(QTime(9, 5, 7, 250))},
        {latin("value-date-and-time"), valueWriter(moment(Qt::UTC))},
        {latin("value-url"), valueWriter(QUrl(latin("https://example.org/")))},
        {latin("value-media"), valueWriter(pictureOfACat())},
        {latin("value-icon-texts"), valueWriter(likeTexts())},
        {latin("value-attachment"), valueWriter(attachment())},
        {latin("value-import-progress"), valueWriter(progress())},
    };
}

QByteArray record()
{
    SocialNetworkPerson person;
    person.setProperty(SocialNetworkPerson::Id, latin("p1"));
    person.setProperty(SocialNetworkPerson::FirstName, latin("Ada"));
    return Payload::write(person);
}

QByteArray servicesAnswer()
{
    SocialService service;
    service.setProperty(SocialService::Id, latin("s1"));
    GetAggregatedServicesRequest request;
    request.setAvailableServices({service});
    return written(request, {}, SocialDataRequest::Finished);
}

Writers payloads()
{
    Writers writers{
        {latin("record"), record},
        {latin("errors"),
         [] {
             return Payload::write(
                 QList<KinletError>{KinletError(KinletError::InvalidRequest, latin("No"))});
         }},
        {latin("services-answer"), servicesAnswer},
    };
    for (const auto &example : requestExamples()) {
        writers.insert(example.name, [example] {
            const std::unique_ptr<SocialDataRequest> request(example.make());
            return written(*request, example.accounts);
        });
    }
    return writers;
}

Writers allWriters()
{
    Writers writers = plainForms();
    writers.insert(values());
    writers.insert(payloads());
    return writers;
}

}

class WireFormatTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void examplesAreWhatTheLibraryWrites_data();
    void examplesAreWhatTheLibraryWrites();
    void requestsAreReadBack_data();
    void requestsAreReadBack();
};

void WireFormatTest::initTestCase()
{
    KinletInitializer::init();
    QVERIFY(QTimeZone("Europe/Berlin").isValid());
    QCOMPARE(documentedExamples().keys(), allWriters().keys());
}

void WireFormatTest::examplesAreWhatTheLibraryWrites_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QByteArray>("documented");
    const auto documented = documentedExamples();
    const Writers writers = allWriters();
    for (auto it = writers.cbegin(); it != writers.cend(); ++it)
        QTest::newRow(qPrintable(it.key())) << it.value()() << documented.value(it.key());
}

void WireFormatTest::examplesAreWhatTheLibraryWrites()
{
    QFETCH(QByteArray, written);
    QFETCH(QByteArray, documented);
    QCOMPARE(written.toHex(' '), documented.toHex(' '));
}

void WireFormatTest::requestsAreReadBack_data()
{
    QTest::addColumn<int>("index");
    const auto examples = requestExamples();
    for (int i = 0; i < examples.size(); ++i)
        QTest::newRow(qPrintable(examples.at(i).name)) << i;
}

void WireFormatTest::requestsAreReadBack()
{
    QFETCH(int, index);
    const RequestExample example = requestExamples().at(index);
    const QByteArray bytes = documentedExamples().value(example.name);
    const std::unique_ptr<SocialDataRequest> original(example.make());
    const std::unique_ptr<SocialDataRequest> request(
        qobject_cast<SocialDataRequest *>(original->metaObject()->newInstance()));
    QVERIFY(Payload::read(bytes, *request));
    QCOMPARE(Payload::write(*request).toHex(' '), bytes.toHex(' '));
}

QTEST_GUILESS_MAIN(WireFormatTest)
#include "wireformattest.moc"
