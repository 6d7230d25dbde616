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
        if (m_hStore != nullptr)
            RegCloseKey(m_hStore);
        RegCloseKey(m_hOwn);
        RegDeleteTreeW(HKEY_CURRENT_USER, m_strName.c_str());
    }
    CStores(const CStores&) = delete;
    CStores& operator=(const CStores&) = delete;

    void Use(std::wstring strStore) {
        std::ranges::replace(strStore, L'\\', L'/');
        HKEY hStore = nullptr;
        if (RegCreateKeyW(m_hOwn, strStore.c_str(), &hStore) != ERROR_SUCCESS)
            std::abort(); // rather than write to the user's own settings
        if (RegOverridePredefKey(HKEY_CURRENT_USER, hStore) != ERROR_SUCCESS)
            std::abort();
        if (m_hStore != nullptr)
            RegCloseKey(m_hStore);
        m_hStore = hStore;
    }

private:
    std::wstring m_strName = L"Software\\carvelot-tests-" + std::to_wstring(GetCurrentProcessId());
    HKEY m_hOwn = nullptr;
    HKEY m_hStore = nullptr;
};

} // namespace

void UseSettingsStore(const std::string& strFile) {
    static CStores stores;
    stores.Use(ToPath(strFile).wstring());
}

void UseLibraryFolder(const std::string& strFolder) {
    static const std::wstring strRest = [] {
        const wchar_t* const pszPath = _wgetenv(L"PATH");
        return pszPath != nullptr ? std::wstring(pszPath) : std::wstring();
    }();
    _wputenv_s(L"PATH", (ToPath(strFolder).make_preferred().wstring() + L";" + strRest).c_str());
}

#else

void UseSettingsStore(const std::string& strFile) { setenv("CARVELOT_REGISTRY", strFile.c_str(), 1); }

void UseLibraryFolder(const std::string& strFolder) { setenv("CARVELOT_LIBRARY_DIR", strFolder.c_str(), 1); }

#endif

} // namespace carvelot::test
