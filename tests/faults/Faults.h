// Faults of the machine, made to order: the program of these tests is linked so that its system calls and
// allocations come here first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace carvelot::test {

// What the system is to do until this is gone. One at a time.
class Faults {
public:
    Faults();
    ~Faults();
    Faults(const Faults&) = delete;
    Faults& operator=(const Faults&) = delete;

    // A read gives at most what this says for the number of bytes asked for (at least 1); it may take its
    // time.
    std::function<std::size_t(std::size_t)> m_fnReadAtMost;
    // Every so many reads one is interrupted first; 0 for never.
    std::uint64_t m_nInterruptEach = 0;
    // Reads fail with this error from so many bytes on.
    std::uint64_t m_nReadableBytes = ~std::uint64_t{0};
    int m_nReadError = 0;
    // One read fails, the one of that number, counted from 1.
    std::uint64_t m_nFailingRead = 0;
    // Writes fail with this error once so many bytes are written; the last one before writes what fits.
    std::uint64_t m_nWritableBytes = ~std::uint64_t{0};
    int m_nWriteError = 0;
    // Error of an open that would make a file, and of one of a folder's list; or the list opens and breaks
    // off.
    int m_nMakeError = 0;
    int m_nListError = 0;
    int m_nListReadError = 0;
    // Errors of the calls that end a file's writing.
    int m_nSyncError = 0;
    int m_nRenameError = 0;
    // The size that an open file claims; -1 for its own.
    std::int64_t m_nClaimedSize = -1;

    // The allocation of that number, counted from 1 and from now, fails; 0 for none. Blocks of pages count
    // too.
    void FailAllocation(std::uint64_t number);
    std::uint64_t Allocations() const;

    std::uint64_t m_nReads = 0;
    std::uint64_t m_nReadBytes = 0;
    std::uint64_t m_nWrittenBytes = 0;
};

} // namespace carvelot::test
