#include "explore/Silences.h"

#include "explore/FindingRules.h"
#include "explore/OpenFunctions.h"

namespace carvelot {

void ForEachSilenceInCall(const ExploredSession& explored,
                          const std::function<void(const SilenceInCall&)>& take) {
    if (!explored.frames.Keys().HasKind(FrameKind::Function)) {
        return;
    }
    COpenFunctions functions(explored.frames, explored.streams);
    for (const Silence& silence : explored.frames.Silences()) {
        const std::uint32_t function = functions.AheadOf(silence.record);
        if (function != kNoFrame) {
            // Where a stream's time grew it is that of the record.
            const std::int64_t end = explored.clock[silence.record];
            take({explored.streams.Of(silence.record), silence.record, function, end - silence.length, end});
        }
    }
}

void FindSilences(const ExploredSession& explored, FindingList& findings) {
    CFindingsByNumber perFunction(FindingRule::SilenceInCall, findings);
    ForEachSilenceInCall(explored, [&](const SilenceInCall& silence) {
        const std::uint32_t key = explored.frames[silence.function].key;
        Finding& finding = perFunction.At(key, [&] { return explored.frames.Keys().Name(key); });
        ++finding.count;
        finding.cost = AddTimes(finding.cost, silence.Total());
        finding.AddRecord(silence.record);
    });
}

} // namespace carvelot
