// Calls without returns, returns without calls, and what went wrong first in calls that failed.
#include "explore/FindingRules.h"

#include <algorithm>

namespace carvelot {

namespace {

// Stream and record of each trouble, one stream behind the other. All of them are among the errors that the
// session lists.
std::vector<std::uint64_t> TroublesByStream(const ExploredSession& explored) {
    std::vector<std::uint64_t> troubles;
    const auto take = [&](RecordIndex record) {
        if (IsTrouble(explored.session.m_listDetails, record)) {
            troubles.push_back(PairOf(explored.streams.Of(record), Number(record)));
        }
    };
    for (const auto& process : explored.session.m_listProcesses) {
        std::for_each(process->m_listErrors.begin(), process->m_listErrors.end(), take);
    }
    for (const auto& user : explored.session.m_listUsers) {
        std::for_each(user->m_listErrors.begin(), user->m_listErrors.end(), take);
    }
    std::sort(troubles.begin(), troubles.end());
    return troubles;
}

} // namespace

void FindCallsWithoutReturn(const ExploredSession& explored, FindingList& findings) {
    const CFrames& frames = explored.frames;
    if (!frames.Keys().HasKind(FrameKind::Function)) {
        return;
    }
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
    const CFrames& frames = explored.frames;
    if (!frames.Keys().HasKind(FrameKind::Function)) {
        return;
    }
    const std::vector<std::uint64_t> troubles = TroublesByStream(explored);
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
        const std::uint64_t call = PairOf(frame.stream, Number(frame.record));
        const std::uint64_t cause = *std::upper_bound(troubles.begin(), troubles.end(), call);
        Finding& finding = findingOf.At(frame.key, [&] { return frames.Keys().Name(frame.key); });
        ++finding.count;
        finding.cost = AddTimes(finding.cost, frame.Total());
        finding.AddRecord(RecordIndex{static_cast<std::uint32_t>(cause)});
        finding.AddRecord(frame.record);
    }
}

} // namespace carvelot
