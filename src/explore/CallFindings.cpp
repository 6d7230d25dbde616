// Calls without returns, returns without calls, and what went wrong first in calls that failed.
#include "explore/FindingRules.h"

#include <algorithm>

namespace carvelot {

void FindCallsWithoutReturn(const ExploredSession& explored, FindingList& findings) {
    const CFrames& frames = explored.frames;
    CFindingsByNumber findingOf(FindingRule::CallWithoutReturn, findings);
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        const Frame& frame = frames[i];
        if (!frame.closed && frames.Keys().Kind(frame.key) == FrameKind::Function) {
            Finding& finding = findingOf.At(frame.key, [&] { return frames.Keys().Name(frame.key); });
            ++finding.count;
            finding.cost = AddTimes(finding.cost, frame.Total());
            finding.AddRecord(frame.record);
        }
    }
}

void FindOrphanReturns(const ExploredSession& explored, FindingList& findings) {
    CFindingsByNumber findingOf(FindingRule::OrphanReturn, findings);
    for (const OrphanReturn& orphan : explored.frames.OrphanReturns()) {
        Finding& finding = findingOf.At(orphan.key, [&] { return explored.frames.Keys().Name(orphan.key); });
        ++finding.count;
        finding.AddRecord(orphan.record);
    }
}

void FindFirstCauses(const ExploredSession& explored, FindingList& findings) {
    const CDetailList& details = explored.session.m_listDetails;
    const CFrames& frames = explored.frames;
    // The troubles of each stream, one stream behind the other.
    std::vector<std::uint64_t> troubles;
    for (std::uint32_t i = 0; i < details.Size(); ++i) {
        if (IsTrouble(details, RecordIndex{i})) {
            troubles.push_back(PairOf(explored.streams.Of(RecordIndex{i}), i));
        }
    }
    std::sort(troubles.begin(), troubles.end());
    CFindingsByNumber findingOf(FindingRule::FirstCause, findings);
    std::vector<bool> failed(frames.Count()); // the frame or one that it stands in
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        const Frame& frame = frames[i];
        const bool isBelow = frame.parent != kNoFrame && failed[frame.parent];
        failed[i] = isBelow || frame.IsFailed();
        if (isBelow || !frame.IsFailed()) {
            continue;
        }
        // Its own return is a trouble, so that there is one.
        const std::uint64_t call = PairOf(explored.streams.Of(frame.record), Number(frame.record));
        const std::uint64_t cause = *std::upper_bound(troubles.begin(), troubles.end(), call);
        Finding& finding = findingOf.At(frame.key, [&] { return frames.Keys().Name(frame.key); });
        ++finding.count;
        finding.cost = AddTimes(finding.cost, frame.Total());
        finding.AddRecord(RecordIndex{static_cast<std::uint32_t>(cause)});
        finding.AddRecord(frame.record);
    }
}

} // namespace carvelot
