#include "platform/VersionResource.h"

#include <windows.h>

#include <vector>

namespace carvelot::platform {

bool ReadOwnFileVersion(CFileVersion& version) {
    version = {};
    std::vector<wchar_t> path(32768);
    const DWORD nLength = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (nLength == 0 || nLength >= path.size())
        return false;
    DWORD nIgnored = 0;
    const DWORD nSize = GetFileVersionInfoSizeW(path.data(), &nIgnored);
    if (nSize == 0)
        return false;
    std::vector<unsigned char> block(nSize);
    if (!GetFileVersionInfoW(path.data(), 0, nSize, block.data()))
        return false;
    void* pFound = nullptr;
    UINT nFound = 0;
    if (!VerQueryValueW(block.data(), L"\\", &pFound, &nFound) || nFound < sizeof(VS_FIXEDFILEINFO))
        return false;
    const auto* pFixed = static_cast<const VS_FIXEDFILEINFO*>(pFound);
    version.m_nMost = pFixed->dwFileVersionMS;
    version.m_nLeast = pFixed->dwFileVersionLS;
    return true;
}

} // namespace carvelot::platform
