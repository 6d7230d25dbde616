// Bytes that come once: standard input, a named pipe.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace carvelot::platform {

class PipeFile {
public:
    PipeFile() = default;
    PipeFile(PipeFile&& other) noexcept;
    PipeFile& operator=(PipeFile&& other) noexcept;
    PipeFile(const PipeFile&) = delete;
    PipeFile& operator=(const PipeFile&) = delete;
    ~PipeFile();

    /// Whether a path, in UTF-8, leads to a pipe.
    static bool IsAt(const std::string& path);
    /// Waits for a writer, where there is none yet.
    static PipeFile Open(const std::string& path);
    static PipeFile StandardInput();

    explicit operator bool() const { return m_hFile != kClosed; }
    /// Waits for `size` bytes; fewer come only at the end, or where reading fails.
    std::size_t Read(void* buffer, std::size_t size);

private:
    static constexpr std::intptr_t kClosed = -1;
    std::intptr_t m_hFile = kClosed;
};

} // namespace carvelot::platform
