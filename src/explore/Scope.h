// Parts of a session by their names, "process:PID", "thread:PID/TID" or "user:NAME", which another session
// may have too.
#pragma once

#include "explore/ExploredSession.h"
#include "session/Selection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace carvelot {

// Nothing when the session has no such scope. Process and thread numbers stand in their unsigned or their
// signed form.
std::optional<Selection> FindScope(const CCarvelotDoc& session, std::string_view scope);

// The name of what is selected; empty for the whole session.
std::string ScopeName(const Selection& selection);

// What a part of a session adds up to: nothing where the session lacks it.
ExploredScope ExploreIfThere(const ExploredSession& explored, const std::optional<Selection>& scope,
                             const ClockRange& range, CExploreProgress* progress = nullptr);

// A process or thread number in its unsigned or its signed form.
std::optional<std::uint32_t> ParseId(std::string_view text);

} // namespace carvelot
