#include "explore/Streams.h"

#include <unordered_map>

namespace carvelot {

CStreams::CStreams(const CCarvelotDoc& session) : m_details(session.m_listDetails) {
    const bool isJAS = session.m_nLogFormat == LOG_FORMAT_JAS;
    std::unordered_map<const void*, std::uint32_t> known;
    m_byContext.reserve(m_details.ContextCount());
    for (std::uint32_t number = 0; number < m_details.ContextCount(); ++number) {
        const RecordContext& context = m_details.ContextOfNumber(number);
        const Owner owner{context.thread, isJAS ? context.jasUser : nullptr};
        const void* const identity =
            isJAS ? static_cast<const void*>(owner.user) : static_cast<const void*>(owner.thread);
        const auto [entry, isNew] = known.try_emplace(identity, Count());
        if (isNew) {
            m_owners.push_back(owner);
        }
        m_byContext.push_back(entry->second);
    }
}

std::string CStreams::Name(std::uint32_t stream) const {
    const Owner& owner = m_owners[stream];
    if (owner.user != nullptr) {
        return "user:" + owner.user->m_strUser;
    }
    return "thread:" + std::to_string(owner.thread->m_nProcessID) + '/' +
           std::to_string(owner.thread->m_nThreadID);
}

bool CStreams::IsIn(std::uint32_t stream, const Selection& scope) const {
    const Owner& owner = m_owners[stream];
    switch (scope.What()) {
    case Selection::Kind::Nothing:
        return true;
    case Selection::Kind::Process:
        return owner.thread->m_nProcessID == scope.Process()->m_nProcessID;
    case Selection::Kind::Thread:
        return owner.thread == scope.Thread();
    case Selection::Kind::User:
        return owner.user == scope.User();
    }
    return false;
}

} // namespace carvelot
