#include "platform/PipeFile.h"

#include "platform/windows/WindowsText.h"

#include <algorithm>
#include <utility>

namespace carvelot::platform {

PipeFile::PipeFile(PipeFile&& other) noexcept : m_hFile(std::exchange(other.m_hFile, kClosed)) {}

PipeFile& PipeFile::operator=(PipeFile&& other) noexcept {
    std::swap(m_hFile, other.m_hFile);
    return *this;
}

PipeFile::~PipeFile() { WindowsHandle(reinterpret_cast<HANDLE>(m_hFile)).Close(); }

bool PipeFile::IsAt(const std::string& path) { return path.starts_with(R"(\\.\pipe\)"); }

PipeFile PipeFile::Open(const std::string& path) {
    PipeFile file;
    file.m_hFile =
        reinterpret_cast<std::intptr_t>(OpenShared(path, GENERIC_READ, OPEN_EXISTING, nullptr).Release());
    return file;
}

PipeFile PipeFile::StandardInput() {
    PipeFile file;
    const HANDLE self = GetCurrentProcess();
    HANDLE own = INVALID_HANDLE_VALUE;
    if (DuplicateHandle(self, GetStdHandle(STD_INPUT_HANDLE), self, &own, 0, FALSE, DUPLICATE_SAME_ACCESS)) {
        file.m_hFile = reinterpret_cast<std::intptr_t>(own);
    }
    return file;
}

std::size_t PipeFile::Read(void* buffer, std::size_t size) {
    constexpr std::size_t kMost = std::size_t{1} << 30;
    std::size_t done = 0;
    DWORD count = 1;
    // The end of a pipe is an error here: its writer has gone.
    while (done < size && count > 0 &&
           ReadFile(reinterpret_cast<HANDLE>(m_hFile), static_cast<char*>(buffer) + done,
                    static_cast<DWORD>(std::min(size - done, kMost)), &count, nullptr)) {
        done += count;
    }
    return done;
}

} // namespace carvelot::platform
