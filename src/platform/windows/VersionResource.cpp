#include "platform/VersionResource.h"

#include <windows.h>

#include <vector>

namespace carvelot::platform {

bool ReadOwnFileVersion(CFileVersion& version) {
    version = {};
    std::vector<wchar_t> path(32768);
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0 || length >= path.size()) {
        return false;
    }
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(path.data(), &ignored);
    if (size == 0) {
        return false;
    }
    std::vector<unsigned char> block(size);
    if (!GetFileVersionInfoW(path.data(), 0, size, block.data())) {
        return false;
    }
    void* found = nullptr;
    UINT foundLength = 0;
    if (!VerQueryValueW(block.data(), L"\\", &found, &foundLength) ||
        foundLength < sizeof(VS_FIXEDFILEINFO)) {
        return false;
    }
    const auto* fixed = static_cast<const VS_FIXEDFILEINFO*>(found);
    version.m_nMost = fixed->dwFileVersionMS;
    version.m_nLeast = fixed->dwFileVersionLS;
    return true;
}

} // namespace carvelot::platform
