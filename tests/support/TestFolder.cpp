#include "support/TestFolder.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>

namespace carvelot::test {

namespace {

void SetVariable(const std::string& name, const char* value) {
#ifdef _WIN32
    _putenv_s(name.c_str(), value != nullptr ? value : "");
#else
    if (value != nullptr) {
        setenv(name.c_str(), value, 1);
    } else {
        unsetenv(name.c_str());
    }
#endif
}

} // namespace

std::filesystem::path ToPath(std::string_view utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string FromPath(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

TestFolder::TestFolder() {
    std::random_device random;
    do {
        m_path = std::filesystem::temp_directory_path() / ("carvelot-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(m_path));
}

TestFolder::~TestFolder() {
    std::error_code ignored;
    // What is protected can't be deleted everywhere.
    for (const std::filesystem::path& path : m_listProtected) {
        std::filesystem::permissions(path, std::filesystem::perms::owner_all, ignored);
    }
#ifdef _WIN32
    // The prefix reaches what lies too deep otherwise.
    std::filesystem::remove_all("\\\\?\\" + m_path.string(), ignored);
#else
    std::filesystem::remove_all(m_path, ignored);
#endif
}

std::string TestFolder::Path(std::string_view name) const {
    return FromPath(name.empty() ? m_path : m_path / ToPath(name));
}

std::string TestFolder::Write(std::string_view name, std::string_view bytes) const {
    std::ofstream(m_path / ToPath(name), std::ios::binary | std::ios::trunc)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return Path(name);
}

std::string TestFolder::Read(std::string_view name) const {
    std::ifstream file(m_path / ToPath(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

bool TestFolder::Exists(std::string_view name) const {
    return std::filesystem::exists(m_path / ToPath(name));
}

bool TestFolder::Protect(std::string_view name) {
    const std::filesystem::path path = m_path / ToPath(name);
    std::filesystem::permissions(path, std::filesystem::perms::owner_read,
                                 std::filesystem::perm_options::replace);
    m_listProtected.push_back(path);
    return !std::ofstream(path, std::ios::binary | std::ios::app).is_open();
}

std::vector<std::string> TestFolder::Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
        names.push_back(FromPath(entry.path().filename()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

EnvironmentGuard::EnvironmentGuard(const char* name, const char* value) : m_strName(name) {
    if (const char* const old = std::getenv(name)) {
        m_strOld = old;
        m_bWasSet = true;
    }
    SetVariable(m_strName, value);
}

EnvironmentGuard::~EnvironmentGuard() { SetVariable(m_strName, m_bWasSet ? m_strOld.c_str() : nullptr); }

} // namespace carvelot::test
