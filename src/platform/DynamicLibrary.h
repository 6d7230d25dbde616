// DynamicLibrary.h - libraries that are bound at run time.
#pragma once

#include <cstdint>
#include <string_view>

namespace carvelot::platform {

// To be called first of all: from then on the system looks for no library in the current folder, which may be
// that of a log which somebody sent. Off Windows it never does.
void CloseLibrarySearch();

// One loaded library, freed at the end of its life. A library is named without a folder. Windows looks for it
// in the program's folder, the system's, Windows' own and those of PATH that are named by a whole path, in
// this order. Off Windows "Name.DLL" is looked for as "Name.so", first in CARVELOT_LIBRARY_DIR, then along
// the loader's own path.
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
    bool Load(std::string_view name, std::uint32_t& error);
    // The entry point of that 8-bit export name, or null with the system's error number (off Windows 127).
    FPointer Symbol(const char* name, std::uint32_t& error) const;
    void Free();
    bool IsLoaded() const { return m_hModule != nullptr; }

private:
    void* m_hModule = nullptr;
};

} // namespace carvelot::platform
