// Pasted typedefs: whatever the text, the members are well-formed and a second reading of the text that the
// first one left gives the same.
#include "cachebrowser/CacheDS.h"

#include <cstdlib>

using namespace carvelot;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(bytes), size);
    CCacheDS structure;
    structure.ParseTypedef(text);
    if (text.size() > size || text.find("/*") != std::string::npos) {
        std::abort();
    }
    for (const auto& member : structure.m_members) {
        if (member->m_type < MEMBER_INT || member->m_type > MEMBER_BOOL || member->m_count == 0 ||
            (member->m_pointer && member->m_size != 4) || member->m_name.find('[') != std::string::npos) {
            std::abort();
        }
    }
    CCacheDS again;
    again.ParseTypedef(text);
    if (again.m_members.size() != structure.m_members.size() ||
        again.GetRowSize() != structure.GetRowSize()) {
        std::abort();
    }
    if (const auto rowSize = structure.CheckedRowSize(); rowSize && *rowSize != structure.GetRowSize()) {
        std::abort();
    }
    return 0;
}
