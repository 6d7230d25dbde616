#include "cachebrowser/CacheFetch.h"

namespace carvelot {

ICacheFetch::EBound CCompanionFetch::Bind() {
    std::uint32_t nError = 0;
    if (!m_library.Load(kCompanionLibrary, nError))
        return NoLibrary;
    m_pfnFetch = reinterpret_cast<FCacheFetch>(m_library.Symbol("SkelmondCacheFetchProcessor", nError));
    return m_pfnFetch != nullptr ? Bound : NoEntryPoint;
}

std::int32_t CCompanionFetch::Fetch(std::uint32_t nProcess, std::uint64_t nHandle, std::uint64_t& nCursor,
                                    void* pRow, std::int32_t nRowSize, std::int32_t nFirst) {
    return m_pfnFetch(nProcess, nHandle, &nCursor, pRow, nRowSize, nFirst);
}

} // namespace carvelot
