#include "faults/schedules/Calls.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <limits>
#include <new>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>
#include <utility>

namespace carvelot::test {

namespace {

std::atomic<bool> s_on = false;
thread_local bool t_paused = false;
Schedule s_schedule;
std::function<void()> s_renamed;
std::array<std::atomic<std::uint64_t>, kCalls> s_counts;

std::size_t At(Call call) { return static_cast<std::size_t>(call); }

// Counts a call; whether it is to fail.
bool Fails(Call call) {
    if (!s_on.load(std::memory_order_relaxed) || t_paused) {
        return false;
    }
    const std::uint64_t number = ++s_counts[At(call)];
    return call == s_schedule.call && (s_schedule.form == Schedule::Form::Once   ? number == s_schedule.number
                                       : s_schedule.form == Schedule::Form::Rest ? number >= s_schedule.number
                                                                                 : false);
}

int Fail(int error) {
    errno = error;
    return -1;
}

// A read of any kind: its real result, or that of its failing.
template <class Real> ssize_t Read(Real real) {
    if (!Fails(Call::Read)) {
        return real();
    }
    return s_schedule.endsFile ? 0 : Fail(EIO);
}

// A write of any kind, of so many bytes; `real` writes the first of them.
template <class Real> ssize_t Write(std::size_t size, Real real) {
    if (Fails(Call::Write)) {
        return Fail(EIO);
    }
    if (Fails(Call::Space)) {
        const bool isFirst = s_counts[At(Call::Space)] == s_schedule.number;
        return isFirst && size > 1 ? real(size / 2) : Fail(ENOSPC);
    }
    return real(size);
}

bool FailsToOpen(int flags) {
    if (Fails(Call::Open)) {
        errno = EMFILE;
        return true;
    }
    if ((flags & O_CREAT) != 0 && Fails(Call::Space)) {
        errno = ENOSPC;
        return true;
    }
    return false;
}

// While this lives nothing of this thread counts, and nothing fails.
class Pause {
public:
    Pause() : m_bBefore(std::exchange(t_paused, true)) {}
    ~Pause() { t_paused = m_bBefore; }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

private:
    const bool m_bBefore;
};

// The C library's function of that name, ahead of which ours stands.
template <class Function> Function* RealOf(const char* name) {
    const Pause pause;
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

} // namespace

void Order(const Schedule& schedule, std::function<void()> renamed) {
    s_schedule = schedule;
    s_renamed = std::move(renamed);
    std::fill(s_counts.begin(), s_counts.end(), 0);
}

CallCounts CountedSoFar() {
    CallCounts counts{};
    std::copy(s_counts.begin(), s_counts.end(), counts.begin());
    return counts;
}

CountedCalls::CountedCalls() { s_on = true; }
CountedCalls::~CountedCalls() { s_on = false; }

} // namespace carvelot::test

using carvelot::test::Call;
using carvelot::test::Fail;
using carvelot::test::Fails;
using carvelot::test::FailsToOpen;
using carvelot::test::RealOf;

// A sanitizer's memory stays the sanitizer's; so do the threads, which it must know. Without one they are the
// C library's.
extern "C" {
__attribute__((weak)) void* __interceptor_malloc(std::size_t size);
__attribute__((weak)) void* __interceptor_calloc(std::size_t count, std::size_t size);
__attribute__((weak)) void* __interceptor_realloc(void* block, std::size_t size);
__attribute__((weak)) int __interceptor_pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                                                       void* (*work)(void*), void* argument);
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) {
    if (Fails(Call::Memory)) {
        errno = ENOMEM;
        return nullptr;
    }
    return __interceptor_malloc != nullptr ? __interceptor_malloc(size) : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    if (Fails(Call::Memory)) {
        errno = ENOMEM;
        return nullptr;
    }
    return __interceptor_calloc != nullptr ? __interceptor_calloc(count, size) : __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
    if (Fails(Call::Memory)) {
        errno = ENOMEM;
        return nullptr;
    }
    return __interceptor_realloc != nullptr ? __interceptor_realloc(block, size)
                                            : __libc_realloc(block, size);
}

void* mmap(void* at, std::size_t size, int protection, int flags, int file, off_t offset) {
    static const auto real = RealOf<void*(void*, std::size_t, int, int, int, off_t)>("mmap");
    if (Fails(Call::Memory)) {
        errno = ENOMEM;
        return MAP_FAILED;
    }
    return real(at, size, protection, flags, file, offset);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*work)(void*),
                   void* argument) {
    static const auto real = __interceptor_pthread_create != nullptr
                                 ? __interceptor_pthread_create
                                 : RealOf<decltype(pthread_create)>("pthread_create");
    return Fails(Call::Thread) ? EAGAIN : real(thread, attributes, work, argument);
}

// A sanitizer asks for this at a thread's start, and bears no failing.
int pthread_getattr_np(pthread_t thread, pthread_attr_t* attributes) {
    static const auto real = RealOf<int(pthread_t, pthread_attr_t*)>("pthread_getattr_np");
    const carvelot::test::Pause pause;
    return real(thread, attributes);
}

int open(const char* path, int flags, ...) {
    static const auto real = RealOf<int(const char*, int, ...)>("open");
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return FailsToOpen(flags) ? -1 : real(path, flags, mode);
}
int open64(const char* path, int flags, ...) __attribute__((alias("open")));

int openat(int folder, const char* path, int flags, ...) {
    static const auto real = RealOf<int(int, const char*, int, ...)>("openat");
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return FailsToOpen(flags) ? -1 : real(folder, path, flags, mode);
}
int openat64(int folder, const char* path, int flags, ...) __attribute__((alias("openat")));

// These open within the C library.
int mkostemp(char* path, int flags) {
    static const auto real = RealOf<int(char*, int)>("mkostemp");
    return FailsToOpen(flags | O_CREAT) ? -1 : real(path, flags);
}
int mkostemp64(char* path, int flags) __attribute__((alias("mkostemp")));

DIR* opendir(const char* path) {
    static const auto real = RealOf<DIR*(const char*)>("opendir");
    return FailsToOpen(O_RDONLY) ? nullptr : real(path);
}

ssize_t read(int file, void* buffer, std::size_t size) {
    static const auto real = RealOf<ssize_t(int, void*, std::size_t)>("read");
    return carvelot::test::Read([=] { return real(file, buffer, size); });
}

ssize_t pread(int file, void* buffer, std::size_t size, off_t offset) {
    static const auto real = RealOf<ssize_t(int, void*, std::size_t, off_t)>("pread");
    return carvelot::test::Read([=] { return real(file, buffer, size, offset); });
}
ssize_t pread64(int file, void* buffer, std::size_t size, off_t offset) __attribute__((alias("pread")));

ssize_t write(int file, const void* buffer, std::size_t size) {
    static const auto real = RealOf<ssize_t(int, const void*, std::size_t)>("write");
    return carvelot::test::Write(size, [=](std::size_t first) { return real(file, buffer, first); });
}

ssize_t pwrite(int file, const void* buffer, std::size_t size, off_t offset) {
    static const auto real = RealOf<ssize_t(int, const void*, std::size_t, off_t)>("pwrite");
    return carvelot::test::Write(size, [=](std::size_t first) { return real(file, buffer, first, offset); });
}
ssize_t pwrite64(int file, const void* buffer, std::size_t size, off_t offset)
    __attribute__((alias("pwrite")));

ssize_t writev(int file, const iovec* parts, int count) {
    static const auto real = RealOf<ssize_t(int, const iovec*, int)>("writev");
    return carvelot::test::Write(static_cast<std::size_t>(count), [=](std::size_t first) {
        return real(file, parts, static_cast<int>(first));
    });
}

ssize_t sendfile(int to, int from, off_t* offset, std::size_t size) {
    static const auto real = RealOf<ssize_t(int, int, off_t*, std::size_t)>("sendfile");
    return carvelot::test::Write(size, [=](std::size_t first) { return real(to, from, offset, first); });
}
ssize_t sendfile64(int to, int from, off_t* offset, std::size_t size) __attribute__((alias("sendfile")));

int fsync(int file) {
    static const auto real = RealOf<int(int)>("fsync");
    return Fails(Call::Sync) ? Fail(EIO) : real(file);
}

int fdatasync(int file) {
    static const auto real = RealOf<int(int)>("fdatasync");
    return Fails(Call::Sync) ? Fail(EIO) : real(file);
}

int rename(const char* from, const char* to) {
    static const auto real = RealOf<int(const char*, const char*)>("rename");
    if (Fails(Call::Rename)) {
        return Fail(EACCES);
    }
    const int result = real(from, to);
    if (carvelot::test::s_renamed) {
        const carvelot::test::Pause pause;
        carvelot::test::s_renamed();
    }
    return result;
}

int ftruncate(int file, off_t size) {
    static const auto real = RealOf<int(int, off_t)>("ftruncate");
    return Fails(Call::Truncate) ? Fail(EIO) : real(file, size);
}
int ftruncate64(int file, off_t size) __attribute__((alias("ftruncate")));

} // extern "C"

// Every "new" of the program and of the C++ library.
void* operator new(std::size_t size) {
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return std::malloc(size == 0 ? 1 : size);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t& /*tag*/) noexcept { std::free(block); }
