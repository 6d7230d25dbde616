#include "explore/Scope.h"

#include <charconv>

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

std::string ScopeName(const Selection& selection) {
    if (const CProcess* const process = selection.Process()) {
        return "process:" + std::to_string(process->m_nProcessID);
    }
    if (const CThread* const thread = selection.Thread()) {
        return "thread:" + std::to_string(thread->m_nProcessID) + "/" + std::to_string(thread->m_nThreadID);
    }
    const CJASUser* const user = selection.User();
    return user != nullptr ? "user:" + user->m_strUser : std::string();
}

ExploredScope ExploreIfThere(const ExploredSession& explored, const std::optional<Selection>& scope,
                             const ClockRange& range, CExploreProgress* progress) {
    return {explored, scope.value_or(Selection()), scope ? range : ClockRange{0, 0}, progress};
}

std::optional<std::uint32_t> ParseId(std::string_view text) {
    std::int64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end || value < -(std::int64_t{1} << 31) ||
        value >= (std::int64_t{1} << 32)) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(value);
}

} // namespace carvelot
