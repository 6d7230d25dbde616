#include "session/TraceMessage.h"

#include "platform/CodePage.h"

#include <algorithm>
#include <cstdio>

namespace carvelot {

namespace {

constexpr const char* kMonthNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

} // namespace

std::string TraceStamp(const platform::LocalTime& time) {
    char buffer[96];
    std::snprintf(buffer, sizeof buffer, "%s %02d %02d:%02d:%02d.%03d000",
                  kMonthNames[std::clamp(time.m_nMonth, 1, 12) - 1], time.m_nDay, time.m_nHour,
                  time.m_nMinute, time.m_nSecond, time.m_nMillisecond);
    return buffer;
}

std::string TraceLine(std::string_view stamp, std::uint32_t process, std::uint32_t thread,
                      std::string_view text) {
    std::string line(stamp);
    // Numbers of threads print signed, as the log's own lines have them.
    line.append(" - ").append(std::to_string(static_cast<std::int32_t>(process)));
    line.append("/").append(std::to_string(static_cast<std::int32_t>(thread)));
    line.append(" [CARVELOT MESSAGE] - \t[CARVELOT MESSAGE]");
    line.append(platform::Utf8ToBytes(text.substr(0, text.find('\0'))));
    line.push_back('\n');
    return line;
}

bool CTraceMessage::Open(const std::string& logPath, const FClock& clock) {
    m_file = platform::AppendFile::Open(logPath);
    if (!m_file) {
        return false;
    }
    m_strStamp = TraceStamp(clock());
    return true;
}

void CTraceMessage::Write(std::uint32_t process, std::uint32_t thread, std::string_view text) {
    m_file.Write(TraceLine(m_strStamp, process, thread, text));
    m_file.Close();
}

} // namespace carvelot
