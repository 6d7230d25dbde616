// Silences: nothing was written by a stream for longer than the threshold while a function was open.
#pragma once

#include "explore/ExploredSession.h"

#include <cstdint>
#include <functional>

namespace carvelot {

struct SilenceInCall {
    std::uint32_t stream;
    RecordIndex record;     // the one behind it
    std::uint32_t function; // the innermost function frame that was open
    std::int64_t start;     // the stream's time
    std::int64_t end;

    std::int64_t Total() const { return end - start; }
};

// By record.
void ForEachSilenceInCall(const ExploredSession& explored,
                          const std::function<void(const SilenceInCall&)>& take);

} // namespace carvelot
