// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "probetest.h"

#include "dbus/payload.h"
#include "records/valuetypes.h"
#include "requests/socialgetpersonsrequest.h"

#include <QDBusConnectionInterface>
#include <QSignalSpy>
#include <QTest>

const QString probe = QStringLiteral("com.orvane.kinlet.probe");

Outcome run(const QStringList &arguments, const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(KINLET_RUNNER), arguments);
    if (!process.waitForFinished(Patience))
        qFatal("kinlet-runner does not end");
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QProcessEnvironment environment(const QString &variable, const QString &value)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("KINLET_PLUGIN_PATH"), QStringLiteral(KINLET_PROBE_FOLDER));
    if (!variable.isEmpty())
        environment.insert(variable, value);
    return environment;
}

QByteArray personsRequest(const QString &account)
{
    SocialGetPersonsRequest request;
    request.setPerformOnAccountsFilter({account});
    return Payload::write(request);
}

bool isOwned(const QString &name)
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(name);
}

QString recordText(const QVariantList &arguments)
{
    SocialGenericData record;
    Payload::read(arguments.at(0).toList().value(0).toByteArray(), record);
    return record.description();
}

void ProbeTest::initTestCase()
{
    KinletInitializer::init();
}

void ProbeTest::init()
{
    m_client = std::make_unique<KinletRunnerInterface>(probe, QStringLiteral("/probe"),
                                                       QDBusConnection::sessionBus(), nullptr);
}

void ProbeTest::cleanup()
{
    m_client.reset();
    if (m_process) {
        m_process->terminate();
        QVERIFY(m_process->state() == QProcess::NotRunning || m_process->waitForFinished(Patience));
        m_process.reset();
    }
    QTRY_VERIFY_WITH_TIMEOUT(!isOwned(probe), Patience);
}

void ProbeTest::start(const QStringList &arguments, const QProcessEnvironment &processEnvironment)
{
    m_process = std::make_unique<QProcess>();
    m_process->setProcessEnvironment(processEnvironment);
    m_process->start(QStringLiteral(KINLET_RUNNER), arguments);
    QTRY_VERIFY_WITH_TIMEOUT(isOwned(probe), Patience);
}

QVariantList ProbeTest::ask(const QString &account, const QString &id)
{
    QSignalSpy finished(m_client.get(),
                        SIGNAL(requestFinished(int, QString, QByteArray, QByteArray)));
    m_client->performRequest(SocialDataRequest::GetPersons, id, personsRequest(account));
    if (!finished.wait(Patience))
        return {};
    return finished.at(0);
}
