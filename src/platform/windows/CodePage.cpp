#include "platform/CodePage.h"
#include "platform/windows/WindowsText.h"

namespace carvelot::platform {

std::string_view BytesToUtf8(std::string_view bytes, std::string& scratch) {
    if (IsAscii(bytes)) {
        return bytes;
    }
    const int size = static_cast<int>(bytes.size());
    std::wstring wide(
        static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, wide.data(), static_cast<int>(wide.size()));
    scratch = FromWide(wide);
    return scratch;
}

std::string CodePageName() {
    const UINT codePage = GetACP();
    if (codePage == CP_UTF8) {
        return "UTF-8";
    }
    const bool isOfWindows = codePage >= 1250 && codePage <= 1258;
    return (isOfWindows ? "Windows-" : "code page ") + std::to_string(codePage);
}

std::string Utf8ToBytes(std::string_view utf8) {
    if (IsAscii(utf8)) {
        return std::string(utf8);
    }
    const std::wstring wide = ToWide(utf8);
    const int size = static_cast<int>(wide.size());
    std::string bytes(static_cast<std::size_t>(
                          WideCharToMultiByte(CP_ACP, 0, wide.data(), size, nullptr, 0, nullptr, nullptr)),
                      '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.data(), size, bytes.data(), static_cast<int>(bytes.size()), nullptr,
                        nullptr);
    return bytes;
}

std::string Utf8ToTextFile(std::string_view utf8) {
    std::string lines;
    lines.reserve(utf8.size());
    for (const char c : utf8) {
        if (c == '\n') {
            lines.push_back('\r');
        }
        lines.push_back(c);
    }
    return Utf8ToBytes(lines);
}

} // namespace carvelot::platform
