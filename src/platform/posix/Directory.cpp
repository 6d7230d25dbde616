#include "platform/Directory.h"
#include "platform/posix/FoldedText.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace carvelot::platform {

namespace {

bool Matches(std::u32string_view name, std::u32string_view mask) {
    while (!mask.empty()) {
        const char32_t expected = mask.front();
        if (expected == U'*') {
            mask.remove_prefix(1);
            for (std::size_t taken = 0; taken <= name.size(); ++taken) {
                if (Matches(name.substr(taken), mask)) {
                    return true;
                }
            }
            return false;
        }
        // The point of ".*" and ".?" need not be there: a name without an extension ends as well.
        if (expected == U'.' && name.empty() && mask.size() > 1 && (mask[1] == U'*' || mask[1] == U'?')) {
            return mask.find_first_not_of(U"*?", 1) == std::u32string_view::npos;
        }
        if (expected == U'?' && (name.empty() || name.front() == U'.')) {
            mask.remove_prefix(1);
            continue;
        }
        if (name.empty() || (expected != U'?' && expected != name.front())) {
            return false;
        }
        name.remove_prefix(1);
        mask.remove_prefix(1);
    }
    return name.empty();
}

} // namespace

std::vector<DirectoryEntry> EnumerateDirectory(const std::string& folder, std::string_view mask) {
    std::vector<std::pair<std::u32string, DirectoryEntry>> found;
    if (folder.find('\0') != std::string::npos) {
        return {};
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(folder.c_str()), ::closedir);
    if (open == nullptr) {
        return {};
    }
    const std::u32string foldedMask = FoldedText(mask);
    while (const dirent* const entry = ::readdir(open.get())) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        std::u32string folded = FoldedText(name);
        if (!Matches(folded, foldedMask)) {
            continue;
        }
        struct stat status {};
        if (::stat(JoinPath(folder, name).c_str(), &status) != 0 &&
            ::lstat(JoinPath(folder, name).c_str(), &status) != 0) {
            continue;
        }
        const bool isFolder = S_ISDIR(status.st_mode);
        found.emplace_back(std::move(folded),
                           DirectoryEntry{std::string(name), isFolder,
                                          isFolder ? 0 : static_cast<std::uint64_t>(status.st_size)});
    }
    std::sort(found.begin(), found.end(), [](const auto& one, const auto& other) {
        return one.first != other.first ? one.first < other.first
                                        : one.second.m_strName < other.second.m_strName;
    });
    std::vector<DirectoryEntry> entries;
    for (auto& [folded, entry] : found) {
        entries.push_back(std::move(entry));
    }
    return entries;
}

std::vector<std::string> NamesInAnyCase(const std::string& folder, const std::string& name) {
    std::vector<std::string> names;
    const std::u32string wanted = FoldedText(name);
    for (const DirectoryEntry& entry : EnumerateDirectory(folder, "*")) {
        if (FoldedText(entry.m_strName) == wanted) {
            names.push_back(entry.m_strName);
        }
    }
    return names;
}

bool LiesWithin(const std::string& path, const std::string& folder) {
    std::error_code error;
    const std::filesystem::path outer = std::filesystem::canonical(folder, error);
    if (error) {
        return false;
    }
    const std::filesystem::path inner = std::filesystem::canonical(path, error);
    return !error &&
           std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

bool MayRemoveFrom(const std::string& folder, const std::string& name) {
    if (::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
        return false;
    }
    // In a folder with the sticky bit only the owner of either takes a file out.
    struct stat status {};
    struct stat file {};
    return ::stat(folder.c_str(), &status) == 0 && ::lstat(JoinPath(folder, name).c_str(), &file) == 0 &&
           ((status.st_mode & S_ISVTX) == 0 || ::geteuid() == 0 || status.st_uid == ::geteuid() ||
            file.st_uid == ::geteuid());
}

std::string JoinPath(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty() && path.back() != '/') {
        path += '/';
    }
    return path.append(name);
}

} // namespace carvelot::platform
