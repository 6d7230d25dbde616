// All that a log's timeline shows, made once: whatever part of it is looked at, nothing walks over all frames
// again.
#pragma once

#include "explore/Findings.h"
#include "explore/Silences.h"
#include "explore/pictures/ActivityStrip.h"
#include "explore/pictures/TimeAxis.h"
#include "explore/pictures/TimelineLevels.h"
#include "explore/pictures/TimelineRows.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace carvelot {

struct TimelineSilence {
    std::int64_t start;
    std::int64_t end;
    RecordIndex record;
    std::uint32_t depth; // one below the function that was open
};

// A record of a finding.
struct TimelineFlag {
    std::int64_t clock;
    RecordIndex record;
    std::uint32_t finding;
};

class CTimeline {
public:
    // Refers to both. Throws ExploringEnded where `progress` says so.
    CTimeline(const ExploredSession& explored, std::span<const Finding> findings,
              CExploreProgress* progress = nullptr);

    const ExploredSession& Explored() const { return m_explored; }
    const CFrames& Frames() const { return m_explored.frames; }
    std::span<const Finding> Findings() const { return m_findings; }
    const CTimelineRows& Rows() const { return m_rows; }
    const CTimelineLevels& Levels() const { return m_levels; }
    const CTimeAxis& Axis() const { return m_axis; }
    const CActivityStrip& Activity() const { return m_activity; }
    // Of the log; `To` lies behind `From`.
    std::int64_t From() const { return m_nFrom; }
    std::int64_t To() const { return m_nTo; }

    // Of a stream, by time.
    std::span<const TimelineSilence> Silences(std::uint32_t stream) const { return m_silences[stream]; }
    // By clock.
    std::span<const TimelineFlag> Flags(Severity severity) const {
        return m_flags[static_cast<std::size_t>(severity)];
    }
    // Rows that a stream needs, for its silences, too; at least one.
    std::uint32_t Depth(std::uint32_t stream) const { return m_depths[stream]; }
    // Time in the frames that stand in no other one.
    std::int64_t ActivityOf(std::uint32_t stream) const { return m_streamActivity[stream]; }
    // "4576/3268" or a user's name.
    std::string NameOf(std::uint32_t stream) const;

    // The frame that a record tells of: its own, the one that it ends, or the innermost one that it stands
    // in.
    std::uint32_t FrameAt(RecordIndex record) const;
    std::int64_t SelfTime(std::uint32_t frame) const;
    // What a tip says of a bar.
    std::string TipOf(const TimelineBar& bar) const;
    std::string TipOf(const TimelineFlag& flag) const;

private:
    std::int64_t FirstTime() const;

    const ExploredSession& m_explored;
    std::span<const Finding> m_findings;
    CTimelineRows m_rows;
    CTimelineLevels m_levels;
    CTimeAxis m_axis;
    std::int64_t m_nFrom;
    std::int64_t m_nTo;
    CActivityStrip m_activity;
    std::vector<CLargeVector<TimelineSilence>> m_silences;
    std::array<std::vector<TimelineFlag>, 3> m_flags;
    std::vector<std::uint32_t> m_depths;
    std::vector<std::int64_t> m_streamActivity;
};

} // namespace carvelot
