#include "platform/Directory.h"
#include "platform/windows/WindowsText.h"

namespace carvelot::platform {

std::vector<DirectoryEntry> EnumerateDirectory(const std::string& folder, std::string_view mask) {
    std::vector<DirectoryEntry> entries;
    if (folder.find('\0') != std::string::npos)
        return entries;
    WIN32_FIND_DATAW data{};
    const HANDLE find = FindFirstFileW(ToWidePath(JoinPath(folder, mask)).c_str(), &data);
    if (find == INVALID_HANDLE_VALUE)
        return entries;
    do {
        DirectoryEntry entry;
        entry.m_strName = FromWide(data.cFileName);
        entry.m_bDirectory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        entry.m_nSize = (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
        if (entry.m_strName != "." && entry.m_strName != "..")
            entries.push_back(std::move(entry));
    } while (FindNextFileW(find, &data));
    FindClose(find);
    return entries;
}

std::string JoinPath(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty() && path.back() != '\\' && path.back() != '/')
        path += '\\';
    return path.append(name);
}

} // namespace carvelot::platform
