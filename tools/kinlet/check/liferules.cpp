// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "check/probe.h"
#include "check/rules.h"
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

Inquiry freshActivities()
{
    Inquiry inquiry = plainInquiry(Kind::Activities);
    static_cast<SocialGetActivitiesRequest *>(inquiry.request.get())->setForceRefresh(true);
    return inquiry;
}

// Twice what an answer takes: until then a late one must have come.
int timeForLateAnswers(Probe &probe)
{
    QElapsedTimer timer;
    timer.start();
    probe.ask(freshActivities());
    return timeForMore(timer.elapsed());
}

}

void checkCancelled(Probe &probe)
{
    const QString rule = QStringLiteral("cancelled");
    const int time = timeForLateAnswers(probe);
    Inquiry inquiry = freshActivities();
    SocialDataRequest *const request = inquiry.request.get();
    const std::shared_ptr<Reports> reports = probe.perform(std::move(inquiry)).reports;
    if (reports->ended())
        notChecked(Tool::tr("it answers at once, which leaves nothing to cancel"));
    const auto before = reports->statuses.size();
    const auto found = request->results().size();
    probe.note(Tool::tr("it was told to cancel a request"), rule);
    probe.cancel(request);
    probe.note(Tool::tr("it had been told to cancel a request"), rule);
    probe.rest(time);
    if (reports->ended())
        broken(Tool::tr("it answered a request that had been cancelled"));
    if (reports->statuses.size() != before)
        broken(Tool::tr("it reported progress of a request that had been cancelled"));
    if (request->results().size() != found)
        broken(Tool::tr("it gave results to a request that had been cancelled"));
}

void checkDeleted(Probe &probe)
{
    const QString rule = QStringLiteral("deleted");
    const int time = timeForLateAnswers(probe);
    const QString what = Tool::tr("for activities");
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
