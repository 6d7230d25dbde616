// Blocks that are filled ahead of whoever works on them, by a thread of their own.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace carvelot {

// What is filled, and in which order, is the same with and without a thread and with any number of blocks.
template <class Block> class CReadAhead {
public:
    // Fills a block, of whose content nothing is used any more. `before` is the one that was filled ahead of
    // it, null for the first: of it nothing may be written, nor read what whoever works on it changes. False
    // when there is no more.
    using Fill = std::function<bool(Block& block, const Block* before, const CReadAhead& ahead)>;

    // `ring`: two blocks or more; without a thread one will do, which is then the one before itself. They,
    // and what `fill` uses, are the thread's until this object goes.
    CReadAhead(std::vector<Block>& ring, Fill fill, bool threaded) : m_ring(ring), m_fill(std::move(fill)) {
        if (!threaded) {
            return;
        }
        try {
            m_thread = std::thread([this] { FillAll(); });
        } catch (const std::system_error&) {
            // No thread can be had: each block is filled when it is asked for.
        }
    }
    ~CReadAhead() {
        if (m_thread.joinable()) {
            {
                const std::lock_guard lock(m_mutex);
                m_bStopped = true;
            }
            m_roomMade.notify_one();
            m_thread.join();
        }
    }
    CReadAhead(const CReadAhead&) = delete;
    CReadAhead& operator=(const CReadAhead&) = delete;

    // The next block, null behind the last; the one before it is given back. What `fill` throws comes out
    // here.
    Block* Next() { return m_thread.joinable() ? Take() : FillOne(); }

    // Blocks that are filled and not yet taken: with none, whoever works on them is about to wait, or waits.
    // A moment later it may be otherwise.
    std::size_t Waiting() const {
        const std::size_t taken = m_nTaken;
        return m_nFilled - taken;
    }

private:
    Block* FillOne() {
        Block& block = At(m_nFilled);
        if (!m_fill(block, Before(m_nFilled), *this)) {
            return nullptr;
        }
        m_nTaken = ++m_nFilled;
        return &block;
    }

    Block* Take() {
        std::unique_lock lock(m_mutex);
        m_nGivenBack = m_nTaken;
        if (Free() >= ManyFree()) {
            m_roomMade.notify_one();
        }
        m_blockFilled.wait(lock, [this] { return m_nTaken != m_nFilled || m_bEnded; });
        if (m_nTaken != m_nFilled) {
            return &At(m_nTaken++);
        }
        if (m_failure) {
            std::rethrow_exception(std::exchange(m_failure, nullptr));
        }
        return nullptr;
    }

    void FillAll() {
        bool more = true;
        std::exception_ptr failure;
        while (more && WaitForRoom()) {
            try {
                // Only this thread changes how many are filled.
                more = m_fill(At(m_nFilled), Before(m_nFilled), *this);
            } catch (...) {
                more = false;
                failure = std::current_exception();
            }
            {
                const std::lock_guard lock(m_mutex);
                m_nFilled += more ? 1 : 0;
                m_bEnded = !more;
                m_failure = failure;
            }
            m_blockFilled.notify_one();
        }
    }
    // False when this object goes.
    bool WaitForRoom() {
        std::unique_lock lock(m_mutex);
        if (Free() == 0) {
            // To be woken for each block that is given back would cost as much as filling a small one.
            m_roomMade.wait(lock, [this] { return Free() >= ManyFree() || m_bStopped; });
        }
        return !m_bStopped;
    }

    Block& At(std::size_t number) { return m_ring[number % m_ring.size()]; }
    const Block* Before(std::size_t number) { return number == 0 ? nullptr : &At(number - 1); }
    std::size_t Free() const { return m_ring.size() - (m_nFilled - m_nGivenBack); }
    std::size_t ManyFree() const { return (m_ring.size() + 1) / 2; }

    std::vector<Block>& m_ring;
    const Fill m_fill;

    std::mutex m_mutex; // of what follows, all numbers of blocks from the first one on
    std::condition_variable m_roomMade;
    std::condition_variable m_blockFilled;
    std::atomic<std::size_t> m_nFilled = 0;
    std::atomic<std::size_t> m_nTaken = 0;
    std::size_t m_nGivenBack = 0;
    bool m_bEnded = false;
    bool m_bStopped = false;
    std::exception_ptr m_failure;

    std::thread m_thread;
};

} // namespace carvelot
