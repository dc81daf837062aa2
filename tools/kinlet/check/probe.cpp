// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/probe.h"

#include "language.h"
#include "report.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QPluginLoader>
#include <QTimer>

#include <algorithm>

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
    QElapsedTimer timer;
    timer.start();
    plugin->init();
    initTime = timer.elapsed();
    note(Tool::tr("metaData() was called"));
    seenNames.after = name();
}

void Probe::note(const QString &doing, const QString &rule) const
{
    diary(doing, rule);
}

Asked Probe::perform(Inquiry inquiry)
{
    const Asked asked{inquiry.what, inquiry.request.get(), inquiry.reports};
    inquiries.push_back(std::move(inquiry));
    start(asked);
    return asked;
}

void Probe::start(const Asked &asked)
{
    note(Tool::tr("it was asked %1").arg(asked.what));
    asked.reports->due = QDeadlineTimer(settings.waitMilliseconds);
    // Providers get requests that have been started; this is no report of theirs.
    asked.request->SocialDataRequest::setRequestProgress(SocialDataRequest::Started, {});
    plugin->performRequest(asked.request);
}

void Probe::await(const Asked &asked, Verdict onSilence)
{
    Reports &reports = *asked.reports;
    if (!reports.ended()) {
        QEventLoop loop;
        QTimer::singleShot(int(reports.due.remainingTime()), &loop, &QEventLoop::quit);
        const std::function<void()> before = reports.onEnd;
        reports.onEnd = [&] {
            if (before)
                before();
            loop.quit();
        };
        loop.exec();
        reports.onEnd = before;
    }
    if (!reports.ended())
        throw Finding{onSilence,
                      Tool::tr("it did not answer within %1 s (--wait) when it was asked %2")
                          .arg(settings.waitMilliseconds / 1000.0)
                          .arg(asked.what)};
}

Asked Probe::ask(Inquiry inquiry, Verdict onSilence)
{
    const Asked asked = perform(std::move(inquiry));
    await(asked, onSilence);
    return asked;
}

QList<SocialGenericData> Probe::records(Inquiry inquiry)
{
    const Asked asked = ask(std::move(inquiry));
    const Reports &reports = *asked.reports;
    if (reports.results.isEmpty() && !reports.errors.isEmpty())
        notChecked(Tool::tr("asked %1, it gave the error %2")
                       .arg(asked.what, errorText(reports.errors.constFirst())));
    return reports.results;
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

int timeForMore(qint64 milliseconds)
{
    constexpr qint64 least = 300;
    return int(std::max(least, 2 * milliseconds));
}

QString errorText(const KinletError &error)
{
    QString text = errorTypeName(error.type());
    if (!error.description().isEmpty())
        text += QStringLiteral(" (%1)").arg(error.description());
    return text;
}
