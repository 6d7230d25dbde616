// An empty settings store for one test.
#pragma once

#include "platform/Registry.h"
#include "support/MachineState.h"
#include "support/TestFolder.h"

namespace carvelot::test {

class SettingsStore {
public:
    SettingsStore() : m_path(m_folder.Path("registry.ini")), m_guard("CARVELOT_REGISTRY", m_path.c_str()) {
        UseSettingsStore(m_path);
    }

    /// A key below the current user's, with full access.
    static platform::CRegistryKey Key(std::string_view path) {
        platform::CRegistryKey key;
        key.Create(platform::ERegRoot::CurrentUser, path);
        return key;
    }
    const TestFolder& Folder() const { return m_folder; }
    const std::string& Path() const { return m_path; }

private:
    TestFolder m_folder;
    std::string m_path;
    EnvironmentGuard m_guard;
};

} // namespace carvelot::test
