#include "platform/VersionResource.h"

#include "Version.h"

namespace carvelot::platform {

bool ReadOwnFileVersion(CFileVersion& version) {
    version.m_nMost = (std::uint32_t{CARVELOT_VERSION_MAJOR} << 16) | std::uint32_t{CARVELOT_VERSION_MINOR};
    version.m_nLeast = (std::uint32_t{CARVELOT_VERSION_PATCH} << 16) | std::uint32_t{CARVELOT_VERSION_TWEAK};
    return true;
}

} // namespace carvelot::platform
