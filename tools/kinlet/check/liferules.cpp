// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/probe.h"
#include "language.h"

#include <QElapsedTimer>

#include <new>

#include <sys/mman.h>

namespace {

using Request = Watched<SocialGetActivitiesRequest>;

// A request on memory of its own, which cannot be touched any more once it has been deleted: what
// does so ends the process, as it may do in an application.
class TrappedRequest {
public:
    TrappedRequest()
    {
        void *pages = ::mmap(nullptr, sizeof(Request), PROT_READ | PROT_WRITE,
                             MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (pages == MAP_FAILED)
            notChecked(Tool::tr("there is no memory for it"));
        request = new (pages) Request(reports);
        request->setForceRefresh(true);
    }
    // What has not been destroyed stays until the process ends: it may still be worked on.
    ~TrappedRequest() = default;
    TrappedRequest(const TrappedRequest &) = delete;
    TrappedRequest &operator=(const TrappedRequest &) = delete;

    void destroy()
    {
        if (!request)
            return;
        request->~Request();
        ::mprotect(request, sizeof(Request), PROT_NONE);
        request = nullptr;
    }

    Request *request = nullptr;
    const std::shared_ptr<Reports> reports = std::make_shared<Reports>();
};

Inquiry freshInquiry(const QString &kind)
{
    Inquiry inquiry = plainInquiry(kind);
    if (auto *activities = qobject_cast<SocialGetActivitiesRequest *>(inquiry.request.get()))
        activities->setForceRefresh(true);
    return inquiry;
}

// A kind of request that is not answered inside the call, and how long its answer takes.
struct Slow {
    QString kind;
    int milliseconds = 0;
};

Slow findSlow(Probe &probe)
{
    for (const QString &kind : {Kind::Activities, Kind::Persons, Kind::Likers}) {
        if (!probe.settings.kinds.contains(kind))
            continue;
        QElapsedTimer timer;
        timer.start();
        const Asked asked = probe.perform(freshInquiry(kind));
        if (asked.reports->ended())
            continue;
        probe.await(asked);
        return {kind, int(timer.elapsed())};
    }
    notChecked(Tool::tr("it answers at once or never, which leaves nothing to cancel"));
}

// False if there is nothing to cancel any more.
bool cancelAndWatch(Probe &probe, const Asked &asked, int milliseconds)
{
    const QString rule = QStringLiteral("cancelled");
    const Reports &reports = *asked.reports;
    if (reports.ended())
        return false;
    probe.note(Tool::tr("it was told to cancel a request"), rule);
    probe.cancel(asked.request);
    probe.note(Tool::tr("it had been told to cancel a request"), rule);
    // Inside the call it may still answer.
    const auto before = reports.statuses.size();
    const auto found = asked.request->results().size();
    probe.rest(timeForMore(milliseconds));
    const QList<SocialDataRequest::Status> late = reports.statuses.mid(before);
    if (late.contains(SocialDataRequest::Stopped) || late.contains(SocialDataRequest::Finished))
        broken(Tool::tr("it answered a request that had been cancelled"));
    if (!late.isEmpty())
        broken(Tool::tr("it reported progress of a request that had been cancelled"));
    if (asked.request->results().size() != found)
        broken(Tool::tr("it gave results to a request that had been cancelled"));
    return true;
}

}

void checkCancelled(Probe &probe)
{
    const Slow slow = findSlow(probe);
    const bool atOnce =
        cancelAndWatch(probe, probe.perform(freshInquiry(slow.kind)), slow.milliseconds);
    const Asked begun = probe.perform(freshInquiry(slow.kind));
    probe.rest(slow.milliseconds / 2);
    const bool midway = cancelAndWatch(probe, begun, slow.milliseconds);
    if (!atOnce && !midway)
        notChecked(Tool::tr("asked again, it answered at once"));
}

void checkDeleted(Probe &probe)
{
    const QString rule = QStringLiteral("deleted");
    const QString what = Tool::tr("for activities");
    QElapsedTimer timer;
    timer.start();
    probe.ask(freshInquiry(Kind::Activities));
    // Until then a late answer must have come.
    const int time = timeForMore(timer.elapsed());
    TrappedRequest finished;
    finished.reports->onEnd = [&] {
        finished.destroy();
        probe.note(Tool::tr("a request had been deleted when it had finished"), rule);
    };
    const Asked first{what, finished.request, finished.reports};
    probe.start(first);
    probe.await(first);
    probe.rest(time);

    TrappedRequest cancelled;
    cancelled.reports->onEnd = [&] { cancelled.destroy(); };
    probe.start({what, cancelled.request, cancelled.reports});
    if (cancelled.request) {
        probe.note(Tool::tr("it was told to cancel a request"), QStringLiteral("cancelled"));
        probe.cancel(cancelled.request);
        probe.note(Tool::tr("a request had been deleted when it was cancelled"), rule);
        cancelled.reports->onEnd = nullptr;
        cancelled.destroy();
    }
    probe.rest(time);
}
