// DynamicLibrary.h - libraries that are bound at run time.
#pragma once

#include <cstdint>
#include <string_view>

namespace carvelot::platform {

// One loaded library, freed at the end of its life. Off Windows "Name.DLL" is looked for as "Name.so", first
// in CARVELOT_LIBRARY_DIR, then along the loader's own path.
class CDynamicLibrary {
public:
    using FPointer = void (*)();

    CDynamicLibrary() = default;
    ~CDynamicLibrary() { Free(); }
    CDynamicLibrary(CDynamicLibrary&& other) noexcept : m_hModule(other.m_hModule) {
        other.m_hModule = nullptr;
    }
    CDynamicLibrary& operator=(CDynamicLibrary&& other) noexcept;
    CDynamicLibrary(const CDynamicLibrary&) = delete;
    CDynamicLibrary& operator=(const CDynamicLibrary&) = delete;

    // Loads the library; on failure false, with the system's error number (off Windows 126).
    bool Load(std::string_view strName, std::uint32_t& nError);
    // The entry point of that 8-bit export name, or null with the system's error number (off Windows 127).
    FPointer Symbol(const char* pszName, std::uint32_t& nError) const;
    void Free();
    bool IsLoaded() const { return m_hModule != nullptr; }

private:
    void* m_hModule = nullptr;
};

} // namespace carvelot::platform
