// Files that other processes may be writing: opened deny-none, so that no writer is ever hindered.
// Paths are UTF-8. Where `error` is given it receives the system's error number on failure.
#pragma once

#include "platform/FileState.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace carvelot::platform {

/// A regular file open for reading. Directories, pipes, sockets and devices do not open, and never block.
class SharedFile {
public:
    SharedFile() = default;
    SharedFile(SharedFile&& other) noexcept;
    SharedFile& operator=(SharedFile&& other) noexcept;
    SharedFile(const SharedFile&) = delete;
    SharedFile& operator=(const SharedFile&) = delete;
    ~SharedFile();

    static SharedFile OpenForReading(const std::string& path, int* error = nullptr);

    explicit operator bool() const { return m_hFile != kClosed; }
    /// Reads up to `size` bytes; fewer only at the end of the file or on a read error.
    std::size_t Read(void* buffer, std::size_t size, int* error = nullptr);
    bool Rewind() { return Seek(0); }
    /// Goes on reading at this byte, which may lie behind the end.
    bool Seek(std::uint64_t position);
    /// The size in bytes at this moment; 0 when it can't be told.
    std::uint64_t Size() const;
    /// What can be told of the file at this moment.
    FileState State() const;
    void Close();

private:
    static constexpr std::intptr_t kClosed = -1;
    std::intptr_t m_hFile = kClosed;
};

/// Sets the size of an existing file to 0 while others may hold it open.
bool TruncateShared(const std::string& path, int* error = nullptr);

/// The size of an existing file in bytes, as a 32-bit number. -1 when the file can't be opened for reading
/// and writing, or when it holds 2 GiB or more.
std::int32_t SharedFileSize(const std::string& path);

/// A file open for appending; it is made when it is missing.
class AppendFile {
public:
    AppendFile() = default;
    AppendFile(AppendFile&& other) noexcept;
    AppendFile& operator=(AppendFile&& other) noexcept;
    AppendFile(const AppendFile&) = delete;
    AppendFile& operator=(const AppendFile&) = delete;
    ~AppendFile();

    static AppendFile Open(const std::string& path, int* error = nullptr);

    explicit operator bool() const { return m_hFile != kClosed; }
    /// Appends all of `bytes` in one call of the system, so that lines of several writers don't mix.
    bool Write(std::string_view bytes);
    void Close();

private:
    static constexpr std::intptr_t kClosed = -1;
    std::intptr_t m_hFile = kClosed;
};

} // namespace carvelot::platform
