// Definition files: what can be read is written and read back the same, and every member decodes some row.
#include "cachebrowser/CacheDefinition.h"

#include <cstdlib>
#include <cstring>

using namespace carvelot;

namespace {

std::int32_t FormatNothing(char16_t*, const void*) { return 0; }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
    CCacheDS structure;
    ReadCacheDefinition({reinterpret_cast<const char*>(bytes), size}, structure);
    if (structure.m_members.size() > size) {
        std::abort();
    }
    const std::string written = WriteCacheDefinition(structure);
    CCacheDS again;
    if (ReadCacheDefinition(written, again) != EArchiveError::None ||
        WriteCacheDefinition(again) != written) {
        std::abort();
    }
    if (structure.CheckedRowSize()) {
        const auto offsets = structure.MemberOffsets();
        for (std::size_t n = 0; n < offsets.size(); ++n) {
            structure.m_members[n]->DecodeMember(CRowPointer({bytes, size}, offsets[n]), FormatNothing);
        }
    }
    return 0;
}
