// How far exploring has come, for whoever waits for it, and the way to end it early. Any thread may ask.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>

namespace carvelot {

// Thrown by exploring that was told to end.
struct ExploringEnded {};

// What each part of exploring is worth, about as its time goes; all together 100. Parts run beside each
// other.
struct ExploreParts {
    static constexpr int kClock = 8;
    static constexpr int kFrames = 20;
    static constexpr int kRecordShapes = 18;
    static constexpr int kTransactions = 8;
    static constexpr int kStatementShapes = 2;
    static constexpr int kFindings = 20;
    static constexpr int kCut = 2;
    static constexpr int kProfile = 16;
    static constexpr int kShapeProfiles = 6;

    static constexpr int kScope = kCut + kProfile + kShapeProfiles;
    static constexpr int kAll =
        kClock + kFrames + kRecordShapes + kTransactions + kStatementShapes + kFindings + kScope;
};
static_assert(ExploreParts::kAll == 100);

class CExploreProgress {
public:
    // Of a session with its findings and one scope, or only of some parts. Whichever part comes last reaches
    // 100.
    explicit CExploreProgress(int parts = ExploreParts::kAll) : m_nParts(parts) {}

    void End() { m_bEnds.store(true, std::memory_order_relaxed); }
    bool Ends() const { return m_bEnds.load(std::memory_order_relaxed); }
    // 0 to 100, never falling.
    int Percent() const { return std::min(100, m_nDone.load(std::memory_order_relaxed) * 100 / m_nParts); }

    // For what works: ends it here where it is to end.
    void Check() const {
        if (m_nChecksLeft.fetch_sub(1, std::memory_order_relaxed) == 1) {
            m_bEnds.store(true, std::memory_order_relaxed);
        }
        if (Ends()) {
            throw ExploringEnded();
        }
    }
    void Add(int part) { m_nDone.fetch_add(part, std::memory_order_relaxed); }

    // For tests: ends at a check, counted from 1; or tells how many there were.
    void EndAtCheck(std::int64_t check) { m_nChecksLeft.store(check, std::memory_order_relaxed); }
    std::int64_t Checks() const { return -m_nChecksLeft.load(std::memory_order_relaxed); }

private:
    const int m_nParts;
    mutable std::atomic<bool> m_bEnds = false;
    std::atomic<int> m_nDone = 0;
    mutable std::atomic<std::int64_t> m_nChecksLeft = 0;
};

// Of a walk over many, which looks only now and then whether it is to end. Without a progress it never is.
inline void CheckAt(CExploreProgress* progress, std::uint32_t step) {
    if ((step & 0xFFFFU) == 0 && progress != nullptr) {
        progress->Check();
    }
}
inline void AddPart(CExploreProgress* progress, int part) {
    if (progress != nullptr) {
        progress->Check();
        progress->Add(part);
    }
}

} // namespace carvelot
