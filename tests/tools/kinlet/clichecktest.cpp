// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/checks.h"
#include "check/rules.h"

#include <QFile>
#include <QTest>

namespace {

constexpr int Broken = 1;
constexpr int WrongUse = 2;

// More than a busy machine needs, so that only what is looked for is found.
const QStringList Patient{QStringLiteral("--pause"), QStringLiteral("5")};

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QString textOf(const QJsonObject &object, const char *key)
{
    return object[QLatin1String(key)].toString();
}

}

class CliCheckTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void faultIsFoundByItsRuleAlone_data();
    void faultIsFoundByItsRuleAlone();
    void silenceIsWaitedForOnce_data();
    void silenceIsWaitedForOnce();
    void soundProviderKeepsEverything_data();
    void soundProviderKeepsEverything();
    void whatCannotBeJudgedIsNotBroken_data();
    void whatCannotBeJudgedIsNotBroken();
    void providersOfThisTreeBreakNothing_data();
    void providersOfThisTreeBreakNothing();
    void textForPeople();
    void missingFileIsWrongUse();
    void readerWhoLeavesEndsTheCheck();
    void checkThatCannotStartBlamesNobody();
    void manualListsTheRules();

private:
    static QStringList namesOf(const Ended &ended, const char *result);

    std::unique_ptr<Cli> cli;
    Checks checks;
};

void CliCheckTest::init()
{
    cli = std::make_unique<Cli>();
}

void CliCheckTest::cleanup()
{
    cli.reset();
}

QStringList CliCheckTest::namesOf(const Ended &ended, const char *result)
{
    QStringList names;
    const QList<QJsonObject> objects = ended.objects();
    for (const QJsonObject &object : objects) {
        if (textOf(object, "result") == QLatin1String(result))
            names.append(textOf(object, "name"));
    }
    return names;
}

void CliCheckTest::faultIsFoundByItsRuleAlone_data()
{
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QString>("words");
    const auto row = [this](const char *fault, const char *rule, const char *said,
                            const QStringList &options = Patient) {
        QTest::newRow(fault) << QString::fromLatin1(rule) << QString::fromLatin1(said);
        checks.add(QString::fromLatin1(fault), options);
    };
    const QStringList impatient = words("--wait 3 --pause 1");
    const QStringList posting = Patient + words("--post");
    // What takes longest begins first.
    row("hangs", "lives", "it hung when it was asked for persons", impatient);
    row("no-library", "loads", "it cannot be loaded: ");
    row("wrong-root", "loads", "it is a plug-in, but no provider");
    row("nameless", "name", "metaData() has no text under \"name\"");
    row("numbered", "name", "metaData() has no text under \"name\"");
    row("unfit-name", "name", "\"unfit-name\" cannot be part of a bus name");
    row("renamed", "name", "was \"old\" before init() and is \"new\" after it");
    row("foreign-error", "name", "the name \"somebody\", but it is called \"faulty\"");
    row("silent", "answers", "within 3 s (--wait) when it was asked for persons", impatient);
    row("silent-on-like", "answers", "when it was asked to take back the like of", impatient);
    row("silent-on-two", "answers",
        "for persons; it did not answer within 3 s (--wait) when it was "
        "asked for the likers",
        impatient);
    row("one-at-a-time", "answers", "asked for activities, with other requests open", impatient);
    row("stops", "status", "asked for persons, it ended with status Stopped");
    row("answers-twice", "once", "persons, it answered 2 times; asked once for activities, it");
    row("goes-on", "once", "asked for persons, it reported progress after it had answered");
    row("results-too-late", "once", "asked for persons, it set results after it had answered");
    row("service-without-id", "services", "one of its services has no \"Id\"");
    row("refuses-registry", "services", "it refuses the request for its services");
    row("stray-account", "accounts", "\"account:b\" is on the service \"elsewhere\"");
    row("one-account-twice", "accounts", "two of its accounts have the \"Id\" \"account:a\"");
    row("orphans", "records", "the \"ParentAccount\" \"\", which is no account of it");
    row("unnamed-records", "records", "one of its activities has no \"Id\"");
    row("random-ids", "ids", "asked twice for persons, it gave other ids the second time");
    row("same-ids", "ids", "two of its activities have the same \"Id\"");
    row("ids-of-this-start", "ids", "asked for persons after a new start, it gave other ids");
    row("services-of-this-start", "ids", "asked for services after a new start, it gave other ids");
    row("unfiltered", "filter", "of the account \"account:a\", it gave some of \"account:b\"");
    row("empty-when-filtered", "filter", "account \"account:a\", it gave none of \"account:a\"");
    row("heeds-one-account", "filter",
        "\"account:a\", \"account:b\", it gave none of \"account:b\"");
    row("greedy", "limit", "asked for at most 3 activities, it gave 4");
    row("oldest-first", "limit", "asked for at most 3 activities, it left out the newest");
    row("empty-without-limit", "limit", "asked for activities without a limit (0), it gave none");
    row("empty-when-limited", "limit", "asked for at most 3 activities, it gave none");
    row("empty-when-bounded", "times", "after 2026-01-01T09:00:00.000Z, it gave none");
    row("ignores-before", "times", "before 2026-01-01T12:00:00.000Z, it gave one of 2026-01-01T12");
    row("ignores-after", "times", "after 2026-01-01T09:00:00.000Z, it gave one of 2026-01-01T09");
    row("speechless", "errors", "it gave the error InvalidRequest without a description");
    row("accepts-anything", "unsupported", "a request of unknown kind without an error");
    row("ignores-unknown", "unsupported", "did not answer within 3 s", impatient);
    row("unstoppable", "cancelled", "it answered a request that had been cancelled");
    row("progresses-when-cancelled", "cancelled", "reported progress of a request that had been");
    row("sets-results-when-cancelled", "cancelled", "it gave results to a request that had been");
    row("unstoppable-once-begun", "cancelled", "it answered a request that had been cancelled");
    row("unstoppable-persons", "cancelled", "it answered a request that had been cancelled");
    row("crashes-in-cancel", "cancelled", "when it was told to cancel a request");
    row("clings-to-finished", "deleted", "when a request had been deleted when it had finished");
    row("clings-to-cancelled", "deleted", "when a request had been deleted when it was cancelled");
    const QStringList quick = words("--pause 0.1");
    row("slow", "pauses", "it held up the event loop for 0.", quick);
    row("slow-at-first", "pauses", "asked for activities, it held up the event loop for 0.", quick);
    row("slow-to-start", "pauses", "init() held up the event loop for 0.", quick);
    row("slow-to-cancel", "pauses", " s in cancelRequest(); the bound is 0.1 s (--pause)", quick);
    row("cannot-post", "post", "asked to post, it gave the error PostFailed", posting);
    row("posts-twice-answered", "post", "asked once to post, it answered 2 times", posting);
    row("keeps-likes", "like", "asked to take back the like, it gave the error LikeFailed",
        posting);
    row("crashes", "lives", "when it was asked for persons");
    row("leaves", "lives", "it ended the process (exit code 3) when it was asked for persons");
    row("crashes-and-leaves", "lives", " when it was asked for persons; it ended the process");
    row("crashes-in-init", "lives", "when init() was called");
    row("crashes-on-unload", "lives", "when it was unloaded");
}

void CliCheckTest::faultIsFoundByItsRuleAlone()
{
    QFETCH(QString, rule);
    QFETCH(QString, words);
    const Ended ended = checks.ended(QLatin1String(QTest::currentDataTag()));
    QCOMPARE(namesOf(ended, "broken"), QStringList(rule));
    QCOMPARE(ended.code, Broken);
    for (const QJsonObject &object : ended.objects()) {
        if (textOf(object, "name") != rule) {
            QCOMPARE(textOf(object, "advice"), QString());
            continue;
        }
        QVERIFY2(textOf(object, "text").contains(words), qPrintable(textOf(object, "text")));
        QVERIFY(!textOf(object, "advice").isEmpty());
    }
}

void CliCheckTest::silenceIsWaitedForOnce_data()
{
    QTest::addColumn<QString>("fault");
    for (const char *fault : {"silent-on-accounts", "silent-on-activities"}) {
        QTest::newRow(fault) << QString::fromLatin1(fault);
        checks.add(QLatin1String(fault), words("--wait 3 --pause 1"));
    }
}

void CliCheckTest::silenceIsWaitedForOnce()
{
    QFETCH(QString, fault);
    const Ended ended = checks.ended(fault);
    QCOMPARE(namesOf(ended, "broken"), words("answers"));
    QCOMPARE(int(ended.out.count(QStringLiteral("did not answer within"))), 1);
    QVERIFY(ended.out.contains(QStringLiteral("it does not answer when it is asked for a")));
    QCOMPARE(ended.code, Broken);
}

void CliCheckTest::soundProviderKeepsEverything_data()
{
    QTest::addColumn<QString>("variant");
    for (const char *variant : {"sound", "answers-in-cancel", "ids-shared-by-accounts",
                                "name-in-bytes", "status-not-first"}) {
        QTest::newRow(variant) << QString::fromLatin1(variant);
        checks.add(QLatin1String(variant), Patient + words("--post"));
    }
}

void CliCheckTest::soundProviderKeepsEverything()
{
    QFETCH(QString, variant);
    const Ended ended = checks.ended(variant);
    QCOMPARE(namesOf(ended, "kept"),
             words("loads name answers status once services accounts records ids filter limit "
                   "times errors unsupported cancelled deleted pauses post like lives"));
    QCOMPARE(ended.objects().size(), qsizetype(20));
    QCOMPARE(ended.code, 0);
}

void CliCheckTest::whatCannotBeJudgedIsNotBroken_data()
{
    QTest::addColumn<QStringList>("rules");
    QTest::addColumn<QString>("words");
    const auto row = [this](const char *variant, const char *rules, const char *said,
                            const QStringList &options) {
        QTest::newRow(variant) << words(rules) << QString::fromLatin1(said);
        checks.add(QLatin1String(variant), options);
    };
    row("harmless", "post like", "--post tries it", Patient);
    row("no-accounts", "accounts records filter limit times post like", "it has no accounts",
        Patient + words("--post"));
    row("records-without-accounts", "accounts records filter post", "it has no accounts",
        Patient + words("--post"));
    row("no-activities", "limit times like", "it gave no activities", Patient + words("--post"));
    row("likes-unknown", "like", "does not say", Patient + words("--post"));
    row("silent-when-fresh", "cancelled deleted post like", "did not answer within 3 s",
        words("--wait 3 --pause 1"));
}

void CliCheckTest::whatCannotBeJudgedIsNotBroken()
{
    QFETCH(QStringList, rules);
    QFETCH(QString, words);
    const Ended ended = checks.ended(QLatin1String(QTest::currentDataTag()));
    QCOMPARE(namesOf(ended, "broken"), QStringList());
    QCOMPARE(namesOf(ended, "not-checked"), rules);
    QVERIFY2(ended.out.contains(words), qPrintable(ended.out));
    QCOMPARE(ended.code, 0);
}

void CliCheckTest::providersOfThisTreeBreakNothing_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("example") << QStringLiteral(EXAMPLE_PLUGIN);
    QTest::newRow("local") << QStringLiteral(LOCAL_PLUGIN);
}

void CliCheckTest::providersOfThisTreeBreakNothing()
{
    QFETCH(QString, file);
    cli->addLocal();
    for (const char *text : {"one", "two"})
        QCOMPARE(cli->run({QStringLiteral("post"), QLatin1String(text)}).code, 0);
    const Ended ended = cli->run(checkOf(file, Patient + words("--post")));
    QCOMPARE(namesOf(ended, "broken"), QStringList());
    QVERIFY(namesOf(ended, "kept").contains(QStringLiteral("times")));
    QCOMPARE(ended.code, 0);
}

void CliCheckTest::textForPeople()
{
    cli->environment.insert(QStringLiteral("COLUMNS"), QStringLiteral("80"));
    const Ended ended = cli->run(
        QStringList{QStringLiteral("check"), provider(*cli, QStringLiteral("greedy"))} + Patient);
    QCOMPARE(ended.code, Broken);
    const QStringList lines = ended.out.split(QLatin1Char('\n'));
    QCOMPARE(lines[0], QStringLiteral("kept         loads        loads, and is a provider"));
    const auto found = lines.indexOf(
        QStringLiteral("BROKEN       limit        asked for at most 3 activities, it gave 4"));
    QVERIFY(found > 0);
    const QString advice =
        QStringLiteral("                          -> Answer with at most limit() activities: ")
        + QStringLiteral("those with");
    QCOMPARE(lines[found + 1], advice);
    QVERIFY(ended.out.endsWith(QStringLiteral("\n\n17 kept, 1 broken, 2 not checked\n")));
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 80, qPrintable(line));
}

void CliCheckTest::missingFileIsWrongUse()
{
    const Ended ended = cli->run(checkOf(QStringLiteral("/no/such.so"), {}));
    QCOMPARE(ended.code, WrongUse);
    QCOMPARE(ended.err, QStringLiteral("kinlet: there is no file \"/no/such.so\"\n"));
}

void CliCheckTest::readerWhoLeavesEndsTheCheck()
{
    // The provider greets each time it is loaded, once for nearly every rule.
    const QString greeting = QStringLiteral("The provider says hello.");
    const QStringList arguments{QStringLiteral("check"), provider(*cli, QStringLiteral("sound"))};
    const Ended all = cli->runInShell(arguments, QStringLiteral(">/dev/null"));
    const Ended few = cli->runInShell(arguments, QStringLiteral("| head -n 1"));
    QVERIFY2(few.err.count(greeting) < all.err.count(greeting) / 2, qPrintable(few.err));
    QVERIFY(few.err.contains(QStringLiteral("the output cannot be written")));
}

void CliCheckTest::checkThatCannotStartBlamesNobody()
{
    // The program is gone when it wants to start itself again.
    const QString copy = cli->path(QStringLiteral("copy"));
    QVERIFY(QFile::copy(QStringLiteral(KINLET_CLI), copy));
    QProcess process;
    process.setProcessEnvironment(cli->environment);
    process.start(
        QStringLiteral("/bin/sh"),
        QStringList{QStringLiteral("-c"),
                    QStringLiteral("exec 3<\"$0\"; rm \"$0\"; exec /proc/self/fd/3 \"$@\""), copy}
            + checkOf(provider(*cli, QStringLiteral("sound")), Patient));
    const Ended ended = Cli::end(process);
    QCOMPARE(ended.out, QString());
    QVERIFY2(ended.err.startsWith(QStringLiteral("kinlet: the check could not be started: ")),
             qPrintable(ended.err));
    QCOMPARE(ended.code, 1);
}

// What scripts rely on.
void CliCheckTest::manualListsTheRules()
{
    QFile manual(QStringLiteral(KINLET_MANUAL));
    QVERIFY(manual.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(manual.readAll());
    const QString rules =
        page.section(QStringLiteral(".Ss Rules\n"), 1).section(QStringLiteral(".El"), 0, 0);
    QStringList listed;
    const QStringList lines = rules.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.startsWith(QStringLiteral(".It Ql ")))
            listed.append(line.mid(7));
    }
    QStringList names;
    for (const Rule &rule : allRules())
        names.append(rule.name);
    QCOMPARE(listed, names);
}

QTEST_GUILESS_MAIN(CliCheckTest)
#include "clichecktest.moc"
