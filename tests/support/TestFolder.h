// A folder of its own for one test, gone with it. Paths and names are UTF-8.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot::test {

std::filesystem::path ToPath(std::string_view utf8);
std::string FromPath(const std::filesystem::path& path);

class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    /// The path of a name in the folder; of the folder itself without one.
    std::string Path(std::string_view name = {}) const;
    /// Writes a file with these bytes and returns its path.
    std::string Write(std::string_view name, std::string_view bytes) const;
    std::string Read(std::string_view name) const;
    bool Exists(std::string_view name) const;
    /// Protects a file against writing; false if that keeps this user (a superuser, or one of Wine) from
    /// nothing.
    bool Protect(std::string_view name);
    /// The names in the folder, sorted.
    std::vector<std::string> Names() const;

private:
    std::filesystem::path m_path;
    std::vector<std::filesystem::path> m_listProtected;
};

/// Sets an environment variable, or removes it with null, and puts the old state back at the end.
class EnvironmentGuard {
public:
    EnvironmentGuard(const char* name, const char* value);
    ~EnvironmentGuard();
    EnvironmentGuard(const EnvironmentGuard&) = delete;
    EnvironmentGuard& operator=(const EnvironmentGuard&) = delete;

private:
    std::string m_strName;
    std::string m_strOld;
    bool m_bWasSet = false;
};

} // namespace carvelot::test
