// BackgroundWork.h - work that runs beside the windows, on a thread of its own.
#pragma once

#include <QObject>

#include <functional>
#include <thread>

namespace carvelot {

class CBackgroundWork : public QObject {
    Q_OBJECT

public:
    // `work` must not throw. `stop` asks it to end soon and may be called more than once, from this thread.
    // `done` is called in this thread when the work has ended, unless this object goes before.
    CBackgroundWork(std::function<void()> work, std::function<void()> stop, std::function<void()> done);
    // Stops the work and waits for its end.
    ~CBackgroundWork() override;

    void Stop() const { m_fnStop(); }
    // Whether any work has begun and has not ended yet, as far as this thread has heard.
    static bool AnyRuns();

protected:
    // The work has ended.
    void customEvent(QEvent* event) override;

private:
    void Join();

    bool m_bRuns = true;
    const std::function<void()> m_fnStop;
    const std::function<void()> m_fnDone;
    std::thread m_thread;
};

} // namespace carvelot
