#include "support/MachineState.h"

#include "support/TestFolder.h"

#include <algorithm>
#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
#endif

namespace carvelot::test {

#ifdef _WIN32

namespace {

// The key of this process below the real HKEY_CURRENT_USER, with a key for each store.
class CStores {
public:
    CStores() { RegCreateKeyW(HKEY_CURRENT_USER, m_strName.c_str(), &m_hOwn); }
    ~CStores() {
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        if (m_hStore != nullptr) {
            RegCloseKey(m_hStore);
        }
        RegCloseKey(m_hOwn);
        RegDeleteTreeW(HKEY_CURRENT_USER, m_strName.c_str());
    }
    CStores(const CStores&) = delete;
    CStores& operator=(const CStores&) = delete;

    void Use(std::wstring store) {
        std::ranges::replace(store, L'\\', L'/');
        HKEY handle = nullptr;
        if (RegCreateKeyW(m_hOwn, store.c_str(), &handle) != ERROR_SUCCESS) {
            std::abort(); // rather than write to the user's own settings
        }
        if (RegOverridePredefKey(HKEY_CURRENT_USER, handle) != ERROR_SUCCESS) {
            std::abort();
        }
        if (m_hStore != nullptr) {
            RegCloseKey(m_hStore);
        }
        m_hStore = handle;
    }

private:
    std::wstring m_strName = L"Software\\carvelot-tests-" + std::to_wstring(GetCurrentProcessId());
    HKEY m_hOwn = nullptr;
    HKEY m_hStore = nullptr;
};

} // namespace

void UseSettingsStore(const std::string& file) {
    static CStores stores;
    stores.Use(ToPath(file).wstring());
}

void UseLibraryFolder(const std::string& folder) {
    static const std::wstring rest = [] {
        const wchar_t* const path = _wgetenv(L"PATH");
        return path != nullptr ? std::wstring(path) : std::wstring();
    }();
    _wputenv_s(L"PATH", (ToPath(folder).make_preferred().wstring() + L";" + rest).c_str());
}

#else

void UseSettingsStore(const std::string& file) { setenv("CARVELOT_REGISTRY", file.c_str(), 1); }

void UseLibraryFolder(const std::string& folder) { setenv("CARVELOT_LIBRARY_DIR", folder.c_str(), 1); }

#endif

} // namespace carvelot::test
