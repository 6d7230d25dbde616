#include "ui/kit/BackgroundWork.h"

#include <QCoreApplication>
#include <QEvent>

#include <system_error>

namespace carvelot {

namespace {

int s_nRunning = 0; // in the windows' thread

} // namespace

bool CBackgroundWork::AnyRuns() { return s_nRunning > 0; }

CBackgroundWork::CBackgroundWork(std::function<void()> work, std::function<void()> stop,
                                 std::function<void()> done)
    : m_fnStop(std::move(stop)), m_fnDone(std::move(done)) {
    ++s_nRunning;
    const auto run = [this, work = std::move(work)] {
        work();
        // Not a queued call: what such a call holds is made in this thread and read in the other, and Qt's
        // own locks between them are not seen by a sanitizer of threads. Nothing of an event is read but that
        // it came.
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    };
    try {
        m_thread = std::thread(run);
    } catch (const std::system_error&) {
        run(); // no thread can be had: the windows wait
    }
}

CBackgroundWork::~CBackgroundWork() {
    m_fnStop();
    Join();
}

void CBackgroundWork::customEvent(QEvent*) {
    Join();
    m_fnDone();
}

void CBackgroundWork::Join() {
    if (m_thread.joinable()) {
        m_thread.join();
    }
    s_nRunning -= m_bRuns ? 1 : 0;
    m_bRuns = false;
}

} // namespace carvelot
