#include "cachebrowser/CacheFetch.h"

namespace carvelot {

ICacheFetch::EBound CCompanionFetch::Bind() {
    std::uint32_t error = 0;
    if (!m_library.Load(kCompanionLibrary, error)) {
        return NoLibrary;
    }
    m_pfnFetch = reinterpret_cast<FCacheFetch>(m_library.Symbol("SkelmondCacheFetchProcessor", error));
    return m_pfnFetch != nullptr ? Bound : NoEntryPoint;
}

std::int32_t CCompanionFetch::Fetch(std::uint32_t process, std::uint64_t handle, std::uint64_t& cursor,
                                    void* row, std::int32_t rowSize, std::int32_t first) {
    return m_pfnFetch(process, handle, &cursor, row, rowSize, first);
}

} // namespace carvelot
