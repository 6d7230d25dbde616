// Where the bytes of a log come from.
#pragma once

#include "platform/SharedFile.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace carvelot {

class ILogSource {
public:
    virtual ~ILogSource() = default;

    // Reads up to `size` bytes; fewer only at the end, or where reading fails.
    virtual std::size_t Read(void* buffer, std::size_t size) = 0;
    // Starts over from the first byte.
    virtual void Rewind() = 0;
    // The size in bytes at this moment; 0 when it can't be told.
    virtual std::uint64_t Size() const = 0;
};

// A file that others may be writing.
class CFileSource final : public ILogSource {
public:
    explicit CFileSource(platform::SharedFile& file) : m_file(file) {}

    std::size_t Read(void* buffer, std::size_t size) override { return m_file.Read(buffer, size); }
    void Rewind() override { m_file.Rewind(); }
    std::uint64_t Size() const override { return m_file.Size(); }

private:
    platform::SharedFile& m_file;
};

// Bytes in memory, which must outlive the source.
class CMemorySource final : public ILogSource {
public:
    explicit CMemorySource(std::string_view bytes) : m_bytes(bytes), m_rest(bytes) {}

    std::size_t Read(void* buffer, std::size_t size) override {
        const std::size_t count = m_rest.copy(static_cast<char*>(buffer), size);
        m_rest.remove_prefix(count);
        return count;
    }
    void Rewind() override { m_rest = m_bytes; }
    std::uint64_t Size() const override { return m_bytes.size(); }

private:
    std::string_view m_bytes;
    std::string_view m_rest;
};

} // namespace carvelot
