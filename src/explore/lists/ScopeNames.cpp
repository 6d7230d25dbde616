#include "explore/lists/ScopeNames.h"

#include "records/NodeText.h"

namespace carvelot {

std::vector<Selection> ScopesOf(const CCarvelotDoc& session) {
    std::vector<Selection> scopes(1);
    if (session.m_nLogFormat == LOG_FORMAT_JAS) {
        for (const auto& user : session.m_listUsers) {
            scopes.emplace_back(*user);
        }
        return scopes;
    }
    for (const auto& process : session.m_listProcesses) {
        scopes.emplace_back(*process);
        for (const auto& thread : process->m_listThreads) {
            scopes.emplace_back(*thread);
        }
    }
    return scopes;
}

std::string ShownScope(const Selection& scope) {
    if (const CProcess* const process = scope.Process()) {
        return "Process " + IdText(process->m_nProcessID);
    }
    if (const CThread* const thread = scope.Thread()) {
        return "Thread " + IdText(thread->m_nProcessID) + '/' + IdText(thread->m_nThreadID);
    }
    if (const CJASUser* const user = scope.User()) {
        return "User " + user->m_strUser;
    }
    return "Whole log";
}

} // namespace carvelot
