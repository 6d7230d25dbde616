// A process that crashes can rely on little: its heap may be damaged or locked, its stack used up. So all is
// made ready at the start, with texts of fixed size. The thread that crashed writes the dump itself, for what
// it has locked is open to it; where its stack is used up, or it crashes at that too, one does that has slept
// until then. That one tells the user in any case: a message box of the crashed thread would have it go on
// with the window's work.
#include "platform/CrashDump.h"

#include <windows.h>

// Behind the header that it needs.
#include <dbghelp.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>

namespace carvelot::platform {

namespace {

// What is left of a stack that overflowed, for the filter and what the system does ahead of it.
constexpr ULONG kStackLeft = 64 * 1024;
constexpr int kMostDumps = 5;
// How long the crashed thread waits for the writer, in milliseconds, and how often while that still writes.
constexpr DWORD kPatience = 10000;
constexpr int kMostWaits = 6;
// What the C library's own report of an abort bears.
constexpr DWORD kAborted = 0x40000015;

// A text that never grows: what does not fit is cut.
class CFixedText {
public:
    const wchar_t* Get() const { return m_text; }
    bool IsCut() const { return m_isCut; }
    void Clear() {
        m_length = 0;
        m_isCut = false;
        m_text[0] = L'\0';
    }
    void Add(wchar_t unit) {
        if (m_length + 1 >= std::size(m_text)) {
            m_isCut = true;
            return;
        }
        m_text[m_length++] = unit;
        m_text[m_length] = L'\0';
    }
    void Add(const wchar_t* text) {
        for (; *text != L'\0'; ++text) {
            Add(*text);
        }
    }
    void AddNumber(std::uint32_t number, int digits) {
        wchar_t reversed[10];
        int count = 0;
        while (count < digits || number != 0) {
            reversed[count++] = static_cast<wchar_t>(L'0' + number % 10);
            number /= 10;
        }
        while (count > 0) {
            Add(reversed[--count]);
        }
    }

private:
    wchar_t m_text[1024] = {};
    std::size_t m_length = 0;
    bool m_isCut = false;
};

using FWriteDump = decltype(&MiniDumpWriteDump);

// All of it stands from the start to the end of the program.
ECrashNotice s_nNotice = ECrashNotice::Line;
FWriteDump s_pfnWriteDump = nullptr;
CFixedText s_program;    // "carvelot-report"
CFixedText s_folders[3]; // each below the one ahead
CFixedText s_path;       // of the dump
CFixedText s_oldest;     // the dump that goes when another comes; empty while there are fewer
CFixedText s_message;
char s_bytes[4096];
DWORD s_nWriter = 0;      // thread
HANDLE s_hMain = nullptr; // thread
HANDLE s_hCrashed = nullptr;
HANDLE s_hTold = nullptr;
HANDLE s_hFile = INVALID_HANDLE_VALUE;
volatile LONG s_nCrashed = 0; // the thread that crashed first
EXCEPTION_POINTERS* s_pWhat = nullptr;
volatile bool s_isWritten = false; // or it is known that it cannot be
volatile DWORD s_nError = 0;       // of the dump
volatile bool s_isTelling = false; // the writer has its turn

bool IsDumpName(const wchar_t* name, std::size_t from) {
    // -20261123-051500-1234.dmp
    const auto digits = [&name, &from](int count) {
        for (; count > 0; --count, ++from) {
            if (name[from] < L'0' || name[from] > L'9') {
                return false;
            }
        }
        return true;
    };
    if (name[from++] != L'-' || !digits(8) || name[from++] != L'-' || !digits(6) || name[from++] != L'-' ||
        !digits(1)) {
        return false;
    }
    while (digits(1)) {
    }
    return lstrcmpW(name + from, L".dmp") == 0;
}

// Deletes all but the newest dumps of this program, and notes the oldest of those that stay when they are as
// many as there may be. Their names begin with the program's and go on with the time.
void Thin() {
    const std::size_t stem = std::char_traits<wchar_t>::length(s_program.Get());
    for (;;) {
        CFixedText pattern;
        pattern.Add(s_folders[2].Get());
        pattern.Add(L"\\");
        pattern.Add(s_program.Get());
        pattern.Add(L"-*.dmp");
        WIN32_FIND_DATAW found;
        const HANDLE search = FindFirstFileW(pattern.Get(), &found);
        if (search == INVALID_HANDLE_VALUE) {
            return;
        }
        int count = 0;
        CFixedText oldest;
        do {
            if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
                CompareStringOrdinal(found.cFileName, static_cast<int>(stem), s_program.Get(),
                                     static_cast<int>(stem), TRUE) == CSTR_EQUAL &&
                IsDumpName(found.cFileName, stem)) {
                ++count;
                if (oldest.Get()[0] == L'\0' || lstrcmpiW(found.cFileName, oldest.Get()) < 0) {
                    oldest.Clear();
                    oldest.Add(found.cFileName);
                }
            }
        } while (FindNextFileW(search, &found));
        FindClose(search);
        if (count < kMostDumps) {
            return;
        }
        s_oldest.Clear();
        s_oldest.Add(s_folders[2].Get());
        s_oldest.Add(L"\\");
        s_oldest.Add(oldest.Get());
        if (count == kMostDumps || !DeleteFileW(s_oldest.Get())) {
            return;
        }
        s_oldest.Clear();
    }
}

void NamePath() {
    SYSTEMTIME now;
    GetSystemTime(&now);
    s_path.Clear();
    s_path.Add(s_folders[2].Get());
    s_path.Add(L"\\");
    s_path.Add(s_program.Get());
    s_path.Add(L"-");
    s_path.AddNumber(now.wYear, 4);
    s_path.AddNumber(now.wMonth, 2);
    s_path.AddNumber(now.wDay, 2);
    s_path.Add(L"-");
    s_path.AddNumber(now.wHour, 2);
    s_path.AddNumber(now.wMinute, 2);
    s_path.AddNumber(now.wSecond, 2);
    s_path.Add(L"-");
    s_path.AddNumber(GetCurrentProcessId(), 1);
    s_path.Add(L".dmp");
}

// Half a dump is none.
void DiscardDump() {
    if (s_hFile != INVALID_HANDLE_VALUE) {
        CloseHandle(s_hFile);
        s_hFile = INVALID_HANDLE_VALUE;
        DeleteFileW(s_path.Get());
    }
}

// 0, or the system's number of what went wrong.
DWORD WriteDump() {
    if (s_pfnWriteDump == nullptr) {
        return ERROR_PROC_NOT_FOUND;
    }
    if (s_folders[0].Get()[0] == L'\0') {
        return ERROR_PATH_NOT_FOUND;
    }
    for (const CFixedText& folder : s_folders) {
        CreateDirectoryW(folder.Get(), nullptr);
    }
    NamePath();
    if (s_path.IsCut()) {
        return ERROR_FILENAME_EXCED_RANGE;
    }
    s_hFile = CreateFileW(s_path.Get(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                          FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (s_hFile == INVALID_HANDLE_VALUE) {
        return GetLastError();
    }
    MINIDUMP_EXCEPTION_INFORMATION exception{static_cast<DWORD>(s_nCrashed), s_pWhat, FALSE};
    // Stacks and registers, the threads, the modules: no heap, where the log lies.
    const auto type = static_cast<MINIDUMP_TYPE>(MiniDumpNormal | MiniDumpWithThreadInfo);
    SetLastError(ERROR_GEN_FAILURE);
    if (!s_pfnWriteDump(GetCurrentProcess(), GetCurrentProcessId(), s_hFile, type, &exception, nullptr,
                        nullptr) ||
        !FlushFileBuffers(s_hFile)) {
        const DWORD error = GetLastError();
        DiscardDump();
        return error;
    }
    CloseHandle(s_hFile);
    s_hFile = INVALID_HANDLE_VALUE;
    if (s_oldest.Get()[0] != L'\0') {
        DeleteFileW(s_oldest.Get());
    }
    return 0;
}

void TellOfDump(DWORD error) {
    const bool box = s_nNotice == ECrashNotice::Box;
    s_message.Clear();
    s_message.Add(box ? L"Carvelot" : s_program.Get());
    s_message.Add(box ? L" has crashed.\n\n" : L" has crashed. ");
    if (error == 0) {
        s_message.Add(L"A crash dump for whoever mends it was written to");
        s_message.Add(box ? L"\n" : L" ");
        s_message.Add(s_path.Get());
        s_message.Add(box ? L"\n\nIt may hold some lines of the log. It was sent nowhere." : L"");
    } else {
        s_message.Add(L"No crash dump could be written to ");
        s_message.Add(s_folders[2].Get()[0] != L'\0' ? s_folders[2].Get() : L"%LOCALAPPDATA%");
        s_message.Add(L": error ");
        s_message.AddNumber(error, 1);
        s_message.Add(L".");
    }
    if (box) {
        MessageBoxW(nullptr, s_message.Get(), L"Carvelot",
                    MB_OK | MB_ICONERROR | MB_TASKMODAL | MB_SETFOREGROUND | MB_TOPMOST);
        return;
    }
    s_message.Add(L"\n");
    const HANDLE output = GetStdHandle(STD_ERROR_HANDLE);
    const int length = lstrlenW(s_message.Get());
    DWORD mode = 0;
    DWORD written = 0;
    if (GetConsoleMode(output, &mode)) {
        WriteConsoleW(output, s_message.Get(), static_cast<DWORD>(length), &written, nullptr);
    } else {
        const int bytes = WideCharToMultiByte(CP_UTF8, 0, s_message.Get(), length, s_bytes,
                                              static_cast<int>(sizeof s_bytes), nullptr, nullptr);
        WriteFile(output, s_bytes, static_cast<DWORD>(bytes), &written, nullptr);
    }
}

DWORD WINAPI WriteAndTell(void*) {
    const HANDLE either[] = {s_hCrashed, s_hMain};
    if (WaitForMultipleObjects(2, either, FALSE, INFINITE) != WAIT_OBJECT_0) {
        DWORD ended = 0;
        GetExitCodeThread(s_hMain, &ended);
        return ended; // the main thread is gone: the program must not stay for this one, nor end otherwise
    }
    if (!s_isWritten) {
        s_nError = WriteDump();
        s_isWritten = true;
    }
    if (s_nNotice == ECrashNotice::Box) {
        // A box needs the heap. Where the crashed thread has locked it, this one waits here for ever, with
        // nothing of the system's locked itself, and the crashed one shows the box.
        HeapLock(GetProcessHeap());
        HeapUnlock(GetProcessHeap());
    }
    TellOfDump(s_nError);
    SetEvent(s_hTold);
    return 0;
}

[[noreturn]] void SleepForEver() {
    for (;;) {
        Sleep(INFINITE);
    }
}

[[noreturn]] void OnWriterCrash() {
    if (!s_isWritten) {
        DiscardDump();
        s_isWritten = true;
        TellOfDump(ERROR_GEN_FAILURE);
    }
    SetEvent(s_hTold);
    SleepForEver();
}

BOOL CALLBACK IsBox(HWND window, LPARAM found) {
    *reinterpret_cast<bool*>(found) = IsWindowVisible(window) != FALSE;
    return IsWindowVisible(window) == FALSE;
}

// Until the user has been told. A writer that waits for what the crashed thread has locked never gets there.
void WaitForWriter() {
    for (int waited = 0; WaitForSingleObject(s_hTold, kPatience) == WAIT_TIMEOUT; ++waited) {
        bool isShown = false;
        if (s_nNotice == ECrashNotice::Box) {
            EnumThreadWindows(s_nWriter, IsBox, reinterpret_cast<LPARAM>(&isShown));
        }
        if (isShown || (!s_isWritten && waited < kMostWaits)) {
            continue;
        }
        if (s_isWritten && s_nNotice == ECrashNotice::Box &&
            s_pWhat->ExceptionRecord->ExceptionCode != EXCEPTION_STACK_OVERFLOW) {
            TellOfDump(s_nError);
        }
        return;
    }
}

LONG WINAPI OnCrash(EXCEPTION_POINTERS* what) {
    const auto thread = static_cast<LONG>(GetCurrentThreadId());
    if (static_cast<DWORD>(thread) == s_nWriter) {
        OnWriterCrash();
    }
    const LONG first = InterlockedCompareExchange(&s_nCrashed, thread, 0);
    if (first != 0 && first != thread) {
        SleepForEver(); // the first one ends the process
    }
    if (first == thread && s_isTelling) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    if (first == thread) {
        DiscardDump(); // it crashed at that too
    } else {
        s_pWhat = what;
        if (what->ExceptionRecord->ExceptionCode != EXCEPTION_STACK_OVERFLOW) {
            s_nError = WriteDump();
            s_isWritten = true;
        }
    }
    s_isTelling = true;
    SetEvent(s_hCrashed);
    WaitForWriter();
    // Whatever the system does with a crash, starting the program again included, it does as ever.
    return EXCEPTION_CONTINUE_SEARCH;
}

// Ends as a crash does, with the state of here.
[[noreturn]] void EndAsACrash() {
    for (;;) {
        RaiseException(kAborted, EXCEPTION_NONCONTINUABLE, 0, nullptr);
    }
}

void OnAbort(int) { EndAsACrash(); }

// The C library has a message of its own for an abort, which would be a second one.
void SilenceAbort() {
#if defined(_MSC_VER) || defined(_UCRT)
    _set_abort_behavior(0, _WRITE_ABORT_MSG | _CALL_REPORTFAULT);
#else
    // Not every one has it.
    using FSetBehavior = unsigned(__cdecl*)(unsigned, unsigned);
    if (const auto set = reinterpret_cast<FSetBehavior>(reinterpret_cast<void*>(
            GetProcAddress(GetModuleHandleW(L"msvcrt.dll"), "_set_abort_behavior")))) {
        set(0, 1 | 2); // neither the message nor the report
    }
#endif
}

#if defined(_MSC_VER) || defined(_UCRT)
void OnInvalidParameter(const wchar_t*, const wchar_t*, const wchar_t*, unsigned, uintptr_t) {
    EndAsACrash();
}
#endif

#ifdef _MSC_VER
void OnPureCall() { EndAsACrash(); }
#endif

void NTAPI OnThread(void*, DWORD reason, void*) {
    if (reason == DLL_THREAD_ATTACH) {
        ULONG left = kStackLeft;
        SetThreadStackGuarantee(&left);
    }
}

} // namespace

// The system calls what stands in this section for each thread that begins.
#ifdef _MSC_VER
#pragma comment(linker, "/INCLUDE:_tls_used")
#pragma comment(linker, "/INCLUDE:carvelot_on_thread")
#pragma const_seg(".CRT$XLY")
extern "C" const PIMAGE_TLS_CALLBACK carvelot_on_thread = OnThread;
#pragma const_seg()
#else
extern "C" const PIMAGE_TLS_CALLBACK carvelot_on_thread [[gnu::section(".CRT$XLY"), gnu::used]] = OnThread;
#endif

void KeepCrashDumps(ECrashNotice notice) {
    s_nNotice = notice;

    wchar_t program[1024];
    const DWORD length = GetModuleFileNameW(nullptr, program, static_cast<DWORD>(std::size(program)));
    wchar_t* const end = program + std::min<std::size_t>(length, std::size(program) - 1);
    *end = L'\0';
    wchar_t* stem = end;
    while (stem != program && stem[-1] != L'\\' && stem[-1] != L'/') {
        --stem;
    }
    if (end - stem > 4 && lstrcmpiW(end - 4, L".exe") == 0) {
        end[-4] = L'\0';
    }
    s_program.Add(stem);

    wchar_t local[1024];
    const DWORD used = GetEnvironmentVariableW(L"LOCALAPPDATA", local, static_cast<DWORD>(std::size(local)));
    if (used > 0 && used < std::size(local)) {
        const wchar_t* const names[] = {L"\\Tamrisk", L"\\Carvelot", L"\\CrashDumps"};
        for (std::size_t n = 0; n < std::size(names); ++n) {
            s_folders[n].Add(n == 0 ? local : s_folders[n - 1].Get());
            s_folders[n].Add(names[n]);
        }
        Thin();
    }

    // The system's own alone.
    if (const HMODULE library = LoadLibraryExW(L"dbghelp.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {
        s_pfnWriteDump = reinterpret_cast<FWriteDump>(
            reinterpret_cast<void*>(GetProcAddress(library, "MiniDumpWriteDump")));
    }
    s_hCrashed = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    s_hTold = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &s_hMain, SYNCHRONIZE,
                    FALSE, 0);
    const HANDLE writer = CreateThread(nullptr, 0, WriteAndTell, nullptr, 0, &s_nWriter);
    if (s_hCrashed == nullptr || s_hTold == nullptr || s_hMain == nullptr || writer == nullptr) {
        return; // without it a crash goes on as it would have
    }
    CloseHandle(writer);

    ULONG left = kStackLeft;
    SetThreadStackGuarantee(&left);
    SetUnhandledExceptionFilter(OnCrash);
    std::signal(SIGABRT, OnAbort);
    SilenceAbort();
#if defined(_MSC_VER) || defined(_UCRT)
    // The other runtime of mingw-w64 goes on after such a call, and so does the program.
    _set_invalid_parameter_handler(OnInvalidParameter);
#endif
#ifdef _MSC_VER
    _set_purecall_handler(OnPureCall);
#endif
}

} // namespace carvelot::platform
