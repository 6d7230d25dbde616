// An empty settings store for one test. On Windows the user's own keys of the program are emptied, so that
// tests run under Wine or a test account only.
#pragma once

#include "platform/Registry.h"
#include "support/TestFolder.h"

namespace carvelot::test {

class SettingsStore {
public:
    SettingsStore() : m_path(m_folder.Path("registry.ini")), m_guard("CARVELOT_REGISTRY", m_path.c_str()) {
        Empty();
    }
    ~SettingsStore() { Empty(); }

    /// A key below the current user's, with full access.
    static platform::CRegistryKey Key(std::string_view path) {
        platform::CRegistryKey key;
        key.Create(platform::ERegRoot::CurrentUser, path);
        return key;
    }
    const TestFolder& Folder() const { return m_folder; }
    const std::string& Path() const { return m_path; }

private:
    static void Empty() {
#ifdef _WIN32
        Key("Software\\Tamrisk\\Carvelot").DeleteContent();
#endif
    }

    TestFolder m_folder;
    std::string m_path;
    EnvironmentGuard m_guard;
};

} // namespace carvelot::test
