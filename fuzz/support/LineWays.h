// The lines of a log read twice, without a session: as a session reads them, and plainly.
#pragma once

#include "records/DetailList.h"
#include "parse/LogReader.h"
#include "support/FuzzFile.h"
#include "support/SameSessions.h"

#include <string>
#include <string_view>

namespace carvelot::fuzz {

// `Way` has a record list m_details and the operations ReadUsual(line) and Read(line) of a session.
template <class Way> void RequireSameRecords(std::string_view lines, HintSet hints, Way& usual, Way& plain) {
    usual.m_details.Clear();
    plain.m_details.Clear();
    std::string log(lines);
    log.push_back('\n');
    CMemorySource source(log);
    CLogReader reader(source, hints);
    LogLine line;
    while (reader.ReadLogLine(line)) {
        LogLine same = line;
        same.hints.Invalidate();
        plain.Read(same);
        if (!usual.ReadUsual(line)) {
            usual.Read(line);
        }
    }
    const std::string difference = test::DifferenceOf(usual.m_details, plain.m_details);
    Require(difference.empty(), "read plainly, another outcome: " + difference);
}

} // namespace carvelot::fuzz
