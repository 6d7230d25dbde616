#include "settings/RecentFiles.h"

#include "platform/Registry.h"
#include "settings/AppSettings.h"

#include <algorithm>

namespace carvelot {

using platform::CRegistryKey;
using platform::ERegAccess;
using platform::ERegRoot;

namespace {

constexpr const char* kDialects = "Dialects"; // of the file with the same number

// Empty where there is none. What is no text, or one with a NUL, is set aside.
std::string ReadText(const CRegistryKey& key, const std::string& name) {
    platform::CRegValue value;
    if (key.QueryValue(name, value) != platform::ERegStatus::Ok) {
        return {};
    }
    if (value.m_nType != platform::ERegType::String || value.m_strText.find('\0') != std::string::npos) {
        CRegistryKey writable;
        if (writable.Open(ERegRoot::CurrentUser, kRecentFilesKey, ERegAccess::Full)) {
            writable.SetAside(name);
        }
        return {};
    }
    return value.m_strText;
}

} // namespace

void CRecentFiles::Load() {
    m_listPaths.clear();
    m_mapDialects.clear();
    CRegistryKey key;
    if (!key.Open(ERegRoot::CurrentUser, kRecentFilesKey, ERegAccess::Read)) {
        return;
    }
    for (std::size_t n = 1; n <= kMaximum; ++n) {
        const std::string path = ReadText(key, "File" + std::to_string(n));
        const std::string dialects = ReadText(key, kDialects + std::to_string(n));
        if (!path.empty()) {
            m_listPaths.push_back(path);
            if (!dialects.empty()) {
                SetDialects(path, dialects);
            }
        }
    }
}

void CRecentFiles::Save() const {
    CRegistryKey key;
    if (m_listPaths.empty() && !key.Open(ERegRoot::CurrentUser, kRecentFilesKey, ERegAccess::Read)) {
        return;
    }
    key.Create(ERegRoot::CurrentUser, kRecentFilesKey);
    for (std::size_t n = 0; n < kMaximum; ++n) {
        const std::string name = "File" + std::to_string(n + 1);
        if (n < m_listPaths.size()) {
            key.SetString(name, m_listPaths[n]);
        } else {
            key.DeleteValue(name);
        }
        const std::string ofDialects = kDialects + std::to_string(n + 1);
        const std::string dialects = n < m_listPaths.size() ? Dialects(m_listPaths[n]) : std::string();
        if (dialects.empty()) {
            key.DeleteValue(ofDialects);
        } else {
            key.SetString(ofDialects, dialects);
        }
    }
}

void CRecentFiles::Add(std::string_view path) {
    const std::string replacement(path); // the text may be one of the list's own
    std::erase(m_listPaths, replacement);
    m_listPaths.insert(m_listPaths.begin(), replacement);
    if (m_listPaths.size() > kMaximum) {
        m_listPaths.resize(kMaximum);
    }
    DropDialects();
}

void CRecentFiles::Remove(std::string_view path) {
    std::erase(m_listPaths, path);
    DropDialects();
}

std::string CRecentFiles::Dialects(std::string_view path) const {
    const auto found = m_mapDialects.find(path);
    return found == m_mapDialects.end() ? std::string() : found->second;
}

void CRecentFiles::SetDialects(std::string_view path, std::string_view names) {
    m_mapDialects.insert_or_assign(std::string(path), std::string(names));
    DropDialects();
}

void CRecentFiles::DropDialects() {
    std::erase_if(m_mapDialects, [this](const auto& entry) {
        return entry.second.empty() || std::ranges::find(m_listPaths, entry.first) == m_listPaths.end();
    });
}

} // namespace carvelot
