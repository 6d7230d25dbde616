#include "faults/Faults.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <new>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace carvelot::test {

namespace {

Faults* s_pFaults = nullptr;
std::uint64_t s_nAllocations = 0;
std::uint64_t s_nFailing = 0;

// Whether the next allocation is the one to fail.
bool AllocationFails() { return s_pFaults != nullptr && ++s_nAllocations == s_nFailing; }

int Fail(int error) {
    errno = error;
    return -1;
}

} // namespace

Faults::Faults() {
    s_pFaults = this;
    FailAllocation(0);
}

Faults::~Faults() { s_pFaults = nullptr; }

void Faults::FailAllocation(std::uint64_t number) {
    s_nAllocations = 0;
    s_nFailing = number;
}

std::uint64_t Faults::Allocations() const { return s_nAllocations; }

} // namespace carvelot::test

using carvelot::test::s_pFaults;

extern "C" {

ssize_t __real_read(int file, void* buffer, std::size_t size);
ssize_t __wrap_read(int file, void* buffer, std::size_t size);
ssize_t __wrap_read(int file, void* buffer, std::size_t size) {
    if (s_pFaults != nullptr && size > 0) {
        ++s_pFaults->m_nReads;
        if (s_pFaults->m_nInterruptEach != 0 && s_pFaults->m_nReads % s_pFaults->m_nInterruptEach == 0) {
            return carvelot::test::Fail(EINTR);
        }
        if (s_pFaults->m_nReads == s_pFaults->m_nFailingRead) {
            return carvelot::test::Fail(EIO);
        }
        if (s_pFaults->m_fnReadAtMost) {
            size = std::clamp<std::size_t>(s_pFaults->m_fnReadAtMost(size), 1, size);
        }
        if (s_pFaults->m_nReadError != 0) {
            if (s_pFaults->m_nReadBytes >= s_pFaults->m_nReadableBytes) {
                return carvelot::test::Fail(s_pFaults->m_nReadError);
            }
            size = std::min<std::size_t>(size, s_pFaults->m_nReadableBytes - s_pFaults->m_nReadBytes);
        }
    }
    const ssize_t count = __real_read(file, buffer, size);
    if (s_pFaults != nullptr && count > 0) {
        s_pFaults->m_nReadBytes += static_cast<std::uint64_t>(count);
    }
    return count;
}

ssize_t __real_write(int file, const void* buffer, std::size_t size);
ssize_t __wrap_write(int file, const void* buffer, std::size_t size);
ssize_t __wrap_write(int file, const void* buffer, std::size_t size) {
    if (s_pFaults != nullptr && s_pFaults->m_nWriteError != 0) {
        if (s_pFaults->m_nWrittenBytes >= s_pFaults->m_nWritableBytes) {
            return carvelot::test::Fail(s_pFaults->m_nWriteError);
        }
        size = std::min<std::size_t>(size, s_pFaults->m_nWritableBytes - s_pFaults->m_nWrittenBytes);
    }
    const ssize_t count = __real_write(file, buffer, size);
    if (s_pFaults != nullptr && count > 0) {
        s_pFaults->m_nWrittenBytes += static_cast<std::uint64_t>(count);
    }
    return count;
}

int __real_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...) {
    if (s_pFaults != nullptr && s_pFaults->m_nMakeError != 0 && (flags & O_CREAT) != 0) {
        return carvelot::test::Fail(s_pFaults->m_nMakeError);
    }
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return __real_open(path, flags, mode);
}

DIR* __real_opendir(const char* path);
DIR* __wrap_opendir(const char* path);
DIR* __wrap_opendir(const char* path) {
    if (s_pFaults != nullptr && s_pFaults->m_nListError != 0) {
        errno = s_pFaults->m_nListError;
        return nullptr;
    }
    return __real_opendir(path);
}

dirent* __real_readdir(DIR* folder);
dirent* __wrap_readdir(DIR* folder);
dirent* __wrap_readdir(DIR* folder) {
    if (s_pFaults != nullptr && s_pFaults->m_nListReadError != 0) {
        errno = s_pFaults->m_nListReadError;
        return nullptr;
    }
    return __real_readdir(folder);
}

int __real_fsync(int file);
int __wrap_fsync(int file);
int __wrap_fsync(int file) {
    return s_pFaults != nullptr && s_pFaults->m_nSyncError != 0
               ? carvelot::test::Fail(s_pFaults->m_nSyncError)
               : __real_fsync(file);
}

int __real_rename(const char* from, const char* to);
int __wrap_rename(const char* from, const char* to);
int __wrap_rename(const char* from, const char* to) {
    return s_pFaults != nullptr && s_pFaults->m_nRenameError != 0
               ? carvelot::test::Fail(s_pFaults->m_nRenameError)
               : __real_rename(from, to);
}

int __real_fstat(int file, struct stat* status);
int __wrap_fstat(int file, struct stat* status);
int __wrap_fstat(int file, struct stat* status) {
    const int result = __real_fstat(file, status);
    if (s_pFaults != nullptr && s_pFaults->m_nClaimedSize >= 0 && result == 0) {
        status->st_size = s_pFaults->m_nClaimedSize;
    }
    return result;
}

void* __real_mmap(void* at, std::size_t size, int protection, int flags, int file, off_t offset);
void* __wrap_mmap(void* at, std::size_t size, int protection, int flags, int file, off_t offset);
void* __wrap_mmap(void* at, std::size_t size, int protection, int flags, int file, off_t offset) {
    if (carvelot::test::AllocationFails()) {
        errno = ENOMEM;
        return MAP_FAILED;
    }
    return __real_mmap(at, size, protection, flags, file, offset);
}

// The C library's own, as some headers use them.
void* __real_malloc(std::size_t size);
void* __wrap_malloc(std::size_t size);
void* __wrap_malloc(std::size_t size) {
    return carvelot::test::AllocationFails() ? nullptr : __real_malloc(size);
}

void* __real_realloc(void* block, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size) {
    return carvelot::test::AllocationFails() ? nullptr : __real_realloc(block, size);
}

} // extern "C"

// Every "new" of the program; the other forms of it come here.
void* operator new(std::size_t size) {
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}
void* operator new[](std::size_t size) { return operator new(size); }
// What an algorithm asks for a buffer that it can do without.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept { std::free(block); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
