// A log that comes through a pipe, once. What is read is kept until the last start over.
#pragma once

#include "platform/PipeFile.h"
#include "sources/LogSource.h"
#include "text/Release.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace carvelot {

class CPipeSource final : public ILogSource {
public:
    explicit CPipeSource(platform::PipeFile& pipe) : m_pipe(pipe) {}

    std::size_t Read(void* buffer, std::size_t size) override {
        const std::size_t again = std::min(size, m_kept.size() - m_nAgain);
        if (again > 0) {
            std::memcpy(buffer, m_kept.data() + m_nAgain, again);
            m_nAgain += again;
        }
        char* const rest = static_cast<char*>(buffer) + again;
        const std::size_t got = again < size ? m_pipe.Read(rest, size - again) : 0;
        if (m_bForGood) {
            if (m_nAgain == m_kept.size()) {
                Release(m_kept);
                m_nAgain = 0;
            }
        } else {
            m_kept.insert(m_kept.end(), rest, rest + got);
            m_nAgain += got;
        }
        m_nPosition += again + got;
        return again + got;
    }
    void Rewind() override {
        if (!m_bForGood) {
            m_nAgain = 0;
            m_nPosition = 0;
        }
    }
    void RewindForGood() override {
        Rewind();
        m_bForGood = true;
    }
    std::uint64_t Size() const override { return 0; }
    SourceProgress Progress() const override { return {m_nPosition, 0}; }

private:
    platform::PipeFile& m_pipe;
    std::vector<char> m_kept;
    std::size_t m_nAgain = 0; // of what is kept, bytes that have been given again
    std::uint64_t m_nPosition = 0;
    bool m_bForGood = false;
};

} // namespace carvelot
