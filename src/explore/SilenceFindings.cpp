// Silences: nothing was written by a stream for longer than the threshold while a function was open.
#include "explore/FindingRules.h"
#include "explore/OpenFunctions.h"

namespace carvelot {

void FindSilences(const ExploredSession& explored, FindingList& findings) {
    if (!explored.frames.Keys().HasKind(FrameKind::Function)) {
        return;
    }
    COpenFunctions functions(explored.frames, explored.streams);
    CFindingsByNumber perFunction(FindingRule::SilenceInCall, findings);
    for (const Silence& silence : explored.frames.Silences()) {
        const std::uint32_t function = functions.AheadOf(silence.record);
        if (function != kNoFrame) {
            const std::uint32_t key = explored.frames[function].key;
            Finding& finding = perFunction.At(key, [&] { return explored.frames.Keys().Name(key); });
            ++finding.count;
            finding.cost = AddTimes(finding.cost, silence.length);
            finding.AddRecord(silence.record);
        }
    }
}

} // namespace carvelot
