// What the POSIX implementations share: file descriptors and whole reads and writes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <utility>

namespace carvelot::platform {

/// Owns a file descriptor.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int file) : m_hFile(file) {}
    Descriptor(Descriptor&& other) noexcept : m_hFile(std::exchange(other.m_hFile, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        if (this != &other) {
            Close();
            m_hFile = std::exchange(other.m_hFile, -1);
        }
        return *this;
    }
    ~Descriptor() { Close(); }

    explicit operator bool() const { return m_hFile >= 0; }
    int Get() const { return m_hFile; }
    int Release() { return std::exchange(m_hFile, -1); }
    /// 0, or the error number. The descriptor is gone in either case.
    int Close();

private:
    int m_hFile = -1;
};

/// Opens a regular file without ever waiting for it. What is none fails with EISDIR or EINVAL.
Descriptor OpenRegular(const std::string& path, int flags, int* error);

/// Opens whatever stands at a path. A path with a NUL in it does not exist.
Descriptor OpenAny(const std::string& path, int flags, mode_t mode, int* error);

/// Reads until the buffer is full, the file ends or an error comes, whose number `error` receives.
std::size_t ReadFully(int file, void* buffer, std::size_t size, int* error = nullptr);

/// Writes everything; 0 or the error number.
int WriteFully(int file, std::string_view bytes);

} // namespace carvelot::platform
