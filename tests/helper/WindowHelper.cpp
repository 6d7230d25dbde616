// What a test needs of other programs' windows on Windows:
//
//   window_helper list               visible windows of Qt programs: handle, left, top, right, bottom,
//                                    process, title
//   window_helper boxes              the same of the system's own dialogs
//   window_helper text HANDLE        what stands in a dialog of the system's, as UTF-8
//   window_helper close HANDLE       asks a window to close, as its close button does
//   window_helper key HANDLE KEY     a key, by its virtual number, pressed and released
//   window_helper clipboard          the text on the clipboard, as UTF-8
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

std::string Narrow(const wchar_t* wide) {
    std::string text(std::wcslen(wide) * 3 + 1, '\0');
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide, -1, text.data(), static_cast<int>(text.size()),
                                          nullptr, nullptr);
    text.resize(bytes > 0 ? static_cast<std::size_t>(bytes) - 1 : 0);
    return text;
}

BOOL CALLBACK PrintText(HWND window, LPARAM) {
    wchar_t text[4096] = L"";
    GetWindowTextW(window, text, 4096);
    std::printf("%s\n", Narrow(text).c_str());
    return TRUE;
}

BOOL CALLBACK Print(HWND window, LPARAM classBegins) {
    const auto* const begin = reinterpret_cast<const wchar_t*>(classBegins);
    wchar_t classBuffer[64] = L"";
    GetClassNameW(window, classBuffer, 64);
    if (!IsWindowVisible(window) || std::wcsncmp(classBuffer, begin, std::wcslen(begin)) != 0) {
        return TRUE;
    }
    wchar_t title[1024] = L"";
    GetWindowTextW(window, title, 1024);
    RECT rect{};
    GetWindowRect(window, &rect);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    std::printf("%llu\t%ld\t%ld\t%ld\t%ld\t%lu\t%s\n",
                static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(window)), rect.left,
                rect.top, rect.right, rect.bottom, process, Narrow(title).c_str());
    return TRUE;
}

} // namespace

int main(int argc, char** argv) {
    const std::string command = argc > 1 ? argv[1] : "";
    const HWND window =
        argc > 2 ? reinterpret_cast<HWND>(static_cast<std::uintptr_t>(std::strtoull(argv[2], nullptr, 10)))
                 : nullptr;
    if (command == "list") {
        return EnumWindows(Print, reinterpret_cast<LPARAM>(L"Qt")) ? 0 : 1;
    }
    if (command == "boxes") {
        EnumWindows(Print, reinterpret_cast<LPARAM>(L"#32770")); // fails where there is no window at all
        return 0;
    }
    if (command == "text" && window != nullptr) {
        return EnumChildWindows(window, PrintText, 0) ? 0 : 1;
    }
    if (command == "close" && window != nullptr) {
        return PostMessageW(window, WM_CLOSE, 0, 0) ? 0 : 1;
    }
    if (command == "key" && argc > 3) {
        const UINT key = static_cast<UINT>(std::atoi(argv[3]));
        const LPARAM scan = static_cast<LPARAM>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC)) << 16;
        const bool down = PostMessageW(window, WM_KEYDOWN, key, scan | 1) != 0;
        const bool up = PostMessageW(window, WM_KEYUP, key, scan | static_cast<LPARAM>(0xC0000001)) != 0;
        return down && up ? 0 : 1;
    }
    if (command == "clipboard") {
        if (!OpenClipboard(nullptr)) {
            return 1;
        }
        if (const HANDLE text = GetClipboardData(CF_UNICODETEXT)) {
            std::fputs(Narrow(static_cast<const wchar_t*>(GlobalLock(text))).c_str(), stdout);
            GlobalUnlock(text);
        }
        CloseClipboard();
        return 0;
    }
    std::fputs(
        "usage: window_helper list | boxes | text HANDLE | close HANDLE | key HANDLE KEY | clipboard\n",
        stderr);
    return 2;
}
