// What a test needs of other programs' windows on Windows:
//
//   window_helper list               visible windows of Qt programs: handle, left, top, right, bottom,
//   process, title window_helper close HANDLE       asks a window to close, as its close button does
//   window_helper key HANDLE KEY     a key, by its virtual number, pressed and released
//   window_helper clipboard          the text on the clipboard, as UTF-8
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

std::string Narrow(const wchar_t* pszText) {
    std::string strText(std::wcslen(pszText) * 3 + 1, '\0');
    const int nBytes = WideCharToMultiByte(CP_UTF8, 0, pszText, -1, strText.data(),
                                           static_cast<int>(strText.size()), nullptr, nullptr);
    strText.resize(nBytes > 0 ? static_cast<std::size_t>(nBytes) - 1 : 0);
    return strText;
}

BOOL CALLBACK Print(HWND hWindow, LPARAM) {
    wchar_t szClass[64] = L"";
    GetClassNameW(hWindow, szClass, 64);
    if (!IsWindowVisible(hWindow) || std::wcsncmp(szClass, L"Qt", 2) != 0)
        return TRUE;
    wchar_t szTitle[1024] = L"";
    GetWindowTextW(hWindow, szTitle, 1024);
    RECT rect{};
    GetWindowRect(hWindow, &rect);
    DWORD nProcess = 0;
    GetWindowThreadProcessId(hWindow, &nProcess);
    std::printf("%llu\t%ld\t%ld\t%ld\t%ld\t%lu\t%s\n",
                static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(hWindow)), rect.left,
                rect.top, rect.right, rect.bottom, nProcess, Narrow(szTitle).c_str());
    return TRUE;
}

} // namespace

int main(int argc, char** argv) {
    const std::string strCommand = argc > 1 ? argv[1] : "";
    const HWND hWindow =
        argc > 2 ? reinterpret_cast<HWND>(static_cast<std::uintptr_t>(std::strtoull(argv[2], nullptr, 10)))
                 : nullptr;
    if (strCommand == "list")
        return EnumWindows(Print, 0) ? 0 : 1;
    if (strCommand == "close" && hWindow != nullptr)
        return PostMessageW(hWindow, WM_CLOSE, 0, 0) ? 0 : 1;
    if (strCommand == "key" && argc > 3) {
        const UINT nKey = static_cast<UINT>(std::atoi(argv[3]));
        const LPARAM nScan = static_cast<LPARAM>(MapVirtualKeyW(nKey, MAPVK_VK_TO_VSC)) << 16;
        const bool bDown = PostMessageW(hWindow, WM_KEYDOWN, nKey, nScan | 1) != 0;
        const bool bUp = PostMessageW(hWindow, WM_KEYUP, nKey, nScan | static_cast<LPARAM>(0xC0000001)) != 0;
        return bDown && bUp ? 0 : 1;
    }
    if (strCommand == "clipboard") {
        if (!OpenClipboard(nullptr))
            return 1;
        if (const HANDLE hText = GetClipboardData(CF_UNICODETEXT)) {
            std::fputs(Narrow(static_cast<const wchar_t*>(GlobalLock(hText))).c_str(), stdout);
            GlobalUnlock(hText);
        }
        CloseClipboard();
        return 0;
    }
    std::fputs("usage: window_helper list | close HANDLE | key HANDLE KEY | clipboard\n", stderr);
    return 2;
}
