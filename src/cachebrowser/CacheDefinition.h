// CacheDefinition.h - cache definition files, ".cds": a structure in the archive format of Archive.h.
#pragma once

#include "cachebrowser/Archive.h"
#include "cachebrowser/CacheDS.h"

#include <string>
#include <string_view>

namespace carvelot {

inline constexpr char kDefinitionFilter[] =
    "Carvelot Cache Definition Files (*.cds)|*.cds|All Files (*.*)|*.*||";

// Both return what is to be shown to the user, as Windows' own programs word it; empty when all went well.
// Paths are UTF-8.

// Clears the structure first. After a failure the members that were whole remain.
std::string LoadCacheDefinition(const std::string& path, CCacheDS& structure);
// After a failure the file is what it was before.
std::string SaveCacheDefinition(const std::string& path, CCacheDS& structure);

// The same over bytes in memory.
EArchiveError ReadCacheDefinition(std::string_view bytes, CCacheDS& structure);
std::string WriteCacheDefinition(CCacheDS& structure);

} // namespace carvelot
