#include "ui/kit/BackgroundWork.h"

#include <system_error>

namespace carvelot {

CBackgroundWork::CBackgroundWork(std::function<void()> work, std::function<void()> stop,
                                 std::function<void()> done)
    : m_fnStop(std::move(stop)), m_fnDone(std::move(done)) {
    const auto run = [this, work = std::move(work)] {
        work();
        QMetaObject::invokeMethod(this, &CBackgroundWork::OnEnded, Qt::QueuedConnection);
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

void CBackgroundWork::OnEnded() {
    Join();
    m_fnDone();
}

void CBackgroundWork::Join() {
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

} // namespace carvelot
