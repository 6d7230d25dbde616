#include "platform/DynamicLibrary.h"

#include <windows.h>

#include <string>
#include <utility>

namespace carvelot::platform {

CDynamicLibrary& CDynamicLibrary::operator=(CDynamicLibrary&& other) noexcept {
    std::swap(m_hModule, other.m_hModule);
    return *this;
}

bool CDynamicLibrary::Load(std::string_view strName, std::uint32_t& nError) {
    Free();
    std::wstring strWide(strName.size(), L'\0');
    const int nLength = MultiByteToWideChar(CP_UTF8, 0, strName.data(), static_cast<int>(strName.size()),
                                            strWide.data(), static_cast<int>(strWide.size()));
    strWide.resize(static_cast<std::size_t>(nLength));
    m_hModule = LoadLibraryW(strWide.c_str());
    nError = m_hModule != nullptr ? 0 : GetLastError();
    return m_hModule != nullptr;
}

CDynamicLibrary::FPointer CDynamicLibrary::Symbol(const char* pszName, std::uint32_t& nError) const {
    if (m_hModule == nullptr) {
        nError = ERROR_INVALID_HANDLE;
        return nullptr;
    }
    const FARPROC pFound = GetProcAddress(static_cast<HMODULE>(m_hModule), pszName);
    nError = pFound != nullptr ? 0 : GetLastError();
    return reinterpret_cast<FPointer>(reinterpret_cast<void*>(pFound));
}

void CDynamicLibrary::Free() {
    if (m_hModule != nullptr)
        FreeLibrary(static_cast<HMODULE>(m_hModule));
    m_hModule = nullptr;
}

} // namespace carvelot::platform
