#include "platform/DynamicLibrary.h"

#include <dlfcn.h>

#include <cctype>
#include <cstdlib>
#include <string>
#include <utility>

namespace carvelot::platform {

namespace {

constexpr std::uint32_t kModuleNotFound = 126;
constexpr std::uint32_t kProcedureNotFound = 127;

std::string SharedObjectName(std::string_view strName) {
    std::string strResult(strName);
    const std::size_t nDot = strResult.rfind('.');
    if (nDot != std::string::npos && strResult.size() - nDot == 4) {
        std::string strExtension = strResult.substr(nDot);
        for (char& ch : strExtension)
            ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
        if (strExtension == ".dll")
            strResult.resize(nDot);
    }
    return strResult + ".so";
}

} // namespace

void CloseLibrarySearch() {}

CDynamicLibrary& CDynamicLibrary::operator=(CDynamicLibrary&& other) noexcept {
    std::swap(m_hModule, other.m_hModule);
    return *this;
}

bool CDynamicLibrary::Load(std::string_view strName, std::uint32_t& nError) {
    Free();
    const std::string strFile = SharedObjectName(strName);
    if (const char* pszFolder = std::getenv("CARVELOT_LIBRARY_DIR");
        pszFolder != nullptr && *pszFolder != '\0')
        m_hModule = dlopen((std::string(pszFolder) + "/" + strFile).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (m_hModule == nullptr)
        m_hModule = dlopen(strFile.c_str(), RTLD_NOW | RTLD_LOCAL);
    nError = m_hModule != nullptr ? 0 : kModuleNotFound;
    return m_hModule != nullptr;
}

CDynamicLibrary::FPointer CDynamicLibrary::Symbol(const char* pszName, std::uint32_t& nError) const {
    void* pFound = m_hModule != nullptr ? dlsym(m_hModule, pszName) : nullptr;
    nError = pFound != nullptr ? 0 : kProcedureNotFound;
    return reinterpret_cast<FPointer>(pFound);
}

void CDynamicLibrary::Free() {
    if (m_hModule != nullptr)
        dlclose(m_hModule);
    m_hModule = nullptr;
}

} // namespace carvelot::platform
