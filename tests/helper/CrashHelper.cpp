// A program that crashes, in the way that it is told:
//
//   crash_helper line|box WAY              crashes, and tells of it by a line or a message box
//   crash_helper run line|box WAY FOLDER   has another of itself do so, with the user's local folder there,
//   and
//                                          prints how that one ended
//
// Ahead of its crash it prints the number of the thread.
#include "platform/CrashDump.h"

#include <windows.h>

#include <shellapi.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <io.h>
#include <map>
#include <string>
#include <thread>

// Open to other sources, so that the compiler does not know what may stand behind a call.
class CBase;
CBase* volatile s_pBase = nullptr;
void CallPure();

class CBase {
public:
    CBase() {
        s_pBase = this;
        CallPure();
    }
    virtual ~CBase() = default;
    virtual void Pure() = 0;
};

void CallPure() { s_pBase->Pure(); }

class CDerived : public CBase {
public:
    void Pure() override {}
};

namespace {

volatile int* volatile s_pNowhere = nullptr;
volatile int s_nZero = 0;

void Announce() {
    std::printf("thread %lu\n", GetCurrentThreadId());
    std::fflush(stdout);
}

[[gnu::noinline]] int Deeper(int depth) {
    volatile char block[512];
    block[0] = static_cast<char>(depth);
    return s_nZero == 0 ? Deeper(depth + 1) + block[0] : 0;
}

void Read() { s_nZero = *s_pNowhere; }

void ReadOnTwoThreads() {
    std::atomic<int> ready = 0;
    const auto crash = [&ready] {
        ++ready;
        while (ready != 2) {
        }
        Read();
    };
    std::thread one(crash);
    std::thread other(crash);
    one.join();
    other.join();
}

// The heap is locked by the thread that crashes, as by a fault within it.
void ReadWithHeapLocked() {
    HeapLock(GetProcessHeap());
    Read();
}

const std::map<std::string, void (*)()> kWays = {
    {"read", [] { Read(); }},
    {"write", [] { *s_pNowhere = 1; }},
    {"divide", [] { s_nZero = 17 / s_nZero; }},
    {"stack", [] { Deeper(0); }},
    // As the system raises it, with a stack to spare: Wine leaves none for any handler.
    {"stack-code", [] { RaiseException(EXCEPTION_STACK_OVERFLOW, 0, 0, nullptr); }},
    {"stack-code-of-a-thread",
     [] {
         std::thread([] {
             Announce();
             RaiseException(EXCEPTION_STACK_OVERFLOW, 0, 0, nullptr);
         }).join();
     }},
    {"abort", [] { std::abort(); }},
    {"terminate", [] { std::terminate(); }},
    {"throw", [] { throw 1; }},
    {"pure", [] { const CDerived derived; }},
    {"thread",
     [] {
         std::thread([] {
             Announce();
             Read();
         }).join();
     }},
    {"two-threads", ReadOnTwoThreads},
    {"heap-locked", ReadWithHeapLocked},
    {"invalid-parameter", [] { std::printf("descriptor %d\n", _dup(-7)); }},
    {"end", [] {}},
};

int Run(const std::wstring& arguments, const wchar_t* folder) {
    wchar_t program[1024];
    GetModuleFileNameW(nullptr, program, 1024);
    std::wstring command = L'"' + std::wstring(program) + L"\" " + arguments;
    SetEnvironmentVariableW(L"LOCALAPPDATA", folder);
    // No debugger and no box of the system's: how it ends is what is asked.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                        &process)) {
        return 1;
    }
    DWORD ended = 0;
    if (WaitForSingleObject(process.hProcess, 90000) != WAIT_OBJECT_0) {
        TerminateProcess(process.hProcess, 0xDEAD); // it hung
    }
    GetExitCodeProcess(process.hProcess, &ended);
    std::printf("process %lu\nended %08lX\n", process.dwProcessId, ended);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    using namespace carvelot::platform;
    const std::string mode = argc > 2 ? argv[1] : "";
    if (mode == "run" && argc == 5) {
        const wchar_t* const* const wide = CommandLineToArgvW(GetCommandLineW(), &argc);
        return Run(std::wstring(wide[2]) + L' ' + wide[3], wide[4]);
    }
    const auto way = kWays.find(argc > 2 ? argv[2] : "");
    if (way == kWays.end() || (mode != "line" && mode != "box")) {
        std::fputs("usage: crash_helper [run] line|box WAY [FOLDER]\n", stderr);
        return 2;
    }
    KeepCrashDumps(mode == "box" ? ECrashNotice::Box : ECrashNotice::Line);
    Announce();
    way->second();
    return 0;
}
