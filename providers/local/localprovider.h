// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/KinletError>
#include <Kinlet/KinletInterface>
#include <Kinlet/SocialImportProgress>

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

class ChangeFeed;
class Importer;
class Store;
struct StoreError;

/**
 * The provider "local": a person's own journal, kept in a file of theirs.
 *
 * Questions are answered inside performRequest(). So are changes, unless another connection is
 * writing: then they wait for their turn, and fail when it does not come for half a minute.
 */
class LocalProvider : public KinletInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0")
    Q_INTERFACES(KinletInterface)

public:
    explicit LocalProvider(QObject *parent = nullptr);
    ~LocalProvider() override;

    void init() override;
    QVariantMap metaData() override;
    void performRequest(SocialDataRequest *request) override;
    void cancelRequest(SocialDataRequest *request) override;
    QList<SocialService> services() override;
    QList<SocialServiceAccount> accounts() override;

private:
    using Records = QList<SocialGenericData>;

    struct Write {
        QPointer<SocialDataRequest> request;
        QElapsedTimer waiting;
    };

    struct Outcome {
        Records results;
        QList<KinletError> errors;
        bool busy = false;
        bool failed = false;
    };

    bool openStore();
    void watchStore();
    void note(const StoreError &error);
    void report();
    void answerRegistry(SocialDataRequest *request);
    Outcome attempt(const SocialDataRequest &request, const std::function<Records()> &work);
    void finish(SocialDataRequest *request, const Outcome &outcome);
    void writeOn();
    void pushImportProgress(const SocialImportProgress &progress);
    void onCaughtUp();

    std::unique_ptr<Store> store;
    // Children of this object; null until the store is open.
    ChangeFeed *feed = nullptr;
    Importer *importer = nullptr;
    QList<Write> writes;
    QTimer nextWrite;
    QString failure;
    QString reportedFailure;
    bool damaged = false;
    // The end of an import waits until what came with it has been told.
    std::optional<SocialImportProgress> importEnd;
};
