// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/probe.h"

#include "check/rules.h"
#include "language.h"
#include "report.h"

#include <QEventLoop>
#include <QPluginLoader>
#include <QTimer>

Probe::Probe(const CheckSettings &settings, Diary diary)
    : settings(settings), diary(std::move(diary))
{
}

Probe::~Probe()
{
    note(Tool::tr("it was unloaded"));
    // Before the requests, which it may still be working on.
    plugin.reset();
}

void Probe::load()
{
    note(Tool::tr("it was loaded"));
    // Never unloaded: the library stays as long as the process.
    QPluginLoader loader(settings.file);
    QObject *root = loader.instance();
    if (!root)
        broken(Tool::tr("it cannot be loaded: %1").arg(loader.errorString()));
    plugin.reset(qobject_cast<KinletInterface *>(root));
    if (!plugin)
        broken(Tool::tr("it is a plug-in, but no provider"));
    QObject::connect(plugin.get(), &KinletInterface::error, plugin.get(),
                     [this](const QString &name) { seenNames.inErrors.append(name); });
    const auto name = [this] { return plugin->metaData().value(QStringLiteral("name")); };
    note(Tool::tr("metaData() was called"));
    seenNames.before = name();
    note(Tool::tr("init() was called"));
    plugin->init();
    note(Tool::tr("metaData() was called"));
    seenNames.after = name();
}

void Probe::note(const QString &doing, const QString &rule) const
{
    diary(doing, rule);
}

std::shared_ptr<Reports> Probe::perform(Inquiry inquiry)
{
    note(Tool::tr("it was asked %1").arg(inquiry.what));
    SocialDataRequest *const request = inquiry.request.get();
    std::shared_ptr<Reports> reports = inquiry.reports;
    inquiries.push_back(std::move(inquiry));
    start(request);
    return reports;
}

void Probe::start(SocialDataRequest *request)
{
    // Providers get requests that have been started; this is no report of theirs.
    request->SocialDataRequest::setRequestProgress(SocialDataRequest::Started, {});
    plugin->performRequest(request);
}

void Probe::await(const std::shared_ptr<Reports> &reports, const QString &what)
{
    if (!reports->ended()) {
        QEventLoop loop;
        QTimer::singleShot(settings.waitMilliseconds, &loop, &QEventLoop::quit);
        const std::function<void()> before = reports->onEnd;
        reports->onEnd = [&] {
            if (before)
                before();
            loop.quit();
        };
        loop.exec();
        reports->onEnd = before;
    }
    if (!reports->ended())
        broken(Tool::tr("it did not answer within %1 s when it was asked %2")
                   .arg(settings.waitMilliseconds / 1000.0)
                   .arg(what));
}

std::shared_ptr<Reports> Probe::ask(Inquiry inquiry)
{
    const QString what = inquiry.what;
    std::shared_ptr<Reports> reports = perform(std::move(inquiry));
    await(reports, what);
    return reports;
}

QList<SocialGenericData> Probe::records(Inquiry inquiry)
{
    const QString what = inquiry.what;
    const std::shared_ptr<Reports> reports = ask(std::move(inquiry));
    if (reports->results.isEmpty() && !reports->errors.isEmpty())
        notChecked(Tool::tr("asked %1, it gave the error %2")
                       .arg(what, errorText(reports->errors.constFirst())));
    return reports->results;
}

QList<SocialGenericData> Probe::activities(const QString &what, const Setter &set)
{
    Inquiry asked = inquiry<SocialGetActivitiesRequest>(what);
    auto *request = static_cast<SocialGetActivitiesRequest *>(asked.request.get());
    request->setLimit(ManyActivities);
    if (set)
        set(*request);
    return records(std::move(asked));
}

QStringList Probe::accountIds()
{
    QStringList ids;
    const QList<SocialGenericData> accounts = records(plainInquiry(Kind::Accounts));
    for (const SocialGenericData &account : accounts)
        ids.append(account.id());
    return ids;
}

void Probe::cancel(SocialDataRequest *request)
{
    plugin->cancelRequest(request);
}

void Probe::rest(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

QString errorText(const KinletError &error)
{
    QString text = errorTypeName(error.type());
    if (!error.description().isEmpty())
        text += QStringLiteral(" (%1)").arg(error.description());
    return text;
}
