// The lines of a log read twice, without a session: as a session reads them, and plainly.
#pragma once

#include "parse/LogReader.h"
#include "records/DetailList.h"
#include "sources/MemorySource.h"
#include "support/FuzzFile.h"
#include "support/SameRecords.h"

#include <string>
#include <string_view>

namespace carvelot::fuzz {

// `Way` has a record list m_details and the operations Scan() and Read(line).
template <class Way> void RequireSameRecords(std::string_view lines, Way& fast, Way& plain) {
    std::string log(lines);
    log.push_back('\n');
    const auto read = [&log](Way& way) {
        way.m_details.Clear();
        CMemorySource source(log);
        CLogReader reader(source, way.Scan());
        LogLine line;
        while (reader.ReadLogLine(line)) {
            way.Read(line);
        }
    };
    read(fast);
    read(plain);
    const std::string difference = test::DifferenceOf(fast.m_details, plain.m_details);
    Require(difference.empty(), "read plainly, another outcome: " + difference);
}

// Where the lines of a way go.
struct Records {
    CDetailList& m_details;

    void AddUsual(const UsualLine& line) { m_details.AppendUsual(line); }
    std::uint32_t Add(const CLogDetail& detail, bool ascii) {
        const RecordIndex record = m_details.Append(detail, ascii);
        return m_details.IsUsual(record) ? m_details.ContextNumber(record) : kNoContext;
    }
};

} // namespace carvelot::fuzz
