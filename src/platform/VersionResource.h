// VersionResource.h - the version that the running program's own file bears.
#pragma once

#include <cstdint>

namespace carvelot::platform {

// The fixed file version: four numbers in the high and low words of two 32-bit values.
struct CFileVersion {
    std::uint32_t m_nMost = 0;
    std::uint32_t m_nLeast = 0;
};

// Reads the version resource of the running program; false, and zeros, when it has none. Off Windows the
// version that was built in.
bool ReadOwnFileVersion(CFileVersion& version);

} // namespace carvelot::platform
