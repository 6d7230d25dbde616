#include "platform/Directory.h"
#include "platform/windows/WindowsText.h"

namespace carvelot::platform {

namespace {

// The path behind all links; empty when nothing is there.
std::wstring FinalPath(const std::string& path) {
    const WindowsHandle handle(CreateFileW(ToWidePath(path).c_str(), 0,
                                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                           OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!handle) {
        return {};
    }
    std::wstring final(GetFinalPathNameByHandleW(handle.Get(), nullptr, 0, 0), L'\0');
    final.resize(GetFinalPathNameByHandleW(handle.Get(), final.data(), static_cast<DWORD>(final.size()), 0));
    return final;
}

} // namespace

std::vector<DirectoryEntry> EnumerateDirectory(const std::string& folder, std::string_view mask) {
    std::vector<DirectoryEntry> entries;
    if (folder.find('\0') != std::string::npos) {
        return entries;
    }
    WIN32_FIND_DATAW data{};
    const HANDLE find = FindFirstFileW(ToWidePath(JoinPath(folder, mask)).c_str(), &data);
    if (find == INVALID_HANDLE_VALUE) {
        return entries;
    }
    do {
        DirectoryEntry entry;
        entry.m_strName = FromWide(data.cFileName);
        entry.m_bDirectory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        entry.m_nSize = (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
        if (entry.m_strName != "." && entry.m_strName != "..") {
            entries.push_back(std::move(entry));
        }
    } while (FindNextFileW(find, &data));
    FindClose(find);
    return entries;
}

std::vector<std::string> NamesInAnyCase(const std::string&, const std::string& name) { return {name}; }

bool LiesWithin(const std::string& path, const std::string& folder) {
    std::wstring outer = FinalPath(folder);
    const std::wstring inner = FinalPath(path);
    if (outer.empty() || inner.size() < outer.size() ||
        CompareStringOrdinal(inner.data(), static_cast<int>(outer.size()), outer.data(),
                             static_cast<int>(outer.size()), TRUE) != CSTR_EQUAL) {
        return false;
    }
    return inner.size() == outer.size() || outer.back() == L'\\' || inner[outer.size()] == L'\\';
}

bool MayRemoveFrom(const std::string&, const std::string&) { return true; }

std::string JoinPath(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty() && path.back() != '\\' && path.back() != '/') {
        path += '\\';
    }
    return path.append(name);
}

} // namespace carvelot::platform
