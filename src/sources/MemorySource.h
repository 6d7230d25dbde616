// A log in memory.
#pragma once

#include "sources/LogSource.h"

#include <algorithm>
#include <string_view>

namespace carvelot {

// The bytes must outlive the source.
class CMemorySource final : public ILogSource {
public:
    explicit CMemorySource(std::string_view bytes) : m_bytes(bytes), m_rest(bytes) {}

    std::size_t Read(void* buffer, std::size_t size) override {
        const std::size_t count = m_rest.copy(static_cast<char*>(buffer), size);
        m_rest.remove_prefix(count);
        return count;
    }
    void Rewind() override { m_rest = m_bytes; }
    bool Seek(std::uint64_t position) override {
        m_rest = m_bytes.substr(static_cast<std::size_t>(std::min<std::uint64_t>(position, m_bytes.size())));
        return true;
    }
    std::uint64_t Size() const override { return m_bytes.size(); }
    SourceProgress Progress() const override { return {m_bytes.size() - m_rest.size(), m_bytes.size()}; }

private:
    std::string_view m_bytes;
    std::string_view m_rest;
};

} // namespace carvelot
