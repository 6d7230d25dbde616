#include "platform/ProfileFile.h"
#include "platform/windows/WindowsText.h"

namespace carvelot::platform {

namespace {

// A bare name must stay bare: the call itself knows where such a file lies.
std::wstring ProfileName(const std::string& file) {
    const bool bare = file.find_first_of("\\/:") == std::string::npos;
    return bare ? ToWide(file) : ToWidePath(file);
}

// A section without a name has no values. Wine would give the lines above the first header for it.
bool HasNoName(std::string_view section) {
    return section.find_first_not_of(" \t") == std::string_view::npos;
}

} // namespace

std::string ReadProfileText(std::string_view section, std::string_view key, std::string_view defaultValue,
                            std::size_t bufferUnits, const std::string& file) {
    std::wstring buffer(bufferUnits, L'\0');
    // No section's name holds a line feed: what comes back is the default, cut as every text is.
    const std::wstring name = HasNoName(section) ? L"?\n?" : ToWide(section);
    const DWORD length =
        GetPrivateProfileStringW(name.c_str(), ToWide(key).c_str(), ToWide(defaultValue).c_str(),
                                 buffer.data(), static_cast<DWORD>(bufferUnits), ProfileName(file).c_str());
    return FromWide(std::wstring_view(buffer).substr(0, length));
}

std::int32_t ReadProfileInt(std::string_view section, std::string_view key, std::int32_t defaultValue,
                            const std::string& file) {
    if (HasNoName(section)) {
        return defaultValue;
    }
    return static_cast<std::int32_t>(GetPrivateProfileIntW(ToWide(section).c_str(), ToWide(key).c_str(),
                                                           defaultValue, ProfileName(file).c_str()));
}

std::vector<std::string> ReadProfileSections(std::size_t bufferUnits, const std::string& file) {
    // Two more units than the call knows of, so that the row of names ends whatever it holds.
    std::wstring buffer(bufferUnits + 2, L'\0');
    GetPrivateProfileStringW(nullptr, nullptr, nullptr, buffer.data(), static_cast<DWORD>(bufferUnits),
                             ProfileName(file).c_str());
    std::vector<std::string> names;
    const wchar_t* at = buffer.c_str();
    do {
        const std::wstring_view name(at);
        names.push_back(FromWide(name));
        at += name.size() + 1;
    } while (*at != L'\0');
    return names;
}

bool WriteProfileText(std::string_view section, std::string_view key, std::string_view value,
                      const std::string& file) {
    return WritePrivateProfileStringW(ToWide(section).c_str(), ToWide(key).c_str(), ToWide(value).c_str(),
                                      ProfileName(file).c_str()) != 0;
}

} // namespace carvelot::platform
