#include "settings/RecentFiles.h"

#include "platform/Registry.h"
#include "settings/AppSettings.h"

namespace carvelot {

using platform::CRegistryKey;
using platform::ERegAccess;
using platform::ERegRoot;

void CRecentFiles::Load() {
    m_listPaths.clear();
    CRegistryKey key;
    if (!key.Open(ERegRoot::CurrentUser, kRecentFilesKey, ERegAccess::Read)) {
        return;
    }
    for (std::size_t n = 1; n <= kMaximum; ++n) {
        platform::CRegValue value;
        if (key.QueryValue("File" + std::to_string(n), value) == platform::ERegStatus::Ok &&
            value.m_nType == platform::ERegType::String && !value.m_strText.empty()) {
            m_listPaths.push_back(value.m_strText);
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
    }
}

void CRecentFiles::Add(std::string_view path) {
    const std::string replacement(path); // the text may be one of the list's own
    Remove(replacement);
    m_listPaths.insert(m_listPaths.begin(), replacement);
    if (m_listPaths.size() > kMaximum) {
        m_listPaths.resize(kMaximum);
    }
}

void CRecentFiles::Remove(std::string_view path) { std::erase(m_listPaths, path); }

} // namespace carvelot
