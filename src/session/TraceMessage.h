// TraceMessage.h - a note of the user's own, appended to a debug log in the log's own grammar.
#pragma once

#include "platform/LocalTime.h"
#include "platform/SharedFile.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace carvelot {

// "Feb 02 03:04:05.678000": English month names, microseconds with three zeros at the end.
std::string TraceStamp(const platform::LocalTime& time);

// The bytes of the line, line feed included. The text, UTF-8, goes through the system's code page, its line
// breaks as they are.
std::string TraceLine(std::string_view stamp, std::uint32_t process, std::uint32_t thread,
                      std::string_view text);

using FClock = std::function<platform::LocalTime()>;

// Opened before the user is asked for the text, so that the line bears the moment of the command.
class CTraceMessage {
public:
    // Opens the log for shared appending and takes the time; false when the log cannot be opened.
    bool Open(const std::string& logPath, const FClock& clock = platform::CurrentLocalTime);
    // Appends the line in one write, whose outcome nobody asks for, and closes the log.
    void Write(std::uint32_t process, std::uint32_t thread, std::string_view text);

private:
    platform::AppendFile m_file;
    std::string m_strStamp;
};

} // namespace carvelot
