#include "explore/Silences.h"

#include "explore/FindingRules.h"
#include "explore/OpenFunctions.h"

#include <algorithm>
#include <limits>

namespace carvelot {

namespace {

// The shortest time that is more than the threshold, which is compared as seconds of 32 bits.
std::int64_t ShortestSilence(float threshold) {
    std::int64_t least = 0;
    std::int64_t most = std::numeric_limits<std::int64_t>::max();
    while (least < most) {
        const std::int64_t middle = least + (most - least) / 2;
        if (SecondsFromMicroseconds(static_cast<std::uint64_t>(middle)) > threshold) {
            most = middle;
        } else {
            least = middle + 1;
        }
    }
    return least;
}

} // namespace

void ForEachSilence(const ExploredSession& explored, const std::function<void(const Silence&)>& take) {
    constexpr std::int64_t none = std::numeric_limits<std::int64_t>::min();
    const std::int64_t shortest = ShortestSilence(explored.settings.m_fThreshold);
    std::vector<std::int64_t> times(explored.streams.Count(), none);
    COpenFunctions functions(explored.frames, explored.streams);
    const auto count = static_cast<std::uint32_t>(explored.session.m_listDetails.Size());
    for (std::uint32_t i = 0; i < count; ++i) {
        const RecordIndex record{i};
        const std::uint32_t stream = explored.streams.Of(record);
        std::int64_t& time = times[stream];
        const std::int64_t before = time;
        time = std::max(time, explored.clock[record]);
        if (before == none || time - before < shortest) {
            continue;
        }
        const std::uint32_t function = functions.AheadOf(record);
        if (function != kNoFrame) {
            take({stream, record, function, before, time});
        }
    }
}

void FindSilences(const ExploredSession& explored, FindingList& findings) {
    CFindingsByNumber perFunction(FindingRule::SilenceInCall, findings);
    ForEachSilence(explored, [&](const Silence& silence) {
        const std::uint32_t key = explored.frames[silence.function].key;
        Finding& finding = perFunction.At(key, [&] { return explored.frames.Keys().Name(key); });
        ++finding.count;
        finding.cost = AddTimes(finding.cost, silence.Total());
        finding.AddRecord(silence.record);
    });
}

} // namespace carvelot
