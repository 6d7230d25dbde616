#include "explore/pictures/ActivityStrip.h"

#include <algorithm>

namespace carvelot {

CActivityStrip::CActivityStrip(const CTimelineRows& rows, std::int64_t from, std::int64_t to)
    : m_busy(kBuckets, 0.0) {
    const CFrames& frames = rows.Frames();
    const double bucket = static_cast<double>(to - from) / kBuckets;
    std::vector<double> whole(kBuckets + 1, 0.0); // how many more begin to fill whole buckets here
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        const Frame& frame = frames[i];
        if (frame.parent != kNoFrame) {
            continue;
        }
        const auto place = [&](std::int64_t time) {
            return std::clamp(static_cast<double>(time - from) / bucket, 0.0, static_cast<double>(kBuckets));
        };
        const double start = place(frame.start);
        const double end = place(frame.end);
        const auto first = std::min(static_cast<std::size_t>(start), kBuckets - 1);
        const auto last = std::min(static_cast<std::size_t>(end), kBuckets - 1);
        if (first == last) {
            m_busy[first] += end - start;
            continue;
        }
        m_busy[first] += static_cast<double>(first + 1) - start;
        m_busy[last] += end - static_cast<double>(last);
        whole[first + 1] += 1;
        whole[last] -= 1;
    }
    double open = 0;
    for (std::size_t i = 0; i < kBuckets; ++i) {
        open += whole[i];
        m_busy[i] += open;
        m_most = std::max(m_most, m_busy[i]);
    }
}

} // namespace carvelot
