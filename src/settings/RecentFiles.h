// RecentFiles.h - the last files that were opened, newest first.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

class CRecentFiles {
public:
    static constexpr std::size_t kMaximum = 4;

    // Reads and writes the stored list.
    void Load();
    void Save() const;
    // Puts a path on top. A path that is already there moves up; the oldest falls out.
    void Add(std::string_view path);
    void Remove(std::string_view path);

    std::vector<std::string> m_listPaths;
};

} // namespace carvelot
