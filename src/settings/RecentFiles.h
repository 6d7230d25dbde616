// RecentFiles.h - the last files that were opened, newest first.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

class CRecentFiles {
public:
    static constexpr std::size_t kMaximum = 4;

    // Reads and writes the stored list. What is no path is set aside.
    void Load();
    void Save() const;
    // Puts a path on top. A path that is already there moves up; the oldest falls out.
    void Add(std::string_view path);
    void Remove(std::string_view path);

    // The dialects that a recent file was read with, as names; empty for none, and for any other path.
    std::string Dialects(std::string_view path) const;
    // Only of a path that is in the list.
    void SetDialects(std::string_view path, std::string_view names);

    std::vector<std::string> m_listPaths;

private:
    // Forgets those of paths that are no longer in the list.
    void DropDialects();

    std::map<std::string, std::string, std::less<>> m_mapDialects; // by path
};

} // namespace carvelot
