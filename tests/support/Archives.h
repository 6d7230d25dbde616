// Archives made in memory, by libarchive's writer.
#pragma once

#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot::test {

std::string Gzip(std::string_view bytes);
std::string Zstd(std::string_view bytes);

struct ArchiveMember {
    std::string name;
    std::string bytes;
    std::time_t date = 1700000000;
};
// `options` as the library's writer of zip has them: "zip:compression=store".
std::string Zip(const std::vector<ArchiveMember>& members, const std::string& options = {});
std::string Tar(const std::vector<ArchiveMember>& members);

// A debug log of some lines whose texts hardly repeat; no two sizes' lines differ where both have them.
std::string LogOfLines(int lines);

} // namespace carvelot::test
