#include "explore/pictures/Timeline.h"

#include "explore/lists/ExploreNames.h"
#include "text/NumberText.h"

#include <algorithm>

namespace carvelot {

CTimeline::CTimeline(const ExploredSession& explored, std::span<const Finding> findings,
                     CExploreProgress* progress)
    : m_explored(explored), m_findings(findings), m_rows(explored.frames, explored.streams, progress),
      m_levels(m_rows, {}, progress), m_axis(explored), m_nFrom(FirstTime()),
      m_nTo(std::max(explored.clock.Length(), m_nFrom + 1)), m_activity(m_rows, m_nFrom, m_nTo),
      m_silences(explored.streams.Count()), m_depths(explored.streams.Count()),
      m_streamActivity(explored.streams.Count(), 0) {
    for (std::uint32_t stream = 0; stream < explored.streams.Count(); ++stream) {
        m_depths[stream] = std::max(m_rows.RowCount(stream), 1U);
        if (m_rows.RowCount(stream) != 0) {
            for (const std::uint32_t frame : m_levels.FramesOf(m_rows.FirstRow(stream))) {
                m_streamActivity[stream] = AddTimes(m_streamActivity[stream], Frames()[frame].Total());
            }
        }
    }
    ForEachSilenceInCall(explored, [&](const SilenceInCall& silence) {
        const std::uint32_t depth = m_rows.DepthOf(silence.function) + 1;
        m_silences[silence.stream].push_back(
            TimelineSilence{silence.start, silence.end, silence.record, depth});
        m_depths[silence.stream] = std::max(m_depths[silence.stream], depth + 1);
        CheckAt(progress, static_cast<std::uint32_t>(m_silences[silence.stream].size()));
    });
    for (std::uint32_t i = 0; i < findings.size(); ++i) {
        std::vector<TimelineFlag>& flags = m_flags[static_cast<std::size_t>(SeverityOf(findings[i].rule))];
        for (const RecordIndex record : findings[i].records) {
            flags.push_back({explored.clock[record], record, i});
        }
    }
    for (std::vector<TimelineFlag>& flags : m_flags) {
        std::stable_sort(flags.begin(), flags.end(), [](const TimelineFlag& one, const TimelineFlag& other) {
            return one.clock < other.clock;
        });
    }
}

// A log's first lines may tell earlier times than the one that the clock starts with.
std::int64_t CTimeline::FirstTime() const {
    std::int64_t first = 0;
    for (std::uint32_t stream = 0; stream < m_rows.StreamCount(); ++stream) {
        if (m_rows.RowCount(stream) != 0) {
            const std::uint32_t frame = m_levels.FramesOf(m_rows.FirstRow(stream)).front();
            first = std::min(first, m_explored.frames[frame].start);
        }
    }
    return first;
}

std::string CTimeline::NameOf(std::uint32_t stream) const {
    const std::string name = m_explored.streams.Name(stream);
    return std::string(ShownName(std::string_view(name).substr(name.find(':') + 1)));
}

std::uint32_t CTimeline::FrameAt(RecordIndex record) const {
    const std::uint32_t stream = m_explored.streams.Of(record);
    std::uint32_t found = kNoFrame;
    for (std::uint32_t depth = 0; depth < m_rows.RowCount(stream); ++depth) {
        const std::span<const std::uint32_t> row = m_levels.FramesOf(m_rows.FirstRow(stream) + depth);
        const auto behind =
            std::upper_bound(row.begin(), row.end(), record, [this](RecordIndex sought, std::uint32_t frame) {
                return Number(sought) < Number(Frames()[frame].record);
            });
        if (behind == row.begin()) {
            break;
        }
        const Frame& frame = Frames()[*(behind - 1)];
        const bool isEnd = frame.ended == record && frame.record != record;
        if (Number(frame.ended) < Number(record) || (isEnd && !frame.closed)) {
            break;
        }
        found = *(behind - 1);
        if (isEnd || frame.record == record) {
            break;
        }
    }
    return found;
}

std::int64_t CTimeline::SelfTime(std::uint32_t frame) const {
    std::int64_t self = Frames()[frame].Total();
    const std::uint32_t stream = m_rows.StreamOf(frame);
    const std::uint32_t depth = m_rows.DepthOf(frame) + 1;
    if (depth < m_rows.RowCount(stream)) {
        // Frames below one follow each other in their row.
        const std::span<const std::uint32_t> row = m_levels.FramesOf(m_rows.FirstRow(stream) + depth);
        auto child = std::upper_bound(row.begin(), row.end(), frame);
        for (; child != row.end() && Frames()[*child].parent == frame; ++child) {
            self -= Frames()[*child].Total();
        }
    }
    return self;
}

std::string CTimeline::TipOf(const TimelineBar& bar) const {
    const Frame& frame = Frames()[bar.frame];
    const CFrameKeys& keys = Frames().Keys();
    const std::string name =
        std::string(LetterOf(keys.Kind(frame.key))).append(" ").append(ShownKey(keys, frame.key));
    if (bar.Count() > 1) {
        return Counted(bar.Count(), "frame")
            .append(bar.HasFailed() ? ", some of them failed" : "")
            .append("\nThe longest: ")
            .append(name)
            .append(", ")
            .append(SecondsWithPlaces(frame.Total()))
            .append(" s");
    }
    std::string tip = name;
    tip.append("\nTotal ").append(SecondsWithPlaces(frame.Total()));
    tip.append(" s, self ").append(SecondsWithPlaces(SelfTime(bar.frame))).append(" s");
    tip.append("\nFrom ").append(m_axis.Text(frame.start));
    if (frame.result != kNoResult) {
        tip.append("\nResult ").append(std::to_string(frame.result));
        tip.append(frame.IsFailed() ? ": failed" : frame.IsWarned() ? ": a warning" : "");
    }
    if (!frame.closed) {
        tip.append("\nIts end is not in the log.");
    }
    return tip;
}

std::string CTimeline::TipOf(const TimelineFlag& flag) const {
    const Finding& finding = m_findings[flag.finding];
    return SubjectText(finding).append("\n").append(MeaningOf(finding.rule));
}

} // namespace carvelot
