// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "dbus/kinletrunnerinterface.h"

#include <QObject>
#include <QProcess>
#include <QProcessEnvironment>

#include <memory>

constexpr int Patience = 60000;
/// The bus name of the provider in probeplugin.cpp.
extern const QString probe;

/// What the tool says and how it ends.
struct Outcome {
    int code;
    QString output;
    QString errors;
};

Outcome run(const QStringList &arguments, const QProcessEnvironment &environment);
/// The test's own, with the plug-in folder of the probe and with the variable.
QProcessEnvironment environment(const QString &variable = {}, const QString &value = {});
/// The bytes of a request for persons; the account says what the probe does with it.
QByteArray personsRequest(const QString &account);
bool isOwned(const QString &name);
/// The description of the first record of a push.
QString recordText(const QVariantList &arguments);

/// A test of kinlet-runner, which serves the probe to a client.
class ProbeTest : public QObject {
    Q_OBJECT

protected:
    void start(const QStringList &arguments,
               const QProcessEnvironment &processEnvironment = environment());
    /// Sends a request and waits for its answer: the arguments of requestFinished.
    QVariantList ask(const QString &account, const QString &id = QStringLiteral("id"));

    std::unique_ptr<QProcess> m_process;
    std::unique_ptr<KinletRunnerInterface> m_client;

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
};
