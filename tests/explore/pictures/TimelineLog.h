// The timeline of a test's log, of which 1000 pixels show the time.
#pragma once

#include "explore/ExploredLog.h"
#include "explore/pictures/TimelinePicture.h"
#include "explore/pictures/TimelineView.h"

#include <memory>

namespace carvelot::test {

inline constexpr double kPlotWidth = 1000;

class TimelineLog {
public:
    explicit TimelineLog(const std::vector<std::string>& lines, double height = 600)
        : m_session(lines), m_view(m_timeline) {
        m_view.SetSize(m_view.Plot().x + kPlotWidth, height, 14);
    }

    const CFrames& Frames() const { return m_explored.frames; }
    // The first frame of that name.
    std::uint32_t Frame(std::string_view name, std::uint32_t from = 0) const {
        for (std::uint32_t i = from; i < Frames().Count(); ++i) {
            if (Frames().Keys().Name(Frames()[i].key) == name) {
                return i;
            }
        }
        return kNoFrame;
    }
    std::string NameOf(std::uint32_t frame) const {
        return frame == kNoFrame ? "none" : std::string(Frames().Keys().Name(Frames()[frame].key));
    }

    TestSession m_session;
    ExploredSession m_explored{m_session.m_doc, m_session.m_settings};
    std::vector<Finding> m_findings = FindAll(m_explored);
    CTimeline m_timeline{m_explored, m_findings};
    CTimelineView m_view;
};

// A debug log of one more line ahead of these, of the same time and thread, which tells the format.
inline std::vector<std::string> LinesOfLog(const std::vector<std::string>& lines) {
    const std::string first = lines.front().substr(0, lines.front().find('\t') + 1);
    std::vector<std::string> log{first + "Entering JDB_OpenTable"};
    log.insert(log.end(), lines.begin(), lines.end());
    return log;
}

// A debug line some microseconds behind ten o'clock.
inline std::string AtMicrosecond(std::int64_t microseconds, std::string_view text,
                                 std::string_view ids = "4120/3388") {
    const auto part = [microseconds](std::int64_t unit, std::int64_t most) {
        return static_cast<int>(microseconds / unit % most);
    };
    char time[48];
    std::snprintf(time, sizeof time, "%02d:%02d:%02d.%06d", 10 + part(3'600'000'000, 24),
                  part(60'000'000, 60), part(1'000'000, 60), part(1, 1'000'000));
    return DebugLine(time, text, ids);
}

} // namespace carvelot::test
