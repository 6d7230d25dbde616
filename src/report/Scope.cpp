#include "report/Scope.h"

#include "report/ReportOptions.h"

namespace carvelot {

std::optional<Selection> FindScope(const CCarvelotDoc& session, std::string_view scope) {
    const std::size_t colon = scope.find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view kind = scope.substr(0, colon);
    const std::string_view name = scope.substr(colon + 1);
    if (session.m_nLogFormat == LOG_FORMAT_JAS) {
        const CJASUser* const user = kind == "user" ? session.FindUser(name) : nullptr;
        return user != nullptr ? std::optional(Selection(*user)) : std::nullopt;
    }
    const std::size_t slash = name.find('/');
    const bool isThread = kind == "thread" && slash != std::string_view::npos;
    if (!isThread && kind != "process") {
        return std::nullopt;
    }
    const std::optional<std::uint32_t> processID = ParseId(isThread ? name.substr(0, slash) : name);
    const CProcess* const process = processID ? session.FindProcess(*processID) : nullptr;
    if (process == nullptr) {
        return std::nullopt;
    }
    if (!isThread) {
        return Selection(*process);
    }
    const std::optional<std::uint32_t> threadID = ParseId(name.substr(slash + 1));
    const auto thread = threadID ? process->m_mapThreads.find(*threadID) : process->m_mapThreads.end();
    return thread != process->m_mapThreads.end() ? std::optional(Selection(*thread->second)) : std::nullopt;
}

} // namespace carvelot
