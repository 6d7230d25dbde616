// Pasted typedefs: whatever the text, the members are well-formed and a second reading of the text that the
// first one left gives the same.
#include "cachebrowser/CacheDS.h"

#include <cstdlib>

using namespace carvelot;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* pBytes, std::size_t nSize) {
    std::string strText(reinterpret_cast<const char*>(pBytes), nSize);
    CCacheDS structure;
    structure.ParseTypedef(strText);
    if (strText.size() > nSize || strText.find("/*") != std::string::npos)
        std::abort();
    for (const auto& pMember : structure.m_members) {
        if (pMember->m_type < MEMBER_INT || pMember->m_type > MEMBER_BOOL || pMember->m_count == 0 ||
            (pMember->m_pointer && pMember->m_size != 4) || pMember->m_name.find('[') != std::string::npos)
            std::abort();
    }
    CCacheDS again;
    again.ParseTypedef(strText);
    if (again.m_members.size() != structure.m_members.size() || again.GetRowSize() != structure.GetRowSize())
        std::abort();
    if (const auto nRowSize = structure.CheckedRowSize(); nRowSize && *nRowSize != structure.GetRowSize())
        std::abort();
    return 0;
}
