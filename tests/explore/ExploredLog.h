// The frames of a test's log, as texts.
#pragma once

#include "explore/Frames.h"
#include "support/TestLog.h"

#include <cstdio>
#include <string>
#include <vector>

namespace carvelot::test {

class ExploredLog {
public:
    explicit ExploredLog(const std::vector<std::string>& lines) : m_session(lines) {}

    // "  function F 2+3 closed 0" for a frame below another one that started 2 seconds behind the first
    // frame, took 3 and returned 0.
    std::vector<std::string> FrameTexts() const {
        std::vector<std::string> texts;
        std::vector<std::size_t> depths;
        for (std::uint32_t i = 0; i < m_frames.Count(); ++i) {
            const Frame& frame = m_frames[i];
            depths.push_back(frame.parent == kNoFrame ? 0 : depths[frame.parent] + 1);
            std::string& text = texts.emplace_back(2 * depths.back(), ' ');
            text.append(KeyText(frame.key)).append(" ").append(Seconds(frame.start - m_frames[0].start));
            text.append("+").append(Seconds(frame.Total())).append(frame.closed ? " closed" : " unclosed");
            if (frame.result != kNoResult) {
                text.append(" ").append(std::to_string(frame.result));
            }
        }
        return texts;
    }
    std::string KeyText(std::uint32_t key) const {
        return key == kNoKey ? "none"
                             : std::string(NameOf(m_frames.Keys().Kind(key)))
                                   .append(" ")
                                   .append(m_frames.Keys().Name(key));
    }
    static std::string Seconds(std::int64_t microseconds) {
        char text[32];
        std::snprintf(text, sizeof text, "%g", static_cast<double>(microseconds) / 1e6);
        return text;
    }

    TestSession m_session;
    CClock m_clock{m_session.m_doc.m_listDetails};
    CStreams m_streams{m_session.m_doc};
    CFrames m_frames{m_session.m_doc, m_clock, m_streams};
};

// A debug line `second` seconds behind ten o'clock.
inline std::string At(int second, std::string_view text, std::string_view ids = "4120/3388") {
    char time[32];
    std::snprintf(time, sizeof time, "%02d:%02d:%02d.000000", 10 + second / 3600, second / 60 % 60,
                  second % 60);
    return DebugLine(time, text, ids);
}
inline std::string CallText(std::string_view name, int level) {
    return std::string("Calling Business function ")
        .append(name)
        .append(" from (BSFNLevel = ")
        .append(std::to_string(level))
        .append(")");
}
inline std::string ReturnText(std::string_view name, int level, int code = 0) {
    return std::string("Return value is ")
        .append(std::to_string(code))
        .append(" for ")
        .append(name)
        .append(". (BSFNLevel = ")
        .append(std::to_string(level))
        .append(")");
}
// An event rules start or end.
inline std::string EventText(std::string_view name) {
    return std::string("RT: >>>Beginning ER:\t").append(name).append("\t");
}
inline constexpr const char* kEventEnd = "RT: <<<Finished  ER:\t";
inline constexpr const char* kSqlDone = "Exiting DBPerformRequest";

inline std::string UserAt(int second, std::string_view text, std::string_view user = "ANNE",
                          std::string_view level = "APP") {
    char time[32];
    std::snprintf(time, sizeof time, "10:%02d:%02d,000", second / 60, second % 60);
    return JASLine(time, user, text, level);
}

} // namespace carvelot::test
