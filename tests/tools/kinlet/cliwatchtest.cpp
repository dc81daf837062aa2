// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cli.h"

#include <QJsonArray>
#include <QTest>

#include <csignal>

namespace {

const QByteArray story = json(R"({
    'accounts': [{'Id': 'a1', 'SocialServiceId': 'wood'}],
    'persons': [{'Id': 'p1', 'ScreenName': 'Ada'}],
    'pushes': [
        {'class': 'SocialActivity', 'updated': ['Description'],
         'records': [{'Id': 's1', 'OwnerPersonId': 'p1', 'Description': 'Hello', 'ParentAccount': 'a1'}]},
        {'class': 'SocialNetworkPerson', 'updated': ['Status'],
         'records': [{'Id': 'p2', 'ScreenName': 'Bob'}, {'Id': 'p3'}]},
        {'class': 'SocialService', 'updated': ['Description'],
         'records': [{'Id': 'wood', 'Description': 'The Wood'}]},
        {'class': 'SocialServiceAccount', 'updated': ['ImportProgress'],
         'records': [{'Id': 'a1', 'SocialServiceId': 'wood', 'ImportProgress': []}]},
        {'class': 'SocialServiceAccount', 'updated': ['ImportProgress'],
         'records': [{'Id': 'a1', 'SocialServiceId': 'wood', 'ImportProgress': [3, 1, 2]}]},
        {'class': 'SocialServiceAccount', 'updated': ['State'],
         'records': [{'Id': 'a1', 'State': 4}, {'Id': 'a2', 'State': 5}]}]
})");

// What it prints until it has printed \a last, after which it is interrupted.
Ended watched(const Cli &cli, const QStringList &options, const QByteArray &last)
{
    QProcess process;
    cli.start(process, QStringList(QStringLiteral("watch")) + options);
    QByteArray out;
    const auto seen = [&] {
        out += process.readAllStandardOutput();
        return out.contains(last);
    };
    while (!seen() && process.waitForReadyRead(30000)) { }
    kill(pid_t(process.processId()), SIGINT);
    Ended ended = Cli::end(process);
    ended.out.prepend(QString::fromUtf8(out));
    return ended;
}

}

class CliWatchTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void forPeople();
    void forPrograms();
    void pushedWhileStarting();
    void endsWhenTheOutputDoes();
    void anotherProcessPosts();
};

void CliWatchTest::forPeople()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), story);
    const Ended ended = watched(cli, {}, "Accounts removed");
    QCOMPARE(ended.out,
             QStringLiteral("Ada\n"
                            "    Hello\n"
                            "    s1\n"
                            "\n"
                            "Person: Bob  p2\n"
                            "Person: p3  p3\n"
                            "SocialService: The Wood  wood\n"
                            "Import started: wood, account a1\n"
                            "Import ended: wood, account a1: persons added 3, removed 1, merged 2\n"
                            "Accounts removed: a1, a2\n"));
    QCOMPARE(ended.err, QStringLiteral("kinlet: watching\n"));
    // Ctrl-C is how watching ends.
    QCOMPARE(ended.code, 0);
}

void CliWatchTest::forPrograms()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), story);
    const Ended ended = watched(cli, {QStringLiteral("--json")}, "accountsRemoved");
    QCOMPARE(ended.out,
             QStringLiteral(
                 R"({"class":"SocialActivity","event":"dataUpdate","properties":{)"
                 R"("Description":"Hello","Id":"s1","OwnerPersonId":"p1","ParentAccount":"a1"},)"
                 R"("provider":"alder","updatedProperties":["Description"]})"
                 "\n"
                 R"({"class":"SocialNetworkPerson","event":"personsUpdate","properties":{)"
                 R"("Id":"p2","ScreenName":"Bob"},"provider":"","updatedProperties":["Status"]})"
                 "\n"
                 R"({"class":"SocialNetworkPerson","event":"personsUpdate","properties":{)"
                 R"("Id":"p3"},"provider":"","updatedProperties":["Status"]})"
                 "\n"
                 R"({"class":"SocialService","event":"dataUpdate","properties":{)"
                 R"("Description":"The Wood","Id":"wood"},"provider":"",)"
                 R"("updatedProperties":["Description"]})"
                 "\n"
                 R"({"account":"a1","event":"importStarted","service":"wood"})"
                 "\n"
                 R"({"account":"a1","added":3,"event":"importEnded","merged":2,"removed":1,)"
                 R"("service":"wood"})"
                 "\n"
                 R"({"accounts":["a1","a2"],"event":"accountsRemoved"})"
                 "\n"));
    QCOMPARE(ended.code, 0);
}

void CliWatchTest::pushedWhileStarting()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), story);
    cli.addProvider(QStringLiteral("cedar"), json("{'silent': ['accounts']}"));
    const Ended ended =
        watched(cli, {QStringLiteral("--timeout"), QStringLiteral("0.5")}, "Import ended");
    QVERIFY(ended.out.startsWith(QStringLiteral("Ada\n    Hello\n")));
    QVERIFY(ended.err.contains(QStringLiteral("cedar did not start")));
    QCOMPARE(ended.code, 1);
}

void CliWatchTest::endsWhenTheOutputDoes()
{
    Cli cli;
    cli.addProvider(QStringLiteral("alder"), story);
    const Ended ended = cli.runInShell({QStringLiteral("watch")}, QStringLiteral("> /dev/full"));
    QVERIFY(ended.err.endsWith(
        QStringLiteral("kinlet: the output cannot be written: No space left on device\n")));
    QCOMPARE(ended.code, 1);
}

void CliWatchTest::anotherProcessPosts()
{
    Cli cli;
    cli.addLocal();
    QProcess process;
    cli.start(process, {QStringLiteral("watch"), QStringLiteral("--json")});
    QByteArray err;
    process.setReadChannel(QProcess::StandardError);
    while (!err.contains("watching")) {
        QVERIFY(process.bytesAvailable() > 0 || process.waitForReadyRead(30000));
        err += process.readAllStandardError();
    }
    QCOMPARE(cli.run({QStringLiteral("post"), QStringLiteral("From over there")}).code, 0);
    process.setReadChannel(QProcess::StandardOutput);
    QByteArray out;
    while (!out.contains("From over there")) {
        QVERIFY(process.bytesAvailable() > 0 || process.waitForReadyRead(30000));
        out += process.readAllStandardOutput();
    }
    kill(pid_t(process.processId()), SIGINT);
    QCOMPARE(Cli::end(process).code, 0);
}

QTEST_GUILESS_MAIN(CliWatchTest)
#include "cliwatchtest.moc"
