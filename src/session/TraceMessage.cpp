#include "session/TraceMessage.h"

#include "platform/CodePage.h"

#include <algorithm>
#include <cstdio>

namespace carvelot {

namespace {

constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

} // namespace

std::string TraceStamp(const platform::LocalTime& time) {
    char buffer[96];
    std::snprintf(buffer, sizeof buffer, "%s %02d %02d:%02d:%02d.%03d000",
                  kMonths[std::clamp(time.m_nMonth, 1, 12) - 1], time.m_nDay, time.m_nHour, time.m_nMinute,
                  time.m_nSecond, time.m_nMillisecond);
    return buffer;
}

std::string TraceLine(std::string_view strStamp, std::uint32_t nProcess, std::uint32_t nThread,
                      std::string_view strText) {
    std::string strLine(strStamp);
    // Numbers of threads print signed, as the log's own lines have them.
    strLine.append(" - ").append(std::to_string(static_cast<std::int32_t>(nProcess)));
    strLine.append("/").append(std::to_string(static_cast<std::int32_t>(nThread)));
    strLine.append(" [CARVELOT MESSAGE] - \t[CARVELOT MESSAGE]");
    strLine.append(platform::Utf8ToBytes(strText.substr(0, strText.find('\0'))));
    strLine.push_back('\n');
    return strLine;
}

bool CTraceMessage::Open(const std::string& strLogPath, const FClock& fnClock) {
    m_file = platform::AppendFile::Open(strLogPath);
    if (!m_file)
        return false;
    m_strStamp = TraceStamp(fnClock());
    return true;
}

void CTraceMessage::Write(std::uint32_t nProcess, std::uint32_t nThread, std::string_view strText) {
    m_file.Write(TraceLine(m_strStamp, nProcess, nThread, strText));
    m_file.Close();
}

} // namespace carvelot
