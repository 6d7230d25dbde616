// How far exploring has come, for whoever waits for it, and the way to end it early. Any thread may ask.
#pragma once

#include <atomic>
#include <cstdint>

namespace carvelot {

// Thrown by exploring that was told to end.
struct ExploringEnded {};

class CExploreProgress {
public:
    void End() { m_bEnds.store(true, std::memory_order_relaxed); }
    bool Ends() const { return m_bEnds.load(std::memory_order_relaxed); }
    // 0 to 100, never falling.
    int Percent() const { return m_nPercent.load(std::memory_order_relaxed); }

    // For what works: ends it here where it is to end.
    void Check() const {
        if (Ends()) {
            throw ExploringEnded();
        }
    }
    void Reach(int percent) {
        Check();
        m_nPercent.store(percent, std::memory_order_relaxed);
    }
    // Of a walk over many: looks only now and then.
    void CheckAt(std::uint32_t step) const {
        if ((step & 0xFFFFU) == 0) {
            Check();
        }
    }

private:
    std::atomic<bool> m_bEnds = false;
    std::atomic<int> m_nPercent = 0;
};

} // namespace carvelot
