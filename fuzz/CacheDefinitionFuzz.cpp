// Definition files: what can be read is written and read back the same, and every member decodes some row.
#include "cachebrowser/CacheDefinition.h"

#include <cstdlib>
#include <cstring>

using namespace carvelot;

namespace {

std::int32_t FormatNothing(char16_t*, const void*) { return 0; }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* pBytes, std::size_t nSize) {
    CCacheDS structure;
    ReadCacheDefinition({reinterpret_cast<const char*>(pBytes), nSize}, structure);
    if (structure.m_members.size() > nSize)
        std::abort();
    const std::string strWritten = WriteCacheDefinition(structure);
    CCacheDS again;
    if (ReadCacheDefinition(strWritten, again) != EArchiveError::None ||
        WriteCacheDefinition(again) != strWritten)
        std::abort();
    if (structure.CheckedRowSize()) {
        const auto listOffsets = structure.MemberOffsets();
        for (std::size_t n = 0; n < listOffsets.size(); ++n)
            structure.m_members[n]->DecodeMember(CRowPointer({pBytes, nSize}, listOffsets[n]), FormatNothing);
    }
    return 0;
}
