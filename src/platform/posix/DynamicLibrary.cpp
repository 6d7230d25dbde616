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

std::string SharedObjectName(std::string_view name) {
    std::string result(name);
    const std::size_t dot = result.rfind('.');
    if (dot != std::string::npos && result.size() - dot == 4) {
        std::string extension = result.substr(dot);
        for (char& ch : extension) {
            ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
        }
        if (extension == ".dll") {
            result.resize(dot);
        }
    }
    return result + ".so";
}

} // namespace

void CloseLibrarySearch() {}

CDynamicLibrary& CDynamicLibrary::operator=(CDynamicLibrary&& other) noexcept {
    std::swap(m_hModule, other.m_hModule);
    return *this;
}

bool CDynamicLibrary::Load(std::string_view name, std::uint32_t& error) {
    Free();
    const std::string file = SharedObjectName(name);
    if (const char* folder = std::getenv("CARVELOT_LIBRARY_DIR"); folder != nullptr && *folder != '\0') {
        m_hModule = dlopen((std::string(folder) + "/" + file).c_str(), RTLD_NOW | RTLD_LOCAL);
    }
    if (m_hModule == nullptr) {
        m_hModule = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    }
    error = m_hModule != nullptr ? 0 : kModuleNotFound;
    return m_hModule != nullptr;
}

CDynamicLibrary::FPointer CDynamicLibrary::Symbol(const char* name, std::uint32_t& error) const {
    void* found = m_hModule != nullptr ? dlsym(m_hModule, name) : nullptr;
    error = found != nullptr ? 0 : kProcedureNotFound;
    return reinterpret_cast<FPointer>(found);
}

void CDynamicLibrary::Free() {
    if (m_hModule != nullptr) {
        dlclose(m_hModule);
    }
    m_hModule = nullptr;
}

} // namespace carvelot::platform
