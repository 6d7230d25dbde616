// The content of folders. Names and paths are UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot::platform {

struct DirectoryEntry {
    std::string m_strName;
    bool m_bDirectory = false;
    std::uint64_t m_nSize = 0; // in bytes; 0 for a folder
};

/// The entries of a folder that match a mask, without "." and "..". `*` stands for any characters, `?` for
/// one or none at a name's end; "name.*" matches "name" too; case doesn't count. A folder that is missing or
/// can't be read has none. Off Windows, where a folder has no order of its own, the entries are sorted by
/// name.
std::vector<DirectoryEntry> EnumerateDirectory(const std::string& folder, std::string_view mask);

/// The names in a folder that equal a name, whatever their case: on Windows, where a folder holds one such
/// name at most and any spelling finds it, the name as it is.
std::vector<std::string> NamesInAnyCase(const std::string& folder, const std::string& name);

/// Whether a path lies in a folder, links in either of them followed. False for what isn't there.
bool LiesWithin(const std::string& path, const std::string& folder);

/// Whether the user may take a file out of a folder. On Windows only the attempt tells: the answer is yes.
bool MayRemoveFrom(const std::string& folder, const std::string& name);

/// What stands between the names of a path.
#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
#else
inline constexpr char kPathSeparator = '/';
#endif

/// A path and a name with the platform's separator between them.
std::string JoinPath(std::string_view folder, std::string_view name);

} // namespace carvelot::platform
